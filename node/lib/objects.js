// Objects of the library, and calls of their members.
import {
  CLASS_FACTORY, CREATE, DISPATCH, FAILURE, FILL, GET, GET_TYPE_INFO, GLOBAL_FACTORY, INVOKE, METHOD,
  PUT, addRef, classObject, identifierBytes, newMemory, release, runtime, slotOf, takeText,
} from "./native.js";
import { EXCEPTION, QuorlError, numberOf, require, wrongValue } from "./errors.js";
import {
  BY_REFERENCE, VARIANT, VARIANT_SIZE, clearVariant, readVariant, setObjectForms, writeNoObject,
  writeVariant,
} from "./variants.js";
import { ARGUMENTS, RECORD, REFERRED, RESULT, enter, leave } from "./calls.js";
import { hostObjectAt, lendHostObject } from "./host_objects.js";
import { ByRef, Missing, Named } from "./values.js";
import { classes } from "./catalogue.js";

// ---------------------------------------------------------------------------------- life of one --

// What is known of an object: `pointer`, counted once for us; how many calls of it are under way;
// whether it was closed.
const states = new WeakMap();
const wrapped = new Map();

function giveBack(state) {
  if (wrapped.get(state.pointer)?.state === state) wrapped.delete(state.pointer);
  release(state.pointer);
}

const forgotten = new FinalizationRegistry(giveBack);

/** An object of the library. It is given back when it is closed, or some time after its last use. */
export class QuorlObject {
  /** Gives the object back at once; a call of it that is under way ends first. */
  close() {
    const state = states.get(this);
    if (!state || state.isClosed) return;
    state.isClosed = true;
    forgotten.unregister(this);
    if (!state.calls) giveBack(state);
  }

  get [Symbol.toStringTag]() {
    return this.constructor.name;
  }
}

if (Symbol.dispose) {
  Object.defineProperty(QuorlObject.prototype, Symbol.dispose, {
    value: QuorlObject.prototype.close, configurable: true, writable: true,
  });
}

export const isClosed = (object) => states.get(object).isClosed;

/** Makes `object` stand for a pointer that is counted once for it. */
function adopt(object, pointer) {
  const state = { pointer, calls: 0, isClosed: false, invoke: slotOf(pointer, INVOKE) };
  states.set(object, state);
  forgotten.register(object, state, object);
  wrapped.set(pointer, { state, object: new WeakRef(object) });
  return Object.freeze(object);
}

function stateOf(object, what) {
  const state = states.get(object);
  if (!state) throw new TypeError(`${what} belongs to an object of the library`);
  if (state.isClosed) throw new TypeError(`${what}: this object is closed`);
  return state;
}

// -------------------------------------------------------------------------------- wrong arguments --

const namesOf = (member) => member.arguments.map(({ name }) => name).join(", ") || "none";

function placesOfNamed(member, given, values, what) {
  const placed = given.slice(0, -1);
  for (const [name, value] of Object.entries(values)) {
    const place = member.arguments.findIndex((one) => one.name.toLowerCase() === name.toLowerCase());
    if (place < 0)
      throw new TypeError(`${what} has no argument ${name}; it has: ${namesOf(member)}`);
    if (place < given.length - 1 || place in placed)
      throw new TypeError(`${what} was given its argument ${name} twice`);
    placed[place] = value;
  }
  return placed;
}

/** The arguments by place, `undefined` for one that is left out. */
function placesOf(member, given, what) {
  const last = given[given.length - 1];
  const placed = last instanceof Named ? placesOfNamed(member, given, last.values, what) : given;
  const { length } = member.arguments;
  if (placed.length > length)
    throw new TypeError(`${what} takes ${length} arguments (${namesOf(member)}); ` +
      `${placed.length} were given`);
  for (let i = 0; i < length; ++i) {
    if (placed[i] === undefined && !member.arguments[i].optional)
      throw new TypeError(`${what} lacks its argument ${member.arguments[i].name}`);
  }
  return placed;
}

// ------------------------------------------------------------------------------------ the call --

// The last argument stands first. A value that is written back stands apart, referred to.
function writeArgument({ view, at }, place, value, takesObject) {
  const own = ARGUMENTS + VARIANT_SIZE * place;
  if (value === null && takesObject) return writeNoObject(view, own);
  if (!(value instanceof ByRef)) return writeVariant(view, own, value === undefined ? Missing : value);
  const apart = REFERRED + VARIANT_SIZE * place;
  writeVariant(view, apart, value.value);
  view.setUint32(own, BY_REFERENCE | VARIANT, true);
  view.setBigUint64(own + 8, at(apart), true);
}

function clearArgument({ view, at, arguments: addresses }, place, value) {
  if (!(value instanceof ByRef)) {
    clearVariant(view, ARGUMENTS + VARIANT_SIZE * place, addresses[place]);
    return;
  }
  const apart = REFERRED + VARIANT_SIZE * place;
  clearVariant(view, apart, at(apart));
}

function writeBack({ view }, placed) {
  for (let i = 0; i < placed.length; ++i) {
    if (placed[i] instanceof ByRef)
      placed[i].value = readVariant(view, REFERRED + VARIANT_SIZE * (placed.length - 1 - i));
  }
}

function takeFailure({ view, thrown }, member) {
  const code = view.getInt32(RECORD + FAILURE.code, true) ||
    view.getUint16(RECORD + FAILURE.shortCode, true);
  const source = takeText(view.getBigUint64(RECORD + FAILURE.source, true));
  const description = takeText(view.getBigUint64(RECORD + FAILURE.description, true));
  const isThrown = thrown && code === thrown.code &&
    (thrown.source === undefined ||
     (source === thrown.source && description === thrown.description));
  if (isThrown) return thrown.error;
  const error = new QuorlError(numberOf(code), source, description);
  error.member = member;
  return error;
}

