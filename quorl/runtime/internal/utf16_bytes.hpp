// Code units as bytes, the low one first, as files and arrays of bytes hold them.
#pragma once

#include <cstddef>
#include <string>

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The code units of a text or span of bytes; an odd last byte is dropped.
template <class Bytes>
String UnitsOf(const Bytes& bytes) {
  String units(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<char16_t>(low | high << 8);
  }
  return units;
}

/// The bytes of code units.
inline std::string BytesOf(StringView units) {
  std::string bytes;
  bytes.reserve(units.size() * 2);
  for (const char16_t unit : units) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

}  // namespace quorl::internal
