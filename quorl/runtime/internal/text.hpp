// The text primitives on which every member that searches, cuts or trims text rests.
//
// Positions count code units from 1; 0 means not found. Views that come back point into the text
// that was given and live as long as it does.
#pragma once

#include <algorithm>
#include <cstdint>

#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The one character that counts as a blank, for trimming and as a word boundary.
inline constexpr char16_t kBlank = u' ';

constexpr bool IsDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

/// The lowest position at or after `start` at which `sought` stands whole, by code unit, or 0.
/// Failure 5 for a start below 1. An empty text gives 0, even for an empty `sought`; otherwise an
/// empty `sought` is found at `start`, up to one past the end. The time grows with the sum of the
/// lengths; no memory is asked for. For all places one after another see search.hpp.
QUORL_API std::int64_t Find(std::int64_t start, StringView text, StringView sought);

/// `count` or the length of `text`, whichever is less. Failure 5 for a negative count.
inline std::size_t CountedUnits(StringView text, std::int64_t count) {
  if (count < 0) Raise(FailureNumber::kInvalidArgument);
  return std::min(text.size(), static_cast<std::size_t>(count));
}

/// The first `count` characters, or fewer. Failure 5 for a negative count.
inline StringView FirstOf(StringView text, std::int64_t count) {
  return {text.data(), CountedUnits(text, count)};
}
/// The last `count` characters, or fewer. Failure 5 for a negative count.
inline StringView LastOf(StringView text, std::int64_t count) {
  const std::size_t units = CountedUnits(text, count);
  return {text.data() + (text.size() - units), units};
}
/// All characters from position `start` on. Failure 5 for a start below 1.
inline StringView SliceFrom(StringView text, std::int64_t start) {
  if (start < 1) Raise(FailureNumber::kInvalidArgument);
  text.remove_prefix(CountedUnits(text, start - 1));
  return text;
}
/// What exists of the `count` characters from position `start`: a position beyond the end gives the
/// empty text, a count past the end stops there. Failure 5 for a start below 1 or a negative count.
inline StringView Slice(StringView text, std::int64_t start, std::int64_t count) {
  return FirstOf(SliceFrom(text, start), count);
}

/// `text` without the run of `unit` at its start, or at its end.
constexpr StringView TrimLeading(StringView text, char16_t unit = kBlank) noexcept {
  while (!text.empty() && text.front() == unit) text.remove_prefix(1);
  return text;
}
constexpr StringView TrimTrailing(StringView text, char16_t unit = kBlank) noexcept {
  while (!text.empty() && text.back() == unit) text.remove_suffix(1);
  return text;
}
/// `text` without blanks at both ends.
constexpr StringView Trim(StringView text) noexcept { return TrimTrailing(TrimLeading(text)); }

}  // namespace quorl::internal
