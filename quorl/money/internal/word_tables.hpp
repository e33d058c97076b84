// All the words of amounts in words: one table of 168 rows, a block of 42 for each language.
//
// A row is known by its id, the block's base plus the row's number: row 34, the word for minus, is
// 1034 in French and 4034 in German. The code that writes numbers holds no word of a language; the
// compiler puts the rows together (language_words.hpp). Three forms of row:
//  - a plain row is taken whole;
//  - alternatives stand with ";" between them and are counted from 0: "eins;ein;eine";
//  - a joiner row (36 to 39) begins with a ";" that is no separator: what follows is the joiner.
// Blanks at the ends of a row belong to it. The functions are for the compiler alone: a row or an
// alternative that there is none of does not compile. For numbers see number_to_text.hpp.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// The bases of the blocks.
inline constexpr Int32 kFrenchWords = 1000;
inline constexpr Int32 kEnglishWords = 2000;
inline constexpr Int32 kDutchWords = 3000;
inline constexpr Int32 kGermanWords = 4000;

inline constexpr Int32 kWordBlocks = 4;
inline constexpr Int32 kWordRows = 42;

/// The rows that are not themselves the number that they write. Rows 1 to 19 are; 20 to 27 are the
/// tens from 20 on; those from `kHundredRow` on are the scale words by level; joiners and threshold
/// stand twice, for the levels up to the thousand and for those from the million on.
enum WordRow : Int32 {
  kZeroRow = 0,
  kOneRow = 1,
  kTensRow = 18,
  kHundredRow = 28,
  kJoiningRow = 33,
  kMinusRow = 34,
  kUnitLinkRow = 35,
  kMultiplierJoinerRow = 36,
  kRemainderJoinerRow = 38,
  kThresholdRow = 40,
};

namespace detail {

// A line a row, a column a block.
inline constexpr std::array<std::array<StringView, kWordBlocks>, kWordRows> kWords{{
    {u"zéro", u"zero", u"nul", u"Null"},
    {u"un;une", u"one", u"een", u"eins;ein;eine"},
    {u"deux", u"two", u"twee", u"zwei"},
    {u"trois", u"tree", u"drie", u"drei"},
    {u"quatre", u"four", u"vier", u"vier"},
    {u"cinq", u"five", u"vijf", u"fünf"},
    {u"six", u"six", u"zes", u"sechs"},
    {u"sept", u"seven", u"zeven", u"sieben"},
    {u"huit", u"eight", u"acht", u"acht"},
    {u"neuf", u"nine", u"negen", u"neun"},
    {u"dix", u"ten", u"tien", u"zehn"},
    {u"onze", u"eleven", u"elf", u"elf"},
    {u"douze", u"twelve", u"twaalf", u"zwölf"},
    {u"treize", u"thirteen", u"dertien", u"dreizehn"},
    {u"quatorze", u"fourteen", u"veertien", u"vierzehn"},
    {u"quinze", u"fifteen", u"vijftien", u"fünfzehn"},
    {u"seize", u"sixteen", u"zestien", u"sechzehn"},
    {u"dix-sept", u"seventeen", u"zeventien", u"siebzehn"},
    {u"dix-huit", u"eighteen", u"achttien", u"achtzehn"},
    {u"dix-neuf", u"nineteen", u"negentien", u"neunzehn"},
    {u"vingt", u"twenty", u"twintig", u"zwanzig"},
    {u"trente", u"thirty", u"dertig", u"dreißig"},
    {u"quarante", u"forty", u"veertig", u"vierzig"},
    {u"cinquante", u"fifty", u"vijftig", u"fünfzig"},
    {u"soixante", u"sixty", u"zestig", u"sechzig"},
    {u"septante", u"seventy", u"zeventig", u"siebzig"},
    {u"quatre-vingt;quatre-vingts", u"eighty", u"tachtig", u"achtzig"},
    {u"nonant", u"ninety", u"negentig", u"neunzig"},
    {u"cent;cents", u"hundred;hundred", u"honderd;honderd", u"hundert;hundert"},
    {u"mille;mille", u"thousand;thousand", u"duizend;duizend", u"tausend;tausend"},
    {u"million;millions", u"million;million", u"miljoen;miljoen", u"Million;Millionen"},
    {u"milliard;milliards", u"milliard;milliard", u"miljard;miljard", u"Milliarde;Milliarden"},
    {u"billion;billions", u"billion;billion", u"biljoen;biljoen", u"Billion;Billionen"},
    {u"et", u" ", u"en;ën", u"und"},
    {u"moins", u"minus", u"minder", u"weniger"},
    {u" de ; d'", u" ", u" ", u" "},
    {u";-", u"; ", u";", u";"},
    {u"; ", u"; ", u"; ", u"; "},
    {u";-", u"; and ", u"; ", u";"},
    {u"; ", u"; and ", u"; ", u"; "},
    {u"2", u"1", u"2", u"2"},
    {u"1", u"1", u"1", u"1"},
}};

}  // namespace detail

/// The text of the row `id`, whole.
constexpr StringView LoadWordRow(Int32 id) {
  return detail::kWords[static_cast<std::size_t>(id % 1000)]
                       [static_cast<std::size_t>(id / 1000 - 1)];
}

/// The index of a row's last alternative: 0 for a row without ";".
constexpr Int32 LastAlternative(StringView row) noexcept {
  return static_cast<Int32>(std::count(row.begin(), row.end(), u';'));
}

/// The alternative of a row at `index`.
constexpr StringView Alternative(StringView row, Int32 index) {
  if (index < 0 || index > LastAlternative(row)) throw "the row has fewer alternatives";
  for (; index > 0; --index) row.remove_prefix(row.find(u';') + 1);
  return row.substr(0, row.find(u';'));
}

/// The joiner in a joiner row, which may be empty.
constexpr StringView Joiner(StringView row) { return row.substr(1); }

}  // namespace quorl::internal
