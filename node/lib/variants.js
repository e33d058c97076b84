// Values in binary form: 24 bytes each, the kind in the first two, the value at 8.
import { copyFrom, copyTo, newMemory, newText, readPointer, runtime, textAt } from "./native.js";
import { PARAMETER_NOT_FOUND, wrongValue } from "./errors.js";
import { ByRef, Currency, DateTime, Empty, Missing, Named, QuorlArray } from "./values.js";

export const VARIANT_SIZE = 24;
export const BY_REFERENCE = 0x4000;
export const VARIANT = 12;

const VALUE = 8;
const NULL = 1;
const INT32 = 3;
const DOUBLE = 5;
const CURRENCY = 6;
const DATE = 7;
const STRING = 8;
const OBJECT = 9;
const ERROR = 10;
const BOOLEAN = 11;
const BYTE = 17;
const ARRAY = 0x2000;
const DEEPEST_ARRAY = 64;

// How an object becomes a counted pointer, and what a lent pointer stands for: set by the modules
// that know objects.
let lendObject;
let objectAt;

export function setObjectForms(lend, at) {
  lendObject = lend;
  objectAt = at;
}

const check = (holds, what) => {
  if (!holds) throw new TypeError(`not ${what}`);
};
const wholeBetween = (lowest, highest) => (value) =>
  check(Number.isInteger(value) && value >= lowest && value <= highest,
    `a whole number from ${lowest} to ${highest}`);
const anyNumber = (value) => check(typeof value === "number", "a number");

const daysOf = (value) => {
  if (value instanceof DateTime) return value.days;
  check(value instanceof Date && !Number.isNaN(value.getTime()), "a valid date");
  return DateTime.from(value).days;
};

// Each kind of single value: its name and size in an array, how it is read, how it is written.
const KINDS = new Map([
  [2, { name: "Int16", size: 2,
    read: (view, at) => view.getInt16(at, true),
    write: (view, at, value) => view.setInt16(at, value, true),
    verify: wholeBetween(-0x8000, 0x7fff) }],
  [INT32, { name: "Int32", size: 4,
    read: (view, at) => view.getInt32(at, true),
    write: (view, at, value) => view.setInt32(at, value, true),
    verify: wholeBetween(-0x80000000, 0x7fffffff) }],
  [4, { name: "Single", size: 4,
    read: (view, at) => view.getFloat32(at, true),
    write: (view, at, value) => view.setFloat32(at, value, true),
    verify: anyNumber }],
  [DOUBLE, { name: "Double", size: 8,
    read: (view, at) => view.getFloat64(at, true),
    write: (view, at, value) => view.setFloat64(at, value, true),
    verify: anyNumber }],
  [CURRENCY, { name: "Currency", size: 8,
    read: (view, at) => Currency.ofTenThousandths(view.getBigInt64(at, true)),
    write: (view, at, value) => view.setBigInt64(at, value.tenThousandths, true),
    verify: (value) => check(value instanceof Currency, "a Currency") }],
  [DATE, { name: "Date", size: 8,
    read: (view, at) => DateTime.ofDays(view.getFloat64(at, true)),
    write: (view, at, value) => view.setFloat64(at, daysOf(value), true) }],
  [STRING, { name: "String", size: 8,
    read: (view, at) => textAt(view.getBigUint64(at, true)),
    write: (view, at, value) => view.setBigUint64(at, newText(value), true),
    verify: (value) => check(typeof value === "string", "a text") }],
  [OBJECT, { name: "Object", size: 8,
    read: (view, at) => objectAt(view.getBigUint64(at, true)),
    write: (view, at, value) => view.setBigUint64(at, value === null ? 0n : lendObject(value), true),
    verify: (value) => check(typeof value === "object", "an object") }],
  [BOOLEAN, { name: "Boolean", size: 2,
    read: (view, at) => view.getInt16(at, true) !== 0,
    write: (view, at, value) => view.setInt16(at, value ? -1 : 0, true),
    verify: (value) => check(typeof value === "boolean", "a boolean") }],
  [VARIANT, { name: "Variant", size: VARIANT_SIZE, read: readVariant, write: writeVariant }],
  [BYTE, { name: "Byte", size: 1,
    read: (view, at) => view.getUint8(at),
    write: (view, at, value) => view.setUint8(at, value),
    verify: wholeBetween(0, 255) }],
]);

const KIND_NUMBERS = new Map([...KINDS].map(([number, { name }]) => [name, number]));

// ------------------------------------------------------------------------------------- writing --

function numberOfObjectKind(value) {
  if (value === null) return NULL;
  if (Array.isArray(value)) return ARRAY | VARIANT;
  if (value instanceof Currency) return CURRENCY;
  if (value instanceof DateTime || value instanceof Date) return DATE;
  if (value instanceof Uint8Array) return ARRAY | BYTE;
  if (value instanceof QuorlArray) {
    const number = KIND_NUMBERS.get(value.type);
    if (number === undefined) throw new TypeError(`no array has elements of type ${value.type}`);
    return ARRAY | number;
  }
  if (value instanceof Promise) throw new TypeError("a promise is no value: await it first");
  if (value instanceof ByRef || value instanceof Named)
    throw new TypeError(`${value.constructor.name} stands for an argument and is no value`);
  if (ArrayBuffer.isView(value) || value instanceof ArrayBuffer)
    throw new TypeError("bytes are a Uint8Array, other numbers an Array or a QuorlArray");
  return OBJECT;
}