/** Calls a member, reads or writes a property: `flag` says which. */
function invoke(object, member, flag, given, what) {
  const state = stateOf(object, what);
  const placed = placesOf(member, given, what);
  const call = enter();
  const { view } = call;
  const count = placed.length;
  let written = 0;
  ++state.calls;
  try {
    for (; written < count; ++written) {
      try {
        const { takesObject } = member.arguments[written];
        writeArgument(call, count - 1 - written, placed[written], takesObject);
      } catch (error) {
        throw wrongValue(`${what}, argument ${member.arguments[written].name}`, error);
      }
    }
    view.setUint32(16, count, true);
    view.setUint32(20, flag === PUT ? 1 : 0, true);
    const code = state.invoke(state.pointer, member.id, null, 0, flag, call.address, call.result,
      call.record, call.wrong);
    if (code === EXCEPTION) throw takeFailure(call, what);
    require(code, what);
    writeBack(call, placed);
    return member.returns ? readVariant(view, RESULT) : undefined;
  } finally {
    while (written--) clearArgument(call, count - 1 - written, placed[written]);
    clearVariant(view, RESULT, call.result);
    leave(call);
    if (--state.calls === 0 && state.isClosed) giveBack(state);
  }
}

// --------------------------------------------------------------------------------- the classes --

function accessor(property, what) {
  const { get, put } = property;
  return {
    get: get && function () { return invoke(this, get, GET, [], what); },
    set: put && function (value) { invoke(this, put, PUT, [value], what); },
    enumerable: true,
  };
}

function method(member, flag, what) {
  const call = function (...given) {
    return invoke(this, member, flag, given, what);
  };
  Object.defineProperty(call, "name", { value: member.name });
  return { value: call, enumerable: true };
}

function memberOf(described, what) {
  if (described.kind === "property") return accessor(described, what);
  return method(described, described.kind === "indexed" ? GET : METHOD, what);
}

function classOf({ name, isGlobal, members }) {
  const made = {
    [name]: class extends QuorlObject {
      constructor() {
        super();
        if (isGlobal) throw new TypeError(`${name} is a global class: use library.${name}`);
        adopt(this, newPointer(name));
      }
    },
  }[name];
  for (const member of members)
    Object.defineProperty(made.prototype, member.name, memberOf(member, `${name}.${member.name}`));
  return made;
}

/** An object of a class for a pointer that is counted once for it. */
const objectOf = (Class, pointer) => adopt(Object.create(Class.prototype), pointer);

/** By name, each class of the library with its members on its prototype. */
export const classesByName = new Map(classes.map((one) => [one.name, classOf(one)]));

const described = new Map(classes.map((one) => [one.name, one]));
const byIdentifier = new Map(classes.map((one) =>
  [identifierBytes(one.identifier).join(), classesByName.get(one.name)]));

// ------------------------------------------------------------------------------ where they come from

function out(call, what) {
  const place = newMemory(8);
  const code = call(place.address);
  if (code < 0) throw failureOfThread(code, what);
  return place.view.getBigUint64(0, true);
}

const textFrom = (info, slot) => takeText(out((place) => slotOf(info, slot, FILL)(info, place)));

function failureOfThread(code, what) {
  const place = newMemory(8);
  const info = runtime.GetErrorInfo(0, place.address) === 0 && place.view.getBigUint64(0, true);
  if (!info) {
    try {
      require(code, what);
    } catch (error) {
      return error;
    }
  }
  try {
    return new QuorlError(numberOf(code), textFrom(info, 4), textFrom(info, 5));
  } finally {
    release(info);
  }
}

function fromFactory(name, wanted, take) {
  const identifier = identifierBytes(described.get(name).identifier);
  const factory = out((place) => classObject(identifier, wanted, place), name);
  try {
    return out((place) => take(factory, place), name);
  } finally {
    release(factory);
  }
}

/** A counted pointer to a new instance of any class. */
function newPointer(name) {
  return fromFactory(name, CLASS_FACTORY, (factory, place) =>
    slotOf(factory, 3, CREATE)(factory, null, DISPATCH, place));
}

export function newInstance(name) {
  const Class = classesByName.get(name);
  if (!Class) throw new TypeError(`there is no class ${name}`);
  return objectOf(Class, newPointer(name));
}

/** The one hidden instance of a global class. */
export function globalInstance(name) {
  const pointer = fromFactory(name, GLOBAL_FACTORY, (factory, place) =>
    slotOf(factory, 3, FILL)(factory, place));
  return objectOf(classesByName.get(name), pointer);
}

// ------------------------------------------------------------------------------ there and back --

/** The class of an object that came from the library, by its type information. */
function classBehind(pointer) {
  const info = out((place) => slotOf(pointer, GET_TYPE_INFO)(pointer, 0, 0, place), "type information");
  try {
    const attributes = newMemory(64);
    require(slotOf(info, 3, FILL)(info, attributes.address), "type information");
    const identifier = new Uint8Array(attributes.view.buffer, 0, 16).join();
    return byIdentifier.get(identifier) ?? QuorlObject;
  } finally {
    release(info);
  }
}

function objectAt(pointer) {
  if (!pointer) return null;
  const known = hostObjectAt(pointer) ?? wrapped.get(pointer)?.object.deref();
  if (known) return known;
  const Class = classBehind(pointer);
  addRef(pointer);
  return objectOf(Class, pointer);
}

function lendObject(value) {
  if (!(value instanceof QuorlObject)) return lendHostObject(value);
  const { pointer } = stateOf(value, value.constructor.name);
  addRef(pointer);
  return pointer;
}

setObjectForms(lendObject, objectAt);
