"""Quorl for Python: the library's classes, by name, with nothing but the standard library.

    import quorl
    library = quorl.Quorl("/usr/lib/quorl")
    library.Math.RoundSup(1.21, 1)               # a global class: its one hidden instance
    money = library.Money                        # a class that hosts create: a new instance
    money.Unit, money.Language = "euro", "FR"
    money.ToText(Value=Decimal("80"))

Values. Numbers, texts, bool and datetime are what they are in Python; Decimal is a Currency, bytes
an array of bytes, a list an array, None is Null. Two more states have names here: Empty, of a value
never assigned, and Missing, of an argument left out. Any other object is lent to the library as a
host object, whose attributes and methods it uses by name; a collection is read by its index.

Failures are QuorlError with number, source and description; raised by a host object, they reach the
caller as they are. Everything runs on the caller's thread.
"""

import ctypes
import datetime
import os
import sys
from ctypes import POINTER, byref, c_char_p, c_double, c_float, c_int16, c_int32, c_int64
from ctypes import c_uint8, c_uint16, c_uint32, c_void_p
from decimal import Decimal

__all__ = ["ByRef", "Empty", "Missing", "Quorl", "QuorlError"]

# ---------------------------------------------------------------------------- the binary contract

METHOD, GET, PUT, PUT_REFERENCE = 1, 2, 4, 8
PUT_VALUE = -3
ARRAY, BY_REFERENCE = 0x2000, 0x4000

S_OK = 0
E_POINTER = 0x80004003
MEMBER_NOT_FOUND = 0x80020003
PARAMETER_NOT_FOUND = 0x80020004
UNKNOWN_NAME = 0x80020006
EXCEPTION = 0x80020009
BAD_INDEX = 0x8002000B
BAD_PARAMETER_COUNT = 0x8002000E
PARAMETER_NOT_OPTIONAL = 0x8002000F
CLASS_NOT_GLOBAL = 0x80040111
NUMBERED = 0x800A0000

QUERY_INTERFACE, ADD_REF, RELEASE, GET_TYPE_INFO, GET_IDS, INVOKE = 0, 1, 2, 4, 5, 6
TYPE_ATTRIBUTES, TYPE_FUNCTION, TYPE_DOCUMENTATION = 3, 4, 6


class GUID(ctypes.Structure):
    _fields_ = [("first", c_uint32), ("second", c_uint16), ("third", c_uint16),
                ("rest", c_uint8 * 8)]


IID_DISPATCH = GUID(0x00020400, 0, 0, (c_uint8 * 8)(0xC0, 0, 0, 0, 0, 0, 0, 0x46))


class _Value(ctypes.Union):
    _fields_ = [("i2", c_int16), ("i4", c_int32), ("r4", c_float), ("r8", c_double),
                ("cy", c_int64), ("boolean", c_int16), ("ui1", c_uint8), ("pointer", c_void_p),
                ("size", c_void_p * 2)]


class VARIANT(ctypes.Structure):
    _fields_ = [("vt", c_uint16), ("reserved", c_uint16 * 3), ("value", _Value)]


class Bound(ctypes.Structure):
    _fields_ = [("count", c_uint32), ("lower", c_int32)]


class DISPPARAMS(ctypes.Structure):
    _fields_ = [("arguments", POINTER(VARIANT)), ("named", POINTER(c_int32)),
                ("argument_count", c_uint32), ("named_count", c_uint32)]


class EXCEPINFO(ctypes.Structure):
    _fields_ = [("code", c_uint16), ("source", c_void_p), ("description", c_void_p),
                ("help_file", c_void_p), ("help_context", c_uint32), ("reserved", c_void_p),
                ("fill_in", c_void_p), ("scode", c_uint32)]


class TypeAttributes(ctypes.Structure):
    _fields_ = [("class_identifier", GUID), ("interface_identifier", GUID), ("major", c_uint16),
                ("minor", c_uint16), ("class_flags", c_uint16), ("interface_flags", c_uint16),
                ("functions", c_uint32)]


