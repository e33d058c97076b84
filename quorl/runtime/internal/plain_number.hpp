// The numbers that need no conversion of text: what most Variants beside a number hold.
#pragma once

#include <optional>

#include "quorl/runtime/variant.hpp"

namespace quorl::internal {

/// The value as a Double where its type has none but exact ones: True is -1, a date its days, Empty
/// 0. None for amounts, texts and all else.
inline std::optional<Double> PlainNumberOf(const Variant& value) noexcept {
  // The two that most numbers are, by tests that cost less than a jump to one of many places.
  if (value.Holds<Double>()) return *value.If<Double>();
  if (value.Holds<Int32>()) return *value.If<Int32>();
  switch (value.Type()) {
    case VariantType::kEmpty:
      return 0;
    case VariantType::kBoolean:
      return *value.If<Boolean>() ? kTrueAsNumber : 0;
    case VariantType::kByte:
      return *value.If<Byte>();
    case VariantType::kInt16:
      return *value.If<Int16>();
    case VariantType::kSingle:
      return *value.If<Single>();
    case VariantType::kDate:
      return value.If<Date>()->Days();
    default:
      return std::nullopt;
  }
}

}  // namespace quorl::internal
