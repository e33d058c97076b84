// Objects of JavaScript in the form that the library calls: it asks for a member by its name, then
// reads, writes or calls it.
import {
  ADD_REF, DISPATCH, FAILURE, GET_IDS_OF_NAMES, GET_TYPE_INFO, GET_TYPE_INFO_COUNT, INVOKE, PUT,
  PUT_REFERENCE, QUERY_INTERFACE, RELEASE, SLOTS, UNKNOWN, copyFrom, copyTo, newMemory, newText,
  readPointer, register, zeroEndedText,
} from "./native.js";
import {
  BAD_INDEX, EXCEPTION, E_NOINTERFACE, E_UNEXPECTED, MEMBER_NOT_FOUND, PARAMETER_NOT_FOUND,
  QuorlError, S_OK, UNKNOWN_NAME, codeOf,
} from "./errors.js";
import { VARIANT_SIZE, readVariant, writeVariant } from "./variants.js";
import { Empty, QuorlArray, defaultMember } from "./values.js";
import { rememberThrown } from "./calls.js";

const OTHER_FAILURE = 440;
const SOURCE = "Node";

const alive = new Map();
const lent = new WeakMap();

/** How many objects of JavaScript the library holds. */
export const hostObjectsAlive = () => alive.size;

/** The object of JavaScript behind a pointer, or undefined. */
export const hostObjectAt = (pointer) => alive.get(pointer)?.target;

/** A counted pointer to an object of JavaScript. */
export function lendHostObject(target) {
  let host = lent.get(target);
  if (!host || !alive.has(host.memory.address)) {
    host = { target, count: 0, memory: newMemory(8) };
    host.memory.view.setBigUint64(0, table().address, true);
    lent.set(target, host);
    alive.set(host.memory.address, host);
  }
  ++host.count;
  return host.memory.address;
}

// --------------------------------------------------------------------------------------- names --

// Identifier 0 is the default member; every other name gets one when it is first asked for.
const names = [defaultMember];
const identifiers = new Map();

function identifierOf(name) {
  if (!identifiers.has(name)) identifiers.set(name, names.push(name) - 1);
  return identifiers.get(name);
}

/** The member's own spelling, or undefined. */
function memberNamed(target, name) {
  if (name in target) return name;
  const wanted = name.toLowerCase();
  for (let one = target; one; one = Object.getPrototypeOf(one)) {
    const found = Reflect.ownKeys(one)
      .find((key) => typeof key === "string" && key.toLowerCase() === wanted);
    if (found !== undefined) return found;
  }
  return undefined;
}

// ----------------------------------------------------------------------------- reads and writes --

function placeOf(list, index, name) {
  if (!Array.isArray(list) && !(list instanceof Uint8Array))
    throw new TypeError(`${String(name)} takes no argument`);
  if (!Number.isInteger(index) || index < 0 || index >= list.length)
    throw new RangeError(`${String(name)} has no element ${String(index)}`);
  return index;
}

function element(collection, subscripts, name) {
  if (collection instanceof QuorlArray) return collection.get(...subscripts);
  if (typeof collection === "object" && collection !== null && defaultMember in collection)
    return read(collection, defaultMember, subscripts);
  return collection[placeOf(collection, subscripts[0], name)];
}

/** A method answers a read too; an array, or an object with a default member, takes subscripts. */
function read(target, name, given) {
  const member = target[name];
  if (typeof member === "function") return Reflect.apply(member, target, given);
  return given.length ? element(member, given, name) : member;
}

function write(target, name, given) {
  const value = given.pop();
  if (!given.length) {
    target[name] = value;
    return;
  }
  const collection = target[name];
  if (collection instanceof QuorlArray) collection.set(...given, value);
  else collection[placeOf(collection, given[0], name)] = value;
}

function perform(target, name, flags, given) {
  if (!(flags & (PUT | PUT_REFERENCE))) return read(target, name, given);
  write(target, name, given);
  return Empty;
}

// ------------------------------------------------------------------------------------- failures --

