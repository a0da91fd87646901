"""What the package raises."""

from collections.abc import Iterable


class Error(Exception):
    """Something failed in the library or in the tool.

    lines holds what these have said about it, and is empty where they said nothing.
    """

    def __init__(self, what: str, lines: Iterable[str] = ()) -> None:
        self.lines = tuple(lines)
        super().__init__("\n".join((what, *self.lines)))
