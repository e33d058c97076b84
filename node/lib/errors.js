// Failures, and the codes in which they cross.

export const S_OK = 0;
export const E_NOINTERFACE = 0x80004002 | 0;
export const E_POINTER = 0x80004003 | 0;
export const E_UNEXPECTED = 0x8000ffff | 0;
export const MEMBER_NOT_FOUND = 0x80020003 | 0;
export const PARAMETER_NOT_FOUND = 0x80020004 | 0;
export const UNKNOWN_NAME = 0x80020006 | 0;
export const EXCEPTION = 0x80020009 | 0;
export const BAD_INDEX = 0x8002000b | 0;

const MEANINGS = new Map([
  [E_UNEXPECTED, "too late, or not in this state"],
  [0x8007000e | 0, "memory ran out"],
  [0x80070057 | 0, "an argument out of its contract"],
  [0x80020005 | 0, "a value of no known type"],
  [0x8002000f | 0, "a required argument is Missing"],
  [0x80040111 | 0, "no such class, or one that is not global"],
]);

/** A failure of the library or of a host object. */
export class QuorlError extends Error {
  constructor(number, source, description, options) {
    if (!Number.isInteger(number) || number !== (number | 0))
      throw new RangeError("the number of a QuorlError is a whole number of 32 bits");
    super(`${source} (${number}): ${description}`, options);
    this.number = number;
    this.source = String(source);
    this.description = String(description);
  }
}
Object.defineProperty(QuorlError.prototype, "name", { value: "QuorlError" });

const NUMBERED = 0x800a;

export const codeOf = (number) =>
  (number >= 0 && number <= 0xffff ? (NUMBERED << 16) | number : number);

export const numberOf = (code) => (code >>> 16 === NUMBERED ? code & 0xffff : code);

/** Fails unless `code` is that of a success; for calls that carry no record of their own. */
export function require(code, what) {
  if (code >= 0) return;
  const meaning = MEANINGS.get(code) ?? `0x${(code >>> 0).toString(16).toUpperCase()}`;
  throw new QuorlError(numberOf(code), "Quorl", `${what}: ${meaning}`);
}

/** What is wrong with a value, under the name of the place that it was given for. */
export function wrongValue(place, error) {
  const Type = error instanceof RangeError ? RangeError : TypeError;
  return new Type(`${place}: ${error.message}`, { cause: error });
}
