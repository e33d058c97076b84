"""Quorl for Python: the classes of the library, with nothing but the standard library.

    import quorl
    from decimal import Decimal

    library = quorl.Quorl(locale="fr-BE")
    library.Math.RoundSup(1.21, 1)            # a global class: its one shared instance
    money = library.Money()                   # a class that hosts make instances of
    money.Unit, money.Language = "euro", "FR"
    money.ToText(Decimal("80"))

Numbers, texts, bool and datetime are what they are in Python; a Decimal is a Currency, bytes are
an array of bytes, a list is an array of Variants, None is Null, and the empty reference where an
object is wanted. `Empty` is a value never assigned, `Missing` an argument left out, `Array` an array
with its element type and bounds, `ByRef` an argument that is written back. Any other object is lent
to the library, which uses its attributes and methods by name, ignoring case.

Failures are `QuorlError` with number, source and description. What a lent object raises reaches the
caller as it is. Everything runs on the caller's thread; an object is used from one thread at a
time.
"""

from __future__ import annotations

import os
from ctypes import c_char_p
from typing import Any

from . import _library, classes
from ._contract import runtime, wide
from ._errors import QuorlError
from ._objects import LibraryObject
from ._values import Array, ByRef, Empty, Missing
from .classes import *

__all__ = ["Array", "ByRef", "Empty", "LibraryObject", "Missing", "Quorl", "QuorlError",
           *classes.__all__]
__version__ = "1.0.0"


class Quorl(classes.Classes):
    """The library: a global class is an attribute with its members, any other class is called.

    `folder` holds libquorl.so and libquorl_runtime.so, or is the path of the first. Without it they
    are looked for where QUORL_LIBRARY says, then where libraries are installed. A process loads
    them once; locale, screen and settings are the whole process's.

    With `in_memory` settings last as long as the process; `user_folder` puts the user's elsewhere
    than usual, and `machine_folder` with it the machine's. Either can be chosen before the first use
    of settings alone. `locale` is "fr-BE" and the like, `screen` is width and height.
    """

    def __init__(self, folder: str | None = None, in_memory: bool = False,
                 locale: str | None = None, *, screen: tuple[float, float] | None = None,
                 user_folder: str | None = None, machine_folder: str | None = None) -> None:
        if machine_folder is not None and user_folder is None:
            raise ValueError("a machine_folder needs a user_folder beside it")
        if in_memory and user_folder is not None:
            raise ValueError("settings are either in_memory or in a user_folder")
        _library.loaded.load(folder)
        if in_memory or user_folder is not None:
            user, machine = [None if place is None else c_char_p(wide(os.path.abspath(place)))
                             for place in (user_folder, machine_folder)]
            _library.require(runtime.QuorlSetStore(user, machine), "QuorlSetStore")
        if locale is not None:
            self.set_locale(locale)
        if screen is not None:
            self.set_screen(*screen)

    def set_locale(self, name: str) -> None:
        """Sets the process's locale; an empty name is the system's again."""
        _library.require(runtime.QuorlSetLocale(c_char_p(wide(name))), f"set_locale({name!r})")

    def set_screen(self, width: float, height: float) -> None:
        """Sets the size of the screen on which `Forms` places forms."""
        _library.require(runtime.QuorlSetScreen(width, height), f"set_screen({width}, {height})")

    def register(self) -> None:
        """Registers the library for hosts that find classes by name; Python needs it not."""
        path = c_char_p(wide(_library.loaded.path))
        _library.require(runtime.QuorlRegister(path), "register()")

    def unregister(self) -> None:
        path = c_char_p(wide(_library.loaded.path))
        _library.require(runtime.QuorlUnregister(path), "unregister()")

    def __getattr__(self, name: str) -> Any:
        known = classes.GLOBALS.get(name.lower())
        if known is None:
            raise AttributeError(f"Quorl has no class {name!r}")
        # The next access finds it without a call.
        made = known._of(_library.global_object(known._identifier))
        self.__dict__[name] = made
        return made

    def __dir__(self) -> list[str]:
        own = [name for name in super().__dir__() if not name.startswith("_")]
        return sorted({*own, *(kind.__name__ for kind in classes.GLOBALS.values())})

    def __repr__(self) -> str:
        return f"<Quorl {__version__} from {_library.loaded.folder}>"
