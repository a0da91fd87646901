"""Levels of messages, and what they are to the module logging."""

import enum
import logging


class Level(enum.IntEnum):
    """Severity of a message; a smaller number is more severe. Other numbers are levels, too."""

    SILENT = 0
    """No severity of a message, but a filter that lets nothing pass."""
    FATAL = 100
    SEVERE = 200
    ERROR = 300
    WARNING = 400
    NOTICE = 500
    INFO = 600
    DEBUG = 700
    TRACE = 800


# In the order of severity. The module logging has no names for three of them.
_ROWS = (
    (logging.CRITICAL, Level.FATAL),
    (45, Level.SEVERE),
    (logging.ERROR, Level.ERROR),
    (logging.WARNING, Level.WARNING),
    (25, Level.NOTICE),
    (logging.INFO, Level.INFO),
    (logging.DEBUG, Level.DEBUG),
    (5, Level.TRACE),
)
_EXACT = dict(_ROWS)


def from_logging(number: int) -> Level:
    """The level for a number of the module logging. A number between two is the less severe one."""
    exact = _EXACT.get(number)
    if exact is not None:
        return exact
    return next((level for least, level in _ROWS if number >= least), Level.TRACE)


def to_logging(level: int) -> int:
    """The number of the module logging for a level. A level between two is the less severe one."""
    return next((number for number, most in _ROWS if level <= most), _ROWS[-1][0])
