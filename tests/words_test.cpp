// Numbers in words: read back to the number by a reader that knows the grammar of the four
// languages from its own description, sharing neither words nor code with the writer.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <vector>

#include "quorl/money/number_to_text.hpp"
#include "quorl/money/word_tables.hpp"
#include "tests/support/outcome.hpp"

namespace quorl {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr std::int64_t kSweepStep = 37;
#else
constexpr std::int64_t kSweepStep = 1;
#endif

constexpr std::array kBlocks{kFrenchWords, kEnglishWords, kDutchWords, kGermanWords};

std::string Words(Int32 base, std::string_view digits, Int16 level = 0, Int16 kind = 0) {
  String text;
  NumberToText(text, base, Utf16(digits), level, kind);
  return Utf8(text);
}

// --- The reader ---

// The joiners of a grammar; small are the hundred and the thousand, large the others.
enum Joint : std::size_t { kBehindSmall, kBehindLarge, kBeforeSmall, kBeforeLarge };

// Lists of words have a blank between them. The scales are the hundred, the thousand, then one and
// several of each.
struct Grammar {
  const char *zero, *units, *tens;
  std::array<const char*, 8> scales;
  std::array<const char*, 4> joiners;
  bool writes_one;  // "one hundred", not "hundred"
};

const std::map<Int32, Grammar> kGrammars{
    {kFrenchWords,
     {"zéro",
      "un deux trois quatre cinq six sept huit neuf dix onze douze treize quatorze quinze seize "
      "dix-sept dix-huit dix-neuf",
      "vingt trente quarante cinquante soixante septante quatre-vingt nonant",
      {"cent", "mille", "million", "millions", "milliard", "milliards", "billion", "billions"},
      {"-", " ", "-", " "},
      false}},
    {kEnglishWords,
     {"zero",
      "one two tree four five six seven eight nine ten eleven twelve thirteen fourteen fifteen "
      "sixteen seventeen eighteen nineteen",
      "twenty thirty forty fifty sixty seventy eighty ninety",
      {"hundred", "thousand", "million", "million", "milliard", "milliard", "billion", "billion"},
      {" and ", " and ", " ", " "},
      true}},
    {kDutchWords,
     {"nul",
      "een twee drie vier vijf zes zeven acht negen tien elf twaalf dertien veertien vijftien "
      "zestien zeventien achttien negentien",
      "twintig dertig veertig vijftig zestig zeventig tachtig negentig",
      {"honderd", "duizend", "miljoen", "miljoen", "miljard", "miljard", "biljoen", "biljoen"},
      {" ", " ", "", " "},
      false}},
    {kGermanWords,
     {"Null",
      "eins zwei drei vier fünf sechs sieben acht neun zehn elf zwölf dreizehn vierzehn fünfzehn "
      "sechzehn siebzehn achtzehn neunzehn",
      "zwanzig dreißig vierzig fünfzig sechzig siebzig achtzig neunzig",
      {"hundert", "tausend", "Million", "Millionen", "Milliarde", "Milliarden", "Billion",
       "Billionen"},
      {"", " ", "", " "},
      false}},
};

std::vector<std::string> Split(const char* words) {
  std::istringstream in(words);
  return {std::istream_iterator<std::string>(in), {}};
}

// Reads a text from its front, the largest scale first. What it reads it takes off; a text with
// anything left over, out of order or in another form than the grammar's is refused with -1.
class Reader {
 public:
  Reader(Int32 base, std::string_view text)
      : base_(base), grammar_(kGrammars.at(base)), rest_(text), words_(WordsByFirstByte(base)) {}

  std::int64_t Read() {
    if (rest_ == grammar_.zero) return 0;
    std::int64_t total = 0;
    bool first = true;
    for (std::size_t scale = 3; scale-- > 0;) {
      const std::int64_t head = ReadScale(scale, first);
      if (head == 0) continue;
      total += head * kScales[scale];
      first = false;
    }
    if (!first && rest_.empty()) return total;
    if (!first && !Take(grammar_.joiners[kBehindLarge])) return -1;
    const std::int64_t tail = ReadBelowMillion();
    return tail > 0 && rest_.empty() ? total + tail : -1;
  }

