// The two libraries, their functions, and memory that they and JavaScript both see.
import { existsSync } from "node:fs";
import { homedir } from "node:os";
import path from "node:path";
import koffi from "koffi";

const { address, decode } = koffi;

const RUNTIME = "libquorl_runtime.so";
const COMPONENT = "libquorl.so";

const FUNCTIONS = {
  SysAllocStringLen: ["void*", ["str16", "uint32"]],
  SysFreeString: ["void", ["void*"]],
  VariantClear: ["int32", ["void*"]],
  SafeArrayCreate: ["void*", ["uint16", "uint32", "void*"]],
  SafeArrayDestroy: ["int32", ["void*"]],
  GetErrorInfo: ["int32", ["uint32", "void*"]],
  QuorlSetLocale: ["int32", ["str16"]],
  QuorlSetScreen: ["int32", ["double", "double"]],
  QuorlSetStore: ["int32", ["str16", "str16"]],
};

/** The runtime's functions by name, once load() has found it. */
export const runtime = {};

const memcpy = koffi.load("libc.so.6").func("memcpy", "void*", ["void*", "void*", "size_t"]);

let loadedFrom;
let getClassObject;

function usualFolders() {
  const named = process.env.QUORL_LIBRARY;
  if (named) return [named.endsWith(".so") ? path.dirname(named) : named];
  const prefixes = [path.join(homedir(), ".local"), "/usr/local", "/usr"];
  return [
    ...(process.env.LD_LIBRARY_PATH ?? "").split(":").filter(Boolean),
    ...prefixes.flatMap((one) => [`${one}/lib`, `${one}/lib/x86_64-linux-gnu`, `${one}/lib64`]),
  ];
}

/** Loads both libraries from `folder`, or from where they are installed; once in a process. */
export function load(folder) {
  if (loadedFrom !== undefined) {
    if (folder !== undefined && path.resolve(folder) !== loadedFrom)
      throw new Error(`Quorl is loaded from ${loadedFrom} already`);
    return;
  }
  const looked = folder === undefined ? usualFolders() : [folder];
  const found = looked.find((one) => existsSync(path.join(one, COMPONENT)));
  if (found === undefined)
    throw new Error(`${COMPONENT} is not in ${looked.join(", ")}; set QUORL_LIBRARY to its folder`);
  const library = koffi.load(path.resolve(found, RUNTIME), { global: true });
  for (const [name, [result, parameters]] of Object.entries(FUNCTIONS))
    runtime[name] = library.func(name, result, parameters);
  getClassObject = koffi.load(path.resolve(found, COMPONENT))
    .func("DllGetClassObject", "int32", ["void*", "void*", "void*"]);
  loadedFrom = path.resolve(found);
}

/** What DllGetClassObject gives for two identifiers of 16 bytes. */
export const classObject = (identifier, wanted, out) => getClassObject(identifier, wanted, out);

/** A view of `size` bytes that both sides see as long as the view is referenced; zeros. */
export function newMemory(size) {
  const view = new DataView(new ArrayBuffer(size));
  return { view, address: address(view.buffer) };
}

/** A copy of memory of the library's. */
export function copyFrom(pointer, size) {
  const bytes = new Uint8Array(new ArrayBuffer(size));
  if (size) memcpy(bytes, pointer, size);
  return new DataView(bytes.buffer);
}

export function copyTo(pointer, bytes) {
  if (bytes.byteLength) memcpy(pointer, bytes, bytes.byteLength);
}

export const readPointer = (pointer) => decode(pointer, "void*") ?? 0n;

// ------------------------------------------------------------------------------------- objects --

export const QUERY_INTERFACE = 0;
export const ADD_REF = 1;
export const RELEASE = 2;
export const GET_TYPE_INFO_COUNT = 3;
export const GET_TYPE_INFO = 4;
export const GET_IDS_OF_NAMES = 5;
export const INVOKE = 6;

/** Flags of Invoke. */
export const METHOD = 1;
export const GET = 2;
export const PUT = 4;
export const PUT_REFERENCE = 8;

/** The failure record of a call by name: its size, and where its fields stand. */
export const FAILURE = { size: 64, shortCode: 0, source: 8, description: 16, code: 56 };

const prototype = (name, result, parameters) => koffi.proto(`Quorl${name}`, result, parameters);

/** The signatures of the seven slots of every object, in order. */
export const SLOTS = [
  prototype("QueryInterface", "int32", ["void*", "void*", "void*"]),
  prototype("AddRef", "uint32", ["void*"]),
  prototype("Release", "uint32", ["void*"]),
  prototype("GetTypeInfoCount", "int32", ["void*", "void*"]),
  prototype("GetTypeInfo", "int32", ["void*", "uint32", "uint32", "void*"]),
  prototype("GetIDsOfNames", "int32", ["void*", "void*", "void*", "uint32", "uint32", "void*"]),
  prototype("Invoke", "int32",
    ["void*", "int32", "void*", "uint32", "uint16", "void*", "void*", "void*", "void*"]),
];

/** A slot that fills one place, and a factory's that makes an instance. */
export const FILL = prototype("Fill", "int32", ["void*", "void*"]);
export const CREATE = prototype("Create", "int32", ["void*", "void*", "void*", "void*"]);

const decoded = new Map();

/** The function in a slot of an object's table, ready to be called with the object. */
export function slotOf(pointer, place, type = SLOTS[place]) {
  const target = readPointer(readPointer(pointer) + BigInt(8 * place));
  let known = decoded.get(type);
  if (!known) decoded.set(type, (known = new Map()));
  if (!known.has(target)) known.set(target, decode(target, type));
  return known.get(target);
}

export const register = (call, place) => koffi.register(call, koffi.pointer(SLOTS[place]));

export const addRef = (pointer) => slotOf(pointer, ADD_REF)(pointer);
export const release = (pointer) => slotOf(pointer, RELEASE)(pointer);

/** An identifier's 16 bytes from its text in braces. */
export function identifierBytes(text) {
  const digits = text.replace(/[{}-]/g, "");
  const order = [3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15];
  return Uint8Array.from(order, (at) => parseInt(digits.slice(2 * at, 2 * at + 2), 16));
}

export const UNKNOWN = identifierBytes("{00000000-0000-0000-C000-000000000046}");
export const DISPATCH = identifierBytes("{00020400-0000-0000-C000-000000000046}");
export const CLASS_FACTORY = identifierBytes("{00000001-0000-0000-C000-000000000046}");
export const GLOBAL_FACTORY = identifierBytes("{8F1D6A02-3B5E-4C47-9A61-520ED744B301}");

// --------------------------------------------------------------------------------------- texts --

export function newText(text) {
  const made = runtime.SysAllocStringLen(text, text.length);
  if (!made) throw new RangeError("memory ran out for a text");
  return made;
}

export const textAt = (pointer) =>
  (pointer ? decode.string16(pointer, decode.uint32(pointer - 4n) / 2) : "");

/** A text that is ours to end. */
export function takeText(pointer) {
  const text = textAt(pointer);
  runtime.SysFreeString(pointer);
  return text;
}

export const zeroEndedText = (pointer) => decode.string16(pointer);