class Function(ctypes.Structure):
    _fields_ = [("id", c_int32), ("invoke_kind", c_uint16), ("table_slot", c_uint16),
                ("listing_place", c_uint16), ("result_type", c_uint16),
                ("argument_count", c_uint16), ("optional_count", c_uint16)]


assert (ctypes.sizeof(VARIANT), ctypes.sizeof(DISPPARAMS), ctypes.sizeof(EXCEPINFO)) == (24, 24, 64)

_INVOKE = ctypes.CFUNCTYPE(c_uint32, c_void_p, c_int32, c_void_p, c_uint32, c_uint16,
                           POINTER(DISPPARAMS), POINTER(VARIANT), POINTER(EXCEPINFO), c_void_p)
_GET_IDS = ctypes.CFUNCTYPE(c_uint32, c_void_p, c_void_p, POINTER(c_void_p), c_uint32, c_uint32,
                            POINTER(c_int32))
_COUNT = ctypes.CFUNCTYPE(c_uint32, c_void_p)
_QUERY = ctypes.CFUNCTYPE(c_uint32, c_void_p, c_void_p, POINTER(c_void_p))
_TYPE_COUNT = ctypes.CFUNCTYPE(c_uint32, c_void_p, POINTER(c_uint32))
_TYPE_INFO = ctypes.CFUNCTYPE(c_uint32, c_void_p, c_uint32, c_uint32, POINTER(c_void_p))
_ATTRIBUTES = ctypes.CFUNCTYPE(c_uint32, c_void_p, POINTER(TypeAttributes))
_FUNCTION = ctypes.CFUNCTYPE(c_uint32, c_void_p, c_uint32, POINTER(Function))
_DOCUMENTATION = ctypes.CFUNCTYPE(c_uint32, c_void_p, c_int32, POINTER(c_void_p),
                                  POINTER(c_void_p))

_runtime = None


def _load(folder):
    global _runtime
    if _runtime is not None:
        return
    library = ctypes.CDLL(os.path.join(folder, "libquorl_runtime.so"), mode=ctypes.RTLD_GLOBAL)
    for name in ("QuorlSetStore", "QuorlSetLocale", "QuorlRegister", "QuorlGlobalObject",
                 "CLSIDFromProgID", "CoCreateInstance", "VariantClear", "SafeArrayPutElement",
                 "SafeArrayGetElement", "SafeArrayGetLBound", "SafeArrayGetUBound",
                 "SafeArrayGetVartype"):
        getattr(library, name).restype = c_uint32
    library.SafeArrayGetDim.restype = c_uint32
    library.SafeArrayCreate.restype = c_void_p
    library.SysAllocStringLen.restype = c_void_p
    library.SysStringLen.restype = c_uint32
    _runtime = library


def _slot(pointer, place, prototype):
    table = ctypes.cast(pointer, POINTER(POINTER(c_void_p))).contents
    return prototype(table[place])


# ---------------------------------------------------------------------------------------- values


class _State:
    def __init__(self, name):
        self._name = name

    def __repr__(self):
        return self._name

    def __bool__(self):
        return False


Empty = _State("Empty")
Missing = _State("Missing")


class ByRef:
    """An argument that the member may write back: afterwards `value` is what it left there."""

    def __init__(self, value):
        self.value = value


class QuorlError(Exception):
    """A failure of the library or of a host object."""

    def __init__(self, number, source, description):
        super().__init__(f"{source} ({number}): {description}")
        self.number, self.source, self.description = number, source, description


def _wide(text):
    return text.encode("utf-16-le", "surrogatepass") + b"\0\0"