 private:
  static constexpr std::int64_t kScales[] = {1'000'000, 1'000'000'000, 1'000'000'000'000};

  bool Take(std::string_view piece) {
    if (!rest_.starts_with(piece)) return false;
    rest_.remove_prefix(piece.size());
    return true;
  }

  // A multiplier and its scale word, or 0 with nothing taken.
  std::int64_t ReadScale(std::size_t scale, bool first) {
    const std::string_view before = rest_;
    if (first || Take(grammar_.joiners[kBehindLarge])) {
      const std::int64_t head = ReadHead();
      const std::string_view word = grammar_.scales[2 * scale + (head == 1 ? 2 : 3)];
      if (head > 0 && Take(grammar_.joiners[kBeforeLarge]) && Take(word) && EndOrBlank())
        return head;
    }
    rest_ = before;
    return 0;
  }

  // Only the German multiplier has a form of its own, for one.
  std::int64_t ReadHead() {
    if (base_ != kGermanWords) return ReadBelowThousand();
    if (rest_.starts_with("eine ") && Take("eine")) return 1;
    const std::int64_t head = ReadBelowThousand();
    return head == 1 ? -1 : head;
  }

  bool EndOrBlank() const { return rest_.empty() || rest_[0] == ' '; }

  std::int64_t ReadBelowMillion() {
    const std::string_view before = rest_;
    std::int64_t thousands = 0;
    if (!grammar_.writes_one && Take(grammar_.scales[1])) {
      thousands = 1;
    } else {
      thousands = ReadBelowThousand(true);
      const bool found = thousands > (grammar_.writes_one ? 0 : 1) &&
                         Take(grammar_.joiners[kBeforeSmall]) && Take(grammar_.scales[1]);
      if (!found) {
        rest_ = before;
        return ReadBelowThousand();
      }
    }
    if (rest_.empty()) return thousands * 1000;
    if (!Take(grammar_.joiners[kBehindSmall])) return -1;
    const std::int64_t tail = ReadBelowThousand();
    return tail > 0 ? thousands * 1000 + tail : -1;
  }

  std::int64_t ReadBelowThousand(bool before_thousand = false) {
    const std::string_view before = rest_;
    std::int64_t hundreds = 0;
    if (!grammar_.writes_one && Take(grammar_.scales[0])) {
      hundreds = 1;
    } else {
      hundreds = ReadTwoDigits(before_thousand);
      const bool found = hundreds > (grammar_.writes_one ? 0 : 1) && hundreds < 10 &&
                         Take(grammar_.joiners[kBeforeSmall]) && Take(grammar_.scales[0]);
      if (!found) {
        rest_ = before;
        return ReadTwoDigits(before_thousand);
      }
    }
    const std::string_view behind = rest_;
    // The French plural stands where nothing follows in the number.
    if (base_ == kFrenchWords && hundreds > 1 && Take("s"))
      return before_thousand ? -1 : hundreds * 100;
    if (Take(grammar_.joiners[kBehindSmall])) {
      if (const std::int64_t tail = ReadTwoDigits(false); tail > 0) return hundreds * 100 + tail;
      rest_ = behind;
    }
    const bool plural_missing = base_ == kFrenchWords && hundreds > 1 && !before_thousand;
    return plural_missing ? -1 : hundreds * 100;
  }

  // The longest of the words from 1 to 99 that stands here; 80 by its place.
  std::int64_t ReadTwoDigits(bool before_thousand) {
    std::int64_t found = -1;
    std::size_t longest = 0;
    if (rest_.empty()) return found;
    for (const auto& [word, number] : words_[static_cast<unsigned char>(rest_[0])]) {
      if (word.size() > longest && rest_.starts_with(word)) {
        found = number;
        longest = word.size();
      }
    }
    rest_.remove_prefix(longest);
    if (base_ == kFrenchWords && found == 80 && !before_thousand && !Take("s")) return -1;
    return found;
  }

  // The words from 1 to 99.
  using NumberWords = std::array<std::vector<std::pair<std::string, std::int64_t>>, 256>;

  static const NumberWords& WordsByFirstByte(Int32 base) {
    static const auto all = [] {
      std::map<Int32, NumberWords> made;
      for (const Int32 block : kBlocks) {
        for (std::int64_t n = 1; n < 100; ++n) {
          const std::string word = TwoDigitWord(block, n);
          made[block][static_cast<unsigned char>(word[0])].emplace_back(word, n);
        }
      }
      return made;
    }();
    return all.at(base);
  }

  static std::string TwoDigitWord(Int32 base, std::int64_t number) {
    const Grammar& grammar = kGrammars.at(base);
    const std::vector<std::string> units = Split(grammar.units);
    const auto tens = static_cast<std::size_t>(number / 10);
    const auto unit = static_cast<std::size_t>(number % 10);
    if (number < 20) return units[static_cast<std::size_t>(number) - 1];
    const std::string ten = Split(grammar.tens)[tens - 2];
    if (unit == 0) return ten;
    const std::string one = units[unit - 1];
    if (base == kEnglishWords) return ten + "-" + one;
    if (base == kFrenchWords) return ten + (unit == 1 && tens != 8 ? "-et-" : "-") + one;
    if (base == kDutchWords) return one + (unit == 2 || unit == 3 ? "ën" : "en") + ten;
    return (unit == 1 ? "ein" : one) + "und" + ten;
  }

  Int32 base_;
  const Grammar& grammar_;
  std::string_view rest_;
  const NumberWords& words_;
};

// A text that reads back to its number is shared with no other number: the reader gives one number
// for one text. So no grammar here lets two numbers share one.
void ExpectReadBack(Int32 base, std::int64_t number) {
  const std::string text = Words(base, std::to_string(number));
  if (const std::int64_t back = Reader(base, text).Read(); back != number) {
    ADD_FAILURE() << base << ": " << number << " is \"" << text << "\", read back as " << back;
  }
}

class EveryLanguage : public testing::TestWithParam<Int32> {};

TEST_P(EveryLanguage, ReadsBackEveryNumberToAMillion) {
  for (std::int64_t n = 0; n <= 1'000'000 && !HasFailure(); n += kSweepStep) {
    ExpectReadBack(GetParam(), n);
  }
}

TEST_P(EveryLanguage, ReadsBackTheEdgesOfEveryScale) {
  constexpr std::int64_t kMost = 922'337'203'685'477;
  constexpr std::int64_t kNear[] = {0, 1, 2, 20, 21, 80, 81, 99, 100, 101, 180, 200, 999};
  for (std::int64_t scale = 1; scale <= kMost; scale *= 10) {
    for (std::int64_t times = 1; times <= 999; ++times) {
      for (std::int64_t near : kNear) {
        for (const std::int64_t n : {scale * times + near, scale * times - near}) {
          if (n >= 0 && n <= kMost && scale * times <= kMost) ExpectReadBack(GetParam(), n);
        }
      }
      if (HasFailure()) return;
    }
  }
  ExpectReadBack(GetParam(), kMost);
}

// Any digits, with groups of zeros among them; ten times as many in a long run.
TEST_P(EveryLanguage, ReadsBackSeededNumbers) {
  std::mt19937_64 random(static_cast<std::uint64_t>(GetParam()));
  const std::int64_t wanted = std::getenv("QUORL_LONG") != nullptr ? 1'000'000 : 100'000;
  const std::int64_t samples = wanted / kSweepStep;
  for (std::int64_t sample = 0; sample < samples && !HasFailure(); ++sample) {
    std::int64_t n = 0;
    for (int group = 0; group < 5; ++group) {
      n = n * 1000 + (random() % 3 == 0 ? 0 : static_cast<std::int64_t>(random() % 1000));
    }
    ExpectReadBack(GetParam(), n);
  }
}

TEST_P(EveryLanguage, LeadingZerosNeverChangeTheText) {
  for (const std::string digits : {"", "7", "80", "1000", "1000000000000"}) {
    EXPECT_EQ(Words(GetParam(), "00" + digits), Words(GetParam(), digits)) << digits;
  }
}

INSTANTIATE_TEST_SUITE_P(Words, EveryLanguage, testing::ValuesIn(kBlocks));

TEST(NumberToText, FormsByLanguage) {
  const struct {
    const char* digits;
    std::array<const char*, 4> texts;
  } cases[] = {
      {"0", {"zéro", "zero", "nul", "Null"}},
      {"21", {"vingt-et-un", "twenty-one", "eenentwintig", "einundzwanzig"}},
      {"22", {"vingt-deux", "twenty-two", "tweeëntwintig", "zweiundzwanzig"}},
      {"81", {"quatre-vingt-un", "eighty-one", "eenentachtig", "einundachtzig"}},
      {"91", {"nonant-et-un", "ninety-one", "eenennegentig", "einundneunzig"}},
      {"201", {"deux-cent-un", "two hundred and one", "tweehonderd een", "zweihunderteins"}},
      {"1234",
       {"mille-deux-cent-trente-quatre", "one thousand and two hundred and thirty-four",
        "duizend tweehonderd vierendertig", "tausendzweihundertvierunddreißig"}},
      {"101000",
       {"cent-un-mille", "one hundred and one thousand", "honderd eenduizend",
        "hunderteinstausend"}},
      {"1000001", {"un million un", "one million and one", "een miljoen een", "eine Million eins"}},
      {"101000000",
       {"cent-un millions", "one hundred and one million", "honderd een miljoen",
        "hunderteins Millionen"}},
      {"1000000000000000",
       {"mille billions", "one thousand billion", "duizend biljoen", "tausend Billionen"}},
      {"2001000000000000000000000001",
       {"deux-mille-un billions billions un", "two thousand and one billion billion and one",
        "tweeduizend een biljoen biljoen een", "zweitausendeins Billionen Billionen eins"}},
  };
  for (const auto& [digits, texts] : cases) {
    for (std::size_t at = 0; at < texts.size(); ++at) {
      EXPECT_EQ(Words(kBlocks[at], digits), texts[at]) << digits;
    }
  }
}

TEST(NumberToText, FrenchPluralsByPlace) {
  constexpr std::pair<const char*, const char*> cases[] = {
      {"80", "quatre-vingts"},
      {"80000", "quatre-vingt-mille"},
      {"80000000", "quatre-vingts millions"},
      {"200000", "deux-cent-mille"},
      {"200000000", "deux-cents millions"},
      {"180000", "cent-quatre-vingts-mille"},
      {"280", "deux-cent-quatre-vingts"},
  };
  for (const auto& [digits, text] : cases) EXPECT_EQ(Words(kFrenchWords, digits), text);
  EXPECT_EQ(Words(kFrenchWords, "80", 1), "quatre-vingt");
  EXPECT_EQ(Words(kFrenchWords, "200", 1), "deux-cent");
  EXPECT_EQ(Words(kFrenchWords, "200", 2), "deux-cents");
}

TEST(NumberToText, KindPicksTheWordForOne) {
  const struct {
    Int32 base;
    const char* digits;
    Int16 kind;
    const char* text;
  } cases[] = {
      {kFrenchWords, "1", 1, "une"},
      {kFrenchWords, "1", 32767, "une"},
      {kFrenchWords, "21", 1, "vingt-et-une"},
      {kFrenchWords, "1001", 1, "mille-une"},
      {kFrenchWords, "21000", 1, "vingt-et-un-mille"},
      {kFrenchWords, "1000001", 1, "un million une"},
      {kFrenchWords, "1000000000001000000000001", 1, "un billion un billions une"},
      {kEnglishWords, "21", 2, "twenty-one"},
      {kDutchWords, "21", 2, "eenentwintig"},
      {kGermanWords, "1", 0, "eins"},
      {kGermanWords, "1", 1, "ein"},
      {kGermanWords, "1", 9, "eine"},
      {kGermanWords, "101", 2, "hunderteins"},
      {kGermanWords, "21", 2, "einundzwanzig"},
      // A negative kind matters only where the word for one is reached with it.
      {kFrenchWords, "22000", -1, "vingt-deux-mille"},
      {kDutchWords, "21", -1, "eenentwintig"},
      {kGermanWords, "101", -1, "hunderteins"},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(Words(row.base, row.digits, 0, row.kind), row.text) << row.digits;
  }
}

TEST(NumberToText, AppendsWholeOrNotAtAll) {
  const struct {
    Int32 base;
    StringView digits;
    FailureNumber number;
  } cases[] = {
      {kFrenchWords, u"1", FailureNumber::kSubscriptOutOfRange},
      {kFrenchWords, u"922337203685471", FailureNumber::kSubscriptOutOfRange},
      {kGermanWords, u"1", FailureNumber::kSubscriptOutOfRange},
      {kFrenchWords, u"12a", FailureNumber::kInvalidArgument},
      {kFrenchWords, u"-1", FailureNumber::kInvalidArgument},
      {1001, u"1", FailureNumber::kInvalidArgument},
      {5000, u"1", FailureNumber::kInvalidArgument},
  };
  String text = u"Total: ";
  for (const auto& row : cases) {
    EXPECT_EQ(FailureOf([&] { NumberToText(text, row.base, row.digits, 0, -1); }),
              RuntimeFailure(row.number));
    EXPECT_EQ(text, u"Total: ") << Utf8(row.digits);
  }
  NumberToText(text, kFrenchWords, u"12", 0, -1);
  EXPECT_EQ(text, u"Total: douze");
}

TEST(NumberToText, AMillionDigitsTakeNoDeepStack) {
  const std::string text = Words(kDutchWords, "1" + std::string(1'200'000, '0'));
  std::size_t billions = 0;
  for (std::size_t at = 0; (at = text.find("biljoen", at)) != text.npos; ++at) ++billions;
  EXPECT_EQ(billions, 100'000U);
  EXPECT_TRUE(text.starts_with("een biljoen biljoen "));
}

TEST(WordTables, RowsByIdAndFormsByIndex) {
  std::size_t filled = 0;
  for (Int32 id = -5000; id < 9000; ++id) filled += LoadWordRow(id).empty() ? 0 : 1;
  EXPECT_EQ(filled, 168U);
  EXPECT_EQ(LoadWordRow(4001), u"eins;ein;eine");
  EXPECT_EQ(LoadWordRow(2038), u"; and ");
  for (const Int32 id : {0, 999, 1042, 2042, 4042, -1000, 5000, 2'000'000'000}) {
    EXPECT_TRUE(LoadWordRow(id).empty()) << id;
  }
  EXPECT_EQ(LastAlternative(u"a;;b"), 2);
  EXPECT_EQ(Alternative(u"a;;b", 1), u"");
  EXPECT_EQ(Alternative(u"a;;b", 2), u"b");
  const auto out_of_range = RuntimeFailure(FailureNumber::kSubscriptOutOfRange);
  for (const Int32 index : {-1, 3}) {
    EXPECT_EQ(FailureOf([&] { Alternative(u"a;;b", index); }), out_of_range) << index;
  }
  EXPECT_EQ(Joiner(u";"), u"");
  EXPECT_EQ(Joiner(u"; and "), u" and ");
}

}  // namespace
}  // namespace quorl
