import assert from "node:assert/strict";
import { afterEach, test } from "node:test";
import { Empty, QuorlArray, QuorlError, defaultMember } from "../index.js";
import { lendHostObject } from "../lib/host_objects.js";
import * as native from "../lib/native.js";
import { assertFails, library, libraryHoldsObjects, nothingIsAlive } from "./library.mjs";

const { ComboBoxEx, DbLib } = library;
const select = (combo) => ComboBoxEx.CmbSelectMatchString(combo, "deux");
const data = (combo) => ComboBoxEx.CmbCurrentItemData(combo, -1);

afterEach(() => assert.ok(nothingIsAlive(), "an object is still held"));

test("members are found in any case, as fields, accessors, methods and lists", () => {
  class Base {
    get listcount() { return 2; }
    List(index) { return ["un", "deux"][index]; }
  }
  class Derived extends Base {
    LISTINDEX = -1;
    itemData = [10, 20];
  }
  const combos = [
    new Derived(), Object.assign(Object.create(null), { ListCount: () => 2, List: ["un", "deux"], ListIndex: -1,
      ItemData: (index) => 10 * (index + 1) }),
    { ListCount: 2, List: new QuorlArray("String", [[0, 1]], ["un", "deux"]), ListIndex: -1,
      ItemData: { [defaultMember]: (index) => 10 * (index + 1) } },
  ];
  for (const combo of combos) {
    select(combo);
    assert.equal(combo.ListIndex ?? combo.LISTINDEX, 1);
    assert.equal(data(combo), 20);
  }
});

test("the default member answers a use without a name", () => {
  const fields = { Count: 2, [defaultMember]: (index) => ({ Name: ["Code", "Prix"][index] }) };
  assert.equal(DbLib.FieldPos("Prix", fields), 2);
  assert.equal(DbLib.StrFieldValue({ [defaultMember]: "valeur" }), "valeur");
});

test("what a host's own code throws arrives as itself", () => {
  const thrown = [new TypeError("mine"), new QuorlError(1004, "Combo", "fermée"), new QuorlError(-5, "", ""),
    Object.assign(new Error("x"), { name: "Own" }), "a text", undefined];
  for (const one of thrown) {
    const combo = { get ListCount() { throw one; } };
    let arrived = Empty;
    try { select(combo); } catch (error) { arrived = error; }
    assert.equal(arrived, one);
  }
});

test("wrong objects fail by what is wrong with them", () => {
  const readOnly = Object.freeze({ ListCount: 2, List: ["un", "deux"], ListIndex: -1 });
  assertFails([
    [QuorlError, "438", () => select({})], [QuorlError, "438", () => DbLib.FieldPos("x", { Count: 1 })],
    [RangeError, "List has no element 0", () => select({ ListCount: 1, List: [], ListIndex: -1 })],
    [TypeError, "List takes no argument", () => select({ ListCount: 1, List: 5, ListIndex: -1 })],
    [TypeError, "read only property 'ListIndex'", () => select(readOnly)],
    [TypeError, "a promise is no value", () => select({ async ListCount() { return 1; } })],
    [Error, "trap", () => select(new Proxy({}, { has() { throw new Error("trap"); } }))],
  ]);
});

test("a failure that the library passes over is not the next one's", () => {
  const passedOver = new QuorlError(5000, "Quorl.Math", "Le nombre de décimales doit être supérieur ou égal à 0.");
  const registry = new library.Registry();
  registry.InitApp("Maison", "Caisse");
  const form = { Name: "f", WindowState: 0, Left: 0, Top: 0, Width: 1, Height: 1, MDIChild: false,
    get BorderStyle() { throw passedOver; } };
  library.Forms.SaveFormSettings(registry, form);
  assert.throws(() => library.Forms.GetFormSettings(registry, form), { number: 438 });
  assert.throws(() => library.Math.RoundSup(1, -1), (error) => error.number === 5000 && error !== passedOver);
  registry.close();
});

test("an object that is closed during its own call lives until the call ends", () => {
  const money = new library.Money();
  money.Language = "FR";
  const amount = { get [defaultMember]() {
    money.close();
    assert.ok(libraryHoldsObjects());
    return 80;
  } };
  assert.equal(money.ToText(amount), "quatre-vingts");
  assert.ok(!libraryHoldsObjects());
});

test("the slots of a host object hold to the contract", () => {
  const memory = native.newMemory(32);
  const pointer = lendHostObject({ A: 1 });
  const call = (place, ...given) => native.slotOf(pointer, place)(pointer, ...given);
  const askFor = (text) =>
    [call(native.QUERY_INTERFACE, native.identifierBytes(text), memory.address), native.readPointer(memory.address)];
  assert.deepEqual(askFor("{00020400-0000-0000-C000-000000000046}"), [0, pointer]);
  assert.deepEqual(askFor("{4323591E-72F8-48A5-BD24-4A2DEAA3BA33}"), [0x80004002 | 0, 0n]);
  assert.deepEqual([call(native.ADD_REF), call(native.RELEASE), call(native.RELEASE)], [3, 2, 1]);
  assert.equal(call(native.GET_TYPE_INFO, 0, 0, memory.address), 0x8002000b | 0);
  for (const unknown of [-1, 0, 99999])
    assert.equal(call(native.INVOKE, unknown, null, 0, 2, memory.address, null, null, null), 0x80020003 | 0);
  assert.equal(call(native.RELEASE), 0);
});

test("a host's method may call the library and fail there", () => {
  const buffer = new library.RollBuffer();
  const combo = { List: ["un", "deux"], ListIndex: -1, get ListCount() {
    assert.throws(() => library.Math.RoundSup(1, -1), { number: 5000 });
    assert.throws(() => select({ get ListCount() { throw new Error("inner"); } }), /inner/);
    buffer.AddItem(combo);
    buffer.close();
    return 2;
  } };
  select(combo);
  assert.equal(combo.ListIndex, 1);
});

test("calls without end are stopped", () => {
  const combo = { ListIndex: 0, ItemData: () => data(combo) };
  assert.throws(() => data(combo), RangeError);
  const plain = { ListIndex: 0, ItemData: () => 7 };
  assert.equal(data(plain), 7);
});
