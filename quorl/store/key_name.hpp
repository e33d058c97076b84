// Names and paths of keys: comparison without case and the splitting of a path into levels. Pure
// functions over single-byte text (quorl/runtime/ansi.hpp).
#pragma once

#include <compare>
#include <cstddef>
#include <string_view>

#include "quorl/runtime/export.h"

namespace quorl {

inline constexpr char kPathSeparator = '\\';
inline constexpr std::size_t kLongestKeyName = 255;
inline constexpr std::size_t kLongestValueName = 16383;

/// Order of two names by their lower-cased characters; equal when they differ in case alone.
QUORL_API std::strong_ordering CompareNames(std::string_view left, std::string_view right) noexcept;

/// Takes the first level off `path`: the name up to the next backslash, with the backslashes around
/// it dropped. Empty when no level is left.
QUORL_API std::string_view TakeLevel(std::string_view& path) noexcept;

/// Whether a key may be made at `path`: no level too long, no zero byte.
QUORL_API bool IsKeyPath(std::string_view path) noexcept;

/// Whether a value may be called `name`.
QUORL_API bool IsValueName(std::string_view name) noexcept;

}  // namespace quorl
