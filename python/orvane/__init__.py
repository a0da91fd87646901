"""Logging over DDS: what a process logs is seen by every viewer of its domain.

Logger   starts the logger of the process, and logs
Handler  lets what the module logging logs go to that logger
Reader   gives what the loggers of a domain publish, and open_recording() what was recorded

A program that uses the module logging needs two lines more:

    with orvane.Logger(domain=7, application_kind="planner"):
        logging.getLogger().addHandler(orvane.Handler())

The library liborvane.so.0 is loaded when it is needed first. The environment variable
ORVANE_LIBRARY may name another file, and ORVANE_TOOL another command than orvane.
"""

from orvane.error import Error
from orvane.events import Event, Gap, Identity, LoggerChange, Loss, Message, Publisher
from orvane.handler import Handler
from orvane.level import Level, from_logging, to_logging
from orvane.logger import Logger, Statistics
from orvane.reader import Reader, Recording, open_recording

__all__ = [
    "Error",
    "Event",
    "Gap",
    "Handler",
    "Identity",
    "Level",
    "Logger",
    "LoggerChange",
    "Loss",
    "Message",
    "Publisher",
    "Reader",
    "Recording",
    "Statistics",
    "from_logging",
    "open_recording",
    "to_logging",
]
