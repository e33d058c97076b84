#include "quorl/runtime/convert.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "quorl/runtime/date_text.hpp"
#include "quorl/runtime/internal/decimal.hpp"
#include "quorl/runtime/internal/plain_number.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl {

using namespace internal;
namespace {

template <class Whole>
Whole NearestWhole(Double value) {
  const Double rounded = std::nearbyint(value);  // the default mode: ties to even
  // Written so that NaN fails it.
  if (!(rounded >= Double{std::numeric_limits<Whole>::min()} &&
        rounded <= Double{std::numeric_limits<Whole>::max()})) {
    Raise(FailureNumber::kOverflow);
  }
  return static_cast<Whole>(rounded);
}

void RequireGood(NumberReading reading) {
  if (reading == NumberReading::kNotANumber) Raise(FailureNumber::kTypeMismatch);
  if (reading == NumberReading::kOutOfRange) Raise(FailureNumber::kOverflow);
}

Double NumberIn(StringView text) {
  Double value = 0;
  RequireGood(ReadDouble(text, Locale::Current(), value));
  return value;
}

template <class Whole>
Whole WholeOf(const Variant& value) {
  if (const auto* whole = value.If<Int32>()) return detail::Narrowed<Whole>(*whole);
  if (const auto* small = value.If<Int16>()) return detail::Narrowed<Whole>(*small);
  if (const auto* amount = value.If<Currency>()) {
    return detail::Narrowed<Whole>(
        static_cast<std::int64_t>(DivideHalfEven(amount->TenThousandths(), Currency::kScale)));
  }
  if (value.Holds<Object>()) return WholeOf<Whole>(PlainValueOf(value));
  return NearestWhole<Whole>(ToDouble(value));
}

Boolean TruthOf(StringView text) {
  const Locale& locale = Locale::Current();
  Double number = 0;
  const NumberReading reading = ReadDouble(text, locale, number);
  if (reading != NumberReading::kNotANumber) {
    RequireGood(reading);
    return number != 0;
  }
  const StringView word = Trim(text);
  const auto is = [word](StringView known) { return EqualsIgnoringCase(word, known); };
  if (is(locale.true_word) || is(u"True")) return true;
  if (is(locale.false_word) || is(u"False")) return false;
  Raise(FailureNumber::kTypeMismatch);
}

String ShortestText(const Decimal& value) {
  String text;
  AppendShortest(text, value, Locale::Current().decimal_separator, LeadingZero::kWritten);
  return text;
}

struct TextWriter {
  String operator()(NullState) const { Raise(FailureNumber::kInvalidUseOfNull); }
  String operator()(MissingState) const { Raise(FailureNumber::kTypeMismatch); }
  String operator()(const Array&) const { Raise(FailureNumber::kTypeMismatch); }
  String operator()(const Object& object) const { return ToString(PlainValueOf(object)); }
  String operator()(EmptyState) const { return {}; }
  String operator()(Boolean value) const {
    const Locale& locale = Locale::Current();
    return value ? locale.true_word : locale.false_word;
  }
  String operator()(Byte value) const { return ShortestText(DecimalOf(std::int64_t{value})); }
  String operator()(Int16 value) const { return ShortestText(DecimalOf(std::int64_t{value})); }
  String operator()(Int32 value) const { return ShortestText(DecimalOf(std::int64_t{value})); }
  String operator()(Single value) const { return ShortestText(DecimalOf(value)); }
  String operator()(Double value) const { return ShortestText(DecimalOf(value)); }
  String operator()(Currency value) const { return ShortestText(DecimalOf(value)); }
  String operator()(Date value) const { return WriteDate(value); }
  String operator()(const String& text) const { return text; }
};

}  // namespace

Byte ToByte(Double value) { return NearestWhole<Byte>(value); }
Int16 ToInt16(Double value) { return NearestWhole<Int16>(value); }
Int32 ToInt32(Double value) { return NearestWhole<Int32>(value); }

Byte ToByte(const Variant& value) { return WholeOf<Byte>(value); }
Int16 ToInt16(const Variant& value) { return WholeOf<Int16>(value); }
Int32 ToInt32(const Variant& value) { return WholeOf<Int32>(value); }

Single ToSingle(Double value) {
  const auto nearest = static_cast<Single>(value);
  if (!std::isfinite(nearest)) Raise(FailureNumber::kOverflow);
  return nearest;
}

Single ToSingle(const Variant& value) { return ToSingle(ToDouble(value)); }

Double ToDouble(const Variant& value) {
  if (const auto number = PlainNumberOf(value)) return *number;
  if (const auto* amount = value.If<Currency>()) return ToDouble(*amount);
  if (const auto* text = value.If<String>()) return NumberIn(*text);
  if (value.Holds<Object>()) return ToDouble(PlainValueOf(value));
  Raise(value.IsNull() ? FailureNumber::kInvalidUseOfNull : FailureNumber::kTypeMismatch);
}

