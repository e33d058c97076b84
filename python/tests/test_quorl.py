"""Tests of the package; QUORL_LIBRARY says where the libraries are.

    QUORL_LIBRARY=build/test python3 -m unittest discover -s python/tests
"""

import copy
import gc
import inspect
import os
import pickle
import pydoc
import subprocess
import sys
import tempfile
import threading
import unittest
from datetime import date, datetime, timezone
from decimal import Decimal
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "python"))

import quorl  # noqa: E402
from quorl import Array, QuorlError, _hosts, _library  # noqa: E402

library = quorl.Quorl(in_memory=True, locale="fr-BE", screen=(1800, 1600))


def there_and_back(value):
    buffer = library.RollBuffer()
    buffer.AddItem(value)
    return buffer[0]


class Combo:
    """A combo box whose number of entries is what a function of the test gives."""

    def __init__(self, count):
        self._count, self.ListIndex = count, -1

    @property
    def ListCount(self):
        return self._count()

    def List(self, index):
        return f"entry {index}"


def select(count):
    library.ComboBoxEx.CmbSelectMatchString(Combo(count), "entry 0")


def raising(error):
    def count():
        raise error
    return count


def exception_of(action, *arguments):
    """What an action raises, with its traceback."""
    try:
        action(*arguments)
    except BaseException as error:
        return error
    raise AssertionError("nothing was raised")


class Values(unittest.TestCase):
    def test_come_back_as_they_went(self):
        cell = object()
        for value in (
                None, quorl.Empty, quorl.Missing, True, False, 0, -2**31, 2**31 - 1, 0.1, -0.0,
                float("inf"), "", "é\0€\U0001F600\ud800", "x" * 5000, b"", b"\0\xff", cell,
                [], [1, None, "a", b"b"], [[1, 2], [Decimal("0.0001")]],
                Decimal("12.5"), Decimal("-0.0001"), Decimal("922337203685477.5807"),
                Decimal("-922337203685477.5808"), datetime(1899, 12, 29, 6), datetime(100, 1, 1),
                datetime(1899, 12, 30, 0, 0, 0, 1), datetime(2024, 2, 29, 23, 59, 59, 999999),
                datetime(9999, 12, 31, 23, 59, 59), Array(["a", ""], "String", (1,)),
                Array([1, -1], "Int16", (-3,)), Array([True, False], "Boolean"),
                Array([[1.5, 2.5, 3.5], [4.0, 5.0, 6.0]], "Double", (1, -1)),
                Array([[[1, 2], [3, 4]], [[5, 6], [7, 8]]], "Int32", (0, 1, 2)),
                Array([[1, "b"]], "Variant", (0, 0)), Array([7], "Byte", (5,)),
                Array([Decimal("0.25")], "Currency"), Array([datetime(2000, 1, 1)], "Date"),
                Array([cell, None], "Object")):
            with self.subTest(value=value):
                back = there_and_back(value)
                self.assertEqual((type(back), back, repr(back)), (type(value), value, repr(value)))
                self.assertEqual(getattr(back, "bounds", None), getattr(value, "bounds", None))

    def test_come_back_as_the_nearest_type(self):
        for value, expected in (
                (quorl.HKEY_CURRENT_USER, -2147483647), (2**40, float(2**40)), ((1, 2), [1, 2]),
                (bytearray(b"ab"), b"ab"), (memoryview(b"ab"), b"ab"),
                (date(2024, 2, 29), datetime(2024, 2, 29)), (Decimal("1.50"), Decimal("1.5"))):
            self.assertEqual(there_and_back(value), expected)
        money, settings = library.Money(), library.Registry()
        money.Value = 12  # converted by the library
        self.assertEqual(repr(money.Value), "Decimal('12')")
        self.assertIs(settings.HKey, quorl.HKEY_CURRENT_USER)
        settings.HKey = quorl.HKEY_USERS
        self.assertIs(settings.hkey, quorl.HKEY_USERS)

    def test_without_a_place_are_refused_by_member_and_argument(self):
        for value, kind, text in (
                (Decimal("1.00001"), ValueError, "four decimals"),
                (Decimal("1E-99999999"), ValueError, "four decimals"),
                (Decimal("922337203685477.5808"), OverflowError, "beyond a Currency"),
                (Decimal("1E+99999999"), OverflowError, "beyond a Currency"),
                (Decimal("NaN"), ValueError, "no Currency"), (2**63 + 1, OverflowError, "Int32"),
                (datetime(2024, 1, 1, tzinfo=timezone.utc), ValueError, "time zone"),
                ([1, [Decimal("Infinity")]], ValueError, "element 1: element 0"),
                (Array([40000], "Int16"), OverflowError, "element 0"),
                (Array(["1"], "Int32"), TypeError, "element 0"),
                (Array([[1], [2, 3]], lower=(0, 0)), ValueError, "equal length")):
            with self.subTest(value=value):
                error = exception_of(library.Math.Min, 1, value)
                self.assertIs(type(error), kind)
                self.assertRegex(str(error), f"^Math.Min, argument Expression2: .*{text}")
        endless = []
        endless.append(endless)
        self.assertRaises(RecursionError, library.Math.ZeroAsNull, endless)
        self.assertRaises(ValueError, Array, [], "Int64")

    def test_by_reference_are_written_back(self):
        key = quorl.ByRef(ord("."))
        library.Regional.ConvertDecimalPoint(key)
        self.assertEqual(chr(key.value), ",")


