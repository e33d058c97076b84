"""Objects of the library, and the call of a member."""

from __future__ import annotations

import ctypes
import reprlib
import sys
from ctypes import c_void_p
from struct import Struct
from typing import Any, Iterator, NamedTuple, NoReturn, TypeVar

from . import _contract as contract
from . import _hosts as hosts
from . import _library
from . import _values as values
from ._contract import runtime, wide
from ._errors import pending, raise_ending, raise_failure
from ._values import ByRef, Missing

MOST_ARGUMENTS = 4


class Member(NamedTuple):
    """What a call needs to know of a member."""

    owner: str
    name: str
    id: int
    flag: int
    arguments: tuple[str, ...]

    def described(self, given: tuple[Any, ...] | None = None) -> str:
        """The member's name, in a failure with the arguments that it was given."""
        if given is None:
            return f"{self.owner}.{self.name}"
        if self.flag == contract.PUT:
            return f"{self.owner}.{self.name} = {reprlib.repr(given[-1])}"
        if self.flag == contract.GET and not given:
            return f"{self.owner}.{self.name}"
        texts = [f"{name}={reprlib.repr(value)}" for name, value in zip(self.arguments, given)]
        return f"{self.owner}.{self.name}({', '.join(texts)})"


# ---------------------------------------------------------------------- the memory of one call

# A frame's memory: the result, the failure record, the parameters, the identifier of a put's value,
# the arguments (the last one first), what arguments by reference point to, and room for texts.
_RESULT, _INFO, _PARAMETERS, _PUT_NAME, _ARGUMENTS = 0, 24, 88, 112, 120
_REFERENCES = _ARGUMENTS + values.SIZE * MOST_ARGUMENTS
_TEXTS = _REFERENCES + values.SIZE * MOST_ARGUMENTS
_FRAME_SIZE = _TEXTS + 2048

_start = Struct("<88xQQII").pack_into  # clears result and record too
_failure = Struct("<H6xQQQI4xQQI").unpack_from
_length = Struct("<I").pack_into
_variant_type = Struct("<H").unpack_from
_write_pointer = Struct("<H6xQ8x").pack_into


class Frame:
    """The memory of one call, used again by later ones."""

    __slots__ = ("buffer", "address", "owned", "text_end", "_pin")

    def __init__(self) -> None:
        self.buffer = bytearray(_FRAME_SIZE)
        self._pin = ctypes.c_char.from_buffer(self.buffer)
        self.address = ctypes.addressof(self._pin)
        self.owned: list[int] = []
        self.text_end = _TEXTS
        Struct("<i").pack_into(self.buffer, _PUT_NAME, contract.PUT_VALUE)

    def lend_text(self, offset: int, text: str) -> None:
        """Writes a text as an argument, which is only lent: one that is short stands here."""
        units = wide(text)
        at, size = self.text_end, len(units)
        end = at + 4 + size
        if end > _FRAME_SIZE:
            self.own(offset, text)
            return
        buffer = self.buffer
        _length(buffer, at, size - 2)
        buffer[at + 4:end] = units
        self.text_end = (end + 7) & ~7
        _write_pointer(buffer, offset, values.STRING, self.address + at + 4)

    def own(self, offset: int, value: Any) -> None:
        """Writes an argument that has to be ended behind the call."""
        if isinstance(value, ByRef):
            place = offset + _REFERENCES - _ARGUMENTS
            vt = contract.BY_REFERENCE | values.VARIANT
            _write_pointer(self.buffer, offset, vt, self.address + place)
            offset, value = place, value.value
        values.write(self.buffer, offset, value)
        self.owned.append(offset)

    def clear(self) -> None:
        for offset in self.owned:
            runtime.VariantClear(self.address + offset)
        self.owned.clear()

    def take_result(self) -> Any:
        (vt,) = _variant_type(self.buffer)
        if vt == values.EMPTY:
            return values.Empty
        single = _results(vt)
        if single is not None:
            return single.read(*single.form.unpack_from(self.buffer, 8))
        try:
            return values.read(self.buffer, _RESULT)
        finally:
            runtime.VariantClear(self.address)


