"""The functions of the library that this package calls."""

import ctypes
import functools
import os
import sys
import time
from collections.abc import Callable
from typing import Any

from orvane.error import Error
from orvane._text import KIND_BOUND, encode

_long = ctypes.c_int32
_count = ctypes.c_uint64
_boolean = ctypes.c_ubyte
_pointer = ctypes.c_void_p
_string = ctypes.c_char_p

OK = 0
NANOSECONDS = 1_000_000_000
_REPORTS_SIZE = 1024
_LONGEST_WAIT = 24.0 * 3600


class Time(ctypes.Structure):
    """DDS_Time_t"""

    _fields_ = [("sec", _long), ("nanosec", ctypes.c_uint32)]


class MessageParams(ctypes.Structure):
    """QEL_KX_LogMessageParams"""

    _fields_ = [
        ("level", _long),
        ("message", _string),
        ("category", _string),
        ("timestamp", Time),
    ]


class Duration(ctypes.Structure):
    """DDS_Duration_t"""

    _fields_ = [("sec", _long), ("nanosec", ctypes.c_uint32)]


class LoggerRecord(ctypes.Structure):
    """The begin of QEL_KX_Orvane"""

    _fields_ = [("options", _pointer), ("filter_level", _long), ("entities", _pointer)]


class MatchedStatus(ctypes.Structure):
    """DDS_PublicationMatchedStatus"""

    _fields_ = [
        ("total_count", _long),
        ("total_count_change", _long),
        ("current_count", _long),
        ("current_count_change", _long),
        ("last_subscription_handle", ctypes.c_uint32 * 6),
    ]


class StatisticsRecord(ctypes.Structure):
    """QEL_KX_Statistics"""

    _fields_ = [
        ("accepted", _count),
        ("refused_for_room", _count),
        ("refused_for_memory", _count),
        ("published", _count),
        ("discarded", _count),
        ("write_timeouts", _count),
        ("queued", _long),
        ("most_queued", _long),
        ("queue_size", _long),
    ]


def number(value: int) -> int:
    if not -(2**31) <= value < 2**31:
        raise OverflowError(f"{value}: a number of 32 bits expected")
    return value


_kind = functools.partial(encode, bound=KIND_BOUND)
_name = functools.partial(encode, bound=sys.maxsize)

# For each option of a logger the end of its setter's name, the type, and what makes a value of it.
_OPTIONS: dict[str, tuple[str, Any, Callable[[Any], object]]] = {
    "domain": ("DomainId", _long, number),
    "filter_level": ("FilterLevel", _long, number),
    "queue_size": ("QueueSize", _long, number),
    "application_kind": ("ApplicationKind", _string, _kind),
    "qos_library": ("QosLibrary", _string, _name),
    "qos_profile": ("QosProfile", _string, _name),
    "echo_to_stdout": ("EchoToStdout", _long, bool),
    "log_infrastructure_messages": ("LogInfrastructureMessages", _long, bool),
    "remote_administration": ("RemoteAdministrationEnabled", _long, bool),
}


