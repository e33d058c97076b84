// A value of the binary contract as the log keeps it: its exact type and content, nothing
// converted. For its text see log_text.hpp, for its binary form binary.hpp.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "quorl/abi/quorl.h"

namespace parity {

/// How deep values stand within values, as in the binary contract.
inline constexpr int kMostNesting = 64;

struct Value;

/// The element type is a VT number; bounds stand leftmost dimension first, elements in the order of
/// the binary form: the leftmost subscript runs fastest.
struct Array {
  std::uint16_t type = VT_VARIANT;
  std::vector<QuorlBound> bounds;
  std::vector<Value> elements;
};

/// An object by its number in the log; 0 for none.
struct ObjectValue {
  /// An object that the log does not know.
  static constexpr std::uint32_t kUnknown = UINT32_MAX;

  std::uint32_t number = 0;
  QuorlDispatch* pointer = nullptr;  ///< Lent.
};

/// A value of no type of the contract: its number and nothing else.
struct UnknownValue {
  std::uint16_t vt = 0;
};

/// What an argument by reference points to: a VARIANT (`is_variant`) or the value alone.
struct ReferenceValue {
  std::vector<Value> target;  ///< One.
  bool is_variant = false;
};

/// `type` is the VT number, without the bits for arrays and references.
struct Value {
  std::uint16_t type = VT_EMPTY;
  std::variant<std::int64_t, double, std::u16string, Array, ObjectValue, UnknownValue,
               ReferenceValue>
      content = std::int64_t{0};

  template <class Content>
  const Content* If() const {
    return std::get_if<Content>(&content);
  }
  template <class Content>
  Content* If() {
    return std::get_if<Content>(&content);
  }
  /// What it refers to, or itself.
  const Value& Target() const {
    const auto* reference = If<ReferenceValue>();
    return reference == nullptr ? *this : reference->target.front().Target();
  }
};

/// Calls `work` with each object in a value, those within arrays and behind references too.
void ForEachObject(Value& value, const std::function<void(ObjectValue&)>& work);

}  // namespace parity
