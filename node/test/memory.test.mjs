import assert from "node:assert/strict";
import { test } from "node:test";
import v8 from "node:v8";
import vm from "node:vm";
import koffi from "koffi";
import { Currency, QuorlError } from "../index.js";
import { library, nothingIsAlive } from "./library.mjs";

const { ComboBoxEx, Math, Strings } = library;
const TEXT = "x".repeat(2000);
const combo = { ListCount: 2, List: ["un", "deux"], ListIndex: -1, ItemData: () => 1 };

const succeeding = [
  () => Math.RoundSup(1.21, 1), () => Strings.StrTran(TEXT, "x", "yy"),
  () => ComboBoxEx.CmbSelectMatchString(combo, "deux"), () => ComboBoxEx.CmbCurrentItemData(combo, 0),
  () => library.create("Regional").close(), () => Math.Min([TEXT], null),
  () => {
    const buffer = new library.RollBuffer();
    for (const item of [TEXT, combo, buffer.Count, [TEXT, combo], new Uint8Array(2000)]) buffer.AddItem(item);
    assert.equal(buffer.Items(1), combo);
    buffer.close();
  },
  () => {
    const money = new library.Money();
    money.Language = "FR";
    money.ToText(new Currency("80"));
    money.close();
  },
];
const failing = [
  () => Math.RoundSup(1.21, -1), () => Strings.StrTran(TEXT, TEXT, () => 1),
  () => Math.Min([TEXT, combo, Symbol("x")], TEXT), () => ComboBoxEx.CmbSelectItemData({ Name: TEXT }, 1),
  () => ComboBoxEx.CmbSelectItemData({ get ListCount() { throw new QuorlError(1004, TEXT, TEXT); } }, 1),
];

function mixedCalls(count) {
  let failures = 0;
  for (let i = 0; i < count; ++i) {
    try {
      (i % 5 ? succeeding[i % succeeding.length] : failing[(i / 5) % failing.length])();
    } catch {
      ++failures;
    }
  }
  return failures;
}

v8.setFlagsFromString("--expose-gc");
const gc = vm.runInNewContext("gc");
const settled = async () => {
  for (let i = 0; i < 5; ++i) await new Promise((done) => setImmediate(done, gc()));
};

// What malloc has given out: exact where the size of the process also tells of JavaScript's own heap.
const FIELDS = ["arena", "ordblks", "smblks", "hblks", "hblkhd", "usmblks", "fsmblks", "uordblks", "fordblks", "keepcost"];
const info = koffi.struct(Object.fromEntries(FIELDS.map((name) => [name, "size_t"])));
const mallinfo2 = koffi.load("libc.so.6").func("mallinfo2", info, []);
const bytesInUse = () => Number(mallinfo2().uordblks) + Number(mallinfo2().hblkhd);

test("ten thousand mixed calls, a fifth failing, leave memory flat and nothing alive", async () => {
  mixedCalls(10000);
  const growths = [];
  for (let round = 0; round < 4; ++round) {
    await settled();
    const before = bytesInUse();
    assert.equal(mixedCalls(10000), 2000);
    await settled();
    growths.push(bytesInUse() - before);
  }
  // The engine's own work makes a round grow now and then; a leak makes each of them grow.
  assert.ok(globalThis.Math.min(...growths) < 65536, `memory has grown by ${growths} bytes`);
  assert.ok(nothingIsAlive());
});

test("what is forgotten is given back", async () => {
  for (let i = 0; i < 100; ++i) new library.RollBuffer().AddItem({});
  assert.ok(!nothingIsAlive());
  for (let i = 0; i < 100 && !nothingIsAlive(); ++i) await settled();
  assert.ok(nothingIsAlive());
});
