#!/usr/bin/env python3
"""Reckons results of a parity log anew, from the rules in the headers, and compares.

    parity_oracle.py LOG

Nothing of the library is used: roundings are done in Python's own arithmetic, texts as lists of code
units, a RollBuffer is a list with a cursor. What takes a conversion, settings, a host's object or
the word tables is left out. Exit status 1 when the log says otherwise anywhere.
"""

import math
import re
import sys

TOKEN = re.compile(r'"(?:[^"\\]|\\.)*"|:=|[^\s"]+')
PLAIN = ("Int16", "Int32", "Double")
VOWELS = "aàâäeéèêioôöuûü"
BLANK = " "


class Unknown(Exception):
    """A call that is not reckoned here."""


class Fails(Exception):
    """The failure of that Number."""


def units_of(token):
    """A text as a list of one-unit texts, so that every slice counts code units."""
    text = re.sub(r'\\(u([0-9A-F]{4})|.)',
                  lambda m: chr(int(m[2], 16)) if m[2] else m[1], token[1:-1])
    data = text.encode("utf-16-le", "surrogatepass")
    return "".join(chr(data[i] | data[i + 1] << 8) for i in range(0, len(data), 2))


def values_of(tokens):
    """The values of a line: (type, content); a type that is not reckoned with ends it."""
    values, rest = [], iter(tokens)
    for token in rest:
        if token.startswith('"'):
            values.append(("String", units_of(token)))
        elif token in ("Int16", "Int32", "Byte"):
            values.append((token, int(next(rest))))
        elif token == "Double":
            values.append((token, float(next(rest))))
        elif token in ("True", "False"):
            values.append(("Boolean", token == "True"))
        elif token in ("Empty", "Null"):
            values.append((token, None))
        else:
            raise Unknown
    return values


# ----------------------------------------------------------------------------------------- Math

def scaled(number, decimals):
    if decimals < 0 or decimals > 9 or not math.isfinite(number):
        raise Fails(6)
    product = number * 10 ** decimals
    if math.isinf(product):
        raise Fails(6)
    return round(product, 4)  # of the exact value, a tie to the even digit


def std_round(number, decimals=1):
    half = 0.5 if number >= 0 else -0.5
    return math.trunc(scaled(number, decimals) + half) / 10 ** decimals


def std_truncate(number, decimals=1):
    return math.trunc(scaled(number, decimals)) / 10 ** decimals


def in_int32(number):
    if not -2 ** 31 <= number < 2 ** 31:
        raise Fails(6)
    return number


def round_sup(number, decimals=0):
    if decimals < 0:
        raise Fails(5000)
    if number == 0:
        return 0.0
    sign = -1 if number < 0 else 1
    exact = scaled(number, decimals) or sign * 0.001
    whole = in_int32(math.trunc(exact))
    if whole != exact:
        whole = in_int32((abs(whole) + 1) * sign)
    return whole / 10 ** decimals


def round_inf(number, decimals=0):
    if decimals < 0:
        raise Fails(5000)
    return in_int32(math.trunc(scaled(number, decimals))) / 10 ** decimals if number else 0.0


def round_2019(number):
    hundredths = scaled(number, 2)
    half = 0.5 if hundredths >= 0 else -0.5
    if abs(hundredths) <= 5:
        return math.trunc(hundredths + half) / 100
    return math.trunc(math.trunc(hundredths) / 5 + half) / 20


def rounding(function, plain):
    def reckon(values):
        (kind, number), *decimals = values
        if kind == "Null" and not plain:
            return "Null", None
        if kind not in PLAIN or any(value[0] not in PLAIN[:2] for value in decimals):
            raise Unknown
        return "Double", function(float(number), *(value[1] for value in decimals)) + 0.0
    return reckon


def choice(better):
    def reckon(values):
        first, second = values
        if {first[0], second[0]} - set(PLAIN):
            raise Unknown
        return first if better(first[1], second[1]) else second
    return reckon


