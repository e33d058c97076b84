"""Shows what the package quorl does: python3 demo.py, with QUORL_LIBRARY set or Quorl installed."""

from decimal import Decimal

import quorl

library = quorl.Quorl(in_memory=True, locale="fr-BE")

# A global class, without creating anything; arguments by position and by name.
print(library.Math.RoundSup(1.21, 1))
print(library.Strings.GetToken(Index=2, Text="un deux trois"))
print(library.Math.Min(None, 3), library.Math.Min("a", 3))

# A class that hosts create; properties are attributes.
money = library.Money()
money.Unit, money.Units, money.SubUnit, money.SubUnits = "euro", "euros", "cent", "cents"
money.Language, money.SubUnitRow = "FR", 2
print(money.ToText(Decimal("1280.21")))
money.Value = Decimal("12.5")
print(repr(money.Value))

buffer = library.RollBuffer()
for item in ("un", 2, None, [1.5, "deux"], b"\x01\x02"):
    buffer.AddItem(item)
print(len(buffer), list(buffer))

# An argument that is written back.
key = quorl.ByRef(ord("."))
library.Regional.ConvertDecimalPoint(key)
print(chr(key.value))

# Failures, and calls that no member takes.
for attempt in (lambda: library.Math.RoundSup(1.21, -1), lambda: library.Math.RoundSup("un"),
                lambda: library.Math.RoundSup(), lambda: library.Math.RoundSup(1, 2, 3),
                lambda: library.Math.RoundSup(Nombre=1, Autre=2), lambda: library.Math.Square(2)):
    try:
        attempt()
    except quorl.QuorlError as error:
        print(error.number, error.source, error.description)
    except (AttributeError, TypeError) as error:
        print(type(error).__name__)


# Objects of Python that the library calls back.
class Combo:
    def __init__(self, entries):
        self.List, self.ListIndex = entries, -1

    @property
    def ListCount(self):
        return len(self.List)

    def ItemData(self, index):
        return 100 + index


combo = Combo(["Anvers 2000", "Bruxelles 1000", "Namur 5000"])
library.ComboBoxEx.CmbSelectMatchToken(combo, "1000", 2)
print(combo.ListIndex, library.ComboBoxEx.CmbCurrentItemData(combo, 0))


class Refusal:
    @property
    def ListCount(self):
        raise quorl.QuorlError(1004, "Combo", "La liste est fermée")


for host in (Refusal(), object()):
    try:
        library.ComboBoxEx.CmbSelectItemData(host, 1)
    except quorl.QuorlError as error:
        print(error.number, error.source, error.description)


class Field:
    def __init__(self, name):
        self.Name = name


class Collection:
    """A collection is read by its index."""

    def __init__(self, *names):
        self._fields = [Field(name) for name in names]

    @property
    def Count(self):
        return len(self._fields)

    def __getitem__(self, place):
        return self._fields[place]


print(library.DbLib.FieldPos("Prix", Collection("Code", "Prix")))
