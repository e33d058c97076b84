#!/usr/bin/env python3
"""Writes quorl/runtime/internal/case_table.inc: the simple case mapping of all 65 536 code units.

Source: the character database that Debian's package unicode-data installs. Without an argument the
table goes to standard output. With `--check TABLE` nothing is written: the status is 0 if the file
is that table, 1 if it is not, and 2 if no database of the version that it records is here.

    tools/generate_case_table.py > quorl/runtime/internal/case_table.inc
"""
import contextlib
import io
import os
import sys

DATABASE = "/usr/share/unicode/UnicodeData.txt"
AGES = "/usr/share/unicode/DerivedAge.txt"
UNITS = 0x10000
PAGE = 256
UPPER_FIELD, LOWER_FIELD = 12, 13


def database_version():
    with open(AGES, encoding="utf-8") as ages:
        # The first line reads "# DerivedAge-15.0.0.txt".
        return ages.readline().strip().removeprefix("# DerivedAge-").removesuffix(".txt")


def read_deltas(field):
    """For each code unit, what to add (modulo 65 536) to get its mapping; 0 where there is none."""
    deltas = [0] * UNITS
    with open(DATABASE, encoding="utf-8") as database:
        for line in database:
            columns = line.rstrip("\n").split(";")
            unit, mapped = int(columns[0], 16), columns[field]
            if unit < UNITS and mapped and int(mapped, 16) < UNITS:
                deltas[unit] = (int(mapped, 16) - unit) % UNITS
    return deltas


def as_pages(deltas):
    """Splits the deltas into pages, each distinct page once: the pages and the index of each."""
    pages, index = [], []
    for start in range(0, UNITS, PAGE):
        page = tuple(deltas[start:start + PAGE])
        if page not in pages:
            pages.append(page)
        index.append(pages.index(page))
    return pages, index


def write_rows(values, per_row):
    for start in range(0, len(values), per_row):
        print("    " + " ".join(f"{value}," for value in values[start:start + per_row]))


def write_table(name, deltas):
    pages, index = as_pages(deltas)
    print(f"\nconstexpr std::array<std::uint8_t, {len(index)}> k{name}Index{{")
    write_rows(index, 32)
    print("};")
    print(f"constexpr std::array<std::uint16_t, {len(pages) * PAGE}> k{name}Deltas{{")
    for number, page in enumerate(pages):
        print(f"    // page {number}")
        write_rows(page, 16)
    print("};")


def heading():
    return ("// Made by tools/generate_case_table.py; do not edit.\n"
            f"// Unicode {database_version()}. A delta is added modulo 65 536.")


def write_all():
    print(heading())
    write_table("Lower", read_deltas(LOWER_FIELD))
    write_table("Upper", read_deltas(UPPER_FIELD))


def check(path):
    with open(path, encoding="utf-8") as file:
        table = file.read()
    if not os.path.exists(AGES) or not table.startswith(heading()):
        return 2
    expected = io.StringIO()
    with contextlib.redirect_stdout(expected):
        write_all()
    return 0 if table == expected.getvalue() else 1


if __name__ == "__main__":
    if sys.argv[1:2] == ["--check"]:
        sys.exit(check(sys.argv[2]))
    write_all()
