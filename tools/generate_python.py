#!/usr/bin/env python3
"""Writes python/quorl/classes.py and its stubs from docs/quorl.json.

    tools/generate_python.py            writes both files
    tools/generate_python.py --check    fails if one is out of date
"""

import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
PACKAGE = ROOT / "python" / "quorl"
FLAGS = {"method": 1, "get": 2, "put": 4}
TYPES = {"Int16": "int", "Int32": "int", "Double": "float", "Currency": "Decimal",
         "Date": "datetime", "String": "str", "Object": "Any", "Boolean": "bool", "Variant": "Any"}
# What Python's own protocols add to a class.
BASES = {"RollBuffer": "ItemSequence"}

RUNTIME_HEAD = '''"""The classes and enumerations of Quorl.

Generated from docs/quorl.json by tools/generate_python.py; do not edit.
"""

from __future__ import annotations

from datetime import datetime
from decimal import Decimal
from enum import IntEnum
from typing import Any, Type, TypeVar, Union

from ._contract import identifier
from ._objects import ItemSequence, LibraryObject, Member
from ._values import ByRef, Missing, NoObject

Enumeration = TypeVar("Enumeration", bound=IntEnum)


def _named(enumeration: Type[Enumeration], value: int) -> Union[Enumeration, int]:
    """The member of that value; a value without one stays a number."""
    try:
        return enumeration(value)
    except ValueError:
        return value


def _object(value: Any) -> Any:
    return NoObject if value is None else value
'''
STUB_HEAD = '''# Generated from docs/quorl.json by tools/generate_python.py; do not edit.
from datetime import datetime
from decimal import Decimal
from enum import IntEnum
from typing import Any, Final, Type

from ._objects import ItemSequence, LibraryObject
from ._values import ByRef
'''


def type_of(typed, is_argument=False):
    """The Python type of an argument or a result."""
    if "enumeration" in typed:
        return typed["enumeration"]
    if "class" in typed:
        return typed["class"]
    name = TYPES[typed["type"]]
    return f"{name} | ByRef" if is_argument and typed["by_reference"] else name


def default_of(argument, is_stub):
    if not argument["optional"]:
        return ""
    if is_stub:
        return " = ..."
    if "default" not in argument:
        return " = Missing"
    if "enumeration" in argument:
        return f" = {argument['enumeration']}({argument['default']})"
    return f" = {argument['default']!r}"


def signature(member, is_stub):
    arguments = ["self"] + [
        f"{one['name']}: {type_of(one, True)}{default_of(one, is_stub)}"
        for one in member["arguments"]]
    result = type_of(member["result"]) if "result" in member else "None"
    return f"def {member['name']}({', '.join(arguments)}) -> {result}:"


def published_type(typed):
    return typed.get("enumeration") or typed.get("class") or typed["type"]


def described(argument):
    text = f"{argument['name']}: {published_type(argument)}"
    if argument["by_reference"]:
        text += ", written back"
    if "default" in argument:
        return f"{text}, {argument['default']!r} when left out"
    return f"{text}, may be left out" if argument["optional"] else text


def documentation(kind, member):
    """The help string, then each argument and the result by the library's own types."""
    what = "Method" if member["kind"] == "method" else "Property"
    lines = [member.get("help", f"{what} of {kind['name']}.")]
    lines += [described(argument) for argument in member["arguments"]]
    return lines + ([f"Gives {published_type(member['result'])}"] if "result" in member else [])


def docstring(lines):
    if len(lines) == 1:
        return [f'        """{lines[0]}"""']
    return [f'        """{lines[0]}', "", *[f"        {line}" for line in lines[1:]], '        """']


def decorators(kind, member):
    if member["kind"] == "put":
        return [f"    @{member['name']}.setter"]
    is_property = member["kind"] == "get" and not member["arguments"]
    return ["    @property"] if is_property else []


def constant(kind, member):
    return f"_{kind['name']}_{member['kind']}_{member['name']}"


def tuple_of(elements):
    return f"({elements[0]},)" if len(elements) == 1 else f"({', '.join(elements)})"


def body(kind, member):
    arguments = [f"_object({one['name']})" if one["type"] == "Object" else one["name"]
                 for one in member["arguments"]]
    call = f"self._call({constant(kind, member)}, {tuple_of(arguments)})"
    if "result" not in member:
        return f"        {call}"
    if "enumeration" in member["result"]:
        call = f"_named({member['result']['enumeration']}, {call})"
    return f"        return {call}"


