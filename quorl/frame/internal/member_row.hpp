// One row of the catalogue: what is written down once of a member, and how it is called.
//
// Rows are constants made by the templates of bind.hpp from the member itself, so that a row's
// types, its slot in the table and its call by name cannot disagree.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "quorl/abi/quorl.h"
#include "quorl/frame/internal/given_argument.hpp"
#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::frame {

enum class MemberKind { kMethod, kGet, kPut };

/// The type of an argument or a result as a host sees it.
struct TypeRow {
  VariantType type = VariantType::kEmpty;
  /// The published name, "HKeyEnum" or "Registry", of a type that has one.
  StringView name{};
  /// Whether the member writes the argument back.
  bool by_reference = false;
};

/// What an argument that is left out becomes.
struct DefaultValue {
  enum class Kind { kRequired, kNone, kNumber, kText };
  Kind kind = Kind::kRequired;
  Int32 number = 0;
  StringView text{};
};

struct Argument {
  StringView name{};
  DefaultValue otherwise{};

  constexpr bool IsOptional() const { return otherwise.kind != DefaultValue::Kind::kRequired; }
};

constexpr Argument Required(StringView name) { return {name, {}}; }
/// Left out, it is Missing, an empty reference, or zero, as its type has it.
constexpr Argument Optional(StringView name) { return {name, {.kind = DefaultValue::Kind::kNone}}; }
constexpr Argument Optional(StringView name, Int32 number) {
  return {name, {.kind = DefaultValue::Kind::kNumber, .number = number}};
}
constexpr Argument Optional(StringView name, StringView text) {
  return {name, {.kind = DefaultValue::Kind::kText, .text = text}};
}

inline constexpr std::size_t kMostArguments = 4;

/// Up to kMostArguments of something, in call order.
template <class Element>
struct FewOf {
  std::array<Element, kMostArguments> elements{};
  std::size_t count = 0;

  constexpr std::span<const Element> Span() const { return {elements.data(), count}; }
};

/// Calls the member on `self`. Every argument has a value, none is left out; what the member writes
/// back stands there in the end. The result is put into `result`, which is Empty, unless that
/// is null. Raises the member's failures and the conversions', and then there is no result.
using NamedCall = void (*)(QuorlDispatch* self, std::span<const GivenArgument> arguments,
                           VARIANT* result);

struct MemberRow {
  StringView name;
  MemberKind kind = MemberKind::kMethod;
  /// The identifier by which it is called: the gets and puts of a property share one. It is the
  /// place, from 1, of the first row of that name.
  std::int32_t identifier = 0;
  /// Whether it uses nothing of the object on which it is called.
  bool is_static = false;
  FewOf<Argument> arguments;
  FewOf<TypeRow> types;
  TypeRow result;
  NamedCall call = nullptr;
  StringView help{};
  /// Place in the type description's listing, where it is not the place in the table.
  int listing = -1;
};

}  // namespace quorl::frame
