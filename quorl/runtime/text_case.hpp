// One-to-one case mapping: one code unit to one, by Unicode's simple mapping, accented letters of
// every script included. A character whose mapping takes two characters (ß) stays, and so does one
// half of a surrogate pair. No locale plays a part: I and i go together everywhere.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl {

/// The lower-case form of one code unit; the unit itself where there is none.
QUORL_API char16_t LowerCase(char16_t unit) noexcept;
/// The upper-case form of one code unit; the unit itself where there is none.
QUORL_API char16_t UpperCase(char16_t unit) noexcept;

/// True if the two texts have the same lower-case form. The one rule for names, words and entries
/// that compare without case.
QUORL_API bool EqualsIgnoringCase(StringView left, StringView right) noexcept;

/// A copy of `text` with every code unit mapped; the length stays. Failure 7 where memory does not
/// hold it.
QUORL_API String LowerCase(StringView text);

}  // namespace quorl
