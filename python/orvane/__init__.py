"""Logging over DDS: what a process logs is seen by every viewer of its domain.

Logger   starts the logger of the process, and logs
Handler  lets what the module logging logs go to that logger

A program that uses the module logging needs two lines more:

    with orvane.Logger(domain=7, application_kind="planner"):
        logging.getLogger().addHandler(orvane.Handler())

The library liborvane.so.0 is loaded when it is needed first. The environment variable
ORVANE_LIBRARY may name another file.
"""

from orvane.error import Error
from orvane.handler import Handler
from orvane.level import Level, from_logging, to_logging
from orvane.logger import Logger, Statistics

__all__ = ["Error", "Handler", "Level", "Logger", "Statistics", "from_logging", "to_logging"]
