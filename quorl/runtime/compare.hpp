// Comparison by the library's rules. Each function gives an ordering to be tested against 0
// (`Compare(a, b) <= 0`); with Null on either side the ordering is unordered, so that every test
// but != is false. NaN is unordered too.
//
// Common to all: an object counts as the value of its default member, whose failures pass; it is
// not asked for beside Null. Failure 13, unless the other side is Null, for objects without a plain
// value, arrays and Missing; 7 where memory is short. Texts compare by code unit.
#pragma once

#include <compare>

#include "quorl/runtime/variant.hpp"

namespace quorl {

/// Variant against Variant: numbers by number (True is -1, a date its days), texts by text, any
/// number below any text. Empty is 0 beside a number and the empty text beside a text; two Empty
/// are equal.
QUORL_API std::partial_ordering Compare(const Variant& left, const Variant& right);

/// Against a number that the code fixes: by number, Empty as 0. A text is read as a number by the
/// locale; failure 13 for one that is none, 6 for one beyond a Double.
QUORL_API std::partial_ordering CompareToNumber(const Variant& value, Double number);

/// Against a truth value that the code fixes: by number as above, True being -1.
QUORL_API std::partial_ordering CompareToBoolean(const Variant& value, Boolean truth);

/// Against a text that the code fixes: by text, Empty as the empty text, anything else as the text
/// that it converts to; failure 6 for NaN, infinities and a date outside the calendar.
QUORL_API std::partial_ordering CompareToText(const Variant& value, StringView text);

}  // namespace quorl
