// Values that JavaScript has no type of its own for.

/** A value never assigned. */
export const Empty = Symbol("Empty");

/** An argument left out, as a value of its own. */
export const Missing = Symbol("Missing");

/** The key of a host object's default member: what is read when it is used without a name. */
export const defaultMember = Symbol("quorl.defaultMember");

/** An argument that the member writes back: afterwards `value` is what it left there. */
export class ByRef {
  constructor(value) {
    this.value = value;
    Object.seal(this);
  }
}

/** Arguments by name, as the last argument of a call: `named({ Text: "un deux", Index: 2 })`. */
export class Named {
  constructor(values) {
    if (typeof values !== "object" || values === null)
      throw new TypeError("named() takes an object of arguments by name");
    this.values = values;
  }
}

export const named = (values) => new Named(values);

const SCALE = 10000n;
const AMOUNT = /^([+-]?)(\d+)(?:\.(\d+))?$/;

function tenThousandthsOf(text) {
  const [, sign, whole, decimals = ""] =
    AMOUNT.exec(text) ?? fail(SyntaxError, `"${text}" is no amount`);
  const kept = decimals.replace(/0+$/, "").padEnd(4, "0");
  if (kept.length > 4) fail(RangeError, `"${text}" has more than four decimals`);
  const size = BigInt(whole) * SCALE + BigInt(kept);
  return sign === "-" ? -size : size;
}

function fail(Type, message) {
  throw new Type(message);
}

/** An amount with four decimals, exactly; from a text or from whole units as a BigInt. */
export class Currency {
  constructor(value) {
    if (typeof value === "bigint") value = value * SCALE;
    else if (typeof value === "string") value = tenThousandthsOf(value);
    else fail(TypeError, "a Currency is made of a text or a BigInt, never of a number");
    return Currency.ofTenThousandths(value);
  }

  static ofTenThousandths(count) {
    if (BigInt.asIntN(64, count) !== count) fail(RangeError, "the amount is beyond a Currency");
    const made = Object.create(Currency.prototype);
    made.tenThousandths = count;
    return Object.freeze(made);
  }

  toString() {
    const size = this.tenThousandths < 0n ? -this.tenThousandths : this.tenThousandths;
    const decimals = String(size % SCALE).padStart(4, "0").replace(/0+$/, "");
    const sign = this.tenThousandths < 0n ? "-" : "";
    return `${sign}${size / SCALE}${decimals && "."}${decimals}`;
  }

  toJSON() {
    return this.toString();
  }

  // `+` and `<` would go through texts or numbers without a word; tenThousandths does not.
  [Symbol.toPrimitive](hint) {
    if (hint === "string") return this.toString();
    throw new TypeError("a Currency is no number: calculate with its tenThousandths");
  }
}

const DAY = 86400000;
const DAY_ZERO = Date.UTC(1899, 11, 30);

/** The clock's reading, which has no zone, as a Date whose UTC fields are the reading's. */
const readingOf = (days) => {
  const whole = Math.trunc(days);
  return new Date(DAY_ZERO + whole * DAY + Math.round(Math.abs(days - whole) * DAY));
};

/**
 * A date with its time of day, as a clock on the wall shows it: `days` from 1899-12-30, the time of
 * day its fraction (of a day before, too: -1.25 is 1899-12-29 06:00).
 */
export class DateTime {
  constructor(year, month, day, hour = 0, minute = 0, second = 0, millisecond = 0) {
    const date = new Date(0);
    date.setUTCFullYear(year, month - 1, day);
    date.setUTCHours(hour, minute, second, millisecond);
    const given = [year, month, day, hour, minute, second, millisecond];
    const kept = [date.getUTCFullYear(), date.getUTCMonth() + 1, date.getUTCDate(),
      date.getUTCHours(), date.getUTCMinutes(), date.getUTCSeconds(), date.getUTCMilliseconds()];
    if (year < 100 || year > 9999 || given.some((one, i) => one !== kept[i]))
      fail(RangeError, `${given.join(", ")} is no date from the year 100 to 9999`);
    const apart = date.getTime() - DAY_ZERO;
    const whole = Math.floor(apart / DAY);
    const time = (apart - whole * DAY) / DAY;
    return DateTime.ofDays(whole < 0 ? whole - time : whole + time);
  }

  static ofDays(days) {
    if (typeof days !== "number") fail(TypeError, "days are a number");
    const made = Object.create(DateTime.prototype);
    made.days = days;
    return Object.freeze(made);
  }

  /** What the local clock shows at the moment `date`. */
  static from(date) {
    return new DateTime(date.getFullYear(), date.getMonth() + 1, date.getDate(), date.getHours(),
      date.getMinutes(), date.getSeconds(), date.getMilliseconds());
  }

  get year() { return readingOf(this.days).getUTCFullYear(); }
  get month() { return readingOf(this.days).getUTCMonth() + 1; }
  get day() { return readingOf(this.days).getUTCDate(); }
  get hour() { return readingOf(this.days).getUTCHours(); }
  get minute() { return readingOf(this.days).getUTCMinutes(); }
  get second() { return readingOf(this.days).getUTCSeconds(); }
  get millisecond() { return readingOf(this.days).getUTCMilliseconds(); }

  /** The moment when the local clock shows this. */
  toDate() {
    const date = new Date(0);
    date.setFullYear(this.year, this.month - 1, this.day);
    date.setHours(this.hour, this.minute, this.second, this.millisecond);
    return date;
  }

  toString() {
    const reading = readingOf(this.days);
    return Number.isNaN(reading.getTime()) ? `${this.days} days`
      : reading.toISOString().slice(0, -1);
  }

  toJSON() {
    return this.toString();
  }
}

/**
 * An array with its element type and its bounds, `[[lower, upper], ...]`, leftmost first. `elements`
 * has them all in one row, the leftmost subscript running fastest. A plain array of any values
 * counted from 0 is an Array, one of bytes a Uint8Array.
 */
export class QuorlArray {
  constructor(type, bounds, elements) {
    const counts = bounds.map(([lower, upper]) => upper - lower + 1);
    if (!counts.length || counts.some((count) => !Number.isInteger(count) || count < 0))
      fail(RangeError, "bounds are pairs of whole numbers, the lower first");
    const count = counts.reduce((product, one) => product * one, 1);
    const row = elements === undefined ? new Array(count).fill(Empty) : [...elements];
    if (row.length !== count)
      fail(RangeError, `these bounds hold ${count} elements; ${row.length} were given`);
    this.type = type;
    this.bounds = Object.freeze(bounds.map(([lower, upper]) => Object.freeze([lower, upper])));
    this.elements = Object.seal(row);
    Object.freeze(this);
  }

  get length() {
    return this.elements.length;
  }

  #place(subscripts) {
    let place = 0;
    let step = 1;
    this.bounds.forEach(([lower, upper], i) => {
      const at = subscripts[i];
      if (!Number.isInteger(at) || at < lower || at > upper)
        fail(RangeError, `subscript ${String(at)} is not within ${lower} to ${upper}`);
      place += (at - lower) * step;
      step *= upper - lower + 1;
    });
    return place;
  }

  get(...subscripts) {
    return this.elements[this.#place(subscripts)];
  }

  set(...subscriptsAndValue) {
    const value = subscriptsAndValue.pop();
    this.elements[this.#place(subscriptsAndValue)] = value;
  }

  [Symbol.iterator]() {
    return this.elements.values();
  }
}
