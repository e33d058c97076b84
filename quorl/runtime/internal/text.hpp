// The text primitives on which every member that searches, cuts or trims text rests.
//
// Positions count code units from 1; 0 means not found. Views that come back point into the text
// that was given and live as long as it does.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The one character that counts as a blank, for trimming and as a word boundary.
inline constexpr char16_t kBlank = u' ';

constexpr bool IsDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

/// The lowest position at or after `start` at which `sought` stands whole, by code unit, or 0.
/// Failure 5 for a start below 1. An empty text gives 0, even for an empty `sought`; otherwise an
/// empty `sought` is found at `start`, up to one past the end. The time grows with the sum of the
/// lengths; no memory is asked for.
QUORL_API std::int64_t Find(std::int64_t start, StringView text, StringView sought);

/// What exists of the `count` characters from position `start`: a position beyond the end gives the
/// empty text, a count past the end stops there. Failure 5 for a start below 1 or a negative count.
QUORL_API StringView Slice(StringView text, std::int64_t start, std::int64_t count);
/// All characters from position `start` on. Failure 5 for a start below 1.
QUORL_API StringView SliceFrom(StringView text, std::int64_t start);
/// The first `count` characters, or fewer. Failure 5 for a negative count.
QUORL_API StringView FirstOf(StringView text, std::int64_t count);
/// The last `count` characters, or fewer. Failure 5 for a negative count.
QUORL_API StringView LastOf(StringView text, std::int64_t count);

/// `text` without the run of `unit` at its start, or at its end.
QUORL_API StringView TrimLeading(StringView text, char16_t unit = kBlank) noexcept;
QUORL_API StringView TrimTrailing(StringView text, char16_t unit = kBlank) noexcept;
/// `text` without blanks at both ends.
QUORL_API StringView Trim(StringView text) noexcept;

}  // namespace quorl::internal