function recordOf(error) {
  if (error instanceof QuorlError)
    return { error, code: codeOf(error.number), source: error.source, description: error.description };
  const isError = error instanceof Error;
  const description = isError ? `${error.name}: ${error.message}` : String(error);
  return { error, code: codeOf(OTHER_FAILURE), source: SOURCE, description };
}

function report(error, info) {
  const record = recordOf(error);
  rememberThrown(record);
  if (info) {
    const view = new DataView(new ArrayBuffer(FAILURE.size));
    view.setBigUint64(FAILURE.source, newText(record.source), true);
    view.setBigUint64(FAILURE.description, newText(record.description), true);
    view.setInt32(FAILURE.code, record.code, true);
    copyTo(info, view);
  }
  return EXCEPTION;
}

// ------------------------------------------------------------------------------------ the slots --

const KNOWN = [UNKNOWN, DISPATCH].map((identifier) => identifier.join());

const pointerBytes = (pointer) => BigUint64Array.of(pointer);

const calls = [];

calls[QUERY_INTERFACE] = (self, identifier, out) => {
  const wanted = new Uint8Array(copyFrom(identifier, 16).buffer).join();
  const isKnown = KNOWN.includes(wanted);
  copyTo(out, pointerBytes(isKnown ? self : 0n));
  if (!isKnown) return E_NOINTERFACE;
  ++alive.get(self).count;
  return S_OK;
};

calls[ADD_REF] = (self) => ++alive.get(self).count;

calls[RELEASE] = (self) => {
  const host = alive.get(self);
  if (--host.count === 0) alive.delete(self);
  return host.count;
};

calls[GET_TYPE_INFO_COUNT] = (_self, count) => {
  copyTo(count, Uint32Array.of(0));
  return S_OK;
};

calls[GET_TYPE_INFO] = (_self, _index, _lcid, out) => {
  copyTo(out, pointerBytes(0n));
  return BAD_INDEX;
};

calls[GET_IDS_OF_NAMES] = (self, _identifier, texts, count, _lcid, ids) => {
  const found = new Int32Array(count).fill(-1);
  const name = memberNamed(alive.get(self).target, zeroEndedText(readPointer(texts)));
  if (name !== undefined) found[0] = identifierOf(name);
  copyTo(ids, found);
  return name !== undefined && count === 1 ? S_OK : UNKNOWN_NAME;
};

/** The arguments in order, or undefined when there are named ones besides a put's new value. */
function argumentsOf(parameters, isPut) {
  const head = copyFrom(parameters, 24);
  const count = head.getUint32(16, true);
  if (head.getUint32(20, true) > (isPut ? 1 : 0)) return undefined;
  const view = copyFrom(head.getBigUint64(0, true), VARIANT_SIZE * count);
  return Array.from({ length: count }, (_, i) => readVariant(view, VARIANT_SIZE * (count - 1 - i)));
}

calls[INVOKE] = (self, identifier, _iid, _lcid, flags, parameters, result, info) => {
  const { target } = alive.get(self);
  const name = names[identifier];
  if (name === undefined || !(name in target)) return MEMBER_NOT_FOUND;
  try {
    const given = argumentsOf(parameters, flags & (PUT | PUT_REFERENCE));
    if (!given) return PARAMETER_NOT_FOUND;
    const value = perform(target, name, flags, given);
    if (!result) return S_OK;
    const view = new DataView(new ArrayBuffer(VARIANT_SIZE));
    writeVariant(view, 0, value);
    copyTo(result, view);
    return S_OK;
  } catch (error) {
    return report(error, info);
  }
};

// Nothing of JavaScript's may cross into the library.
const guarded = (call) => (...given) => {
  try {
    return call(...given);
  } catch (error) {
    rememberThrown({ error, code: E_UNEXPECTED });
    return E_UNEXPECTED;
  }
};

let registered;

/** The one table of all objects of JavaScript, made when the first of them is lent. */
function table() {
  if (!registered) {
    registered = newMemory(8 * SLOTS.length);
    calls.forEach((call, place) =>
      registered.view.setBigUint64(8 * place, register(guarded(call), place), true));
  }
  return registered;
}
