"""Python objects in the form that the library calls.

The library asks for a member by its name and then reads, writes or calls it. Whatever a member
raises ends the library's call and goes on to its caller; a name that the object lacks is 438.
"""

from __future__ import annotations

import ctypes
from ctypes import c_void_p
from struct import Struct
from typing import Any, Callable
from weakref import WeakKeyDictionary

from . import _contract as contract
from . import _values as values
from ._errors import PYTHON_NUMBER, PYTHON_SOURCE, QuorlError, is_ending, keep
from ._values import Empty

# Lent objects by their address; one lives here as long as the library refers to it.
alive: dict[int, "Host"] = {}

_PARAMETERS = Struct("<QQII")
_INFO = Struct("<H6xQQQI4xQQI4x")
_INFO_SIZE = 64


# By class: the names of its attributes by the same in lower case.
_names: WeakKeyDictionary[type, dict[str, str]] = WeakKeyDictionary()


def _class_has(kind: type, name: str) -> bool:
    return any(name in vars(one) for one in kind.__mro__)


def _class_attribute(kind: type, lower: str) -> str | None:
    if kind not in _names:
        _names[kind] = {name.lower(): name for name in dir(kind)}
    found = _names[kind].get(lower)
    return found if found is not None and _class_has(kind, found) else None


def attribute_named(target: Any, name: str) -> str | None:
    """The attribute of that name, ignoring case; it is looked up, not read."""
    own, kind, lower = getattr(target, "__dict__", {}), type(target), name.lower()
    if name in own or _class_has(kind, name):
        return name
    found = (_class_attribute(kind, lower)
             or next((one for one in own if one.lower() == lower), None))
    if found is not None:
        return found
    if _class_has(kind, "__getattr__") and hasattr(target, name):
        return name
    # A class may have got it since, and has names of its own when it is lent itself.
    return next((one for one in dir(target) if one.lower() == lower), None)


def _index(arguments: list[Any]) -> Any:
    return arguments[0] if len(arguments) == 1 else tuple(arguments)


class Host:
    """One object that is lent to the library, with the identifiers that it has given out."""

    __slots__ = ("target", "count", "names", "memory", "address")

    def __init__(self, target: Any) -> None:
        self.target, self.count, self.names = target, 1, [""]
        # The object in memory: a pointer to its table.
        self.memory = c_void_p(ctypes.addressof(_table))
        self.address = ctypes.addressof(self.memory)
        alive[self.address] = self

    def identifier(self, name: str) -> int:
        """The identifier of a member; -1 for a name that the object lacks."""
        found = attribute_named(self.target, name)
        if found is None:
            return -1
        if found not in self.names:
            self.names.append(found)
        return self.names.index(found)

    def invoke(self, name: str, flags: int, arguments: list[Any]) -> Any:
        if flags & (contract.PUT | contract.PUT_REFERENCE):
            return self._write(name, arguments)
        if not name:
            return self._read_default(arguments)
        member = getattr(self.target, name)
        if callable(member) and (flags & contract.METHOD or arguments):
            result = member(*arguments)
            return Empty if result is None and not flags & contract.GET else result
        return member[_index(arguments)] if arguments else member

    def _read_default(self, arguments: list[Any]) -> Any:
        """The default member is the element at an index, or without one the attribute Value."""
        return self.target[_index(arguments)] if arguments else getattr(self.target, self._value())

    def _value(self) -> str:
        return attribute_named(self.target, "Value") or "Value"

    def _write(self, name: str, arguments: list[Any]) -> Any:
        *indices, value = arguments
        if not indices:
            setattr(self.target, name or self._value(), value)
        elif name:
            getattr(self.target, name)[_index(indices)] = value
        else:
            self.target[_index(indices)] = value
        return Empty

    def has_default(self, arguments: list[Any], flags: int) -> bool:
        is_put = flags & (contract.PUT | contract.PUT_REFERENCE)
        if len(arguments) > (1 if is_put else 0):
            return hasattr(type(self.target), "__setitem__" if is_put else "__getitem__")
        return attribute_named(self.target, "Value") is not None


