#include "quorl/runtime/compare.hpp"

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl {
namespace {

std::partial_ordering ByNumber(const Variant& left, const Variant& right) {
  const auto* left_amount = left.If<Currency>();
  const auto* right_amount = right.If<Currency>();
  if (left_amount != nullptr && right_amount != nullptr) return *left_amount <=> *right_amount;
  return ToDouble(left) <=> ToDouble(right);
}

void RequireComparable(const Variant& plain) {
  if (plain.IsMissing() || plain.Holds<Array>()) Raise(FailureNumber::kTypeMismatch);
}

// Both sides are neither Null nor objects here.
std::partial_ordering ComparePlain(const Variant& left, const Variant& right) {
  RequireComparable(left);
  RequireComparable(right);
  const auto* left_text = left.If<String>();
  const auto* right_text = right.If<String>();
  if (left_text != nullptr && right_text != nullptr) return *left_text <=> *right_text;
  if (left_text != nullptr) {
    return right.IsEmpty() ? *left_text <=> StringView() : std::strong_ordering::greater;
  }
  if (right_text != nullptr) {
    return left.IsEmpty() ? StringView() <=> *right_text : std::strong_ordering::less;
  }
  return ByNumber(left, right);
}

}  // namespace

std::partial_ordering Compare(const Variant& left, const Variant& right) {
  if (left.Holds<Object>()) return Compare(PlainValueOf(left), right);
  if (right.Holds<Object>()) return Compare(left, PlainValueOf(right));
  if (left.IsNull() || right.IsNull()) return std::partial_ordering::unordered;
  return ComparePlain(left, right);
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
  if (const auto* content = value.If<String>()) return StringView(*content) <=> text;
  return StringView(ToString(value)) <=> text;
}

}  // namespace quorl
