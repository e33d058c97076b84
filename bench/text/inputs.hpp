// Texts that are cut, searched, shaped and filtered.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "bench/measure.hpp"

namespace quorl::bench {

using Texts = std::vector<String>;
using Views = std::vector<StringView>;

inline constexpr StringView kSmallLetters = u"abcdefghijklmnopqrstuvwxyz";
inline constexpr StringView kFrenchCapitals = u"ABCDEFGHIJKLMNOPQRSTUVWXYZÉÈÀÇ  ";
inline constexpr StringView kMixed = u"0123456789 ./-ABCDé";

inline Texts TextsOf(std::size_t units, StringView alphabet) {
  return Seeded::List(3, [=](Seeded& seeded) { return seeded.Text(units, alphabet); });
}

// --- Long texts ---

/// Words of 3 to 10 letters with ";" after each; one in a thousand is the word that is counted.
inline constexpr StringView kCountedWord = u"total";
inline const String& LongText() {
  static const String text = [] {
    Seeded seeded(4);
    String made;
    while (made.size() < 1'001'000) {
      made += seeded.Whole(1, 1000) == 1
                  ? String(kCountedWord)
                  : seeded.Text(static_cast<std::size_t>(seeded.Whole(3, 10)), kSmallLetters);
      made += u';';
    }
    return made;
  }();
  return text;
}
/// Stretches of the long text, each of `units`.
inline auto StretchesOf(std::size_t units) {
  return [=] {
    Views stretches;
    for (std::size_t i = 0; i < kInputs; ++i) {
      stretches.push_back(StringView(LongText()).substr(i, units));
    }
    return stretches;
  };
}
inline constexpr std::size_t kMillion = 1'000'000;
inline constexpr const char* kCountOne = "StrCount of 1 unit in N";
inline constexpr const char* kCountWord = "StrCount of 5 units in N";

// --- The worst case of a search: many places nearly fit ---

struct Search {
  String text;
  String sought;
};
inline constexpr const char* kWorstFind = "IndexOf of N units in 10,000, worst case";
inline constexpr std::array<std::size_t, 6> kSoughtSizes{2, 5, 16, 63, 64, 200};

/// A text of few letters, and a stretch of it in which one unit is wrong.
struct NearMiss {
  StringView letters;
  bool in_order;  // the letters in turn, or any
  int wrong;      // the unit that is wrong: the first, the middle one or the last
};
inline constexpr std::array<NearMiss, 5> kNearMisses{
    {{u"a", true, 0}, {u"a", true, 1}, {u"a", true, 2}, {u"ab", true, 2}, {u"ab", false, 1}}};

inline Search SearchOf(const NearMiss& miss, std::size_t sought_size) {
  String text = Seeded(5).Text(10'000, miss.letters);
  for (std::size_t i = 0; miss.in_order && i < text.size(); ++i) {
    text[i] = miss.letters[i % miss.letters.size()];
  }
  String sought = text.substr(5'000, sought_size);
  sought[miss.wrong == 0 ? 0 : miss.wrong == 1 ? sought_size / 2 : sought_size - 1] = u'c';
  return {text, sought};
}

/// Registers the search by `find` for texts of all sizes.
template <class Find>
void MeasureWorstFind(const char* who, Find find) {
  for (const std::size_t size : kSoughtSizes) {
    for (std::size_t i = 0; i < kNearMisses.size(); ++i) {
      Measure(
          kWorstFind, AtSize(AtSize(who, size), i),
          [=] { return std::array{SearchOf(kNearMisses[i], size)}; },
          [=](const Search& search) { return find(search.text, search.sought); });
    }
  }
}

/// A set of which the text has no unit.
inline constexpr const char* kAnyInLong = "IndexOfAny, N units, a set of a third, none found";
inline auto NoneFound(std::size_t units) {
  return [=] {
    String set(units / 3, u'\0');
    for (std::size_t i = 0; i < set.size(); ++i) set[i] = static_cast<char16_t>(0x4E00 + i);
    Seeded(5).Shuffle(set);
    return std::array{Search{Seeded(5).Text(units, kSmallLetters), set}};
  };
}
inline constexpr std::array<std::size_t, 3> kAnySizes{320, 3'200, 32'000};

// --- Short texts ---

inline constexpr const char* kToken = "GetToken, the third of five";
inline Texts Lines() {
  return Seeded::List(6, [](Seeded& seeded) {
    String line;
    for (int field = 0; field < 5; ++field) {
      if (field > 0) line += u';';
      line += seeded.Text(static_cast<std::size_t>(seeded.Whole(3, 10)), kSmallLetters);
    }
    return line;
  });
}

inline constexpr const char* kReplace = "StrTran, 4 units in 32";
inline constexpr StringView kOld = u"EURO";
inline constexpr StringView kNew = u"francs";
inline Texts TextsWithOld() {
  return Seeded::List(7, [](Seeded& seeded) {
    String text = seeded.Text(32, kSmallLetters);
    const auto at = static_cast<std::size_t>(seeded.Whole(0, 28));
    return text.replace(at, kOld.size(), kOld);
  });
}

inline constexpr const char* kPad = "Padl to 20";
inline Texts Figures() {
  return Seeded::List(8, [](Seeded& seeded) {
    return seeded.Text(static_cast<std::size_t>(seeded.Whole(4, 9)), u"0123456789.");
  });
}

inline constexpr const char* kShorten = "TruncateMiddle, 40 to 20";
inline Texts Names() { return TextsOf(40, kSmallLetters); }

inline constexpr const char* kTrim = "RTrimEx of zeros";
inline Texts FiguresWithZeros() {
  return Seeded::List(9, [](Seeded& seeded) {
    const auto zeros = static_cast<std::size_t>(seeded.Whole(0, 4));
    const auto blanks = static_cast<std::size_t>(seeded.Whole(0, 2));
    return seeded.Text(7, u"123456789.") + String(zeros, u'0') + String(blanks, u' ');
  });
}

inline constexpr const char* kDigits = "DigitsOf, 30 units";
inline Texts MixedTexts() { return TextsOf(30, kMixed); }

inline constexpr const char* kProper = "ProperCase, 20 French letters";
inline Texts FrenchNames() { return TextsOf(20, kFrenchCapitals); }

inline constexpr const char* kAnyInShort = "IndexOfAny, 3 units in 30";
inline constexpr StringView kMarks = u".-/";
inline Texts TextsWithMarks() { return TextsOf(30, u"0123456789abcdefghijklm.-/"); }

}  // namespace quorl::bench