Double ToDouble(Currency value) {
  // Up to here a count of ten-thousandths is exact as a Double, and one division rounds once.
  constexpr std::int64_t kExact = std::int64_t{1} << 53;
  const std::int64_t units = value.TenThousandths();
  if (units >= -kExact && units <= kExact) {
    return static_cast<Double>(units) / static_cast<Double>(Currency::kScale);
  }
  constexpr std::string_view kTenThousandths = "e-4";
  std::array<char, 32> text{};
  auto* end = std::to_chars(text.data(), text.data() + text.size(), units).ptr;
  end = std::ranges::copy(kTenThousandths, end).out;
  Double nearest = 0;
  std::from_chars(text.data(), end, nearest);
  return nearest;
}

Currency ToCurrency(Double value) {
  constexpr Double kBeyond = 1e15;  // well above the highest amount, and below 2^53
  if (!(std::fabs(value) < kBeyond)) Raise(FailureNumber::kOverflow);
  int exponent = 0;
  const auto mantissa = static_cast<std::int64_t>(std::ldexp(std::frexp(value, &exponent), 53));
  const int shift = 53 - exponent;  // the value is mantissa / 2^shift, and shift is above 0
  constexpr int kVanishes = 120;
  if (shift > kVanishes) return Currency();
  const __int128 units =
      DivideHalfEven(static_cast<__int128>(mantissa) * Currency::kScale, __int128{1} << shift);
  return CheckedCurrency(units);
}

Currency ToCurrency(const Variant& value) {
  if (const auto* amount = value.If<Currency>()) return *amount;
  if (value.Holds<Object>()) return ToCurrency(PlainValueOf(value));
  if (const auto* text = value.If<String>()) {
    Currency amount;
    RequireGood(ReadCurrency(*text, Locale::Current(), amount));
    return amount;
  }
  return ToCurrency(ToDouble(value));
}

Date ToDate(Double days) {
  if (!IsDateNumber(days)) Raise(FailureNumber::kOverflow);
  return Date(days);
}

Date ToDate(const Variant& value) {
  if (value.Holds<Object>()) return ToDate(PlainValueOf(value));
  const auto* text = value.If<String>();
  if (text == nullptr) return ToDate(ToDouble(value));
  const std::optional<Date> read = ReadDate(*text);
  if (!read) Raise(FailureNumber::kTypeMismatch);
  return *read;
}

Boolean ToBoolean(const Variant& value) {
  if (value.Holds<Object>()) return ToBoolean(PlainValueOf(value));
  if (const auto* text = value.If<String>()) return TruthOf(*text);
  const Double number = ToDouble(value);
  if (std::isnan(number)) Raise(FailureNumber::kOverflow);
  return number != 0;
}

String ToString(const Variant& value) {
  return WithinMemory([&] { return value.Visit(TextWriter{}); });
}

Object ToObject(const Variant& value) {
  const auto* object = value.If<Object>();
  if (object == nullptr) Raise(FailureNumber::kTypeMismatch);
  return *object;
}

Object RequireObject(const Variant& value) {
  if (!value.Holds<Object>()) Raise(FailureNumber::kObjectRequired);
  return *value.If<Object>();
}

Variant ConvertTo(const Variant& value, VariantType type) {
  if (value.Type() == type || type == VariantType::kVariant) {
    return CopyOf(value);
  }
  switch (type) {
    case VariantType::kByte:
      return ToByte(value);
    case VariantType::kInt16:
      return ToInt16(value);
    case VariantType::kInt32:
      return ToInt32(value);
    case VariantType::kSingle:
      return ToSingle(value);
    case VariantType::kDouble:
      return ToDouble(value);
    case VariantType::kCurrency:
      return ToCurrency(value);
    case VariantType::kDate:
      return ToDate(value);
    case VariantType::kString:
      return ToString(value);
    case VariantType::kBoolean:
      return ToBoolean(value);
    case VariantType::kObject:
      return ToObject(value);
    default:
      Raise(FailureNumber::kTypeMismatch);
  }
}

namespace {

Variant DefaultValueOf(const Object& object) {
  if (object.IsEmpty()) Raise(FailureNumber::kTypeMismatch);
  try {
    return object.Get(u"");
  } catch (const RaisedError& error) {
    const bool lacks_default = error.Number() == static_cast<Int32>(FailureNumber::kNoSuchMember) &&
                               error.Source() == kRuntimeSource;
    if (lacks_default) Raise(FailureNumber::kTypeMismatch);
    throw;
  }
}

}  // namespace

Variant PlainValueOf(const Variant& value) {
  constexpr int kMostSteps = 16;
  Variant plain = CopyOf(value);
  for (int step = 0; plain.Holds<Object>(); ++step) {
    if (step == kMostSteps) Raise(FailureNumber::kTypeMismatch);
    plain = DefaultValueOf(Object(*plain.If<Object>()));
  }
  return plain;
}

}  // namespace quorl
