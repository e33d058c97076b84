#include "quorl/runtime/compare.hpp"

#include <algorithm>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/plain_number.hpp"
#include "quorl/runtime/internal/unit_block.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl {

using namespace internal;
namespace {

// Many units at once, where the standard comparison takes them one by one.
std::strong_ordering CompareUnits(StringView left, StringView right) noexcept {
  const std::size_t shorter = std::min(left.size(), right.size());
  if (shorter < kBlockUnits) return left <=> right;
  for (std::size_t at = 0; at < shorter; at += kBlockUnits) {
    // The last block has units in common with the one before.
    const std::size_t block = std::min(at, shorter - kBlockUnits);
    const Lanes differ(BlockAt(left.data() + block) != BlockAt(right.data() + block));
    if (differ.IsEmpty()) continue;
    const std::size_t first = block + differ.First();
    return left[first] <=> right[first];
  }
  return left.size() <=> right.size();
}

std::partial_ordering ByNumber(const Variant& left, const Variant& right) {
  const auto* left_amount = left.If<Currency>();
  const auto* right_amount = right.If<Currency>();
  if (left_amount != nullptr && right_amount != nullptr) return *left_amount <=> *right_amount;
  return ToDouble(left) <=> ToDouble(right);
}

void RequireComparable(const Variant& plain) {
  if (plain.IsMissing() || plain.Holds<Array>()) Raise(FailureNumber::kTypeMismatch);
}

// Both sides are neither Null nor objects here, and not both are texts.
std::partial_ordering ComparePlain(const Variant& left, const Variant& right) {
  RequireComparable(left);
  RequireComparable(right);
  const auto* left_text = left.If<String>();
  const auto* right_text = right.If<String>();
  if (left_text != nullptr) {
    return right.IsEmpty() ? *left_text <=> StringView() : std::strong_ordering::greater;
  }
  if (right_text != nullptr) {
    return left.IsEmpty() ? StringView() <=> *right_text : std::strong_ordering::less;
  }
  return ByNumber(left, right);
}

// Apart, so that comparing numbers needs no room for what this does.
[[gnu::noinline]] std::partial_ordering CompareOthers(const Variant& left, const Variant& right) {
  if (left.IsNull() || right.IsNull()) return std::partial_ordering::unordered;
  if (left.Holds<Object>()) return Compare(PlainValueOf(left), right);
  if (right.Holds<Object>()) return Compare(left, PlainValueOf(right));
  return ComparePlain(left, right);
}

}  // namespace

std::partial_ordering Compare(const Variant& left, const Variant& right) {
  if (const auto number = PlainNumberOf(left)) {
    if (const auto other = PlainNumberOf(right)) return *number <=> *other;
  }
  if (left.Holds<String>() && right.Holds<String>()) {
    return CompareUnits(*left.If<String>(), *right.If<String>());
  }
  return CompareOthers(left, right);
}

std::partial_ordering CompareToNumber(const Variant& value, Double number) {
  if (value.Holds<Object>()) return CompareToNumber(PlainValueOf(value), number);
  if (value.IsNull()) return std::partial_ordering::unordered;
  return ToDouble(value) <=> number;
}

std::partial_ordering CompareToBoolean(const Variant& value, Boolean truth) {
  return CompareToNumber(value, truth ? kTrueAsNumber : 0);
}

std::partial_ordering CompareToText(const Variant& value, StringView text) {
  if (value.Holds<Object>()) return CompareToText(PlainValueOf(value), text);
  if (value.IsNull()) return std::partial_ordering::unordered;
  if (const auto* content = value.If<String>()) return CompareUnits(*content, text);
  return CompareUnits(ToString(value), text);
}

}  // namespace quorl