function numberOfKind(value) {
  switch (typeof value) {
    case "string": return STRING;
    case "boolean": return BOOLEAN;
    case "number": return (value | 0) === value && !Object.is(value, -0) ? INT32 : DOUBLE;
    case "undefined": return 0;
    case "object": return numberOfObjectKind(value);
    case "symbol":
      if (value === Empty) return 0;
      if (value === Missing) return ERROR;
  }
  throw new TypeError(`a ${typeof value} is no value of the library`);
}

function numberOfBigInt(value) {
  const number = Number(value);
  if (!Number.isSafeInteger(number))
    throw new RangeError(`${value} is beyond the whole numbers that a Double counts`);
  return number;
}

/** Writes a value; what it owns afterwards is for clearVariant() to end. */
export function writeVariant(view, at, value, depth = 0) {
  if (typeof value === "bigint") value = numberOfBigInt(value);
  const number = numberOfKind(value);
  if (number & ARRAY) {
    const pointer = newArray(number & ~ARRAY, value, depth);
    view.setBigUint64(at + VALUE, pointer, true);
  } else if (number === ERROR) {
    view.setInt32(at + VALUE, PARAMETER_NOT_FOUND, true);
  } else if (number > NULL) {
    KINDS.get(number).write(view, at + VALUE, value);
  }
  view.setUint32(at, number, true);
  view.setUint32(at + 4, 0, true);
}

/** Writes an empty reference: what null is where an object is wanted. */
export function writeNoObject(view, at) {
  view.setUint32(at, OBJECT, true);
  view.setBigUint64(at + VALUE, 0n, true);
}

// A list's own are copied, since reading one of them may run a host's code that changes the others.
function elementsOf(value) {
  if (value instanceof QuorlArray) return value.elements;
  return value instanceof Uint8Array ? value : [...value];
}

function newArray(number, value, depth) {
  if (depth === DEEPEST_ARRAY)
    throw new RangeError(`arrays stand more than ${DEEPEST_ARRAY} deep in each other`);
  const elements = elementsOf(value);
  const bounds = value instanceof QuorlArray ? value.bounds : [[0, elements.length - 1]];
  const places = newMemory(8 * bounds.length);
  bounds.forEach(([lower, upper], i) => {
    places.view.setUint32(8 * i, upper - lower + 1, true);
    places.view.setInt32(8 * i + 4, lower, true);
  });
  const array = runtime.SafeArrayCreate(number, bounds.length, places.address);
  if (!array) throw new RangeError("no array has these bounds, or memory ran out");
  try {
    fill(array, number, elements, depth);
  } catch (error) {
    runtime.SafeArrayDestroy(array);
    throw error;
  }
  return array;
}

const dataOf = (array) => readPointer(array + 16n);

// Elements are written here and moved over at once: from then on they are the array's, also those
// before one that failed.
function fill(array, number, elements, depth) {
  if (elements instanceof Uint8Array) return copyTo(dataOf(array), elements);
  const { size, write, verify } = KINDS.get(number);
  const view = new DataView(new ArrayBuffer(size * elements.length));
  let place = 0;
  try {
    for (; place < elements.length; ++place) {
      verify?.(elements[place]);
      write(view, size * place, elements[place], depth + 1);
    }
  } catch (error) {
    throw wrongValue(`element ${place}`, error);
  } finally {
    copyTo(dataOf(array), view);
  }
}

// ------------------------------------------------------------------------------------- reading --

/** The value at a place, references read through; what the place owns stays its own. */
export function readVariant(view, at) {
  const number = view.getUint16(at, true);
  if (number <= NULL) return number ? null : Empty;
  if (number === ERROR) return Missing;
  if (number & BY_REFERENCE)
    return readReferred(number & ~BY_REFERENCE, view.getBigUint64(at + VALUE, true));
  if (number & ARRAY) return readArray(number & ~ARRAY, view.getBigUint64(at + VALUE, true));
  return kindOf(number).read(view, at + VALUE);
}

function kindOf(number) {
  const kind = KINDS.get(number);
  if (!kind) throw new TypeError(`a value of the unknown kind ${number}`);
  return kind;
}

function readReferred(number, pointer) {
  if (number & ARRAY) return readArray(number & ~ARRAY, readPointer(pointer));
  const { size, read } = kindOf(number);
  return read(copyFrom(pointer, size), 0);
}

function readArray(number, array) {
  const dimensions = array ? copyFrom(array, 2).getUint16(0, true) : 1;
  const places = array ? copyFrom(array + 24n, 8 * dimensions) : newMemory(8).view;
  const bounds = [];
  let count = 1;
  for (let i = dimensions - 1; i >= 0; --i) {  // the last dimension stands first
    const lower = places.getInt32(8 * i + 4, true);
    const length = places.getUint32(8 * i, true);
    bounds.push([lower, lower + length - 1]);
    count *= length;
  }
  const { name, size, read } = kindOf(number);
  const data = copyFrom(count ? dataOf(array) : 0n, size * count);
  const isPlain = dimensions === 1 && bounds[0][0] === 0;
  if (isPlain && number === BYTE) return new Uint8Array(data.buffer);
  const elements = Array.from({ length: count }, (_, i) => read(data, size * i));
  return isPlain && number === VARIANT ? elements : new QuorlArray(name, bounds, elements);
}

/** Ends what the value at a place owns; `address` is that of the place. */
export function clearVariant(view, at, address) {
  const number = view.getUint16(at, true);
  const owns = number === STRING || number === OBJECT || (number & ARRAY && !(number & BY_REFERENCE));
  if (owns) runtime.VariantClear(address);
}