_frames: list[Frame] = []
# Results that are read and done with; a text is freed at once. Objects are not among them.
_results = {**values.SINGLES,
            values.STRING: values.SINGLES[values.STRING]._replace(read=values.take_text)}.get
_plain = values.PLAIN.get


def _frame() -> Frame:
    try:
        return _frames.pop()
    except IndexError:
        return Frame()


# ------------------------------------------------------------------------------------- objects

Made = TypeVar("Made", bound="LibraryObject")

# The class of the objects that have a table.
_classes: dict[int, type[LibraryObject]] = {}


class LibraryObject:
    """An object of the library; released with its last reference in Python."""

    __slots__ = ("_pointer", "_invoke", "__weakref__")

    _identifier = b""
    _interface = b""
    _names: dict[str, str] = {}

    def __new__(cls: type[Made]) -> Made:
        return cls._of(_library.create(cls._identifier))

    @classmethod
    def _of(cls: type[Made], pointer: int) -> Made:
        """The object behind a counted pointer, whose count is taken over."""
        self = object.__new__(cls)
        object.__setattr__(self, "_pointer", pointer)
        invoke = contract.slot(pointer, contract.INVOKE, contract.INVOKE_FUNCTION)
        object.__setattr__(self, "_invoke", invoke)
        _classes.setdefault(contract.table_of(pointer), cls)
        return self

    def __del__(self) -> None:
        pointer = getattr(self, "_pointer", 0)
        if pointer and not sys.is_finalizing():
            contract.slot(pointer, contract.RELEASE, contract.COUNT_FUNCTION)(pointer)

    def _call(self, member: Member, arguments: tuple[Any, ...]) -> Any:
        """Calls a member with all its arguments; those left out are Missing."""
        frame = _frame()
        try:
            buffer, count = frame.buffer, len(arguments)
            offset = _ARGUMENTS + values.SIZE * count
            try:
                for argument in arguments:
                    offset -= values.SIZE
                    kind = type(argument)
                    if kind is str:
                        frame.lend_text(offset, argument)
                        continue
                    write = _plain(kind)
                    if write is not None:
                        write(buffer, offset, argument)
                    else:
                        frame.own(offset, argument)
            except (TypeError, ValueError, OverflowError) as error:
                _refuse(member, arguments, offset, error)
            address, flag = frame.address, member.flag
            _start(buffer, _RESULT, address + _ARGUMENTS, address + _PUT_NAME, count, flag >> 2)
            code = self._invoke(self._pointer, member.id, None, 0, flag, address + _PARAMETERS,
                                address, address + _INFO, None)
            if code:
                _fail(member, arguments, code, buffer)
            result = frame.take_result()
            if pending:
                raise_ending()
            if frame.owned:
                _take_back(arguments, buffer)
            return result
        finally:
            if frame.owned:
                frame.clear()
            frame.text_end = _TEXTS
            _frames.append(frame)

    def __getattr__(self, name: str) -> Any:
        known = self._names.get(name.lower())
        if known is None or known == name:
            raise AttributeError(f"quorl.{type(self).__name__} has no member {name!r}")
        return getattr(self, known)

    def __setattr__(self, name: str, value: Any) -> None:
        object.__setattr__(self, self._names.get(name.lower(), name), value)

    def __dir__(self) -> list[str]:
        return sorted(self._names.values())

    def __eq__(self, other: object) -> bool:
        return isinstance(other, LibraryObject) and self._pointer == other._pointer

    def __hash__(self) -> int:
        return hash(self._pointer)

    def __repr__(self) -> str:
        return f"<quorl.{type(self).__name__} at {self._pointer:#x}>"

    def __reduce_ex__(self, _protocol: Any) -> NoReturn:
        raise TypeError(f"a quorl.{type(self).__name__} can be neither copied nor pickled: "
                        "it is an object of the library")


