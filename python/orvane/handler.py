"""Messages of the module logging."""

import ctypes
import logging

from orvane.level import from_logging
from orvane._library import NANOSECONDS, MessageParams, Time, load
from orvane._text import CATEGORY_BOUND, MESSAGE_BOUND, encode


class Handler(logging.Handler):
    """Publishes what is logged by the module logging, with the name of its logger as the category.

    It uses the logger of the process, whoever has started it (a Logger, C code, an XML
    configuration), and does nothing while there is none. A record whose level the logger's filter
    stops is not formatted. Levels are mapped as from_logging() says. Texts are published as those
    of a Logger.

    In a configuration for logging.config.dictConfig its class is "orvane.Handler".
    """

    def __init__(self, level: int | str = logging.NOTSET) -> None:
        super().__init__(level)
        # Level and name are members of a message, and logging.basicConfig() would put them into the
        # texts of a handler that has no formatter.
        self.setFormatter(logging.Formatter())
        self._library = load()

    def emit(self, record: logging.LogRecord) -> None:
        library = self._library
        try:
            level = from_logging(record.levelno)
            if not library.is_level_enabled(level):
                return
            seconds, fraction = divmod(record.created, 1)
            params = MessageParams(
                level,
                encode(self.format(record), MESSAGE_BOUND),
                encode(record.name, CATEGORY_BOUND),
                Time(int(seconds), int(fraction * NANOSECONDS)),
            )
            library.log_with_params(library.instance.value, ctypes.byref(params))
        except RecursionError:
            # The report of the error would run into it again.
            raise
        except Exception:
            self.handleError(record)

    def flush(self) -> None:
        """Waits until what was logged has been published, a second at most."""
        self._library.wait_until_published(1.0)
