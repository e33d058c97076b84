// The plain value types of every signature, under the names that the library's documentation uses.
//
// A character is one 16-bit code unit: lengths and positions count code units, and positions that a
// public member takes or gives start at 1. Everything here is a plain value.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "quorl/runtime/export.h"

namespace quorl {

using Byte = std::uint8_t;
using Int16 = std::int16_t;
using Int32 = std::int32_t;
using Single = float;
using Double = double;
using Boolean = bool;

/// Counted UTF-16 code units. Nothing checks pairing of surrogates: a lone one passes unchanged.
using String = std::u16string;
/// A text lent for a call: the form in which members take a `String`.
using StringView = std::u16string_view;

/// Boolean True as a number.
inline constexpr Int16 kTrueAsNumber = -1;

}  // namespace quorl