def _new_text(text):
    units = _wide(text)
    return _runtime.SysAllocStringLen(c_char_p(units), c_uint32(len(units) // 2 - 1))


def _text(pointer):
    if not pointer:
        return ""
    size = 2 * _runtime.SysStringLen(c_void_p(pointer))
    return ctypes.string_at(pointer, size).decode("utf-16-le", "surrogatepass")


def _take_text(pointer):
    text = _text(pointer)
    _runtime.SysFreeString(c_void_p(pointer))
    return text


def _zero_ended(pointer):
    units = ctypes.cast(pointer, POINTER(c_uint16))
    count = 0
    while units[count]:
        count += 1
    return ctypes.string_at(pointer, 2 * count).decode("utf-16-le", "surrogatepass")


_DAY_ZERO = datetime.datetime(1899, 12, 30)


def _days(moment):
    if not isinstance(moment, datetime.datetime):
        moment = datetime.datetime.combine(moment, datetime.time())
    apart = moment - _DAY_ZERO
    time = apart.seconds / 86400 + apart.microseconds / 86400e6
    return apart.days + time if apart.days >= 0 else apart.days - time


def _moment(days):
    whole = int(days)
    return _DAY_ZERO + datetime.timedelta(whole) + datetime.timedelta(abs(days - whole))


def _new_array(vt, elements):
    bound = Bound(len(elements), 0)
    array = _runtime.SafeArrayCreate(c_uint16(vt), c_uint32(1), byref(bound))
    if not array:
        raise MemoryError
    for place, element in enumerate(elements):
        value = c_uint8(element) if vt == 17 else _variant(element)
        at = c_int32(place)
        _runtime.SafeArrayPutElement(c_void_p(array), byref(at), byref(value))
        if vt != 17:
            _runtime.VariantClear(byref(value))
    return array


def _variant(value):
    """A VARIANT that owns what it holds."""
    result = VARIANT()
    if value is Empty:
        result.vt = 0
    elif value is None:
        result.vt = 1
    elif value is Missing:
        result.vt, result.value.i4 = 10, PARAMETER_NOT_FOUND - (1 << 32)
    elif isinstance(value, bool):
        result.vt, result.value.boolean = 11, -1 if value else 0
    elif isinstance(value, int) and -(1 << 31) <= value < 1 << 31:
        result.vt, result.value.i4 = 3, value
    elif isinstance(value, (int, float)):
        result.vt, result.value.r8 = 5, float(value)
    elif isinstance(value, Decimal):
        scaled = int((value * 10000).to_integral_value())
        if not -(1 << 63) <= scaled < 1 << 63:
            raise OverflowError("beyond a Currency")
        result.vt, result.value.cy = 6, scaled
    elif isinstance(value, datetime.date):
        result.vt, result.value.r8 = 7, _days(value)
    elif isinstance(value, str):
        result.vt, result.value.pointer = 8, _new_text(value)
    elif isinstance(value, (bytes, bytearray)):
        result.vt, result.value.pointer = ARRAY | 17, _new_array(17, value)
    elif isinstance(value, (list, tuple)):
        result.vt, result.value.pointer = ARRAY | 12, _new_array(12, value)
    else:
        result.vt, result.value.pointer = 9, _dispatch_of(value)
    return result


def _bounds(array, dimension):
    lower, upper = c_int32(), c_int32()
    _runtime.SafeArrayGetLBound(array, c_uint32(dimension), byref(lower))
    _runtime.SafeArrayGetUBound(array, c_uint32(dimension), byref(upper))
    return range(lower.value, upper.value + 1)


def _elements(array, vt, before=()):
    dimensions = _runtime.SafeArrayGetDim(array)
    places = _bounds(array, len(before) + 1)
    if len(before) + 1 < dimensions:
        return [_elements(array, vt, before + (place,)) for place in places]
    found = []
    for place in places:
        subscripts = (c_int32 * dimensions)(*before, place)
        element = VARIANT(vt=vt)
        slot = element if vt == 12 else element.value
        _runtime.SafeArrayGetElement(array, subscripts, byref(slot))
        found.append(_value(element))
        _runtime.VariantClear(byref(element))
    return found


def _value(variant):
    """What a VARIANT holds, references read through."""
    vt, value = variant.vt, variant.value
    if vt & BY_REFERENCE:
        if vt == BY_REFERENCE | 12:
            return _value(ctypes.cast(value.pointer, POINTER(VARIANT)).contents)
        seen = VARIANT(vt=vt & ~BY_REFERENCE)
        seen.value = ctypes.cast(value.pointer, POINTER(_Value)).contents
        return _value(seen)
    if vt & ARRAY:
        elements = _elements(c_void_p(value.pointer), vt & ~ARRAY)
        return bytes(elements) if vt == ARRAY | 17 else elements
    if vt == 9:
        return _object_behind(value.pointer)
    readers = {0: lambda: Empty, 1: lambda: None, 2: lambda: value.i2, 3: lambda: value.i4,
               4: lambda: value.r4, 5: lambda: value.r8,
               6: lambda: Decimal(value.cy) / 10000, 7: lambda: _moment(value.r8),
               8: lambda: _text(value.pointer), 10: lambda: Missing,
               11: lambda: value.boolean != 0, 17: lambda: value.ui1}
    return readers[vt]()


# ------------------------------------------------------------------------- objects of the library


def _require(code, what):
    if code & 0x80000000:
        raise QuorlError(code - (1 << 32), "Quorl", f"{what}: 0x{code:08X}")


class _Members:
    """Which kinds of call each name of a class answers, read from its type information."""

    def __init__(self, dispatch):
        self.kinds, self.indexed, self.silent, self.names = {}, set(), set(), []
        info = c_void_p()
        code = _slot(dispatch, GET_TYPE_INFO, _TYPE_INFO)(dispatch, 0, 0, byref(info))
        _require(code, "GetTypeInfo")
        attributes, function = TypeAttributes(), Function()
        _slot(info, TYPE_ATTRIBUTES, _ATTRIBUTES)(info, byref(attributes))
        for place in range(attributes.functions):
            _slot(info, TYPE_FUNCTION, _FUNCTION)(info, place, byref(function))
            name = c_void_p()
            _slot(info, TYPE_DOCUMENTATION, _DOCUMENTATION)(info, function.id, byref(name), None)
            self._add(_take_text(name.value), function)
        _slot(info, RELEASE, _COUNT)(info)

    def _add(self, name, function):
        key = name.lower()
        if key not in self.kinds:
            self.names.append(name)
        self.kinds[key] = self.kinds.get(key, 0) | function.invoke_kind
        if function.invoke_kind == GET and function.argument_count:
            self.indexed.add(key)
        if function.invoke_kind == METHOD and not function.result_type:
            self.silent.add(key)


class _Object:
    """An object of the library: its properties are attributes, its methods are called."""

    def __init__(self, pointer):
        object.__setattr__(self, "_pointer", pointer)
        object.__setattr__(self, "_members", _Members(pointer))

    def __del__(self):
        if not sys.is_finalizing():
            _slot(self._pointer, RELEASE, _COUNT)(self._pointer)

    def __dir__(self):
        return self._members.names

    def __getattr__(self, name):
        key = name.lower()
        kinds = self._members.kinds.get(key)
        if kinds is None:
            raise AttributeError(name)
        if kinds & GET and key not in self._members.indexed:
            return self._invoke(name, GET, (), {})
        flag = kinds & METHOD or GET

        def call(*arguments, **named):
            result = self._invoke(name, flag, arguments, named)
            return None if key in self._members.silent else result

        return call

    def __setattr__(self, name, value):
        if not self._members.kinds.get(name.lower(), 0) & PUT:
            raise AttributeError(name)
        self._invoke(name, PUT, (value,), {})

    def _identifiers(self, names):
        texts = [ctypes.create_string_buffer(_wide(name)) for name in names]
        pointers = (c_void_p * len(names))(*[ctypes.addressof(text) for text in texts])
        ids = (c_int32 * len(names))()
        pointer = self._pointer
        code = _slot(pointer, GET_IDS, _GET_IDS)(pointer, None, pointers, len(names), 0, ids)
        if code == UNKNOWN_NAME:
            unknown = [name for name, found in zip(names, ids) if found < 0]
            raise TypeError(f"{names[0]} has no argument {', '.join(unknown)}")
        _require(code, "GetIDsOfNames")
        return list(ids)

    def _invoke(self, name, flag, positional, named):
        ids = self._identifiers([name, *named])
        given = [*named.values(), *reversed(positional)]
        owned = [_variant(one.value if isinstance(one, ByRef) else one) for one in given]
        passed = (VARIANT * max(len(given), 1))()
        for place, (one, value) in enumerate(zip(given, owned)):
            if isinstance(one, ByRef):
                passed[place].vt = BY_REFERENCE | 12
                passed[place].value.pointer = ctypes.addressof(value)
            else:
                ctypes.memmove(byref(passed[place]), byref(value), ctypes.sizeof(VARIANT))
        names = [PUT_VALUE] if flag == PUT else ids[1:]
        named_ids = (c_int32 * max(len(names), 1))(*names)
        parameters = DISPPARAMS(passed, named_ids, len(given), len(names))
        result, info, wrong = VARIANT(), EXCEPINFO(), c_uint32()
        try:
            code = _slot(self._pointer, INVOKE, _INVOKE)(
                self._pointer, ids[0], None, 0, flag, byref(parameters), byref(result), byref(info),
                ctypes.addressof(wrong))
            self._check(name, code, info)
            for one, value in zip(given, owned):
                if isinstance(one, ByRef):
                    one.value = _value(value)
            return _value(result)
        finally:
            for value in [*owned, result]:
                _runtime.VariantClear(byref(value))

    @staticmethod
    def _check(name, code, info):
        if code == EXCEPTION:
            scode = info.scode
            number = scode & 0xFFFF if scode & 0xFFFF0000 == NUMBERED else scode - (1 << 32)
            raise QuorlError(number, _take_text(info.source), _take_text(info.description))
        if code == BAD_PARAMETER_COUNT:
            raise TypeError(f"{name} takes fewer arguments")
        if code == PARAMETER_NOT_OPTIONAL:
            raise TypeError(f"{name} lacks a required argument")
        if code == PARAMETER_NOT_FOUND:
            raise TypeError(f"{name} was given an argument twice")
        _require(code, name)


# --------------------------------------------------------------------------- objects of the host


class _Host:
    """A Python object in the form that the library calls; it lives while it is referenced."""

    _alive = {}

    def __init__(self, target):
        self.target, self.count, self.names = target, 1, [""]
        # The object in memory: a pointer to its table.
        self.memory = (c_void_p * 1)(ctypes.addressof(_host_table))
        self.address = ctypes.addressof(self.memory)
        _Host._alive[self.address] = self

    def identifier(self, name):
        found = [one for one in dir(self.target) if one.lower() == name.lower()]
        if not found and not hasattr(self.target, name):
            return -1
        name = name if name in found or not found else found[0]
        if name not in self.names:
            self.names.append(name)
        return self.names.index(name)

    def invoke(self, name, flags, arguments):
        target = self.target
        if not name:
            return target[arguments[0] if len(arguments) == 1 else tuple(arguments)]
        if flags & (PUT | PUT_REFERENCE):
            *indices, value = arguments
            if indices:
                getattr(target, name)[indices[0] if len(indices) == 1 else tuple(indices)] = value
            else:
                setattr(target, name, value)
            return Empty
        member = getattr(target, name)
        if callable(member) and (flags & METHOD or arguments):
            result = member(*arguments)
            return Empty if result is None and not flags & GET else result
        if arguments:
            return member[arguments[0] if len(arguments) == 1 else tuple(arguments)]
        return member


def _host_query(this, _identifier, out):
    _Host._alive[this].count += 1
    out[0] = this
    return S_OK


def _host_add(this):
    host = _Host._alive[this]
    host.count += 1
    return host.count


def _host_release(this):
    host = _Host._alive[this]
    host.count -= 1
    if not host.count:
        del _Host._alive[this]
    return host.count


def _host_type_count(_this, count):
    count[0] = 0
    return S_OK


def _host_type_info(_this, _index, _lcid, out):
    out[0] = None
    return BAD_INDEX


def _host_ids(this, _identifier, names, count, _lcid, ids):
    for place in range(1, count):
        ids[place] = -1
    ids[0] = _Host._alive[this].identifier(_zero_ended(names[0]))
    return S_OK if count == 1 and ids[0] >= 0 else UNKNOWN_NAME


def _fill(info, number, source, description):
    if info:
        small = 0 <= number <= 0xFFFF
        info[0].scode = NUMBERED + number if small else number & 0xFFFFFFFF
        info[0].source = _new_text(source)
        info[0].description = _new_text(description)
    return EXCEPTION


def _host_invoke(this, identifier, _iid, _lcid, flags, parameters, result, info, _wrong):
    host = _Host._alive[this]
    if not 0 <= identifier < len(host.names):
        return MEMBER_NOT_FOUND
    given = parameters[0]
    try:
        arguments = [_value(given.arguments[i]) for i in reversed(range(given.argument_count))]
        value = _variant(host.invoke(host.names[identifier], flags, arguments))
    except QuorlError as error:
        return _fill(info, error.number, error.source, error.description)
    except (AttributeError, TypeError) as error:
        if not host.names[identifier]:
            return MEMBER_NOT_FOUND
        return _fill(info, 438, "Python", f"{type(error).__name__}: {error}")
    except Exception as error:  # nothing of Python's may cross into the library
        return _fill(info, 440, "Python", f"{type(error).__name__}: {error}")
    if result:
        ctypes.memmove(result, byref(value), ctypes.sizeof(VARIANT))
    else:
        _runtime.VariantClear(byref(value))
    return S_OK


_host_slots = (_QUERY(_host_query), _COUNT(_host_add), _COUNT(_host_release),
               _TYPE_COUNT(_host_type_count), _TYPE_INFO(_host_type_info), _GET_IDS(_host_ids),
               _INVOKE(_host_invoke))
_host_table = (c_void_p * 7)(*[ctypes.cast(slot, c_void_p).value for slot in _host_slots])


def _dispatch_of(value):
    """A counted pointer to an object of the library, or to a host object in its form."""
    if isinstance(value, _Object):
        _slot(value._pointer, ADD_REF, _COUNT)(value._pointer)
        return value._pointer.value
    return _Host(value).address


def _object_behind(pointer):
    if not pointer:
        return None
    if pointer in _Host._alive:
        return _Host._alive[pointer].target
    counted = c_void_p(pointer)
    _slot(counted, ADD_REF, _COUNT)(counted)
    return _Object(counted)


# ------------------------------------------------------------------------------------ the library


class Quorl:
    """The library's classes as attributes: of a global class its hidden instance, of any other a
    new one.

    `folder` is where libquorl.so and libquorl_runtime.so are. With `in_memory` settings are kept as
    long as the process, and the library needs no registration; otherwise it has to be registered,
    once for the user, by `register()`. `locale` is "fr-BE" and the like.
    """

    def __init__(self, folder, in_memory=False, locale=None):
        _load(folder)
        self._folder = os.path.abspath(folder)
        if in_memory:
            _require(_runtime.QuorlSetStore(None, None), "QuorlSetStore")
            self.register()
        if locale is not None:
            _require(_runtime.QuorlSetLocale(c_char_p(_wide(locale))), "QuorlSetLocale")

    def register(self):
        path = os.path.join(self._folder, "libquorl.so")
        _require(_runtime.QuorlRegister(c_char_p(_wide(path))), "QuorlRegister")

    def __getattr__(self, name):
        progid = c_char_p(_wide("Quorl." + name))
        pointer = c_void_p()
        code = _runtime.QuorlGlobalObject(progid, byref(pointer))
        if code == CLASS_NOT_GLOBAL:
            identifier = GUID()
            _require(_runtime.CLSIDFromProgID(progid, byref(identifier)), name)
            code = _runtime.CoCreateInstance(byref(identifier), None, c_uint32(0),
                                             byref(IID_DISPATCH), byref(pointer))
        if code == 0x800401F3:
            raise AttributeError(name)
        _require(code, name)
        return _Object(pointer)
