"""Values: from Python to the binary form and back.

A VARIANT is 24 bytes at an offset of a buffer: its type number, then from byte 8 its value. What is
written here owns what it holds: its receiver ends it with VariantClear.
"""

from __future__ import annotations

import ctypes
from codecs import utf_16_le_decode
from ctypes import string_at
from datetime import date, datetime, time, timedelta
from decimal import Decimal
from operator import index
from struct import Struct
from struct import error as FormError  # a number beyond the form of its type
from typing import Any, Callable, Iterable, Iterator, NamedTuple, Sequence

from ._contract import ARRAY, BY_REFERENCE, MISSING, runtime, signed, text_of, units_of

SIZE = 24
EMPTY, NULL, ERROR, VARIANT, BYTE = 0, 1, 10, 12, 17
INT32, DOUBLE, CURRENCY, DATE, STRING, OBJECT, BOOLEAN = 3, 5, 6, 7, 8, 9, 11

POINTER_FORM = Struct("<Q")


class State:
    """A value that is none: Empty was never assigned, Missing is an argument left out."""

    def __init__(self, name: str) -> None:
        self._name = name

    def __repr__(self) -> str:
        return self._name

    def __bool__(self) -> bool:
        return False

    def __reduce__(self) -> str:
        return self._name


Empty = State("Empty")
Missing = State("Missing")
# What None is for an argument that is an object: the empty reference.
NoObject = State("None")


class ByRef:
    """An argument that the member may write back: afterwards `value` is what it left there."""

    __slots__ = ("value",)

    def __init__(self, value: Any) -> None:
        self.value = value

    def __repr__(self) -> str:
        return f"ByRef({self.value!r})"


class Array(list):
    """A list that knows its element type and the lower bound of each dimension.

    What comes from the library is one of these, unless it is an array of Variants or bytes that
    counts from 0. Rows of two dimensions are lists of equal length.

        names = Array(["un", "deux"], type="String", lower=(1,))
        names.bounds  # ((1, 2),)
    """

    def __init__(self, elements: Iterable[Any] = (), type: str = "Variant",
                 lower: Sequence[int] = (0,)) -> None:
        super().__init__(elements)
        if type not in _BY_NAME and type != "Variant":
            raise ValueError(f"an Array has no elements of type {type!r}")
        self.type, self.lower = type, tuple(lower)

    @property
    def counts(self) -> tuple[int, ...]:
        """How many elements each dimension has."""
        counts, row = [], self
        for _ in self.lower:
            counts.append(len(row))
            row = row[0] if row and len(counts) < len(self.lower) else []
        return tuple(counts)

    @property
    def bounds(self) -> tuple[tuple[int, int], ...]:
        """The least and the greatest subscript of each dimension."""
        return tuple((lower, lower + count - 1) for lower, count in zip(self.lower, self.counts))

    def __repr__(self) -> str:
        return f"Array({super().__repr__()}, type={self.type!r}, lower={self.lower})"


# ------------------------------------------------------------------------------- single values


