// Whole numbers in words, in French, English, Dutch or German.
//
// The grammar stands here, every word in word_tables.hpp; for amounts with the names of a currency
// see money.hpp. Both functions are free of state and usable from any thread.
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

/// Appends the number that `Digits` writes ("0" to "9", leading zeros allowed, none at all is zero)
/// in the language whose block of words begins at `LanguageBase`. `ScaleLevel` is the level of the
/// scale word that the number will stand before, 0 for none; only 1, the thousand, makes a
/// difference: French 80 is "quatre-vingts" but "quatre-vingt" before it. `Kind` picks among the
/// forms of a final one ("un", "une"), the last of them if it is higher.
///
///     String text;
///     NumberToText(text, kFrenchWords, u"1234", 0, 0);  // "mille-deux-cent-trente-quatre"
///
/// Any length goes: the scale words end at 10 to the 12th, and 10 to the 15th is "mille billions".
/// Failures: 9 where a negative `Kind` is needed for the word for one; 5 for a base that is none or
/// a character that is no digit; 7 for more text than memory holds.
void NumberToText(String& text, Int32 LanguageBase, StringView Digits, Int16 ScaleLevel,
                  Int16 Kind);

/// The same into storage of the caller's, without any allocation: `out` has room for
/// `LongestWords(Digits.size())` code units, and the end of the words comes back. The caller
/// passes digits and a block's base and nothing else. After a failure 9 the storage holds rubbish.
char16_t* WriteNumber(char16_t* out, Int32 LanguageBase, StringView Digits, Int16 ScaleLevel,
                      Int16 Kind);

}  // namespace quorl::internal
