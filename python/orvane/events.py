"""What a viewer sees of the loggers of a domain."""

import dataclasses
from collections.abc import Callable, Mapping
from datetime import UTC, datetime, timedelta
from typing import Any, TypeAlias

from orvane._library import NANOSECONDS
from orvane.level import Level

_EPOCH = datetime(1970, 1, 1, tzinfo=UTC)


@dataclasses.dataclass(frozen=True, slots=True)
class Identity:
    """Which logger it is. A text that is not known is empty, and so is a pid of 0."""

    app: str
    """HOST:APP in hexadecimal. Loggers with one certificate of DDS Security may share it."""
    host_id: int
    app_id: int
    kind: str
    number: int
    """Tells loggers of one kind apart that the viewer had."""
    host: str
    process: str
    pid: int
    instance_id: int = 0
    """Tells loggers apart that share HOST:APP; 0 when it is not known."""


@dataclasses.dataclass(frozen=True, slots=True)
class Publisher:
    """Who has published something in the name of another logger."""

    logger: Identity
    authenticated: bool
    """A certificate says that it is this one."""


@dataclasses.dataclass(frozen=True, slots=True)
class _Timed:
    nanoseconds: int
    """When it was, since 1970."""

    @property
    def time(self) -> datetime:
        """When it was, in UTC and to the microsecond."""
        return _EPOCH + timedelta(microseconds=self.nanoseconds // 1000)


@dataclasses.dataclass(frozen=True, slots=True)
class Message(_Timed):
    """A message; its time is that of logging."""

    level: int
    """A Level where the number is one."""
    level_name: str
    logger: Identity
    category: str
    message: str
    publisher: Publisher | None = None
    """None is the logger itself."""


@dataclasses.dataclass(frozen=True, slots=True)
class Loss(_Timed):
    """Messages of a logger that nobody will see; the time is that at which it was noticed."""

    logger: Identity
    lost: int
    """All that are missing. Of some it is known where they were lost:"""
    queue_full: int
    no_memory: int
    discarded: int
    """Never published."""
    on_the_way: int
    """Published, and not received."""


@dataclasses.dataclass(frozen=True, slots=True)
class LoggerChange(_Timed):
    """In a recording: what was seen of a logger."""

    event: str
    """appeared, changed or gone, or present for those that were there when a file began."""
    logger: Identity
    settings: Mapping[str, Any]
    """state, filter_level, filter_level_name, domain, verbosities, print_format"""
    before: Mapping[str, Any] | None
    """The kind and the settings before the change."""
    publisher: Publisher | None = None
    """None is the logger itself."""


@dataclasses.dataclass(frozen=True, slots=True)
class Gap(_Timed):
    """In a recording: events that are not in it, because its disk was full or too slow."""

    events: int


Event: TypeAlias = Message | Loss | LoggerChange | Gap

_SETTINGS = ("state", "filter_level", "filter_level_name", "domain", "verbosities", "print_format")


def _nanoseconds(line: Mapping[str, Any]) -> int:
    """Of "2026-01-31T12:00:00.123456789Z"."""
    time = line["time"]
    whole = datetime.fromisoformat(time[:19] + "Z") - _EPOCH
    return (whole.days * 86400 + whole.seconds) * NANOSECONDS + int(time[20:29])


def _identity(line: Mapping[str, Any]) -> Identity:
    return Identity(
        app=line["app"],
        host_id=line["host_id"],
        app_id=line["app_id"],
        kind=line["kind"],
        number=line.get("number", 1),
        host=line["host"],
        process=line["process"],
        pid=line["pid"],
        instance_id=line.get("instance_id", 0),
    )


def _publisher(line: Mapping[str, Any]) -> Publisher | None:
    publisher = line.get("publisher")
    if publisher is None:
        return None
    return Publisher(logger=_identity(publisher), authenticated=publisher["authenticated"])


def _level(number: int) -> int:
    try:
        return Level(number)
    except ValueError:
        return number


def _message(line: Mapping[str, Any]) -> Message:
    return Message(
        nanoseconds=_nanoseconds(line),
        level=_level(line["level"]),
        level_name=line["level_name"],
        logger=_identity(line),
        category=line["category"],
        message=line["message"],
        publisher=_publisher(line),
    )


def _loss(line: Mapping[str, Any]) -> Loss:
    return Loss(
        nanoseconds=_nanoseconds(line),
        logger=_identity(line),
        lost=line["lost"],
        queue_full=line["queue_full"],
        no_memory=line["no_memory"],
        discarded=line["discarded"],
        on_the_way=line["on_the_way"],
    )


def _logger_change(line: Mapping[str, Any]) -> LoggerChange:
    return LoggerChange(
        nanoseconds=_nanoseconds(line),
        event=line["event"],
        logger=_identity(line),
        settings={name: line[name] for name in _SETTINGS},
        before=line.get("before"),
        publisher=_publisher(line),
    )


def _gap(line: Mapping[str, Any]) -> Gap:
    return Gap(nanoseconds=_nanoseconds(line), events=line["events"])


# By the member "type" of a line.
LIVE_EVENTS: Mapping[str, Callable[[Mapping[str, Any]], Message | Loss]] = {
    "message": _message,
    "loss": _loss,
}
EVENTS: Mapping[str, Callable[[Mapping[str, Any]], Event]] = {
    **LIVE_EVENTS,
    "logger": _logger_change,
    "gap": _gap,
}
