import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import * as quorl from "../index.js";
import { assertFails, library, nothingIsAlive } from "./library.mjs";

const { ByRef, Currency, Quorl, QuorlError, named } = quorl;
const { Math, Strings, Regional } = library;
const catalogue = JSON.parse(readFileSync(new URL("../../docs/quorl.json", import.meta.url), "utf8"));

test("every class, member and enumeration of the catalogue is here under its name", () => {
  for (const { name, members } of catalogue.enumerations) {
    const values = Object.fromEntries(members.map((one) => [one.name, one.value]));
    assert.deepEqual(quorl[name], values);
    assert.ok(Object.isFrozen(quorl[name]));
    for (const one of members) assert.equal(quorl[one.name], one.value);
  }
  for (const { name, members } of catalogue.classes) {
    const object = library.create(name);
    for (const one of members) assert.ok(one.name in object, `${name}.${one.name}`);
    assert.equal(String(object), `[object ${name}]`);
    object.close();
  }
});

test("arguments are given by place, by name or not at all", () => {
  const table = [
    [["un deux trois", " ", 2], "deux"], [["un deux trois", undefined, 3], "trois"], [["un deux"], "un"],
    [[named({ index: 2, Text: "un deux" })], "deux"], [["un;deux", ";", named({ Index: 2 })], "deux"],
    [["un deux", named({ Separator: undefined, Index: 2 })], "deux"],
  ];
  for (const [given, token] of table) assert.equal(Strings.GetToken(...given), token);
});

test("properties are read, written and kept", () => {
  const money = new library.Money();
  money.Language = "FR";
  money.Value = new Currency("922337203685477.5807");
  assert.deepStrictEqual(money.Value, new Currency("922337203685477.5807"));
  assert.equal(money.ToText(new Currency("80")), "quatre-vingts");
  assert.equal(Regional.GetRegional(), undefined);
  money.close();
});

test("an argument is written back", () => {
  const key = new ByRef(".".charCodeAt(0));
  Regional.ConvertDecimalPoint(key);
  assert.equal(key.value, ",".charCodeAt(0));
});

test("wrong use names the member and the argument", () => {
  const money = new library.Money();
  const buffer = new library.RollBuffer();
  const closed = new library.Money();
  closed.close();
  closed.close();
  assertFails([
    [TypeError, "Math.RoundSup lacks its argument Nombre", () => Math.RoundSup()],
    [TypeError, "Math.RoundSup takes 2 arguments (Nombre, Nombredecimales); 3", () => Math.RoundSup(1, 2, 3)],
    [TypeError, "Math.RoundSup has no argument Autre; it has: Nombre, N", () => Math.RoundSup(named({ Autre: 1 }))],
    [TypeError, "Math.RoundSup was given its argument Nombre twice", () => Math.RoundSup(1, named({ Nombre: 1 }))],
    [TypeError, "Math.RoundSup, argument Nombre: a function", () => Math.RoundSup(() => 1)],
    [QuorlError, "Math.RoundSup: a required argument is Missing", () => Math.RoundSup(quorl.Missing)],
    [TypeError, "Money.Value, argument New_Value: a symbol", () => { money.Value = Symbol("x"); }],
    [TypeError, "Square", () => Math.Square(2)], [TypeError, "Unitt", () => { money.Unitt = "euro"; }],
    [TypeError, "Count", () => { buffer.Count = 2; }],
    [TypeError, "Money.Unit: this object is closed", () => closed.Unit],
    [TypeError, "this object is closed", () => buffer.AddItem(closed)],
    [TypeError, "Math.RoundSup belongs to an object", () => (0, Math.RoundSup)(1)],
    [TypeError, "Math is not a constructor", () => new library.Math()],
    [TypeError, "Math is a global class", () => new Math.constructor()],
    [TypeError, "no class Maths", () => library.create("Maths")],
    [TypeError, "no option memory; it has: folder", () => new Quorl({ memory: true })],
    [TypeError, "needs a userFolder", () => new Quorl({ machineFolder: "m" })],
    [TypeError, "either inMemory", () => new Quorl({ inMemory: true, userFolder: "u" })],
    [Error, "loaded from", () => new Quorl({ folder: "/nowhere" })],
    [QuorlError, "inMemory: too late", () => new Quorl({ inMemory: true })],
    [QuorlError, "locale xx", () => library.setLocale("xx")],
  ]);
  [money, buffer].forEach((one) => one.close());
});

test("a failure has its number, source, description and member", () => {
  const table = [
    [() => Math.RoundSup(1.21, -1), 5000, "Quorl.Math",
      "Le nombre de décimales doit être supérieur ou égal à 0.", "Math.RoundSup"],
    [() => Math.RoundSup("un"), 13, "Quorl.Runtime", "Incompatibilité de type.", "Math.RoundSup"],
    [() => library.Forms.SaveFormSettings({}, {}), 13, "Quorl.Runtime", "Incompatibilité de type.",
      "Forms.SaveFormSettings"],
  ];
  for (const [call, number, source, description, member] of table)
    assert.throws(call, { name: "QuorlError", number, source, description, member,
      message: `${source} (${number}): ${description}` });
  assert.throws(() => library.Forms.SaveFormSettings(null, {}), { number: 91 });
});

test("an object that was closed, and is still held, comes back as another", () => {
  const buffer = new library.RollBuffer();
  const money = new library.Money();
  buffer.AddItem(money);
  money.close();
  const again = buffer.Items(0);
  assert.ok(again instanceof library.Money && again !== money);
  assert.equal(buffer.Items(0), again);
  buffer.close();
  again.Unit = "euro";
  again.close();
  assert.ok(nothingIsAlive());
});

test("closing a hidden instance leaves the class at hand", () => {
  library.Dates.close();
  assert.equal(library.Dates.IsDateOrEmpty("2024-02-30"), false);
  assert.equal(library.Dates, library.Dates);
});
