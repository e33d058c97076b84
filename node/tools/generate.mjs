// Writes lib/catalogue.js, lib/enumerations.js and lib/classes.d.ts from docs/quorl.json; with
// --check it only says whether they are what it would write.
import { readFileSync, writeFileSync } from "node:fs";

const here = new URL("../", import.meta.url);
const catalogue = JSON.parse(readFileSync(new URL("../docs/quorl.json", here), "utf8"));
const NOTE = "// Generated from docs/quorl.json by tools/generate.mjs; do not edit.\n";

// ------------------------------------------------------------------ members as this package has them

/** Get and put of a property as one; a get with arguments is a member of its own. */
function membersOf(described) {
  const members = new Map();
  for (const one of described.members) {
    if (one.kind === "method") members.set(one.name, one);
    else if (one.kind === "get" && one.arguments.length)
      members.set(one.name, { ...one, kind: "indexed" });
    else
      members.set(one.name,
        { name: one.name, kind: "property", ...members.get(one.name), [one.kind]: one });
  }
  return [...members.values()];
}

// ------------------------------------------------------------------------------------- the data --

const invocation = (one) => ({
  id: one.id,
  arguments: one.arguments.map(({ name, optional, type }) =>
    ({ name, optional, ...(type === "Object" && { takesObject: true }) })),
  returns: "result" in one,
});

function dataOf(member) {
  if (member.kind !== "property")
    return { name: member.name, kind: member.kind, ...invocation(member) };
  const { name, kind, get, put } = member;
  return { name, kind, get: get && invocation(get), put: put && invocation(put) };
}

function classData(described) {
  const { name, kind, identifier } = described;
  const rows = membersOf(described).map((one) => `      ${JSON.stringify(dataOf(one))},\n`).join("");
  return `  {\n    name: "${name}", isGlobal: ${kind === "global"}, identifier: "${identifier}",\n` +
    `    members: [\n${rows}    ],\n  },\n`;
}

function enumerationData({ name, members }) {
  const rows = members.map((one) => `  ${one.name}: ${one.value},\n`).join("");
  const names = members.map((one) => one.name).join(", ");
  return `export const ${name} = Object.freeze({\n${rows}});\nexport const { ${names} } = ${name};\n`;
}

const enumerations = `${NOTE}\n${catalogue.enumerations.map(enumerationData).join("\n")}`;
const data = `${NOTE}\nexport const classes = [\n${catalogue.classes.map(classData).join("")}];\n`;

// ------------------------------------------------------------------------------------ the types --

const RESULTS = {
  Int16: "number", Int32: "number", Double: "number", Currency: "Currency", Date: "DateTime",
  String: "string", Object: "object", Boolean: "boolean", Variant: "Value",
};
const ARGUMENTS = { ...RESULTS, Date: "DateTime | Date", Variant: "Argument" };

const resultType = (one) => (one ? one.enumeration ?? one.class ?? RESULTS[one.type] : "void");

function argumentType(one) {
  const type = one.enumeration ?? one.class ?? ARGUMENTS[one.type];
  if (one.by_reference) return `ByRef<${type}>`;
  return one.type === "Object" ? `${type} | null` : type;
}

const parameter = (one) => `${one.name}${one.optional ? "?" : ""}: ${argumentType(one)}`;

/** Everything by place, or the last of them by name, from any place on. */
function signatures(member) {
  const parameters = member.arguments.map(parameter);
  const byName = parameters.map((_, i) => {
    const places = member.arguments.slice(0, i).map((one) => `${one.name}: ${argumentType(one)}`);
    return [...places, `named: Named<{ ${parameters.slice(i).join("; ")} }>`];
  });
  return [parameters, ...byName].map((one) =>
    `  ${member.name}(${one.join(", ")}): ${resultType(member.result)};\n`).join("");
}

function comment({ help, arguments: given = [] }) {
  const defaults = given.filter((one) => "default" in one)
    .map((one) => `@param ${one.name} ${JSON.stringify(one.default)} when left out`);
  const lines = [...(help ? [help] : []), ...defaults];
  return lines.length ? `  /**\n${lines.map((one) => `   * ${one}\n`).join("")}   */\n` : "";
}

function propertyType({ name, get, put }) {
  if (!put) return `  readonly ${name}: ${resultType(get.result)};\n`;
  const given = argumentType(put.arguments[0]);
  if (given === resultType(get.result)) return `  ${name}: ${given};\n`;
  return `  get ${name}(): ${resultType(get.result)};\n  set ${name}(value: ${given});\n`;
}

const memberType = (member) => member.kind === "property"
  ? comment(member.get) + propertyType(member)
  : comment(member) + signatures(member);

const classType = (described) =>
  `export interface ${described.name} extends QuorlObject {\n` +
  `${membersOf(described).map(memberType).join("")}}\n\n`;

const enumerationType = ({ name, members }) =>
  `export declare const ${name}: Readonly<{\n` +
  `${members.map((one) => `  ${one.name}: ${one.value};\n`).join("")}}>;\n` +
  `export type ${name} = (typeof ${name})[keyof typeof ${name}];\n` +
  `${members.map((one) => `export declare const ${one.name}: ${one.value};\n`).join("")}\n`;

const doorType = ({ name, kind }) => kind === "global"
  ? `  /** The one instance of this global class. */\n  readonly ${name}: ${name};\n`
  : `  readonly ${name}: new () => ${name};\n`;

const types = `${NOTE}
import type { Argument, ByRef, Currency, DateTime, Named, QuorlObject, Value } from "../index.js";

${catalogue.enumerations.map(enumerationType).join("")}${catalogue.classes.map(classType).join("")}\
/** The library's classes by name. */
export interface Classes {
${catalogue.classes.map(doorType).join("")}}

/** Every class by name, for a further instance. */
export interface Instances {
${catalogue.classes.map(({ name }) => `  ${name}: ${name};\n`).join("")}}
`;

// -------------------------------------------------------------------------------------------------

const outputs = Object.entries({
  "lib/catalogue.js": data, "lib/enumerations.js": enumerations, "lib/classes.d.ts": types,
});
let isCurrent = true;
for (const [file, text] of outputs) {
  const url = new URL(file, here);
  if (!process.argv.includes("--check")) writeFileSync(url, text);
  else if (readFileSync(url, "utf8") !== text) {
    console.error(`node/${file} is out of date: npm run generate`);
    isCurrent = false;
  }
}
process.exitCode = isCurrent ? 0 : 1;
