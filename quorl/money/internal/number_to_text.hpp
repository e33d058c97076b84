// Whole numbers in words, in French, English, Dutch or German.
//
// Every word stands in word_tables.hpp, what they make together in language_words.hpp; for amounts
// with the names of a currency see money.hpp. Free of state, usable from any thread.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "quorl/money/internal/language_words.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The code units that `NumberToText` may write to: its words, and rubbish behind them.
inline constexpr std::size_t kRoomForWords = 420;

/// The words of a number below a hundred, at the end of the whole number. Failure 9 where a
/// negative `kind` is needed for the word for one.
inline const Slot& LastOf(const LanguageWords& words, std::uint64_t number, Int16 kind) {
  if (kind >= 0) {
    return words.below_hundred[static_cast<std::size_t>(std::min<Int16>(kind, 2))][number];
  }
  const Slot& last = words.below_hundred[0][number];
  if (last.takes_kind) Raise(FailureNumber::kSubscriptOutOfRange);
  return last;
}

/// `NumberToText` of a number of three digits or more.
char16_t* LargeNumberToText(char16_t* out, const LanguageWords& words, std::uint64_t number,
                            Int16 kind);

/// Writes `number` in words, without any allocation. `out` has room for `kRoomForWords` code units;
/// the end of the words comes back. `kind` picks among the forms of a final one ("un", "une"), the
/// last of them if it is higher.
///
///     std::array<char16_t, kRoomForWords> text;
///     NumberToText(text.data(), WordsOf(kFrenchWords), 21, 0);  // "vingt-et-un"
///
/// The scale words end at 10 to the 12th: 10 to the 15th is "mille billions". Failure 9 where a
/// negative `kind` is needed for the word for one; `out` holds rubbish then.
inline char16_t* NumberToText(char16_t* out, const LanguageWords& words, std::uint64_t number,
                              Int16 kind) {
  if (number < 100) return LastOf(words, number, kind).CopyTo(out);
  return LargeNumberToText(out, words, number, kind);
}

}  // namespace quorl::internal
