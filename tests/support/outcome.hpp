// What a call came to, as one line of text, for tables of cases.
#pragma once

#include <ostream>
#include <string>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// The whole record of the failure of `work`, "Source (Number): Description"; "none" without one.
template <class Work>
std::string FailureOf(Work work) {
  try {
    work();
  } catch (const RaisedError& error) {
    return Utf8(error.Source()) + " (" + std::to_string(error.Number()) +
           "): " + Utf8(error.Description());
  }
  return "none";
}

/// The record of the runtime's failure of that number, in the same form.
inline std::string RuntimeFailure(FailureNumber number) {
  return "Quorl.Runtime (" + std::to_string(static_cast<Int32>(number)) +
         "): " + Utf8(DescriptionOf(number));
}

/// A value as text with its type's number: "5:1.5" is a Double.
inline std::string Shown(const Variant& value) {
  const std::string type = std::to_string(static_cast<int>(value.Type()));
  return value.IsNull() || value.IsMissing() ? type : type + ":" + Utf8(ToString(value));
}

/// The number or text that `work` gives, or "failure" and its Number.
template <class Work>
std::string OutcomeOf(Work work) {
  try {
    const Variant value = work();
    return value.IsNull() ? "Null" : Utf8(ToString(value));
  } catch (const RaisedError& error) {
    return "failure " + std::to_string(error.Number());
  }
}

inline void PrintTo(const Variant& value, std::ostream* out) { *out << Shown(value); }

}  // namespace quorl
