import assert from "node:assert/strict";
import { test } from "node:test";
import { Currency, DateTime, Empty, Missing, QuorlArray, named } from "../index.js";
import { assertFails, library, thereAndBack } from "./library.mjs";

const grid = new QuorlArray("Variant", [[-1, 1], [5, 6]], [1, "b", null, Empty, true, [2]]);

test("a value comes back as it was", () => {
  const values = [
    0, -0, 1, -2147483648, 2147483647, 2147483648, 0.1, 5e-324, Infinity, NaN, Number.MAX_SAFE_INTEGER,
    "", "é😀", "zero\0inside", "\ud800", "x".repeat(100000), true, false, null, Empty, Missing,
    new Currency("922337203685477.5807"), new Currency("-922337203685477.5808"), new Currency(-3n),
    DateTime.ofDays(45351.123456789), DateTime.ofDays(-1.25), new DateTime(100, 1, 1, 23, 59, 59, 999),
    new Uint8Array(), Uint8Array.of(0, 255, 7), [], [1, "a", [null, [Empty]], Uint8Array.of(1)],
    new QuorlArray("Byte", [[3, 4]], [1, 2]), new QuorlArray("String", [[0, 1]], ["a", ""]),
    new QuorlArray("Int16", [[1, 2]], [-32768, 32767]), new QuorlArray("Single", [[0, 0]], [0.5]),
    new QuorlArray("Int32", [[1, 0]], []), new QuorlArray("Double", [[0, 1]], [-0, 0.1]),
    new QuorlArray("Currency", [[1, 1]], [new Currency("0.0001")]),
    new QuorlArray("Date", [[1, 1]], [DateTime.ofDays(1.5)]),
    new QuorlArray("Boolean", [[0, 1]], [true, false]), grid,
  ];
  for (const value of values) assert.deepStrictEqual(thereAndBack(value), value);
});

test("an object comes back as itself", () => {
  const own = { Name: "own" };
  const money = new library.Money();
  for (const object of [own, money, library.Math]) {
    assert.equal(thereAndBack(object), object);
    assert.equal(thereAndBack([object])[0], object);
  }
  const objects = new QuorlArray("Object", [[1, 2]], [own, null]);
  assert.deepEqual(thereAndBack(objects).elements, [own, null]);
  money.close();
});

test("what has several forms arrives in one", () => {
  const noon = new Date(2024, 1, 29, 12, 30, 15, 250);
  const table = [
    [12n, 12], [-(2n ** 53n) + 1n, -(2 ** 53) + 1], [[undefined], [Empty]],
    [noon, new DateTime(2024, 2, 29, 12, 30, 15, 250)], [Buffer.from("é"), Uint8Array.of(195, 169)],
  ];
  for (const [given, got] of table) assert.deepStrictEqual(thereAndBack(given), got);
  assert.deepStrictEqual(thereAndBack(noon).toDate(), noon);
});

test("what is no value is refused under its place", () => {
  const refuse = (value) => () => thereAndBack(value);
  const cyclic = [];
  cyclic.push(cyclic);
  assertFails([
    [TypeError, "RollBuffer.AddItem, argument Item: a function", refuse(() => 1)],
    [TypeError, "argument Item: a promise", refuse(Promise.resolve(1))],
    [TypeError, "element 1: element 0: a symbol", refuse([1, [Symbol("x")]])],
    [TypeError, "bytes are a Uint8Array", refuse(new Float32Array(2))],
    [RangeError, "argument Item: 9007199254740992 is beyond", refuse(2n ** 53n)],
    [RangeError, "deep in each other", refuse(cyclic)],
    [TypeError, "Named stands for an argument", refuse([named({})])],
    [TypeError, "not a valid date", refuse(new Date(NaN))],
    [TypeError, "element 0: not a whole number from -32768", refuse(new QuorlArray("Int16", [[0, 0]], [40000]))],
    [TypeError, "no array has elements of type Text", refuse(new QuorlArray("Text", [[0, 0]]))],
  ]);
});

test("amounts are exact, and never numbers", () => {
  const texts = { "12.50": "12.5", "-0.0001": "-0.0001", "+7": "7", "1.00000": "1", "-0": "0" };
  for (const [text, kept] of Object.entries(texts)) assert.equal(String(new Currency(text)), kept);
  assert.equal(new Currency(5n).tenThousandths, 50000n);
  assert.equal(JSON.stringify({ sum: new Currency("1.5") }), '{"sum":"1.5"}');
  const one = new Currency("1");
  assertFails([
    [TypeError, "never of a number", () => new Currency(1.5)],
    [TypeError, "no number", () => one + one], [TypeError, "no number", () => one < 2],
    [SyntaxError, '"1,5"', () => new Currency("1,5")],
    [RangeError, "more than four decimals", () => new Currency("0.00001")],
    [RangeError, "beyond", () => new Currency("922337203685477.5808")],
  ]);
});

test("dates show what a clock shows", () => {
  const table = [
    [0, "1899-12-30T00:00:00.000"], [-1.25, "1899-12-29T06:00:00.000"], [-0.25, "1899-12-30T06:00:00.000"],
    [45351.99999999999, "2024-03-01T00:00:00.000"], [-657434, "0100-01-01T00:00:00.000"], [1e300, "1e+300 days"],
  ];
  for (const [days, text] of table) assert.equal(String(DateTime.ofDays(days)), text);
  const moment = new DateTime(1850, 7, 14, 18, 0, 0, 1);
  assert.deepStrictEqual(DateTime.ofDays(moment.days).toString(), "1850-07-14T18:00:00.001");
  assertFails([
    [RangeError, "2023, 2, 29", () => new DateTime(2023, 2, 29)],
    [RangeError, "99, 1, 1", () => new DateTime(99, 1, 1)],
    [RangeError, "24, 0", () => new DateTime(2024, 1, 1, 24)],
  ]);
});

test("an array is reached by its subscripts", () => {
  assert.deepEqual([grid.get(-1, 5), grid.get(1, 5), grid.get(-1, 6)], [1, null, Empty]);
  const made = new QuorlArray("String", [[1, 2]], ["a", "b"]);
  made.set(2, "c");
  assert.deepEqual([...made], ["a", "c"]);
  assertFails([
    [RangeError, "3 is not within 1 to 2", () => made.get(3)], [RangeError, "undefined", () => grid.get(0)],
    [RangeError, "hold 2 elements; 1", () => new QuorlArray("String", [[1, 2]], ["a"])],
    [TypeError, "not extensible", () => made.elements.push("d")], [RangeError, "bounds", () => new QuorlArray("String", [[2, 0]])],
  ]);
});
