// Whole numbers in words, in French, English, Dutch or German.
//
// The grammar stands here, every word in word_tables.hpp; for amounts with the names of a currency
// see money.hpp. Free of state, usable from any thread.
#pragma once

#include <cstddef>

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The most code units that a number of so many digits takes, in any of the languages.
constexpr std::size_t LongestWords(std::size_t digits) noexcept {
  // What three digits, their scale word and the joiners beside it can take at most.
  constexpr std::size_t kLongestGroup = 84;
  return (digits / 3 + 1) * kLongestGroup;
}

/// Writes the number that `digits` holds ("0" to "9", leading zeros allowed, none at all is zero)
/// in the language whose block of words begins at `language_base`, without any allocation. `out`
/// has room for `LongestWords(digits.size())` code units and does not overlap `digits`; the end of
/// the words comes back. `scale_level` is the level of the scale word that the number will stand
/// before, 0 for none; only 1, the thousand, makes a difference: French 80 is "quatre-vingts" but
/// "quatre-vingt" before it. `kind` picks among the forms of a final one ("un", "une"), the last of
/// them if it is higher.
///
///     std::array<char16_t, LongestWords(4)> words;
///     NumberToText(words.data(), kFrenchWords, u"1234", 0, 0);  // "mille-deux-cent-trente-quatre"
///
/// Any length goes: the scale words end at 10 to the 12th, and 10 to the 15th is "mille billions".
/// Failure 9 where a negative `kind` is needed for the word for one; `out` holds rubbish then.
char16_t* NumberToText(char16_t* out, Int32 language_base, StringView digits, Int16 scale_level,
                       Int16 kind);

}  // namespace quorl::internal
