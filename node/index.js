// Quorl for Node: the library's classes by name. What each member does is in lib/classes.d.ts.
import path from "node:path";
import { load, runtime } from "./lib/native.js";
import { require } from "./lib/errors.js";
import { classesByName, globalInstance, isClosed, newInstance } from "./lib/objects.js";
import { classes } from "./lib/catalogue.js";

const globals = new Map();

/** The library of this process. */
export class Quorl {
  constructor(options = {}) {
    const known = ["folder", "inMemory", "userFolder", "machineFolder", "locale", "screen"];
    const unknown = Object.keys(options).find((one) => !known.includes(one));
    if (unknown !== undefined)
      throw new TypeError(`Quorl has no option ${unknown}; it has: ${known.join(", ")}`);
    const { folder, inMemory = false, userFolder, machineFolder, locale, screen } = options;
    if (machineFolder !== undefined && userFolder === undefined)
      throw new TypeError("a machineFolder needs a userFolder beside it");
    if (inMemory && userFolder !== undefined)
      throw new TypeError("settings are either inMemory or in a userFolder");
    load(folder);
    if (inMemory) require(runtime.QuorlSetStore(null, null), "inMemory");
    else if (userFolder !== undefined) useFolders(userFolder, machineFolder);
    if (locale !== undefined) this.setLocale(locale);
    if (screen !== undefined) this.setScreen(...screen);
  }

  /** "fr-BE" and the like; "" is the system's again. */
  setLocale(name) {
    require(runtime.QuorlSetLocale(name), `locale ${name}`);
  }

  setScreen(width, height) {
    require(runtime.QuorlSetScreen(width, height), `screen ${width} by ${height}`);
  }

  /** A further instance of any class. */
  create(name) {
    return newInstance(name);
  }
}

function useFolders(user, machine) {
  const folders = [user, machine].map((one) => (one === undefined ? null : path.resolve(one)));
  require(runtime.QuorlSetStore(...folders), "userFolder");
}

const hidden = (name) => function () {
  let found = globals.get(name);
  if (!found || isClosed(found)) globals.set(name, (found = globalInstance(name)));
  return found;
};

for (const { name, isGlobal } of classes) {
  const access = isGlobal ? { get: hidden(name) } : { value: classesByName.get(name) };
  Object.defineProperty(Quorl.prototype, name, { ...access, enumerable: true });
}

export * from "./lib/values.js";
export { QuorlError } from "./lib/errors.js";
export { QuorlObject } from "./lib/objects.js";
export * from "./lib/enumerations.js";
