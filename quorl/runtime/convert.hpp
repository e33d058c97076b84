// Every conversion from a Variant to a plain type. No class of the library converts by itself.
//
// Common to all: Empty is 0, False or the empty text. Null raises failure 94. Missing and arrays
// raise 13. An object gives the value of its default member, whose failures pass; one without a
// default member, or an empty reference, raises 13. Texts are read, and numbers and dates written,
// by `Locale::Current()`; a text that cannot be read raises 13. True is -1 as a number. A result,
// an object's value or the system's locale that memory does not hold raises 7.
#pragma once

#include <cstdint>
#include <utility>

#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// Whole numbers: the nearest, ties to even (2.5 gives 2, 3.5 gives 4). Failure 6 if the rounded
/// value lies outside the type, and for NaN and infinities.
QUORL_API Byte ToByte(const Variant& value);
QUORL_API Int16 ToInt16(const Variant& value);
QUORL_API Int32 ToInt32(const Variant& value);
QUORL_API Byte ToByte(Double value);
QUORL_API Int16 ToInt16(Double value);
QUORL_API Int32 ToInt32(Double value);

namespace detail {

template <class Whole>
Whole Narrowed(std::int64_t value) {
  if (!std::in_range<Whole>(value)) Raise(FailureNumber::kOverflow);
  return static_cast<Whole>(value);
}

}  // namespace detail

/// Narrows a whole number; failure 6 outside the type. This is the limit of every counter,
/// length and position that a signature declares as Int16.
inline Int16 CheckedInt16(std::int64_t value) { return detail::Narrowed<Int16>(value); }
inline Int32 CheckedInt32(std::int64_t value) { return detail::Narrowed<Int32>(value); }
/// A text's length or any other size as an Int16; failure 6 above 32767.
inline Int16 LengthAsInt16(StringView text) {
  return CheckedInt16(static_cast<std::int64_t>(text.size()));
}

/// The single-precision number nearest to the value's Double; failure 6 beyond its range, and for
/// NaN and infinities.
QUORL_API Single ToSingle(const Variant& value);
QUORL_API Single ToSingle(Double value);

/// The nearest Double. A Currency is converted to the Double nearest to its decimal value.
/// A Double passes as it is, NaN and infinities too. Failure 6 for a text beyond the range.
QUORL_API Double ToDouble(const Variant& value);
QUORL_API Double ToDouble(Currency value);

/// The nearest ten-thousandth, ties to even, decided on the exact value; a text is read digit by
/// digit and never passes through a Double. Failure 6 beyond ±922337203685477.5807 (-...5808 is the
/// lowest), and for NaN and infinities. A whole number of any type never passes through a Double
/// either.
QUORL_API Currency ToCurrency(const Variant& value);
QUORL_API Currency ToCurrency(Double value);
template <WholeNumber Whole>
Currency ToCurrency(Whole value) {
  return Currency(value);
}

/// A number counts as days from 1899-12-30; failure 6 outside the calendar (year 100 to 9999), NaN
/// and infinities included. A text is read by the locale's date order; one that is no date of the
/// calendar, 31/12/10000 too, is failure 13.
QUORL_API Date ToDate(const Variant& value);
QUORL_API Date ToDate(Double days);

/// A number is True unless 0. A text is a number or a truth word of the locale, or True or False,
/// in any case. Failure 6 for NaN and for a text beyond the range of a Double.
QUORL_API Boolean ToBoolean(const Variant& value);

/// Numbers in shortest form: the fewest digits that read back as the same value, no exponent from
/// 1E-5 up to below 1E+15, the locale's decimal separator, no thousand separators. Dates by the
/// locale, Booleans as its truth words, a String as it is. Failure 6 for NaN, infinities and a Date
/// outside the calendar.
QUORL_API String ToString(const Variant& value);

/// The reference itself, an empty one too. Failure 13 for anything but an object.
QUORL_API Object ToObject(const Variant& value);
/// The same for a value on which a member is to be called by name; failure 424 for anything else.
QUORL_API Object RequireObject(const Variant& value);

/// `value` as `type`, by the conversions above. `Variant` gives a copy. Failure 13 for a type that
/// nothing converts to (Empty, Null, Missing, arrays), but a value already of that type passes.
QUORL_API Variant ConvertTo(const Variant& value, VariantType type);

/// `value` itself, Null or an array too, unless it holds an object; of an object, what its default
/// member gives.
/// Failure 13 without a default member, for an empty reference, and for objects that only ever
/// lead to further objects.
QUORL_API Variant PlainValueOf(const Variant& value);

}  // namespace quorl
