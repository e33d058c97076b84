// How the library's values look in a test's failure message.
#pragma once

#include <array>
#include <compare>
#include <concepts>
#include <ostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

#include "quorl/runtime/utf.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// A text as a failure message shows it: quoted UTF-8.
inline std::string Shown(StringView text) { return '"' + Utf8(text) + '"'; }

inline void PrintTo(Currency amount, std::ostream* out) {
  *out << amount.TenThousandths() << "/10000";
}

inline void PrintTo(Date date, std::ostream* out) { *out << "day " << date.Days(); }

inline void PrintTo(VariantType type, std::ostream* out) {
  static constexpr std::array kNames{"Empty",   "Null",     "Int16",   "Int32",   "Single",
                                     "Double",  "Currency", "Date",    "String",  "Object",
                                     "Missing", "Boolean",  "Variant", "type 13", "type 14",
                                     "type 15", "type 16",  "Byte"};
  const auto number = static_cast<std::size_t>(type);
  *out << (number < kNames.size() ? kNames[number] : "Array");
}

inline void PrintTo(const Array& array, std::ostream* out) { *out << array.Size(); }
inline void PrintTo(const Object& object, std::ostream* out) { *out << object.Target(); }

/// The type's name, then the content.
inline void PrintTo(const Variant& value, std::ostream* out) {
  PrintTo(value.Type(), out);
  const auto precision = out->precision(17);
  value.Visit([out]<class Content>(const Content& content) {
    if constexpr (std::is_arithmetic_v<Content>) {
      *out << ' ' << +content;
    } else if constexpr (std::same_as<Content, String>) {
      *out << ' ' << Shown(content);
    } else if constexpr (!std::is_empty_v<Content>) {
      *out << ' ';
      PrintTo(content, out);
    }
  });
  out->precision(precision);
}

template <std::same_as<Variant> Value>
std::string Shown(const Value& value) {
  std::ostringstream out;
  PrintTo(value, &out);
  return std::move(out).str();
}

/// "less", "equal", "greater" or "unordered".
inline std::string Shown(std::partial_ordering order) {
  return order < 0 ? "less" : order > 0 ? "greater" : order == 0 ? "equal" : "unordered";
}

}  // namespace quorl
