// Rounding and arithmetic. Results are never NaN or infinite: what would be raises failure 6.
#pragma once

#include "quorl/runtime/variant.hpp"

namespace quorl {

/// Nearest value with `decimals` decimals, ties to even, decided on the exact binary value:
/// `RoundToDecimals(28.999999999999996, 4)` is 29. `decimals` from 0 to 15. Failure 6 for NaN and
/// infinities.
QUORL_API Double RoundToDecimals(Double value, int decimals);

/// Toward zero. Failure 6 if the cut value does not fit an Int32, and for NaN and infinities.
QUORL_API Int32 TruncateToInt32(Double value);

/// The Double nearest to 10 to a power; 0 below -323. Failure 6 above 308.
QUORL_API Double PowerOfTen(int exponent);

/// Failure 6 where the result is beyond the range, and for NaN and infinities.
QUORL_API Double Multiply(Double left, Double right);
/// Zero by zero is failure 6, anything else by zero failure 11, NaN too. Otherwise failure 6 as for
/// multiplication.
QUORL_API Double Divide(Double left, Double right);

/// Variant multiplication. Null on either side gives Null. Empty and Boolean count as Int16, a
/// numeric text and a Date as Double. The widest type wins: Byte, Int16, Int32, Single, Currency,
/// Double; a Single with an Int32 gives a Double, which alone holds both. A whole-number result
/// that overflows moves to the next wider whole-number type and at the end to Double; a Currency
/// rounds half to even at its fourth decimal. An object counts as the value of its default member,
/// whose failures pass. Failure 6 for a Single, Currency, Double or text beyond its range, and for
/// NaN and infinities; 13 for a text that is no number, arrays, Missing, and objects without a
/// plain value; 7 where memory does not hold an object's value.
QUORL_API Variant Multiply(const Variant& left, const Variant& right);

/// Variant division: a Single where one side is a Single and the other a Single, an Int16 or
/// narrower, otherwise a Double. Failures 6 and 11 for division by zero as above; Null and all else
/// as for multiplication.
QUORL_API Variant Divide(const Variant& left, const Variant& right);

}  // namespace quorl
