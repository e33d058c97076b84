// Commercial rounding, choices between two values, and mappings between "no value", zero and one.
//
// The rounding family scales a number to the wanted decimals, cleans the scaled value by rounding
// it to 4 decimals (half to even), and only then decides: so 0.29 cut to 2 decimals stays 0.29,
// although 0.29 times 100 is 28.999999999999996 in a Double, and 1.005 rounded to 2 is 1.01.
//
// A global class: no state, static members, usable from any thread.
#pragma once

#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// Common to the rounding members: `Nombredecimales` is the number of decimals to keep, from 0 to
/// 9, and failure 6 above. A result is never a negative zero. Failure 6 also for NaN, for
/// infinities, and for a number that lies beyond a Double when it is scaled.
///
/// A Variant `Nombre` may be anything that multiplies: a numeric text, Currency, Date, Boolean;
/// Empty is 0; an object counts as the value of its default member, whose failures pass. The result
/// for Null is Null, whatever the decimals; otherwise a Double. Failure 13 for a text that is no
/// number, an array, Missing, an empty reference and an object without a plain value; 6 for a
/// Currency, and in `Round2019` a Single, that overflows when it is scaled; 7 where memory does not
/// hold an object's value.
///
/// `StdRound` and `StdTruncate` decide on a Currency's own digits, `Round2019` on the nearest
/// Double. The half that rounding to the nearest adds to any other number is added to a Double:
/// from 2 to the power of 52 on, where a Double holds whole numbers alone, an odd number may become
/// the even one above it.
///
///     Math::StdRound(1.005, 2);   // 1.01
///     Math::RoundSup(-1.23, 1);   // -1.3
///     Math::Round2019(12.33);     // 12.35
class Math {
 public:
  /// To the nearest, a tie away from zero: -2.5 to 0 decimals is -3. Failure 6 for decimals below
  /// 0; a text that is no number is failure 13 before that.
  static Variant StdRound(const Variant& Nombre, Int16 Nombredecimales = 1);
  /// The number that `StdRound` gives, for a plain Double. Failure 6 for decimals below 0.
  static Double FixRound(Double Nombre, Int16 Nombredecimales = 1);

  /// Away from zero unless nothing is cut: `RoundSup(-1.23, 1)` is -1.3. A rest below 0.00005 of
  /// the last kept decimal does not count (1.00001 gives 1), except where it is all there is
  /// (0.00001 gives 1). 0 gives 0, with too many decimals too.
  /// Failure 5000 for decimals below 0; 6 where the scaled value, or the result in units of the
  /// last kept decimal, leaves an Int32: with 2 decimals beyond 21474836.47.
  static Double RoundSup(Double Nombre, Int16 Nombredecimales = 0);
  /// Toward zero: `RoundInf(-1.23, 1)` is -1.2. Failures as for `RoundSup`.
  static Double RoundInf(Double Nombre, Int16 Nombredecimales = 0);

  /// `Expression1` if it is at most (for `Max`: at least) `Expression2` by the library's
  /// comparison, else `Expression2`; so the first one on a tie, the second one with Null on either
  /// side or NaN. The chosen value keeps its type. Failure 13, unless the other side is Null, for
  /// an object without a plain value, an array and Missing; 7 where memory does not hold the
  /// result; those of an object's default member.
  static Variant Min(const Variant& Expression1, const Variant& Expression2);
  static Variant Max(const Variant& Expression1, const Variant& Expression2);

  /// `Default` for Empty, Null and 0, any other `Value` as it is. The four mappings know 0 in any
  /// type (False and the text "0" too, and an object whose default member gives one). Failure 13
  /// for a text that is no number, the empty one included, an array, Missing and an object without
  /// a plain value; 6 for a text that is a number beyond a Double; 7 where memory does not hold the
  /// result; those of an object's default member.
  static Variant IsNullOrZero(const Variant& Value, const Variant& Default);
  /// Null for Empty, Null and 0, any other `Value` as it is.
  static Variant ZeroAsNull(const Variant& Value);
  /// Null for Empty, Null, 0 and 1, any other `Value` as it is.
  static Variant ZeroOrOneAsNull(const Variant& Value);
  /// Int16 1 for Empty, Null and 0, any other `Value` as it is.
  static Variant NullOrZeroAsOne(const Variant& Value);

  /// Toward zero: -1.25 to 1 decimal is -1.2. Failure 6 for decimals below 0, as for `StdRound`.
  static Variant StdTruncate(const Variant& Nombre, Int16 Nombredecimales = 1);
  /// To the nearest multiple of 0.05, hundredths being whole first: 12.3299 counts as 12.32 and
  /// gives 12.3. Up to 0.05 in size to the nearest hundredth, a tie away from zero: 0.045 gives
  /// 0.05.
  static Variant Round2019(const Variant& Nombre);
};

}  // namespace quorl
