"""What a call costs, beside a bare call through ctypes in the same run.

    QUORL_LIBRARY=build/run python3 python/bench/calls.py
"""

import ctypes
import sys
from pathlib import Path
from timeit import repeat

sys.path.insert(0, str(Path(__file__).resolve().parent.parent))

import quorl  # noqa: E402

COUNT = 200


def microseconds(statement, names):
    """The best of many short rounds, so that what else runs on the machine counts little."""
    return min(repeat(statement, globals=names, number=COUNT, repeat=300)) / COUNT * 1e6


def main():
    library = quorl.Quorl(in_memory=True, locale="fr-BE")
    names = {"library": library, "math": library.Math, "strings": library.Strings,
             "money": library.Money(), "bare": ctypes.CDLL(None).abs}
    bare = microseconds("bare(-3)", names)
    print(f"{'a bare call through ctypes':55}{bare:7.2f} us")
    for statement in ("math.RoundSup(1.21, 1)", "math.Min(3, 5)", "money.SubUnitRow",
                      "money.SubUnitRow = 2", "strings.GetToken('un deux trois', ' ', 2)",
                      "strings.GetToken(Index=2, Text='un deux trois')",
                      "library.Strings.GetToken('un deux trois', ' ', 2)"):
        cost = microseconds(statement, names)
        print(f"{statement:55}{cost:7.2f} us {cost / bare:6.1f} times")


if __name__ == "__main__":
    main()
