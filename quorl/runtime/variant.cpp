#include "quorl/runtime/variant.hpp"

#include <array>

namespace quorl {

VariantType Variant::Type() const noexcept {
  // In the order of the alternatives.
  static constexpr std::array kTypes{
      VariantType::kEmpty,    VariantType::kNull,  VariantType::kMissing, VariantType::kByte,
      VariantType::kInt16,    VariantType::kInt32, VariantType::kSingle,  VariantType::kDouble,
      VariantType::kCurrency, VariantType::kDate,  VariantType::kBoolean, VariantType::kString,
      VariantType::kObject,   VariantType::kArray,
  };
  static_assert(kTypes.size() == std::variant_size_v<decltype(state_)>);
  return kTypes[state_.index()];
}

}  // namespace quorl