def mapping(mapped, zeros):
    def reckon(values):
        kind, content = values[0]
        if kind not in PLAIN + ("Empty", "Null", "Boolean"):
            raise Unknown
        return mapped(values) if content is None or content in zeros else values[0]
    return reckon


# -------------------------------------------------------------------------------------- Strings

def plural(text):
    text = text.strip(BLANK)
    if text[-1:] in ("s", "x", "S", "X"):
        return text
    return text + ("S" if text[-1:] < "a" else "s")


def proper(text):
    words = [unit.lower() if len(unit.lower()) == 1 else unit for unit in text]
    for i, unit in enumerate(words):
        if (i == 0 or words[i - 1] == BLANK) and len(unit.upper()) == 1:
            words[i] = unit.upper()
    return "".join(words)


def padded(text, length, pad, is_left):
    if length < 0 or not pad:
        raise Fails(5)
    if is_left:
        return text[-length:] if 0 < length <= len(text) else "" if not length else text.rjust(length, pad[0])
    return text[:length] if length <= len(text) else text.ljust(length, pad[0])


def count(text, part):
    if text and not part:
        raise Fails(6)
    return text.count(part) if text else 0


def token(text, separator=" ", index=1):
    if text and index == -32768:
        raise Fails(6)
    if not text or not separator:
        return ""
    parts = text.split(separator)
    return parts[max(index, 1) - 1] if max(index, 1) <= len(parts) else ""


def index_of(text, part, start=1, number=0):
    if number and not -32768 <= start + number - 1 <= start + number <= 32767:
        raise Fails(6)
    if start < 1 or (number and start + number - 1 < 0):
        raise Fails(5)
    end = start - 1 + number if number else len(text)
    at = text.find(part, start - 1, max(end, 0)) if text and end >= start - 1 else -1
    return at + 1


def index_of_any(text, any_of, start=1, number=0):
    if number > 0 and start + number > 32767:
        raise Fails(6)
    if start < 1:
        raise Fails(5)
    end = min(start - 1 + number, len(text)) if number > 0 else len(text)
    return next((i + 1 for i in range(start - 1, end) if text[i] in any_of), 0)


def trimmed(text, char, is_right):
    text = text.rstrip(BLANK) if is_right else text.lstrip(BLANK)
    if len(char) != 1:
        return text
    return text.rstrip(char) if is_right else text.lstrip(char)


def kept(is_kept):
    return lambda text: "".join(unit for unit in text if unit.isascii() and is_kept(unit))


def text_member(kind, function, types):
    """A member of texts and Int16s alone."""
    def reckon(values):
        for value, wanted in zip(values, types):
            if not (value[0] == "String" if wanted == "s" else value[0] in PLAIN[:2]):
                raise Unknown
            if wanted == "i" and not -32768 <= value[1] <= 32767:
                raise Fails(6)
        return kind, function(*(value[1] for value in values))
    return reckon


def unless_null(otherwise, function):
    def reckon(values):
        if values[0][0] == "Null":
            return otherwise
        if values[0][0] != "String" or function is None:
            raise Unknown
        return "String", function(values[0][1])
    return reckon


