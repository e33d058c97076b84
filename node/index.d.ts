/// <reference lib="esnext.disposable" />
import type { Classes, Instances } from "./lib/classes.js";

export * from "./lib/classes.js";

// ---------------------------------------------------------------------------------- the library --

export interface Options {
  /** The folder of libquorl.so and libquorl_runtime.so, where QUORL_LIBRARY or the usual folders do
   * not have them. */
  folder?: string;
  /** Settings live as long as the process. */
  inMemory?: boolean;
  /** Folders of the user's settings and, with it alone, of the machine's, in place of the usual
   * ones. Not with `inMemory`. */
  userFolder?: string;
  machineFolder?: string;
  /** "fr-BE" and the like. */
  locale?: string;
  /** Width and height of the screen on which forms are centred. */
  screen?: [width: number, height: number];
}

/**
 * The library of this process. Settings, locale and screen are the process's, whichever Quorl they
 * were given to; where settings are kept is given before they are first used.
 */
export declare class Quorl {
  /** Throws an Error where the libraries are not found, a TypeError for an unknown option and for
   * some that exclude each other, a QuorlError for an unknown locale, or for settings that are in
   * use already. */
  constructor(options?: Options);
  /** "fr-BE" and the like; "" is the system's again. */
  setLocale(name: string): void;
  setScreen(width: number, height: number): void;
  /** A further instance of any class. */
  create<Name extends keyof Instances>(name: Name): Instances[Name];
}
export interface Quorl extends Classes {}

/** An object of the library. It is given back when it is closed, or some time after its last use. */
export declare class QuorlObject {
  protected constructor();
  /** Gives the object back at once; using it afterwards is a TypeError. A call of it that is under
   * way ends first. */
  close(): void;
  [Symbol.dispose](): void;
}

/** A failure of the library or of a host object. */
export declare class QuorlError extends Error {
  /** A host object throws one to fail with a number of its own, a whole number of 32 bits. */
  constructor(number: number, source: string, description: string, options?: { cause?: unknown });
  readonly number: number;
  readonly source: string;
  readonly description: string;
  /** The member that was called, "Math.RoundSup"; absent where a host made the failure. */
  readonly member?: string;
}

// --------------------------------------------------------------------------------------- values --

/** A value never assigned. */
export declare const Empty: unique symbol;
/** An argument left out, as a value of its own. */
export declare const Missing: unique symbol;
/** The key of a host object's default member: what is read when it is used without a name. */
export declare const defaultMember: unique symbol;

/** What comes from the library; null is Null, and an object is one of the library or of the host. */
export type Value =
  | null | typeof Empty | typeof Missing | boolean | number | string | Currency | DateTime
  | Uint8Array | Value[] | QuorlArray | object;

/** What goes to it: `undefined` leaves an argument out; a BigInt is a whole number, and a RangeError
 * beyond 2^53; a Date is what the local clock shows then. */
export type Argument = Value | undefined | bigint | Date;

/** An amount with four decimals, exactly, from -922337203685477.5808 to 922337203685477.5807. */
export declare class Currency {
  /** From a text ("-12.5") or from whole units. A SyntaxError for a text that is no amount, a
   * RangeError for more than four decimals and beyond the range, a TypeError for a number. */
  constructor(value: string | bigint);
  static ofTenThousandths(count: bigint): Currency;
  readonly tenThousandths: bigint;
  /** "-12.5"; what the constructor takes. */
  toString(): string;
  toJSON(): string;
}

/**
 * A date with its time of day, as a clock on the wall shows it, from the year 100 to 9999. What
 * comes from the library keeps its `days` bit for bit; the fields are those of the nearest
 * millisecond.
 */
export declare class DateTime {
  /** A RangeError for a date or time that does not exist. */
  constructor(year: number, month: number, day: number, hour?: number, minute?: number,
    second?: number, millisecond?: number);
  static ofDays(days: number): DateTime;
  /** What the local clock shows at the moment `date`. */
  static from(date: Date): DateTime;
  /** Days from 1899-12-30, the time of day their fraction: -1.25 is 1899-12-29 06:00. */
  readonly days: number;
  readonly year: number;
  readonly month: number;
  readonly day: number;
  readonly hour: number;
  readonly minute: number;
  readonly second: number;
  readonly millisecond: number;
  /** The moment when the local clock shows this. */
  toDate(): Date;
  /** "2024-02-29T13:30:00.000" */
  toString(): string;
  toJSON(): string;
}

export type ElementType =
  | "Int16" | "Int32" | "Single" | "Double" | "Currency" | "Date" | "String" | "Object" | "Boolean"
  | "Variant" | "Byte";

/**
 * An array with its element type and its bounds. One of Variants counted from 0 is an Array, one of
 * bytes counted from 0 a Uint8Array; every other one is a QuorlArray.
 */
export declare class QuorlArray implements Iterable<Value> {
  /** `bounds` are [lower, upper] for each dimension, leftmost first. A RangeError where they do not
   * hold as many elements as are given. */
  constructor(type: ElementType, bounds: [number, number][], elements?: Iterable<Argument>);
  readonly type: ElementType;
  readonly bounds: readonly (readonly [number, number])[];
  /** All of them in one row, the leftmost subscript running fastest. */
  readonly elements: Value[];
  readonly length: number;
  /** A RangeError for a subscript out of bounds. */
  get(...subscripts: number[]): Value;
  set(...subscriptsAndValue: [...subscripts: number[], value: Argument]): void;
  [Symbol.iterator](): IterableIterator<Value>;
}

/** An argument that the member writes back: afterwards `value` is what it left there. */
export declare class ByRef<Held> {
  constructor(value: Held);
  value: Held;
}

/** What named() makes. */
export declare class Named<Values extends object> {
  constructor(values: Values);
  readonly values: Values;
}

/**
 * Arguments by name, as the last argument of a call: GetToken(named({ Text: "un deux", Index: 2 })).
 * An object without named() is an object of the host's.
 */
export declare function named<Values extends object>(values: Values): Named<Values>;
