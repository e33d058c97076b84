// The library that all tests of one file use: its settings in memory, its language of Belgium.
import assert from "node:assert/strict";
import path from "node:path";
import koffi from "koffi";
import { Quorl } from "../index.js";
import { hostObjectsAlive } from "../lib/host_objects.js";

export const library = new Quorl({ inMemory: true, locale: "fr-BE", screen: [1800, 1600] });

const folder = process.env.QUORL_LIBRARY.replace(/\/[^/]*\.so$/, "");
const canUnload = koffi.load(path.join(folder, "libquorl.so")).func("DllCanUnloadNow", "int32", []);

export const libraryHoldsObjects = () => canUnload() !== 0;
export const nothingIsAlive = () => !libraryHoldsObjects() && hostObjectsAlive() === 0;

/** Each case fails with its Type and a message that holds its text. */
export function assertFails(cases) {
  for (const [Type, text, call] of cases)
    assert.throws(call, (error) => error instanceof Type && error.message.includes(text),
      `${call} does not fail with ${Type.name}: ${text}`);
}

/** Each value comes back from a buffer as it was put in. */
export function thereAndBack(value) {
  const buffer = new library.RollBuffer();
  try {
    buffer.AddItem(value);
    return buffer.Items(0);
  } finally {
    buffer.close();
  }
}
