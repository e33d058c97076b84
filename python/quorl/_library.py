"""The two libraries: where they are, and what they make."""

from __future__ import annotations

import ctypes
import os
import sys
from ctypes import byref, c_char_p, c_void_p
from typing import Any, Iterator

from . import _contract as contract
from ._contract import runtime
from ._errors import QuorlError
from ._values import take_text

_MEANINGS = {
    0x80004002: "the object has no such interface",
    0x8000FFFF: "too late, or not in this state",
    0x8007000E: "memory ran out",
    0x80070057: "an argument out of its contract",
    0x8007007E: "the library does not load",
    0x80040111: "no such class",
}

_RUNTIME, _COMPONENT = "libquorl_runtime.so", "libquorl.so"


def candidates(folder: str | None) -> Iterator[str]:
    """The folders that may hold the libraries: the one that is named, or the usual ones."""
    named = folder or os.environ.get("QUORL_LIBRARY")
    if named:
        yield os.path.dirname(os.path.abspath(named)) if os.path.isfile(named) else named
        return
    for prefix in dict.fromkeys((sys.prefix, os.path.expanduser("~/.local"), "/usr/local", "/usr")):
        for name in ("lib", "lib64", f"lib/{os.uname().machine}-linux-gnu"):
            yield os.path.join(prefix, name)


def found(folder: str | None) -> str:
    """The folder that holds the libraries."""
    tried = list(candidates(folder))
    for one in tried:
        if os.path.isfile(os.path.join(one, _COMPONENT)):
            return os.path.abspath(one)
    raise FileNotFoundError(f"{_COMPONENT} is not in {', '.join(tried)}; "
                            "name its folder, or set QUORL_LIBRARY")


class Loaded:
    """The libraries of this process, which are loaded once."""

    def __init__(self) -> None:
        self.folder = ""
        self._component: Any = None

    @property
    def path(self) -> str:
        return os.path.join(self.folder, _COMPONENT)

    def load(self, folder: str | None) -> None:
        if self.folder and (folder is None or found(folder) == self.folder):
            return
        if self.folder:
            raise RuntimeError(f"the library is already loaded from {self.folder}")
        place = found(folder)
        runtime.load(os.path.join(place, _RUNTIME))
        self._component = ctypes.CDLL(os.path.join(place, _COMPONENT))
        self._component.DllGetClassObject.restype = ctypes.c_uint32
        self.folder = place

    def factory(self, identifier: bytes, interface: bytes) -> int:
        if self._component is None:
            raise RuntimeError("the library is not loaded yet: call quorl.Quorl() first")
        out = c_void_p()
        code = self._component.DllGetClassObject(c_char_p(identifier), c_char_p(interface),
                                                 byref(out))
        require(code, "DllGetClassObject")
        return out.value or 0


loaded = Loaded()


def create(identifier: bytes) -> int:
    """A counted pointer to a new instance of a class."""
    factory = loaded.factory(identifier, contract.IID_CLASS_FACTORY)
    out = c_void_p()
    make = contract.slot(factory, contract.CREATE_INSTANCE, contract.CREATE_FUNCTION)
    code = make(factory, None, c_char_p(contract.IID_DISPATCH), byref(out))
    contract.slot(factory, contract.RELEASE, contract.COUNT_FUNCTION)(factory)
    require(code, "CreateInstance")
    return out.value or 0


def global_object(identifier: bytes) -> int:
    """A counted pointer to the hidden instance of a global class."""
    factory = loaded.factory(identifier, contract.IID_GLOBAL_FACTORY)
    out = c_void_p()
    code = contract.slot(factory, contract.GLOBAL_OBJECT, contract.GLOBAL_FUNCTION)(
        factory, byref(out))
    contract.slot(factory, contract.RELEASE, contract.COUNT_FUNCTION)(factory)
    require(code, "GetGlobalObject")
    return out.value or 0


def require(code: int, call: str) -> None:
    """Raises the failure of a code, with the texts that the thread keeps of it."""
    if not code & 0x80000000:
        return
    number = code & 0xFFFF if code & 0xFFFF0000 == contract.NUMBERED else contract.signed(code)
    info = c_void_p()
    if runtime.GetErrorInfo(0, byref(info)) != contract.OK or not info.value:
        raise QuorlError(number, "Quorl", _MEANINGS.get(code, f"code 0x{code:08X}"), call)
    texts = [_error_text(info.value, place)
             for place in (contract.ERROR_SOURCE, contract.ERROR_DESCRIPTION)]
    contract.slot(info.value, contract.RELEASE, contract.COUNT_FUNCTION)(info.value)
    raise QuorlError(number, *texts, call)


def _error_text(info: int, place: int) -> str:
    text = c_void_p()
    contract.slot(info, place, contract.TEXT_FUNCTION)(info, byref(text))
    return take_text(text.value or 0)