class Editors(unittest.TestCase):
    def test_are_told_of_members(self):
        up = library.Math.RoundSup
        self.assertEqual(str(inspect.signature(up)),
                         "(Nombre: 'float', Nombredecimales: 'int' = 0) -> 'float'")
        self.assertIn("Retourne la valeur arrondie supérieure", pydoc.render_doc(up))
        self.assertTrue({"Math", "Money", "register"} <= set(dir(library)))
        self.assertEqual(dir(library.Dates), ["IsDateOrEmpty"])
        self.assertRegex(f"{library.Math!r} {library!r}", r"^<quorl.Math at 0x\w+> <Quorl 1.0.0 ")
        self.assertIs(library.Math, library.Math)

    def test_names_ignore_case_and_unknown_ones_fail(self):
        self.assertEqual(library.Strings.GETTOKEN("a b", Index=2), "b")
        money = library.Money()
        money.unit = "euro"
        self.assertEqual(money.UNIT, "euro")
        for action in (lambda: library.Maths, lambda: money.Square,
                       lambda: setattr(money, "Square", 1),
                       lambda: setattr(library.RollBuffer(), "Count", 1)):
            self.assertRaises(AttributeError, action)

    def test_wrong_calls_name_the_member(self):
        up = library.Math.RoundSup
        for action, kind, text in (
                (lambda: up(), TypeError, r"RoundSup\(\).*'Nombre'"),
                (lambda: up(1, Autre=2), TypeError, r"RoundSup\(\).*'Autre'"),
                (lambda: up(quorl.Missing), TypeError, "Math.RoundSup requires its argument Nom"),
                (lambda: up("un"), QuorlError, r"^Math.RoundSup\(Nombre='un', Nombredecimales=0\): "
                                               r"Quorl.Runtime \(13\): Incompatibilité de type.$")):
            self.assertRaisesRegex(kind, text, action)


class Objects(unittest.TestCase):
    def test_a_roll_buffer_is_a_sequence(self):
        buffer = library.RollBuffer()
        for item in "abc":
            buffer.AddItem(item)
        self.assertEqual((len(buffer), list(buffer), buffer[-1], buffer[1:]),
                         (3, ["a", "b", "c"], "c", ["b", "c"]))
        self.assertRaisesRegex(IndexError, "no item 3", lambda: buffer[3])

    def test_come_back_equal_and_of_their_class(self):
        money = library.Money()
        back = there_and_back(money)
        self.assertEqual((type(back), back, hash(back)), (quorl.Money, money, hash(money)))
        self.assertNotIn(money, (library.Money(), quorl.Regional(), 1))

    def test_can_be_neither_copied_nor_pickled(self):
        for take in (copy.copy, copy.deepcopy, pickle.dumps):
            self.assertRaisesRegex(TypeError, "quorl.Money can be neither", take, library.Money())
        error = pickle.loads(pickle.dumps(QuorlError(5, "a", "b", "c")))
        self.assertEqual((error.number, error.source, error.description, str(error)),
                         (5, "a", "b", "c: a (5): b"))
        values = quorl.Empty, Array([1], "Int16", (3,))
        self.assertEqual(repr(pickle.loads(pickle.dumps(values))), repr(values))