def constants(kind):
    for member in kind["members"]:
        names = tuple_of([f'"{one["name"]}"' for one in member["arguments"]])
        yield (f'{constant(kind, member)} = Member("{kind["name"]}", "{member["name"]}", '
               f'{member["id"]}, {FLAGS[member["kind"]]}, {names})')


def readable_first(members):
    """A property's setter stands behind its getter."""
    return sorted(members, key=lambda one: (one["id"], FLAGS[one["kind"]]))


def class_head(kind):
    return f"\n\nclass {kind['name']}({BASES.get(kind['name'], 'LibraryObject')}):"


def runtime_class(kind):
    names = dict.fromkeys(one["name"] for one in kind["members"])
    about = ("a global class: all hosts of the process share one instance"
             if kind["kind"] == "global" else "each host makes instances of its own")
    lines = ["", "", *constants(kind), class_head(kind),
             f'    """Quorl.{kind["name"]} {kind["interfaces"][-1]["version"]}: {about}."""', "",
             "    __slots__ = ()",
             f'    _identifier = identifier("{kind["identifier"]}")',
             f'    _interface = identifier("{kind["interfaces"][-1]["identifier"]}")',
             "    _names = {", *[f'        "{name.lower()}": "{name}",' for name in names], "    }"]
    for member in readable_first(kind["members"]):
        lines += ["", *decorators(kind, member), f"    {signature(member, False)}"]
        lines += [*docstring(documentation(kind, member)), body(kind, member)]
    return lines


def stub_class(kind):
    lines = [class_head(kind)]
    for member in readable_first(kind["members"]):
        lines += [*decorators(kind, member), f"    {signature(member, True)} ..."]
    return lines if len(lines) > 1 else [f"{lines[0]} ..."]


def enumeration(one, is_stub):
    yield f"\n\nclass {one['name']}(IntEnum):"
    for member in one["members"]:
        yield f"    {member['name']} = {member['value']}"
    if not is_stub:
        yield "\n"
    for member in one["members"]:
        owner = f"{one['name']}.{member['name']}"
        yield f"{member['name']}: Final = {owner}" if is_stub else f"{member['name']} = {owner}"


def exported(catalogue):
    names = [one["name"] for one in catalogue["classes"]]
    for one in catalogue["enumerations"]:
        names += [one["name"], *[member["name"] for member in one["members"]]]
    yield "\n__all__ = ["
    yield from (f'    "{name}",' for name in sorted(names))
    yield "]"


def runtime_classes(catalogue):
    """The attributes of the library that are classes, and those that are shared instances."""
    yield '\n\nclass Classes:\n    """The classes that hosts make instances of."""\n'
    made = [one["name"] for one in catalogue["classes"] if one["kind"] == "creatable"]
    yield from (f"    {name} = {name}" for name in made)
    shared = [one["name"] for one in catalogue["classes"] if one["kind"] == "global"]
    yield "\n\nGLOBALS: dict[str, type[LibraryObject]] = {"
    yield from (f'    "{name.lower()}": {name},' for name in shared)
    yield "}"
    yield from exported(catalogue)


def stub_classes(catalogue):
    yield "\n"
    yield from (f"_{one['name']} = {one['name']}" for one in catalogue["classes"])
    yield "\nGLOBALS: dict[str, type[LibraryObject]]\n\n\nclass Classes:"
    for one in catalogue["classes"]:
        name = one["name"]
        if one["kind"] == "global":
            yield f"    @property\n    def {name}(self) -> _{name}: ..."
        else:
            yield f"    {name}: Type[_{name}]"
    yield from exported(catalogue)


def text_of(head, catalogue, class_lines, tail_lines, is_stub):
    lines = [head.rstrip("\n")]
    for one in catalogue["enumerations"]:
        lines += enumeration(one, is_stub)
    for kind in catalogue["classes"]:
        lines += class_lines(kind)
    return "\n".join([*lines, *tail_lines(catalogue)]) + "\n"


def generated():
    catalogue = json.loads((ROOT / "docs" / "quorl.json").read_text(encoding="utf-8"))
    return {
        PACKAGE / "classes.py": text_of(RUNTIME_HEAD, catalogue, runtime_class, runtime_classes,
                                        False),
        PACKAGE / "classes.pyi": text_of(STUB_HEAD, catalogue, stub_class, stub_classes, True),
    }


def main():
    is_check = sys.argv[1:] == ["--check"]
    for path, text in generated().items():
        if not is_check:
            path.write_text(text, encoding="utf-8")
        elif path.read_text(encoding="utf-8") != text:
            sys.exit(f"{path} is out of date: run tools/generate_python.py")


if __name__ == "__main__":
    main()