class Library:
    """The loaded library.

    A logging call gives up the interpreter's lock: it may print a line, and wait there for a
    thread of this interpreter that reads the other end of a pipe. Whether a level is enabled is
    answered without any wait, so that asking does not give way to other threads.
    """

    def __init__(self, name: str) -> None:
        calls = ctypes.CDLL(name)

        def function(name: str, result: Any, *arguments: Any, of: ctypes.CDLL = calls) -> Any:
            found = of[name]
            found.restype = result
            found.argtypes = arguments
            return found

        self.is_level_enabled: Callable[[int], int] = function(
            "QEL_KX_Orvane_isLevelEnabled", _boolean, _long, of=ctypes.PyDLL(name)
        )
        self.log = function(
            "QEL_KX_Orvane_logMessageWithLevelCategory", _long, _pointer, _long, _string, _string
        )
        self.log_with_params = function(
            "QEL_KX_Orvane_logMessageWithParams", _long, _pointer, ctypes.POINTER(MessageParams)
        )
        self.is_running = function("QEL_KX_Orvane_isOrvaneRunning", _long)
        self.get_instance = function("QEL_KX_Orvane_getInstance", _pointer)
        self.finalize_instance = function("QEL_KX_Orvane_finalizeInstance", _long)
        self.hand_over_options = function("QEL_KX_Orvane_setOptions", _boolean, _pointer)
        self.create_options = function("QEL_KX_Options_createDefault", _pointer)
        self.delete_options = function("QEL_KX_Options_delete", _long, _pointer)
        self._setters = {
            option: (function(f"QEL_KX_Options_set{name}", _long, _pointer, kind), convert)
            for option, (name, kind, convert) in _OPTIONS.items()
        }
        self._get_statistics = function(
            "QEL_KX_Orvane_getStatistics", None, ctypes.POINTER(StatisticsRecord)
        )
        self._get_log_writer = function(
            "QEL_KX_DDSEntities_getLogMessageWriter", _pointer, _pointer
        )
        self._get_matched_status = function(
            "DDS_DataWriter_get_publication_matched_status",
            _long,
            _pointer,
            ctypes.POINTER(MatchedStatus),
        )
        self._wait_for_acknowledgments = function(
            "DDS_DataWriter_wait_for_acknowledgments", _long, _pointer, ctypes.POINTER(Duration)
        )
        # A library that lacks it says on standard output all the same what failed.
        self._take_reports = (
            function("QEL_KX_Orvane_takeReports", ctypes.c_uint32, _string, ctypes.c_uint32)
            if hasattr(calls, "QEL_KX_Orvane_takeReports")
            else None
        )
        self.instance = _pointer.in_dll(calls, "QEL_KX_Orvane_instance")
        """Its value is the logger of the process, or None."""
        self.current_options = _pointer.in_dll(calls, "gQEL_KX_Orvane_currentOptions")
        """Its value is the record that the logger has been given, or None."""

    def set_option(self, options: int, name: str, value: object) -> None:
        """Sets an option of a record; an Error tells why the library refuses the value."""
        setter, convert = self._setters[name]
        converted = convert(value)
        self.take_reports()
        if setter(options, converted) != OK:
            raise Error(f"option {name} cannot be {value!r}", self.take_reports())

    def take_reports(self) -> list[str]:
        """The lines that the library has printed in this thread since the last call."""
        if self._take_reports is None:
            return []
        buffer = ctypes.create_string_buffer(_REPORTS_SIZE)
        self._take_reports(buffer, _REPORTS_SIZE)
        return buffer.value.decode("utf-8", "backslashreplace").splitlines()

    def statistics(self) -> StatisticsRecord:
        """What became of the messages of the present logger, or of the last one."""
        record = StatisticsRecord()
        self._get_statistics(ctypes.byref(record))
        return record

    def wait_until_published(self, seconds: float) -> bool:
        """Waits until what was logged is published, and no longer than so many seconds."""

        logged = self.statistics().accepted

        def is_published() -> bool:
            now = self.statistics()
            return logged <= now.published + now.discarded or not self.is_running()

        return _wait_until(is_published, time.monotonic() + seconds)

    # The following two are for the one who can be sure that nobody ends the logger meanwhile.

    def wait_for_viewer(self, seconds: float) -> bool:
        """Waits until a reader of the log has been found, and no longer than so many seconds."""

        def has_reader() -> bool:
            status = MatchedStatus()
            self._get_matched_status(self._log_writer(), ctypes.byref(status))
            return bool(status.current_count > 0)

        return _wait_until(has_reader, time.monotonic() + seconds)

    def hand_over_messages(self, seconds: float) -> None:
        """Waits until the readers have what was logged, and no longer than so many seconds."""
        seconds = min(seconds, _LONGEST_WAIT)
        deadline = time.monotonic() + seconds
        # In a child process there is nothing to wait for.
        if self.wait_until_published(seconds) and self.is_running():
            left, fraction = divmod(max(deadline - time.monotonic(), 0), 1)
            longest = Duration(int(left), int(fraction * NANOSECONDS))
            self._wait_for_acknowledgments(self._log_writer(), ctypes.byref(longest))

    def _log_writer(self) -> int | None:
        logger = ctypes.cast(self.instance, ctypes.POINTER(LoggerRecord)).contents
        writer: int | None = self._get_log_writer(logger.entities)
        return writer


def _wait_until(holds: Callable[[], bool], deadline: float) -> bool:
    while not holds():
        if time.monotonic() >= deadline:
            return False
        time.sleep(0.001)
    return True


@functools.cache
def load() -> Library:
    """The library, which is loaded by the first call."""
    name = os.environ.get("ORVANE_LIBRARY", "liborvane.so.0")
    try:
        return Library(name)
    except (OSError, AttributeError, ValueError) as error:
        raise Error(f"cannot use the library {name}: {error}") from error
