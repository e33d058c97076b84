"""The binary contract: codes, identifiers, the form of objects, and the runtime's C functions.

What a value, an object and a call are is said in quorl/abi/quorl.h; the names here are those.
"""

from __future__ import annotations

import ctypes
from codecs import utf_16_le_decode, utf_16_le_encode
from ctypes import CFUNCTYPE, POINTER, c_double, c_int32, c_uint16, c_uint32, c_void_p
from typing import Any, Callable
from uuid import UUID

METHOD, GET, PUT, PUT_REFERENCE = 1, 2, 4, 8
PUT_VALUE = -3
ARRAY, BY_REFERENCE = 0x2000, 0x4000

OK = 0
NO_INTERFACE = 0x80004002
UNEXPECTED = 0x8000FFFF
MEMBER_NOT_FOUND = 0x80020003
MISSING = 0x80020004
UNKNOWN_NAME = 0x80020006
EXCEPTION = 0x80020009
BAD_INDEX = 0x8002000B
PARAMETER_NOT_OPTIONAL = 0x8002000F
NUMBERED = 0x800A0000

QUERY_INTERFACE, ADD_REF, RELEASE, INVOKE = 0, 1, 2, 6
CREATE_INSTANCE, GLOBAL_OBJECT = 3, 3
ERROR_SOURCE, ERROR_DESCRIPTION = 4, 5


def identifier(text: str) -> bytes:
    """The 16 bytes of an identifier written with braces."""
    return UUID(text).bytes_le


IID_UNKNOWN = identifier("{00000000-0000-0000-C000-000000000046}")
IID_DISPATCH = identifier("{00020400-0000-0000-C000-000000000046}")
IID_CLASS_FACTORY = identifier("{00000001-0000-0000-C000-000000000046}")
IID_GLOBAL_FACTORY = identifier("{8F1D6A02-3B5E-4C47-9A61-520ED744B301}")

INVOKE_FUNCTION = CFUNCTYPE(c_uint32, c_void_p, c_int32, c_void_p, c_uint32, c_uint16, c_void_p,
                            c_void_p, c_void_p, c_void_p)
IDS_FUNCTION = CFUNCTYPE(c_uint32, c_void_p, c_void_p, POINTER(c_void_p), c_uint32, c_uint32,
                         POINTER(c_int32))
COUNT_FUNCTION = CFUNCTYPE(c_uint32, c_void_p)
QUERY_FUNCTION = CFUNCTYPE(c_uint32, c_void_p, c_void_p, POINTER(c_void_p))
TYPE_COUNT_FUNCTION = CFUNCTYPE(c_uint32, c_void_p, POINTER(c_uint32))
TYPE_INFO_FUNCTION = CFUNCTYPE(c_uint32, c_void_p, c_uint32, c_uint32, POINTER(c_void_p))
CREATE_FUNCTION = CFUNCTYPE(c_uint32, c_void_p, c_void_p, c_void_p, POINTER(c_void_p))
TEXT_FUNCTION = GLOBAL_FUNCTION = CFUNCTYPE(c_uint32, c_void_p, POINTER(c_void_p))

_slots: dict[tuple[int, Any], Callable[..., int]] = {}


def table_of(pointer: int) -> int:
    """The address of an object's table."""
    return c_void_p.from_address(pointer).value or 0


def slot(pointer: int, place: int, prototype: Any) -> Callable[..., int]:
    """The function at a place of an object's table; made once for each function."""
    address = c_void_p.from_address(table_of(pointer) + 8 * place).value or 0
    key = address, prototype
    if key not in _slots:
        _slots[key] = prototype(address)
    return _slots[key]


def signed(code: int) -> int:
    """A code as the Int32 that it is."""
    return code - (1 << 32) if code & 0x80000000 else code


def units_of(text: str) -> bytes:
    """A text's 16-bit units, lone surrogates too."""
    return utf_16_le_encode(text, "surrogatepass")[0]


def text_of(units: bytes) -> str:
    return utf_16_le_decode(units, "surrogatepass", True)[0]


def wide(text: str) -> bytes:
    """A zero-ended text of 16-bit units."""
    return utf_16_le_encode(text + "\0", "surrogatepass")[0]


def narrow(pointer: int) -> str:
    """The zero-ended text of 16-bit units at an address."""
    end = pointer
    while ctypes.string_at(end, 2) != b"\0\0":
        end += 2
    return text_of(ctypes.string_at(pointer, end - pointer))


class Runtime:
    """The functions of libquorl_runtime.so, once it is loaded."""

    _SIGNATURES: dict[str, tuple[Any, tuple[Any, ...]]] = {
        "SysAllocStringLen": (c_void_p, (c_void_p, c_uint32)),
        "SysStringLen": (c_uint32, (c_void_p,)),
        "SysFreeString": (None, (c_void_p,)),
        "VariantClear": (c_uint32, (c_void_p,)),
        "SafeArrayCreate": (c_void_p, (c_uint16, c_uint32, c_void_p)),
        "SafeArrayDestroy": (c_uint32, (c_void_p,)),
        "GetErrorInfo": (c_uint32, (c_uint32, POINTER(c_void_p))),
        "QuorlSetStore": (c_uint32, (c_void_p, c_void_p)),
        "QuorlSetLocale": (c_uint32, (c_void_p,)),
        "QuorlSetScreen": (c_uint32, (c_double, c_double)),
        "QuorlRegister": (c_uint32, (c_void_p,)),
        "QuorlUnregister": (c_uint32, (c_void_p,)),
    }

    def load(self, path: str) -> None:
        library = ctypes.CDLL(path, mode=ctypes.RTLD_GLOBAL)
        for name, (result, arguments) in self._SIGNATURES.items():
            function = getattr(library, name)
            function.restype, function.argtypes = result, arguments
            setattr(self, name, function)

    def __getattr__(self, name: str) -> Any:
        if name in self._SIGNATURES:
            raise RuntimeError("the library is not loaded yet: call quorl.Quorl() first")
        raise AttributeError(name)


runtime = Runtime()
