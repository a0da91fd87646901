"""The logger of the process."""

import atexit
import dataclasses
import os
import threading
from types import TracebackType
from typing import Self

from orvane.error import Error
from orvane.level import Level
from orvane._library import OK, StatisticsRecord, load, number
from orvane._text import CATEGORY_BOUND, MESSAGE_BOUND, encode


@dataclasses.dataclass(frozen=True, slots=True)
class Statistics:
    """Numbers of messages since the start of a logger, and the state of its queue."""

    accepted: int
    """Taken into the queue."""
    refused_for_room: int
    """Refused, because the queue was full."""
    refused_for_memory: int
    """Refused, because there was no memory for a long text."""
    published: int
    discarded: int
    """Accepted, but never published: the middleware refused them, or the logger ended."""
    write_timeouts: int
    """Attempts to publish that timed out. The message stayed in the queue."""
    queued: int
    most_queued: int
    queue_size: int


class Logger:
    """Starts the logger of the process, and ends it.

        with orvane.Logger(domain=7, application_kind="planner") as log:
            log.info("ready")
            log.warning("battery low", "power")

    A process has one logger: where there is one, also one that C code has started, start() raises
    an Error. The logging methods use the logger of the process, whoever has started it, and do
    nothing when there is none.

    A text is published up to 4096 bytes of UTF-8, a category up to 512 and a kind up to 256; they
    are cut between two characters. A NUL is shown as an escape. Texts are taken as they are; for
    "%d of %d" use the module logging with a Handler.

    A process that forks closes its logger before, and each child starts its own; in a child of a
    process with a logger nothing is logged and none can be started. A logger that is open when the
    interpreter ends is closed.
    """

    def __init__(
        self,
        *,
        domain: int | None = None,
        filter_level: int | None = None,
        queue_size: int | None = None,
        application_kind: str | None = None,
        qos_library: str | None = None,
        qos_profile: str | None = None,
        echo_to_stdout: bool | None = None,
        log_infrastructure_messages: bool | None = None,
        remote_administration: bool | None = None,
    ) -> None:
        """Loads the library. An option that is None has the default of the library.

        domain: the DDS domain, by default 0
        filter_level: this level and more severe ones are published, by default INFO
        queue_size: how many messages may wait for publication, by default 128; one more is lost
        application_kind: what tools call the application
        qos_library, qos_profile: QoS of the logger's entities; both or none
        echo_to_stdout: whether each message is printed on standard output, too; by default not
        log_infrastructure_messages: whether messages of the middleware are published, by default so
        remote_administration: whether tools may change the settings, by default so
        """
        given = {
            "domain": domain,
            "filter_level": filter_level,
            "queue_size": queue_size,
            "application_kind": application_kind,
            "qos_library": qos_library,
            "qos_profile": qos_profile,
            "echo_to_stdout": echo_to_stdout,
            "log_infrastructure_messages": log_infrastructure_messages,
            "remote_administration": remote_administration,
        }
        self._library = load()
        self._given = {name: value for name, value in given.items() if value is not None}
        # The record that the running logger uses.
        self._options: int | None = None

    def start(self) -> Self:
        """Starts the logger. An Error says why it cannot be started."""
        with _Running.lock:
            if self._library.instance.value is not None:
                raise Error("the process has a logger already")
            # C code may have ended the last one.
            self.close()
            options = self._options = self._make_options()
            try:
                self._start_with(options)
            except BaseException:
                self.close()
                raise
            _Running.logger = self
        return self

    def wait_for_viewer(self, timeout: float) -> bool:
        """Waits until a reader of the log has been found; gives False after timeout seconds.

        A process that soon ends may have done so before a viewer has found it; others need not
        wait.
        """
        return self._is_running() and self._library.wait_for_viewer(timeout)

    def close(self, timeout: float = 0.5) -> None:
        """Ends the logger, when the readers have its messages or timeout seconds have passed.

        Does nothing when it is not running.
        """
        if self._is_running():
            self._library.hand_over_messages(timeout)
        with _Running.lock:
            if self._options is None:
                return
            # C code may have ended our logger and started its own.
            if self._is_own() or not self._library.is_running():
                self._library.take_reports()
                if self._library.finalize_instance() != OK:
                    raise Error("the logger cannot be ended", self._library.take_reports())
            if self._is_own():
                # A start that has failed, or a child process.
                self._library.hand_over_options(None)
            # A signal handler of this thread may have closed it, too.
            options, self._options = self._options, None
            if options is not None:
                self._library.delete_options(options)
            if _Running.logger is self:
                _Running.logger = None

    def __enter__(self) -> Self:
        return self.start()

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()

    def fatal(self, message: str, category: str = "") -> None:
        self.log(Level.FATAL, message, category)

    def severe(self, message: str, category: str = "") -> None:
        self.log(Level.SEVERE, message, category)

    def error(self, message: str, category: str = "") -> None:
        self.log(Level.ERROR, message, category)

    def warning(self, message: str, category: str = "") -> None:
        self.log(Level.WARNING, message, category)

    def notice(self, message: str, category: str = "") -> None:
        self.log(Level.NOTICE, message, category)

    def info(self, message: str, category: str = "") -> None:
        self.log(Level.INFO, message, category)

    def debug(self, message: str, category: str = "") -> None:
        self.log(Level.DEBUG, message, category)

    def trace(self, message: str, category: str = "") -> None:
        self.log(Level.TRACE, message, category)

    def log(self, level: int, message: str, category: str = "") -> None:
        """Logs at any level: a Level, or another number of 32 bits."""
        library = self._library
        level = number(level)
        if library.is_level_enabled(level):
            library.log(
                library.instance.value,
                level,
                encode(message, MESSAGE_BOUND),
                encode(category, CATEGORY_BOUND),
            )

    def is_enabled_for(self, level: int) -> bool:
        """Whether a message of the level would be published or printed now."""
        return self._library.is_level_enabled(level) != 0

    def statistics(self) -> Statistics:
        """What became of the messages of the process's logger, or of the last one that it had."""
        record = self._library.statistics()
        return Statistics(*(getattr(record, name) for name, *_ in StatisticsRecord._fields_))

    def _make_options(self) -> int:
        library = self._library
        options: int | None = library.create_options()
        if options is None:
            raise MemoryError
        try:
            for name, value in self._given.items():
                library.set_option(options, name, value)
        except BaseException:
            library.delete_options(options)
            raise
        return options

    def _start_with(self, options: int) -> None:
        library = self._library
        library.take_reports()
        if library.hand_over_options(options) == 0:
            raise Error("the process has a logger already")
        if library.get_instance() is None:
            raise Error("the logger cannot be started", library.take_reports())

    def _is_running(self) -> bool:
        """Whether the logger of this object runs in this process, and not in its parent."""
        return self._is_own() and bool(self._library.is_running())

    def _is_own(self) -> bool:
        """Whether the logger of the process uses the record of this object."""
        return self._options is not None and self._options == self._library.current_options.value


class _Running:
    """The object that has started the logger of the process, which keeps it alive."""

    lock = threading.RLock()
    logger: Logger | None = None


def _renew_lock() -> None:
    """In a child process, where the thread that holds the lock may not exist."""
    _Running.lock = threading.RLock()


def _close_running() -> None:
    if _Running.logger is not None:
        _Running.logger.close()


os.register_at_fork(after_in_child=_renew_lock)
atexit.register(_close_running)