class ItemSequence(LibraryObject):
    """len, iteration and subscripts of a class with Count and Items."""

    __slots__ = ()

    def __len__(self) -> int:
        return self.Count

    def __getitem__(self, index: Any) -> Any:
        places = range(len(self))
        if isinstance(index, slice):
            return [self.Items(place) for place in places[index]]
        try:
            return self.Items(places[index])
        except IndexError:
            raise IndexError(f"{type(self).__name__} has no item {index}") from None

    def __iter__(self) -> Iterator[Any]:
        return (self[place] for place in range(len(self)))


def _refuse(member: Member, arguments: tuple[Any, ...], offset: int, error: Exception) -> NoReturn:
    place = len(arguments) - 1 - (offset - _ARGUMENTS) // values.SIZE
    where = f"{member.described()}, argument {member.arguments[place]}"
    raise values.renamed(error, where) from error


def _take_back(arguments: tuple[Any, ...], buffer: bytearray) -> None:
    """Reads what the member left in its arguments by reference."""
    last = _REFERENCES + values.SIZE * (len(arguments) - 1)
    for place, argument in enumerate(arguments):
        if isinstance(argument, ByRef):
            argument.value = values.read(buffer, last - values.SIZE * place)


def _fail(member: Member, arguments: tuple[Any, ...], code: int, buffer: bytearray) -> NoReturn:
    if code == contract.EXCEPTION:
        own, source, description, help_file, _, _, _, scode = _failure(buffer, _INFO)
        if scode & 0xFFFF0000 == contract.NUMBERED:
            number = scode & 0xFFFF
        else:
            number = contract.signed(scode) if scode else own
        runtime.SysFreeString(help_file)
        raise_failure(number, values.take_text(source), values.take_text(description),
                      member.described(arguments))
    raise_ending()
    if code == contract.PARAMETER_NOT_OPTIONAL:
        missing = [name for name, value in zip(member.arguments, arguments) if value is Missing]
        raise TypeError(f"{member.described()} requires its argument {', '.join(missing)}")
    raise_failure(contract.signed(code), "Quorl", f"0x{code:08X}", member.described(arguments))


# --------------------------------------------------------------------------- pointers to objects


def pointer_of(value: Any) -> int:
    """A counted dispatch pointer to an object of the library, or to one of Python's."""
    if value is None:
        return 0
    if isinstance(value, LibraryObject):
        pointer = value._pointer
        contract.slot(pointer, contract.ADD_REF, contract.COUNT_FUNCTION)(pointer)
        return pointer
    return hosts.Host(value).address


def object_behind(pointer: int) -> Any:
    """The object behind a lent dispatch pointer; one of Python's own is itself again."""
    if not pointer:
        return None
    if pointer in hosts.alive:
        return hosts.alive[pointer].target
    contract.slot(pointer, contract.ADD_REF, contract.COUNT_FUNCTION)(pointer)
    return _class_of(pointer)._of(pointer)


def _class_of(pointer: int) -> type[LibraryObject]:
    known = _classes.get(contract.table_of(pointer))
    if known is not None:
        return known
    kinds = [kind for kind in _all_classes(LibraryObject) if kind._interface]
    return next((kind for kind in kinds if _answers(pointer, kind._interface)), LibraryObject)


def _all_classes(kind: type[LibraryObject]) -> Iterator[type[LibraryObject]]:
    for below in kind.__subclasses__():
        yield below
        yield from _all_classes(below)


def _answers(pointer: int, interface: bytes) -> bool:
    out = c_void_p()
    query = contract.slot(pointer, contract.QUERY_INTERFACE, contract.QUERY_FUNCTION)
    if query(pointer, ctypes.c_char_p(interface), ctypes.byref(out)) != contract.OK:
        return False
    contract.slot(pointer, contract.RELEASE, contract.COUNT_FUNCTION)(pointer)
    return True


values.add_objects(pointer_of, object_behind)
