// The log's text: written here, read by read_log.hpp.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "examples/parity/log.hpp"

namespace parity {

/// The words that stand for the types and the kinds of calls, shared with the reader.
struct Word {
  std::uint16_t number;
  std::string_view word;
};
inline constexpr Word kNumberTypes[] = {
    {VT_I2, "Int16"},     {VT_I4, "Int32"},    {VT_R4, "Single"},
    {VT_R8, "Double"},    {VT_CY, "Currency"}, {VT_DATE, "Date"},
    {VT_BOOL, "Boolean"}, {VT_UI1, "Byte"},    {VT_ERROR, "Error"}};
inline constexpr Word kOtherElements[] = {
    {VT_BSTR, "String"}, {VT_DISPATCH, "Object"}, {VT_VARIANT, "Variant"}};
inline constexpr Word kCallKinds[] = {{DISPATCH_METHOD, "call"},
                                      {DISPATCH_PROPERTYGET, "get"},
                                      {DISPATCH_PROPERTYPUT, "put"},
                                      {DISPATCH_PROPERTYPUTREF, "putref"}};

std::string WrittenText(std::u16string_view text);
std::string WrittenName(const Name& name);
std::string Written(const Value& value);
/// The header's lines, each with its end.
std::string Written(const Header& header);
/// The lines of an entry and an outcome, without indentation and line end.
std::string Written(const Entry& entry);
std::string Written(const Outcome& outcome);

/// What remains of an outcome that differs by nature: types and, of a failure, the Number.
std::string Shape(const Outcome& outcome);

}  // namespace parity
