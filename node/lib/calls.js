// The calls by name that are under way: for each the memory that it shares with the library, and
// what an object of JavaScript threw while it ran. A host's method that the library calls may call
// the library again, so that they stand in each other.
import { FAILURE, newMemory } from "./native.js";
import { VARIANT_SIZE } from "./variants.js";

const MOST_ARGUMENTS = 8;
const DEEPEST_CALL = 64;

// Where each thing stands in a call's memory.
const NAMED = 24;  // behind the 24 bytes of the parameters themselves
export const RESULT = 32;
export const RECORD = RESULT + VARIANT_SIZE;
const WRONG = RECORD + FAILURE.size;
export const ARGUMENTS = WRONG + 8;
export const REFERRED = ARGUMENTS + VARIANT_SIZE * MOST_ARGUMENTS;
const SIZE = REFERRED + VARIANT_SIZE * MOST_ARGUMENTS;

const PUT_VALUE = -3;

function newCall() {
  const { view, address } = newMemory(SIZE);
  const at = (place) => address + BigInt(place);
  view.setBigUint64(0, at(ARGUMENTS), true);
  view.setBigUint64(8, at(NAMED), true);
  view.setInt32(NAMED, PUT_VALUE, true);
  return {
    view, address, at, thrown: undefined,
    result: at(RESULT), record: at(RECORD), wrong: at(WRONG),
    arguments: Array.from({ length: MOST_ARGUMENTS }, (_, i) => at(ARGUMENTS + VARIANT_SIZE * i)),
  };
}

const stack = [];
let depth = 0;

/** The memory of a call that begins; leave() ends it. */
export function enter() {
  if (depth === DEEPEST_CALL)
    throw new RangeError(`calls stand more than ${DEEPEST_CALL} deep in each other`);
  const call = stack[depth] ?? (stack[depth] = newCall());
  ++depth;
  call.view.setBigUint64(RESULT, 0n, true);
  return call;
}

export function leave(call) {
  call.thrown = undefined;
  --depth;
}

/** Keeps the failure of an object of JavaScript for the call that uses it. */
export function rememberThrown(record) {
  if (depth) stack[depth - 1].thrown = record;
}