def new_text(text: str) -> int:
    """A new text of the library's allocator."""
    units = units_of(text)
    pointer = runtime.SysAllocStringLen(units, len(units) // 2)
    if not pointer:
        raise MemoryError
    return int(pointer)


def read_text(pointer: int) -> str:
    if not pointer:
        return ""
    return text_of(string_at(pointer, 2 * runtime.SysStringLen(pointer)))


def take_text(pointer: int) -> str:
    """Reads a text and frees it."""
    units = string_at(pointer, 2 * runtime.SysStringLen(pointer)) if pointer else b""
    runtime.SysFreeString(pointer)
    return utf_16_le_decode(units, "surrogatepass", True)[0]


def ten_thousandths(amount: Any) -> int:
    """An amount as the library counts it; nothing is rounded off."""
    amount = Decimal(amount)
    if not amount.is_finite():
        raise ValueError(f"{amount} is no Currency")
    if amount.adjusted() > 15:
        raise OverflowError(f"{amount} is beyond a Currency")
    units, rest = _scaled(amount)
    if rest:
        raise ValueError(f"{amount} has more than the four decimals of a Currency; round it first")
    if not -(1 << 63) <= units < 1 << 63:
        raise OverflowError(f"{amount} is beyond a Currency")
    return units


def _scaled(amount: Decimal) -> tuple[int, int]:
    if amount and amount.adjusted() < -4:
        return 0, 1
    numerator, denominator = amount.as_integer_ratio()
    return divmod(numerator * 10000, denominator)


def read_amount(units: int) -> Decimal:
    whole, rest = divmod(abs(units), 10000)
    text = f"{whole}.{rest:04}".rstrip("0").rstrip(".")
    return Decimal(f"-{text}" if units < 0 else text)


_DAY_ZERO = datetime(1899, 12, 30)
_DAY = 86400 * 1000000


def days(moment: date) -> float:
    """A date as days from 1899-12-30; before that day the time counts away from it too."""
    if not isinstance(moment, datetime):
        moment = datetime.combine(moment, time())
    if moment.tzinfo is not None:
        raise ValueError(f"{moment!r} has a time zone, which a Date has not")
    apart = moment - _DAY_ZERO
    fraction = (apart.seconds * 1000000 + apart.microseconds) / _DAY
    return apart.days + fraction if apart.days >= 0 else apart.days - fraction


def read_days(number: float) -> datetime:
    """The whole second that is this number of days, else the millisecond, else the microsecond.

    Far from 1900 a Double is coarser than a microsecond: what went as a whole second comes back so.
    """
    whole = int(number)
    apart = abs(number - whole) * _DAY
    moments = (_DAY_ZERO + timedelta(whole, microseconds=round(apart / step) * step)
               for step in (1000000, 1000, 1))
    return next((one for one in moments if days(one) == number), None) or (
        _DAY_ZERO + timedelta(whole, microseconds=round(apart)))


class Single(NamedTuple):
    """One type of single value: in a VARIANT from byte 8, in an array at each element."""

    name: str
    form: Struct
    write: Callable[[Any], Any]
    read: Callable[[Any], Any]


SINGLES: dict[int, Single] = {
    2: Single("Int16", Struct("<h"), index, int),
    INT32: Single("Int32", Struct("<i"), index, int),
    4: Single("Single", Struct("<f"), float, float),
    DOUBLE: Single("Double", Struct("<d"), float, float),
    CURRENCY: Single("Currency", Struct("<q"), ten_thousandths, read_amount),
    DATE: Single("Date", Struct("<d"), days, read_days),
    STRING: Single("String", POINTER_FORM, new_text, read_text),
    BOOLEAN: Single("Boolean", Struct("<h"), lambda value: -1 if value else 0, bool),
    BYTE: Single("Byte", Struct("<B"), index, int),
}
_BY_NAME: dict[str, int] = {single.name: vt for vt, single in SINGLES.items()}


def add_objects(write: Callable[[Any], int], read: Callable[[int], Any]) -> None:
    """Called once by the module that knows objects: counted dispatch pointers, lent ones."""
    SINGLES[OBJECT] = Single("Object", POINTER_FORM, write, read)
    _BY_NAME["Object"] = OBJECT


# ------------------------------------------------------------------------- from Python: VARIANTs

_INT32_VARIANT = Struct("<H6xi12x")
_DOUBLE_VARIANT = Struct("<H6xd8x")
_INT64_VARIANT = Struct("<H6xq8x")
_POINTER_VARIANT = Struct("<H6xQ8x")

_write_int32 = _INT32_VARIANT.pack_into
_write_double = _DOUBLE_VARIANT.pack_into


def write_pointer(buffer: Any, offset: int, vt: int, pointer: int) -> None:
    _POINTER_VARIANT.pack_into(buffer, offset, vt, pointer)


def _write_whole(buffer: Any, offset: int, value: int) -> None:
    if -0x80000000 <= value <= 0x7FFFFFFF:
        _write_int32(buffer, offset, INT32, value)
    elif float(value) == value:
        _write_double(buffer, offset, DOUBLE, float(value))
    else:
        raise OverflowError(f"{value} is beyond an Int32 and has no place in a Double")


def _write_float(buffer: Any, offset: int, value: float) -> None:
    _write_double(buffer, offset, DOUBLE, value)


def _write_truth(buffer: Any, offset: int, value: bool) -> None:
    _write_int32(buffer, offset, BOOLEAN, 0xFFFF if value else 0)


def _write_nothing(buffer: Any, offset: int, _value: None) -> None:
    _write_int32(buffer, offset, NULL, 0)


def _write_state(buffer: Any, offset: int, value: State) -> None:
    if value is Missing:
        _write_int32(buffer, offset, ERROR, signed(MISSING))
    elif value is NoObject:
        write_pointer(buffer, offset, OBJECT, 0)
    else:
        _write_int32(buffer, offset, EMPTY, 0)


def _write_amount(buffer: Any, offset: int, value: Decimal) -> None:
    _INT64_VARIANT.pack_into(buffer, offset, CURRENCY, ten_thousandths(value))


def _write_date(buffer: Any, offset: int, value: date) -> None:
    _write_double(buffer, offset, DATE, days(value))


def _write_text(buffer: Any, offset: int, value: str) -> None:
    write_pointer(buffer, offset, STRING, new_text(value))


def _write_bytes(buffer: Any, offset: int, value: Any) -> None:
    write_pointer(buffer, offset, ARRAY | BYTE, _new_bytes(bytes(value)))


def _write_array(buffer: Any, offset: int, value: Sequence[Any]) -> None:
    array = value if isinstance(value, Array) else Array(value)
    vt = _BY_NAME.get(array.type, VARIANT)
    write_pointer(buffer, offset, ARRAY | vt, _new_array(vt, array))


Write = Callable[[Any, int, Any], None]

# Values that own nothing; the call of a member looks them up by their very type.
PLAIN: dict[type, Write] = {
    int: _write_whole,
    float: _write_float,
    bool: _write_truth,
    type(None): _write_nothing,
    State: _write_state,
    Decimal: _write_amount,
    datetime: _write_date,
    date: _write_date,
}
_KINDS: tuple[tuple[Any, Write], ...] = (
    (int, _write_whole), (float, _write_float), (str, _write_text), (Decimal, _write_amount),
    (date, _write_date), ((bytes, bytearray, memoryview), _write_bytes),
    ((list, tuple), _write_array),
)


def write(buffer: Any, offset: int, value: Any) -> None:
    """Writes a VARIANT that owns what it holds; after an exception there is nothing to end."""
    plain = PLAIN.get(type(value))
    if plain is not None:
        return plain(buffer, offset, value)
    for kind, write_kind in _KINDS:
        if isinstance(value, kind):
            return write_kind(buffer, offset, value)
    if hasattr(type(value), "__index__"):
        return _write_whole(buffer, offset, index(value))
    return write_pointer(buffer, offset, OBJECT, SINGLES[OBJECT].write(value))


# --------------------------------------------------------------------------------------- arrays

_HEADER = Struct("<HHII4xQ")
_BOUND = Struct("<Ii")


def _create(vt: int, counts: Sequence[int], lower: Sequence[int]) -> tuple[int, int]:
    """A new array of zeros and the address of its data."""
    bounds = b"".join(_BOUND.pack(count, low) for count, low in zip(counts, lower))
    array = runtime.SafeArrayCreate(vt, len(counts), bounds)
    if not array:
        raise MemoryError
    return int(array), int(_HEADER.unpack(string_at(array, _HEADER.size))[4])


def _new_bytes(value: bytes) -> int:
    array, data = _create(BYTE, (len(value),), (0,))
    ctypes.memmove(data, value, len(value))
    return array


def _new_array(vt: int, elements: Array) -> int:
    counts = elements.counts
    flat = list(_leftmost_fastest(elements, counts))
    array, data = _create(vt, counts, elements.lower)
    try:
        size = SIZE if vt == VARIANT else SINGLES[vt].form.size
        buffer = (ctypes.c_char * (size * len(flat))).from_address(data)
        for place, element in enumerate(flat):
            _write_element(vt, buffer, size * place, element, place)
    except BaseException:
        runtime.SafeArrayDestroy(array)
        raise
    return array


def _write_element(vt: int, buffer: Any, offset: int, element: Any, place: int) -> None:
    try:
        if vt == VARIANT:
            write(buffer, offset, element)
        else:
            single = SINGLES[vt]
            single.form.pack_into(buffer, offset, single.write(element))
    except (TypeError, ValueError, OverflowError, FormError) as error:
        raise renamed(error, f"element {place}") from error


def _leftmost_fastest(rows: Sequence[Any], counts: Sequence[int]) -> Iterator[Any]:
    if len(counts) == 1:
        yield from rows
        return
    if any(len(row) != counts[1] for row in rows):
        raise ValueError("the rows of an Array are not of equal length")
    for columns in zip(*(_leftmost_fastest(row, counts[1:]) for row in rows)):
        yield from columns


def renamed(error: Exception, where: str) -> Exception:
    """The same failure of a conversion, with the place at which it came about."""
    kind = next((one for one in (ValueError, TypeError) if isinstance(error, one)), OverflowError)
    return kind(f"{where}: {error}")


def _read_array(vt: int, pointer: int) -> Any:
    dimensions, _, size, _, data = _HEADER.unpack(string_at(pointer, _HEADER.size))
    known = string_at(pointer + _HEADER.size, _BOUND.size * dimensions)
    bounds = [_BOUND.unpack_from(known, 8 * place) for place in reversed(range(dimensions))]
    counts, lower = [bound[0] for bound in bounds], [bound[1] for bound in bounds]
    total = 1
    for count in counts:
        total *= count
    content = string_at(data, size * total) if total else b""
    if vt == BYTE and lower == [0]:
        return content
    elements = [_read_element(vt, content, size * place) for place in range(total)]
    rows = _rows(elements, counts)
    if vt == VARIANT and lower == [0]:
        return rows
    return Array(rows, SINGLES[vt].name if vt in SINGLES else "Variant", lower)


def _read_element(vt: int, content: bytes, offset: int) -> Any:
    if vt == VARIANT:
        return read(content, offset)
    single = SINGLES[vt]
    return single.read(*single.form.unpack_from(content, offset))


def _rows(elements: list[Any], counts: Sequence[int]) -> list[Any]:
    if len(counts) == 1:
        return elements
    step = counts[0]
    return [_rows(elements[place::step], counts[1:]) for place in range(step)]


# --------------------------------------------------------------------------- to Python: VARIANTs

_TYPE = Struct("<H")
_STATES: dict[int, Any] = {EMPTY: Empty, NULL: None, ERROR: Missing}


def read(buffer: Any, offset: int) -> Any:
    """What a VARIANT holds, references read through; it stays what it is."""
    (vt,) = _TYPE.unpack_from(buffer, offset)
    if vt & BY_REFERENCE:
        return _read_reference(vt & ~BY_REFERENCE, _pointer(buffer, offset))
    if vt & ARRAY:
        return _read_array(vt & ~ARRAY, _pointer(buffer, offset))
    if vt in _STATES:
        return _STATES[vt]
    single = SINGLES[vt]
    return single.read(*single.form.unpack_from(buffer, offset + 8))


def _pointer(buffer: Any, offset: int) -> int:
    return int(POINTER_FORM.unpack_from(buffer, offset + 8)[0])


def _read_reference(vt: int, place: int) -> Any:
    if vt == VARIANT:
        return read(string_at(place, SIZE), 0)
    if vt & ARRAY:
        return _read_array(vt & ~ARRAY, POINTER_FORM.unpack(string_at(place, 8))[0])
    single = SINGLES[vt]
    return single.read(*single.form.unpack(string_at(place, single.form.size)))