ZERO_GUID = "{00000000-0000-0000-0000-000000000000}"
MEMBERS = {
    "Math.StdRound": rounding(std_round, False), "Math.FixRound": rounding(std_round, True),
    "Math.StdTruncate": rounding(std_truncate, False), "Math.RoundSup": rounding(round_sup, True),
    "Math.RoundInf": rounding(round_inf, True), "Math.Round2019": rounding(round_2019, False),
    "Math.Min": choice(lambda a, b: a <= b), "Math.Max": choice(lambda a, b: a >= b),
    "Math.IsNullOrZero": mapping(lambda values: values[1], (0,)),
    "Math.ZeroAsNull": mapping(lambda _: ("Null", None), (0,)),
    "Math.ZeroOrOneAsNull": mapping(lambda _: ("Null", None), (0, 1)),
    "Math.NullOrZeroAsOne": mapping(lambda _: ("Int16", 1), (0,)),
    "Strings.IsEmptyString": text_member("Boolean", lambda t: not t.strip(BLANK), "s"),
    "Strings.IfIsNull": lambda values: values[values[0][0] == "Null"],
    "Strings.Padl": text_member("String", lambda t, n, p=" ": padded(t, n, p, True), "sis"),
    "Strings.Padr": text_member("String", lambda t, n, p=" ": padded(t, n, p, False), "sis"),
    "Strings.Pluriel": text_member("String", plural, "s"),
    "Strings.ProperCase": text_member("String", proper, "s"),
    "Strings.NbrTokens": text_member(
        "String", lambda t, s: str(count(t, s) + 1) if t else "0", "ss"),
    "Strings.GetToken": text_member("String", token, "ssi"),
    "Strings.StrCount": text_member("Int32", count, "ss"),
    "Strings.StrTran": text_member(
        "String", lambda t, old, new: t.replace(old, new, 1) if t else t, "sss"),
    "Strings.AphpaNumericOf": text_member("String", kept(str.isalnum), "s"),
    "Strings.AlphpaNumericOf": text_member("String", kept(str.isalnum), "s"),
    "Strings.AlphpabeticOf": text_member("String", kept(str.isalpha), "s"),
    "Strings.DigitsOf": text_member("String", kept(str.isdigit), "s"),
    "Strings.RTrimEx": text_member("String", lambda t, c=" ": trimmed(t, c, True), "ss"),
    "Strings.LTrimEx": text_member("String", lambda t, c=" ": trimmed(t, c, False), "ss"),
    "Strings.IsVoyelle": text_member("Boolean", lambda t: t[:1].lower() in VOWELS, "s"),
    "Strings.IndexOf": text_member("Int16", index_of, "ssii"),
    "Strings.Contains": text_member("Boolean", lambda *a: index_of(*a) > 0, "ssii"),
    "Strings.IndexOfAny": text_member("Int16", index_of_any, "ssii"),
    "Strings.ContainsAny": text_member("Boolean", lambda *a: index_of_any(*a) > 0, "ssii"),
    "Strings.IsDigits": text_member("Boolean", lambda t: set(t) <= set("0123456789"), "s"),
    "DbLib.StrFieldValue": unless_null(("String", ""), lambda t: t.rstrip(BLANK)),
    "DbLib.GuidFieldValue": unless_null(("String", ZERO_GUID), lambda t: t),
    "DbLib.NumFieldValue": unless_null(("Int16", 0), lambda t: t),
    "DbLib.BoolFieldValue": unless_null(("Boolean", False), None),
    "DbLib.TriStateFieldValue": unless_null(("Int16", 2), None),
    "DbLib.StrDateFieldValue": unless_null(("String", ""), None),
    "DbLib.DuplicateQuotte": text_member("String", lambda t: t.replace("'", "''"), "s"),
    "GUIDs.GetZeroGUID": lambda values: ("String", ZERO_GUID),
    "GUIDs.GetNullGUID": lambda values: ("String", ZERO_GUID.replace("0", "F")),
    "GUIDs.GetNumGUID": text_member(
        "String", lambda n: "{%08d" % n + ZERO_GUID[9:] if n >= 0 else "{-%08d" % -n + ZERO_GUID[9:], "n"),
}