class HostObjects(unittest.TestCase):
    def test_exceptions_arrive_as_they_were_raised(self):
        for own in (TypeError("own"), AttributeError("own"), KeyboardInterrupt(), SystemExit(3)):
            for depth in (select, lambda count: select(lambda: select(count))):
                error = exception_of(depth, raising(own))
                self.assertIs(error, own)
                frames = inspect.getinnerframes(error.__traceback__)
                self.assertEqual(frames[-1].function, "count")
        select(lambda: 1)  # nothing of it is left

    def test_failures_arrive_with_their_number_and_their_cause(self):
        own = QuorlError(1004, "Combo", "fermée")
        for depth in (select, lambda count: select(lambda: select(count))):
            error = exception_of(depth, raising(own))
            self.assertEqual((error.number, error.source, error.description), own.args[:3])
            self.assertIn(own, (error.__cause__, error.__cause__.__cause__))

    def test_only_a_name_that_is_lacking_is_438(self):
        class Dynamic:
            def __getattr__(self, name):
                raise ZeroDivisionError
        error = exception_of(library.ComboBoxEx.CmbSelectItemData, object(), 1)
        self.assertEqual((error.number, error.source), (438, "Quorl.Runtime"))
        self.assertRaises(ZeroDivisionError, library.ComboBoxEx.CmbSelectItemData, Dynamic(), 1)
        self.assertEqual(exception_of(library.ComboBoxEx.CmbSelectItemData, None, 1).number, 91)

    def test_what_the_library_provides_for_is_no_failure_but_an_interrupt_is(self):
        class Form:
            Name, WindowState, Left, Top, Width, Height = "f", 0, 1.0, 2.0, 3.0, 4.0
            reason, place = ValueError(), None
            BorderStyle = property(lambda self: raising(self.reason)())

            def Move(self, *place):
                self.place = place
        settings, form = library.Registry(), Form()
        settings.InitApp("Maison", "Test")
        library.Forms.SaveFormSettings(settings, form)
        library.Forms.GetFormSettings(settings, form)
        self.assertEqual(form.place, (1.0, 2.0, 3.0, 4.0))
        form.reason, form.place = KeyboardInterrupt(), None
        for name in ("f", "never saved"):  # the library would go on, or be done
            error = exception_of(library.Forms.GetFormSettings, settings, form, name)
            self.assertIs(error, form.reason)
        self.assertIsNone(form.place)

    def test_are_read_by_name_index_and_default_member(self):
        class Field:
            def __init__(self, name, value=None):
                self.name, self.VALUE = name, value  # in any case

        class Fields:
            Count = 2

            def __getitem__(self, place):
                return Field(["Code", "Prix"][place])
        self.assertEqual(library.DbLib.FieldPos("Prix", Fields()), 2)
        self.assertEqual(library.DbLib.StrFieldValue(Field("Prix", "12 ")), "12")
        del Fields.Count
        self.assertEqual(exception_of(library.DbLib.FieldPos, "Prix", Fields()).number, 438)
        Fields.Count = 1
        self.assertEqual(library.DbLib.FieldPos("Code", Fields()), 1)

    def test_threads_keep_their_exceptions_apart(self):
        seen = []

        def work(number):
            for _ in range(200):
                seen.append(exception_of(select, raising(LookupError(number))).args == (number,))
        threads = [threading.Thread(target=work, args=(number,)) for number in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(seen, [True] * 800)


class Memory(unittest.TestCase):
    def test_stays_flat_and_nothing_stays_alive(self):
        long, combo = "x" * 50000, Combo(int)
        calls = (
            lambda: library.Strings.StrTran(long, "x", "y"),
            lambda: there_and_back([long, b"abc", [1, Combo(int)]]),
            lambda: there_and_back(Array([long], "String")),
            lambda: there_and_back(library.Money()),
            lambda: there_and_back(datetime(2024, 1, 1)),
            lambda: select(lambda: 2),
            lambda: library.Regional.ConvertDecimalPoint(quorl.ByRef(46)),
            lambda: library.Money().Unit,
            lambda: select(raising(ValueError())),
            lambda: library.Math.Min(long, [long, combo, Decimal("1.23456")]))
        resident = []
        for count in (1000, 10000):
            failed = 0
            for place in range(count):
                try:
                    calls[place % len(calls)]()
                except ValueError:
                    failed += 1
            self.assertEqual(failed, count / 5)
            pages = int(Path("/proc/self/statm").read_text().split()[1])
            resident.append(pages * os.sysconf("SC_PAGE_SIZE"))
        self.assertLess(resident[1] - resident[0], 4 << 20)
        gc.collect()
        self.assertEqual((_hosts.alive, _library.loaded._component.DllCanUnloadNow()), ({}, 0))


class Package(unittest.TestCase):
    def test_is_generated_from_the_catalogue(self):
        generator = ROOT / "tools" / "generate_python.py"
        subprocess.run([sys.executable, generator, "--check"], check=True)

    def test_installs_without_network(self):
        pip = [sys.executable, "-m", "pip"]
        if subprocess.run([*pip, "--version"], capture_output=True).returncode != 0:
            self.skipTest("there is no pip here")
        with tempfile.TemporaryDirectory() as folder:
            run = {"check": True, "capture_output": True, "text": True,
                   "env": {**os.environ, "PIP_NO_INDEX": "1", "PYTHONPATH": folder}}
            subprocess.run([*pip, "install", "--target", folder, ROOT / "python"], **run)
            program = "import quorl; print(quorl.Quorl().Math.RoundSup(1.21, 1), quorl.__path__)"
            said = subprocess.run([sys.executable, "-c", program], **run).stdout
            self.assertEqual(said, f"1.3 ['{folder}/quorl']\n")
            self.assertTrue((Path(folder) / "quorl" / "classes.pyi").is_file())

    def test_says_where_it_looked_for_the_libraries(self):
        self.assertRaisesRegex(FileNotFoundError, "/nowhere; name its", _library.found, "/nowhere")
        loaded = _library.loaded
        self.assertEqual(_library.found(loaded.path), loaded.folder)
        self.assertRaisesRegex(QuorlError, "too late", lambda: quorl.Quorl(in_memory=True))
        for options in {"machine_folder": "m"}, {"in_memory": True, "user_folder": "u"}:
            self.assertRaisesRegex(ValueError, "user_folder", lambda: quorl.Quorl(**options))


if __name__ == "__main__":
    unittest.main()
