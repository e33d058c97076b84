// The processor time of a call, beside that of a bare call through koffi in the same run:
//
//   QUORL_LIBRARY=build/run node node/bench/call.mjs
import path from "node:path";
import koffi from "koffi";
import { Currency, Quorl, named } from "../index.js";

const library = new Quorl({ inMemory: true });
const strings = library.Strings;
const money = new library.Money();
money.Language = "FR";
const amount = new Currency("1280.21");
const combo = { ListIndex: -1 };
const bare = koffi.load(path.join(process.env.QUORL_LIBRARY ?? "/usr/local/lib", "libquorl_runtime.so"))
  .func("SysStringLen", "uint32", ["void*"]);
const bareCall = () => bare(0n);

const CALLS = {
  "a bare call through koffi": bareCall,
  "Math.RoundSup(1.21, 1)": () => library.Math.RoundSup(1.21, 1),
  "Strings.GetToken, kept object": () => strings.GetToken("un deux trois", " ", 2),
  "library.Strings.GetToken": () => library.Strings.GetToken("un deux trois", " ", 2),
  "the same, arguments by name": () => strings.GetToken(named({ Text: "un deux trois", Index: 2 })),
  "Money.SubUnitRow, read": () => money.SubUnitRow,
  "Money.ToText": () => money.ToText(amount),
  "a call that reads a host object once": () => library.ComboBoxEx.CmbCurrentItemData(combo, 1),
};

const ROUNDS = 5;
const COUNT = 100000;

function nanoseconds(call) {
  let best = Infinity;
  for (let round = 0; round < ROUNDS; ++round) {
    const start = process.cpuUsage();
    for (let i = 0; i < COUNT; ++i) call();
    const { user, system } = process.cpuUsage(start);
    best = Math.min(best, (user + system) * 1000 / COUNT);
  }
  return best;
}

nanoseconds(bareCall);  // for the compiler
const base = nanoseconds(bareCall);
for (const [name, call] of Object.entries(CALLS)) {
  const time = nanoseconds(call);
  console.log(`${name.padEnd(40)} ${time.toFixed(0).padStart(6)} ns ${(time / base).toFixed(1).padStart(6)} x`);
}
