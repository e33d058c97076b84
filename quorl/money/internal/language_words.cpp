// What a row holds for a language stands in word_tables.hpp; the grammar that puts rows together
// stands here and, for the order of a number's parts, in number_to_text.cpp.

#include "quorl/money/internal/language_words.hpp"

#include <algorithm>

#include "quorl/money/internal/word_tables.hpp"

namespace quorl::internal {

namespace {

constexpr StringView kHyphen = u"-";

class Maker {
 public:
  constexpr explicit Maker(Int32 base) : base_(base) {}

  constexpr LanguageWords Make() const {
    LanguageWords words{};
    Numbers(words);
    Hundreds(words);
    Scales(words);
    words.has_kind_behind_hundreds = base_ != kGermanWords;
    words.minus.Add(Row(kMinusRow));
    words.minus.Add(u" ");
    for (Int32 vowel = 0; vowel < 2; ++vowel) {
      const StringView links = Row(kUnitLinkRow);
      words.link[At(vowel)].Add(Alternative(links, std::min(vowel, LastAlternative(links))));
    }
    return words;
  }

 private:
  static constexpr std::size_t At(Int32 index) { return static_cast<std::size_t>(index); }

  constexpr StringView Row(Int32 row) const { return LoadWordRow(base_ + row); }

  constexpr void Numbers(LanguageWords& words) const {
    for (Int32 kind = 0; kind < 3; ++kind) {
      for (Int32 number = 0; number < 100; ++number) {
        words.below_hundred[At(kind)][At(number)] = BelowHundred(number, kind);
      }
    }
    words.eighty_before_thousand.Add(Alternative(Row(kTensRow + 8), 0));
  }

  constexpr StringView One(Int32 kind) const {
    const StringView row = Row(kOneRow);
    return Alternative(row, std::min(kind, LastAlternative(row)));
  }

  constexpr Slot BelowHundred(Int32 number, Int32 kind) const {
    const Int32 tens = number / 10, unit = number % 10;
    Slot slot;
    if (number < 20) {
      AddUnit(slot, number, kind);
    } else if (unit == 0) {
      const bool plural = base_ == kFrenchWords && number == 80;
      slot.Add(Alternative(Row(kTensRow + tens), plural ? 1 : 0));
    } else if (base_ == kFrenchWords || base_ == kEnglishWords) {
      AddTensThenUnit(slot, tens, unit, kind);
    } else {
      AddUnitThenTens(slot, tens, unit);
    }
    return slot;
  }

  constexpr void AddUnit(Slot& slot, Int32 unit, Int32 kind) const {
    slot.Add(unit == 1 ? One(kind) : Row(unit));
    slot.takes_kind = unit == 1;
  }

  constexpr void AddTensThenUnit(Slot& slot, Int32 tens, Int32 unit, Int32 kind) const {
    slot.Add(Alternative(Row(kTensRow + tens), 0));
    slot.Add(kHyphen);
    if (base_ == kFrenchWords && unit == 1 && tens != 8) {
      slot.Add(Alternative(Row(kJoiningRow), 0));
      slot.Add(kHyphen);
    }
    AddUnit(slot, unit, kind);
  }

  // "eenentwintig", "tweeëntwintig", "einundzwanzig".
  constexpr void AddUnitThenTens(Slot& slot, Int32 tens, Int32 unit) const {
    const bool dutch = base_ == kDutchWords;
    const bool after_vowel = dutch && (unit == 2 || unit == 3);
    slot.Add(unit == 1 ? One(dutch ? 0 : 1) : Row(unit));
    slot.Add(Alternative(Row(kJoiningRow), after_vowel ? 1 : 0));
    slot.Add(Row(kTensRow + tens));
  }

  constexpr void Hundreds(LanguageWords& words) const {
    for (Int32 digit = 1; digit < 10; ++digit) {
      Slot slot;
      AddMultiplier(slot, digit, 0);
      Slot several = slot;
      slot.Add(Alternative(Row(kHundredRow), 0));
      several.Add(Alternative(Row(kHundredRow), digit == 1 ? 0 : 1));
      words.hundreds[At(digit)] = several;
      words.hundreds_before_thousand[At(digit)] = slot;
      slot.Add(Joiner(Row(kRemainderJoinerRow)));
      words.hundreds_before_more[At(digit)] = slot;
    }
  }

  constexpr void Scales(LanguageWords& words) const {
    for (Int32 level = kThousands; level <= Int32{kBillions}; ++level) {
      const Int32 size_class = level < Int32{kMillions} ? 0 : 1;
      const StringView scale = Row(kHundredRow + level);
      const StringView joiner = Joiner(Row(kRemainderJoinerRow + size_class));
      Slot one, several;
      AddMultiplier(one, 1, size_class);
      one.Add(Alternative(scale, 0));
      several.Add(Joiner(Row(kMultiplierJoinerRow + size_class)));
      several.Add(Alternative(scale, 1));
      words.one_scale[At(level)] = one;
      words.scale[At(level)] = several;
      one.Add(joiner);
      several.Add(joiner);
      words.one_scale_before_more[At(level)] = one;
      words.scale_before_more[At(level)] = several;
    }
  }

  // "one " before "hundred", "eine " before "Million", nothing before "tausend".
  constexpr void AddMultiplier(Slot& slot, Int32 digit, Int32 size_class) const {
    if (digit < Row(kThresholdRow + size_class)[0] - u'0') return;
    slot.Add(digit == 1 ? One(base_ == kGermanWords ? 2 : 0) : Row(digit));
    slot.Add(Joiner(Row(kMultiplierJoinerRow + size_class)));
  }

  Int32 base_;
};

}  // namespace

constexpr std::array<LanguageWords, kWordBlocks> kLanguageWords{
    Maker(kFrenchWords).Make(), Maker(kEnglishWords).Make(), Maker(kDutchWords).Make(),
    Maker(kGermanWords).Make()};

}  // namespace quorl::internal