class Buffer:
    """A RollBuffer: a list of values as the log writes them, and a cursor."""

    def __init__(self):
        self.size, self.items, self.index = 100, [], -1

    def at(self, index):
        if not 0 <= index < len(self.items):
            raise Fails(5000)
        return index

    def move(self, index, is_possible):
        if not self.items or not is_possible:
            raise Fails(5000)
        self.index = index

    def add(self, item):
        place = min(self.index, len(self.items) - 1)
        if place == self.size - 1:
            del self.items[0]
            place -= 1
        self.items[place + 1:] = [item]
        self.index = place + 1

    def clear(self, size):
        if size <= 0:
            raise Fails(5000)
        self.size, self.items, self.index = size, [], -1

    def call(self, kind, member, written):
        """The outcome of a call as the log writes it, without the texts of a failure."""
        last = len(self.items) - 1
        if kind == "get":
            known = {"BufferSize": self.size, "Count": last + 1, "Index": self.index}
            truths = {"BOF": self.index == -1, "OnFirst": self.index == 0,
                      "OnLast": self.index == last, "EOF": self.index == last + 1 or last < 0}
            if member in known:
                return f"gives Int32 {known[member]}"
            if member in truths:
                return f"gives {truths[member]}"
            index = self.index if member == "CurrentItem" else self.number(written)
            return f"gives {self.items[self.at(index)]}"
        if member == "BufferSize":
            self.clear(self.number(written))
        elif member == "Index":
            self.index = self.at(self.number(written))
        elif member == "CurrentItem":
            self.items[self.at(self.index)] = written
        elif member == "AddItem":
            self.add(written)
        elif member == "Clear":
            self.clear(self.size)
        else:
            self.move(*{"MoveFirst": (0, True), "MoveLast": (last, True),
                        "MoveNext": (self.index + 1, self.index <= last),
                        "MovePrevious": (self.index - 1, self.index >= 0)}[member])
        return "gives -" if kind == "put" else "gives Empty"

    @staticmethod
    def number(written):
        found = re.fullmatch(r"Int(?:16|32) (-?\d+)", written)
        if not found:
            raise Unknown
        return int(found[1])


def same(reckoned, logged):
    if reckoned[0] != logged[0]:
        return False
    return reckoned[1] == logged[1] or (reckoned[1] != reckoned[1] and logged[1] != logged[1])


def reckon_call(name, arguments, logged):
    """Whether the logged outcome is the one that is reckoned here."""
    if name not in MEMBERS or ":=" in arguments:
        raise Unknown
    tokens = TOKEN.findall(logged)
    if tokens[0] == "refused":
        raise Unknown
    values = values_of(TOKEN.findall(arguments))
    try:
        reckoned = MEMBERS[name](values)
    except Fails as failure:
        return tokens[:2] == ["fails", str(failure.args[0])]
    return tokens[0] == "gives" and same(reckoned, values_of(tokens[1:])[0])


def reckon_buffer(buffer, kind, member, written, logged):
    if logged.startswith("refused") or written.startswith("&") or "Error" in written:
        raise Unknown
    try:
        return buffer.call(kind, member, written.removeprefix(":= ")) == logged
    except Fails as failure:
        return logged.startswith(f"fails {failure.args[0]} ")


def main(path):
    classes, buffers, counts, wrong, call = {}, {}, {"reckoned": 0, "all": 0}, 0, None
    with open(path, encoding="utf-8") as log:
        lines = [line.rstrip("\n") for line in log]
    for number, line in enumerate(lines, 1):
        word, *rest = line.split(" ", 3)
        if word == "object":
            classes[rest[0]] = rest[1]
            buffers[rest[0]] = Buffer()
        elif word in ("call", "get", "put"):
            call = word, *rest
        elif call and word in ("gives", "fails", "refused"):
            kind, target, member, *arguments = call
            written, call = " ".join(arguments), None
            counts["all"] += 1
            try:
                if classes[target] == "RollBuffer":
                    is_right = reckon_buffer(buffers[target], kind, member, written, line)
                else:
                    is_right = reckon_call(f"{classes[target]}.{member}", written, line)
            except Unknown:
                continue
            counts["reckoned"] += 1
            if not is_right:
                wrong += 1
                print(f"line {number}: {kind} {member} {written}: {line}")
    print(f"{counts['reckoned']} of {counts['all']} calls reckoned anew, {wrong} otherwise")
    return 1 if wrong else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