def _describe(error: BaseException) -> str:
    try:
        return f"{type(error).__name__}: {error}"
    except Exception:  # its own __str__ may fail
        return type(error).__name__


def _fill(info: int, number: int, source: str, description: str) -> int:
    """Writes the failure record of a call that a host object ends."""
    if info:
        code = contract.NUMBERED + number if 0 <= number <= 0xFFFF else number & 0xFFFFFFFF
        texts = values.new_text(source), values.new_text(description)
        record = _INFO.pack(0, *texts, 0, 0, 0, 0, code)
        ctypes.memmove(info, record, _INFO_SIZE)
    return contract.EXCEPTION


def _ended(info: int, error: BaseException) -> int:
    if isinstance(error, QuorlError):
        keep(error, error.number, error.description)
        return _fill(info, error.number, error.source, error.description)
    description = _describe(error)
    keep(error, PYTHON_NUMBER, description)
    return _fill(info, PYTHON_NUMBER, PYTHON_SOURCE, description)


def _arguments(parameters: int) -> list[Any]:
    first, _, count, _ = _PARAMETERS.unpack(ctypes.string_at(parameters, _PARAMETERS.size))
    given = ctypes.string_at(first, values.SIZE * count) if count else b""
    return [values.read(given, values.SIZE * place) for place in reversed(range(count))]


def _give(result: int, value: Any) -> None:
    """Writes a member's result, which is the library's from then on."""
    if not result:
        return
    variant = bytearray(values.SIZE)
    values.write(variant, 0, value)
    ctypes.memmove(result, bytes(variant), values.SIZE)


def _invoke(this: int, identifier: int, _iid: int, _lcid: int, flags: int, parameters: int,
            result: int, info: int, _wrong: int) -> int:
    try:
        if is_ending():
            return _fill(info, PYTHON_NUMBER, PYTHON_SOURCE, "")
        host = alive[this]
        if not 0 <= identifier < len(host.names):
            return contract.MEMBER_NOT_FOUND
        name, arguments = host.names[identifier], _arguments(parameters)
        if not name and not host.has_default(arguments, flags):
            return contract.MEMBER_NOT_FOUND
        _give(result, host.invoke(name, flags, arguments))
        return contract.OK
    except BaseException as error:  # nothing of Python's may pass through the library
        return _ended(info, error)


def _identifiers(this: int, _iid: int, names: Any, count: int, _lcid: int, ids: Any) -> int:
    try:
        for place in range(count):
            ids[place] = -1
        ids[0] = alive[this].identifier(contract.narrow(names[0]))
        return contract.OK if count == 1 and ids[0] >= 0 else contract.UNKNOWN_NAME
    except BaseException as error:
        keep(error, contract.signed(contract.UNEXPECTED), "")
        return contract.UNEXPECTED


def _query(this: int, identifier: int, out: Any) -> int:
    known = ctypes.string_at(identifier, 16) in (contract.IID_UNKNOWN, contract.IID_DISPATCH)
    out[0] = this if known else None
    if known:
        alive[this].count += 1
    return contract.OK if known else contract.NO_INTERFACE


def _add(this: int) -> int:
    host = alive[this]
    host.count += 1
    return host.count


def _release(this: int) -> int:
    host = alive[this]
    host.count -= 1
    if not host.count:
        del alive[this]
    return host.count


def _type_count(_this: int, count: Any) -> int:
    count[0] = 0
    return contract.OK


def _type_info(_this: int, _index: int, _lcid: int, out: Any) -> int:
    out[0] = None
    return contract.BAD_INDEX


_slots: tuple[Callable[..., int], ...] = (
    contract.QUERY_FUNCTION(_query), contract.COUNT_FUNCTION(_add),
    contract.COUNT_FUNCTION(_release), contract.TYPE_COUNT_FUNCTION(_type_count),
    contract.TYPE_INFO_FUNCTION(_type_info), contract.IDS_FUNCTION(_identifiers),
    contract.INVOKE_FUNCTION(_invoke),
)
_table = (c_void_p * len(_slots))(*(ctypes.cast(one, c_void_p).value for one in _slots))
