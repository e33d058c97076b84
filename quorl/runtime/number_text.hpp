// Numbers as text: reading and testing by a locale, and the forms that no locale changes.
//
// A number by the locale is: blanks, a sign, digits with at most one decimal separator, an exponent
// ("E" or "e", a sign, digits), blanks. Thousand separators are skipped wherever they stand between
// sign and exponent. Where the thousand separator is a plain, no-break or narrow no-break blank,
// all three count as it; an apostrophe stands in for a typographic one. A text is read whole or not
// at all: "12abc", two decimal separators, a sign in the middle are no numbers.
#pragma once

#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// How a text reads as a number.
enum class NumberReading { kGood, kNotANumber, kOutOfRange };

/// Reads `text` to the nearest Double. `out` is written only when the reading is good.
QUORL_API NumberReading ReadDouble(StringView text, const Locale& locale, Double& out);
/// Reads `text` exactly and rounds at the fourth decimal, half to even. `out` as above.
QUORL_API NumberReading ReadCurrency(StringView text, const Locale& locale, Currency& out);
/// The test for a number: True exactly when `ReadDouble` is good.
QUORL_API bool IsNumber(StringView text, const Locale& locale = Locale::Current());

/// The number at the head of a text, in every locale: blanks, tabs and line feeds are passed over
/// wherever they stand, then sign, digits, "." and exponent are read as far as they go. 0 without a
/// digit. "12,5" gives 12, "1e" gives 1. Failure 6 for a number beyond a Double.
QUORL_API Double ReadLeadingNumber(StringView text);

/// Digits with ".", no zero before the point, a leading blank unless negative: " .5", "-.5", " 12".
/// Shortest form otherwise, as `ToString`. A Boolean is written as -1 or 0, a Date as its days,
/// Empty as 0, a text as the number that it reads as. Failure 6 for NaN and infinities; others as
/// for a conversion to Double (see convert.hpp).
QUORL_API String DottedNumber(const Variant& value);

/// Writes a number by a format of digit places: "0" is a place filled with zero, "#" one left out
/// when empty, "," between places asks for the locale's thousand separators, "." is its decimal
/// separator. The number is rounded to the places after the point, half away from zero on its
/// decimal digits, and never cut in front: -42 in "00000000" is "-00000042", 1000.2 in "0,000.0" is
/// "1,000.2". Failure 5 for any other character or a second point; 6 for NaN and infinities; others
/// as for a conversion to Double (see convert.hpp). A Currency is written from its exact digits.
/// The source stands in number_format.cpp.
QUORL_API String FormatNumber(const Variant& value, StringView format,
                              const Locale& locale = Locale::Current());

}  // namespace quorl
