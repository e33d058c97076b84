"""Failures of the library and of host objects, and what a host object raised during a call."""

from __future__ import annotations

from threading import get_ident
from typing import NamedTuple, NoReturn

# What a Python exception of a host object is to the library.
PYTHON_NUMBER, PYTHON_SOURCE = 440, "Python"


class QuorlError(Exception):
    """A failure with its number, source and description.

    `call` tells the member that failed and its arguments; it is no part of the failure itself.
    """

    def __init__(self, number: int, source: str, description: str, call: str = "") -> None:
        super().__init__(number, source, description, call)
        self.number, self.source, self.description, self.call = number, source, description, call

    def __str__(self) -> str:
        failure = f"{self.source} ({self.number}): {self.description}"
        return f"{self.call}: {failure}" if self.call else failure


class Pending(NamedTuple):
    """An exception of a host object, and the failure that the library was told."""

    error: BaseException
    number: int
    description: str

    @property
    def ends_the_program(self) -> bool:
        return not isinstance(self.error, Exception)


# By thread: no exception passes through the library itself.
pending: dict[int, Pending] = {}


def keep(error: BaseException, number: int, description: str) -> None:
    """Keeps what a host object raised until the call of the library is back."""
    pending[get_ident()] = Pending(error, number, description)


def is_ending() -> bool:
    """Whether this thread's call has been ended by KeyboardInterrupt, SystemExit or the like."""
    kept = pending.get(get_ident()) if pending else None
    return kept is not None and kept.ends_the_program


def raise_ending() -> None:
    """Behind a call: raises what ends the program; forgets any other exception that was kept."""
    kept = pending.pop(get_ident(), None)
    if kept is not None and kept.ends_the_program:
        raise kept.error


def raise_failure(number: int, source: str, description: str, call: str) -> NoReturn:
    """Raises a failed call's exception: a host object's own where it is the reason."""
    kept = pending.pop(get_ident(), None)
    failure = QuorlError(number, source, description, call)
    if kept is None:
        raise failure
    is_reason = kept.number == number and kept.description in ("", description)
    if kept.ends_the_program or (is_reason and not isinstance(kept.error, QuorlError)):
        raise kept.error
    raise failure from (kept.error if is_reason else None)
