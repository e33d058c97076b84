// A value in words, and back.
#pragma once

#include <string>

#include "quorl/registry/text/format.hpp"
#include "quorl/runtime/variant.hpp"

namespace settings {

/// "sz", "dword", "binary", "type 7".
std::string TypeOf(const quorl::RegistryTextValue& value);

/// A text as it is, a dword in decimal, all else in hexadecimal. UTF-8.
std::string ContentOf(const quorl::RegistryTextValue& value);

/// `"name" type: content`, printable, with colours on a terminal.
std::string LineOf(const quorl::RegistryTextValue& value);

/// `{"name": ..., "type": ..., "data": ...}`; the data of a dword is a number, else a text.
std::string JsonOf(const quorl::RegistryTextValue& value);

/// The type and the data alone, where the name is said already.
std::string JsonOfContent(const quorl::RegistryTextValue& value);

/// What a person typed as a value of this type; WrongUse or Refusal for what is none.
quorl::Variant ValueFrom(const std::string& text, const std::string& type);

/// For what is to be written: a character that would be kept as "?" is refused.
quorl::String Storable(const std::string& text);

}  // namespace settings
