"""Logging over DDS: what a process logs is seen by every viewer of its domain.

Logger   starts the logger of the process, and logs

The library liborvane.so.0 is loaded when it is needed first. The environment variable
ORVANE_LIBRARY may name another file.
"""

from orvane.error import Error
from orvane.level import Level, from_logging, to_logging
from orvane.logger import Logger, Statistics

__all__ = ["Error", "Level", "Logger", "Statistics", "from_logging", "to_logging"]
