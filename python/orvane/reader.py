"""Reads what the loggers of a domain publish, or what was recorded of it, by the command orvane."""

import json
import os
import subprocess
import tempfile
import weakref
from collections.abc import Callable, Iterable, Iterator, Mapping
from types import TracebackType
from typing import IO, Any, Self, TypeVar

from orvane.error import Error
from orvane.events import EVENTS, LIVE_EVENTS, Event, Loss, Message

E = TypeVar("E")
_SECONDS_TO_END = 5


class _ToolEvents(Iterator[E]):
    """Iterates over the events that a command prints as lines of JSON.

    The command is a child process. It ends with the scope of this object or, without a scope, when
    the object is no longer used. Where it fails, the iteration ends with an Error that has the
    command's own words.
    """

    def __init__(
        self, arguments: Iterable[str], decoders: Mapping[str, Callable[[Mapping[str, Any]], E]]
    ) -> None:
        tool = os.environ.get("ORVANE_TOOL", "orvane")
        self._decoders = decoders
        self._errors = tempfile.TemporaryFile()
        try:
            self._child = subprocess.Popen(
                [tool, *arguments],
                stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE,
                stderr=self._errors,
            )
        except OSError as error:
            self._errors.close()
            raise Error(f"cannot run the command {tool}: {error.strerror}") from error
        assert self._child.stdout is not None
        self._lines = self._child.stdout
        self._end = weakref.finalize(self, _end, self._child, self._errors, os.getpid())

    def __next__(self) -> E:
        while self._end.alive:
            try:
                line = self._lines.readline()
            except ValueError:
                # Another thread has called close() just now.
                break
            if not line.endswith(b"\n"):
                self._conclude()
                break
            event = json.loads(line)
            decode = self._decoders.get(event["type"])
            if decode is not None:
                return decode(event)
        raise StopIteration

    def close(self) -> None:
        """Ends the command, and the iteration with it, also one of another thread."""
        self._end()

    def __enter__(self) -> Self:
        return self

    def __exit__(
        self,
        kind: type[BaseException] | None,
        error: BaseException | None,
        trace: TracebackType | None,
    ) -> None:
        self.close()

    def _conclude(self) -> None:
        """After the last line. An Error tells what the command had to say about a failure."""
        if self._end.detach() is None:
            # It was ended by close().
            return
        status = self._child.wait()
        self._errors.seek(0)
        words = self._errors.read().decode("utf-8", "backslashreplace").splitlines()
        _close_files(self._child, self._errors)
        if status != 0:
            ended = f"status {status}" if status > 0 else f"signal {-status}"
            raise Error(f"the command orvane ended with {ended}", words)


def _end(child: subprocess.Popen[bytes], errors: IO[bytes], owner: int) -> None:
    # A forked process has a copy of the object, but the child is its parent's, and a thread that
    # does not exist there may be reading.
    if os.getpid() != owner:
        return
    child.terminate()
    try:
        child.wait(_SECONDS_TO_END)
    except subprocess.TimeoutExpired:
        child.kill()
        child.wait()
    _close_files(child, errors)


def _close_files(child: subprocess.Popen[bytes], errors: IO[bytes]) -> None:
    if child.stdout is not None:
        child.stdout.close()
    errors.close()


def _filters(
    level: int | None,
    category: str | None,
    app: str | Iterable[str],
    exclude: str | Iterable[str],
    contains: str | None,
    count: int | None,
) -> Iterator[str]:
    for name, value in (
        ("level", None if level is None else int(level)),
        ("category", category),
        ("contains", contains),
        ("count", count),
    ):
        if value is not None:
            yield f"--{name}={value}"
    for name, targets in (("app", app), ("exclude", exclude)):
        for target in (targets,) if isinstance(targets, str) else targets:
            yield f"--{name}={target}"


class Reader(_ToolEvents[Message | Loss]):
    """What the loggers of a domain publish, as it happens.

        with orvane.Reader(domain=7, level=orvane.Level.WARNING) as reader:
            for event in reader:
                if isinstance(event, orvane.Message):
                    print(event.time, event.logger.kind, event.message)

    Messages that are missing are told as a Loss. The iteration goes on until the scope is left, or
    for as long as is asked for. The command is orvane tail --json, which the package orvane-tools
    has.
    """

    def __init__(
        self,
        domain: int = 0,
        *,
        security: str | os.PathLike[str] | None = None,
        level: int | None = None,
        category: str | None = None,
        app: str | Iterable[str] = (),
        exclude: str | Iterable[str] = (),
        contains: str | None = None,
        count: int | None = None,
        seconds: float | None = None,
    ) -> None:
        """Begins to read.

        security: the folder with the credentials, which orvane keys issue makes
        level: this level and more severe ones
        category: a shell pattern
        app, exclude: only these and not those loggers: KIND, KIND@HOST, KIND#NUMBER or HOST:APP,
            one or several
        contains: messages with this text in them
        count: end after so many messages
        seconds: end after so many seconds
        """
        arguments = ["tail", "--json", f"--domain={domain}"]
        if security is not None:
            arguments += ["--security", os.fspath(security)]
        arguments += _filters(level, category, app, exclude, contains, count)
        if seconds is not None:
            arguments.append(f"--for={seconds}")
        super().__init__(arguments, LIVE_EVENTS)


class Recording(_ToolEvents[Event]):
    """The events of recordings, in the order of time; open_recording() makes it."""


def open_recording(
    *paths: str | os.PathLike[str],
    level: int | None = None,
    category: str | None = None,
    app: str | Iterable[str] = (),
    exclude: str | Iterable[str] = (),
    contains: str | None = None,
    count: int | None = None,
    follow: bool = False,
) -> Recording:
    """Reads what orvane record has written, MCAP or lines of JSON.

    The filters are those of a Reader. With follow the iteration goes on while a recording is
    written. What is damaged in a file is passed over, and the Error at the end of the iteration
    tells it.
    """
    arguments = ["show", "--json", *_filters(level, category, app, exclude, contains, count)]
    if follow:
        arguments.append("--follow")
    return Recording([*arguments, "--", *(os.fspath(path) for path in paths)], EVENTS)
