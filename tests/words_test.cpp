// Numbers in words: read back to the number by a reader that knows the grammar of the four
// languages from its own description, sharing neither words nor code with the writer.

#include <array>
#include <cstdlib>
#include <iterator>
#include <map>
#include <sstream>

#include "quorl/money/internal/number_to_text.hpp"
#include "quorl/money/internal/word_tables.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace internal;

constexpr std::array kBlocks{kFrenchWords, kEnglishWords, kDutchWords, kGermanWords};

std::string Words(Int32 base, std::uint64_t number, Int16 kind = 0) {
  String text(kRoomForWords, u'?');
  return Utf8({text.data(), NumberToText(text.data(), WordsOf(base), number, kind)});
}

// --- The reader ---

// Words have a blank between them: 0 to 19, then 20, 30 and on; the hundred; then the thousand and
// what follows it, one and several of each. Small joints are those of hundreds and thousands.
struct Grammar {
  const char *words, *hundred, *scales;
  const char *before_small, *behind_small, *before_large, *behind_large;
  bool writes_one;  // "one hundred", not "hundred"
};

const std::map<Int32, Grammar> kGrammars{
    {kFrenchWords,
     {"zéro un deux trois quatre cinq six sept huit neuf dix onze douze treize quatorze quinze "
      "seize dix-sept dix-huit dix-neuf vingt trente quarante cinquante soixante septante "
      "quatre-vingt nonant",
      "cent", "mille mille million millions milliard milliards billion billions", "-", "-", " ",
      " ", false}},
    {kEnglishWords,
     {"zero one two tree four five six seven eight nine ten eleven twelve thirteen fourteen "
      "fifteen sixteen seventeen eighteen nineteen twenty thirty forty fifty sixty seventy eighty "
      "ninety",
      "hundred", "thousand thousand million million milliard milliard billion billion", " ",
      " and ", " ", " and ", true}},
    {kDutchWords,
     {"nul een twee drie vier vijf zes zeven acht negen tien elf twaalf dertien veertien vijftien "
      "zestien zeventien achttien negentien twintig dertig veertig vijftig zestig zeventig tachtig "
      "negentig",
      "honderd", "duizend duizend miljoen miljoen miljard miljard biljoen biljoen", "", " ", " ",
      " ", false}},
    {kGermanWords,
     {"Null eins zwei drei vier fünf sechs sieben acht neun zehn elf zwölf dreizehn vierzehn "
      "fünfzehn sechzehn siebzehn achtzehn neunzehn zwanzig dreißig vierzig fünfzig sechzig "
      "siebzig achtzig neunzig",
      "hundert", "tausend tausend Million Millionen Milliarde Milliarden Billion Billionen", "", "",
      " ", " ", false}}};

std::vector<std::string> Split(const char* words) {
  std::istringstream in(words);
  return {std::istream_iterator<std::string>(in), {}};
}

// Takes a text apart at its scale words, the largest first. What stands before one of them, and
// behind the last, must be one of 999 texts; anything else is refused with -1.
class Reader {
 public:
  explicit Reader(Int32 base)
      : base_(base),
        grammar_(kGrammars.at(base)),
        words_(Split(grammar_.words)),
        scales_(Split(grammar_.scales)) {
    for (std::size_t n = 1; n < 1000; ++n) {
      const std::string head = n == 1 && base == kGermanWords ? "eine" : BelowThousand(n, false);
      const bool one_is_silent = n == 1 && !grammar_.writes_one;
      at_end_[BelowThousand(n, false)] = n;
      before_large_[head + grammar_.before_large] = n;
      before_thousand_[one_is_silent ? "" : BelowThousand(n, true) + grammar_.before_small] = n;
    }
  }

  std::int64_t Read(std::string_view text) const {
    if (text == words_[0]) return 0;
    std::size_t total = 0;
    for (std::size_t scale = 4, value = 1'000'000'000'000; scale-- > 0; value /= 1000) {
      const std::string& one = scales_[2 * scale];
      const std::size_t at = text.find(one);
      if (at == text.npos) continue;
      const Texts& heads = scale == 0 ? before_thousand_ : before_large_;
      const auto head = heads.find(text.substr(0, at));
      text.remove_prefix(at);
      if (head == heads.end() || !Take(text, head->second == 1 ? one : scales_[2 * scale + 1])) {
        return -1;
      }
      total += head->second * value;
      if (text.empty()) return static_cast<std::int64_t>(total);
      if (!Take(text, scale == 0 ? grammar_.behind_small : grammar_.behind_large)) return -1;
    }
    const auto tail = at_end_.find(text);
    return tail == at_end_.end() ? -1 : static_cast<std::int64_t>(total + tail->second);
  }

 private:
  using Texts = std::map<std::string, std::size_t, std::less<>>;

  static bool Take(std::string_view& text, std::string_view piece) {
    if (!text.starts_with(piece)) return false;
    text.remove_prefix(piece.size());
    return true;
  }

  std::string BelowThousand(std::size_t n, bool is_before_thousand) const {
    const std::size_t hundreds = n / 100, rest = n % 100;
    const bool french = base_ == kFrenchWords;
    std::string text;
    if (hundreds > (grammar_.writes_one ? 0 : 1)) text = words_[hundreds] + grammar_.before_small;
    if (hundreds > 0) text += grammar_.hundred;
    // The French plurals stand where nothing follows in the number.
    if (french && hundreds > 1 && rest == 0 && !is_before_thousand) text += "s";
    if (rest > 0) text += (hundreds > 0 ? grammar_.behind_small : "") + BelowHundred(rest);
    if (french && rest == 80 && (hundreds > 0 || !is_before_thousand)) text += "s";
    return text;
  }

  std::string BelowHundred(std::size_t n) const {
    const std::size_t tens = n / 10, unit = n % 10;
    if (n < 20) return words_[n];
    if (unit == 0) return words_[18 + tens];
    if (base_ == kEnglishWords) return words_[18 + tens] + "-" + words_[unit];
    if (base_ == kFrenchWords) {
      return words_[18 + tens] + (unit == 1 && tens != 8 ? "-et-" : "-") + words_[unit];
    }
    if (base_ == kGermanWords)
      return (unit == 1 ? "ein" : words_[unit]) + "und" + words_[18 + tens];
    return words_[unit] + (unit == 2 || unit == 3 ? "ën" : "en") + words_[18 + tens];
  }

  Int32 base_;
  const Grammar& grammar_;
  std::vector<std::string> words_, scales_;
  Texts at_end_, before_large_, before_thousand_;
};

class EveryLanguage : public testing::TestWithParam<Int32> {
 protected:
  // The reader gives one number for one text, so no two numbers that read back share a text.
  void ExpectReadBack(std::int64_t number) {
    const std::string text = Words(GetParam(), static_cast<std::uint64_t>(number));
    if (const std::int64_t back = reader_.Read(text); back != number) {
      ADD_FAILURE() << number << " is \"" << text << "\", read back as " << back;
    }
  }

  const Reader reader_{GetParam()};
};

TEST_P(EveryLanguage, ReadsBackEveryNumberToAMillion) {
  for (std::int64_t n = 0; n <= 1'000'000 && !HasFailure(); n += kSweepStep) ExpectReadBack(n);
}

// Groups of any digits and of those around which a decision is made; ten times as many in a long
// run.
TEST_P(EveryLanguage, ReadsBackSeededNumbers) {
  constexpr int kGroups[] = {0, 0, 0, 0, 0, 1, 1, 2, 20, 21, 80, 81, 99, 100, 101, 180, 200, 999};
  Random random(static_cast<std::uint64_t>(GetParam()));
  const std::int64_t wanted = std::getenv("QUORL_LONG") != nullptr ? 1'000'000 : 100'000;
  for (std::int64_t sample = 0; sample < wanted / kSweepStep && !HasFailure(); ++sample) {
    std::int64_t n = 0;
    for (int group = 0; group < 5; ++group) {
      const bool is_near = random.Whole(0, 2) > 0;
      n = n * 1000 + (is_near ? kGroups[random.Bits() % std::size(kGroups)] : random.Whole(0, 999));
    }
    ExpectReadBack(n);
  }
}

INSTANTIATE_TEST_SUITE_P(Words, EveryLanguage, testing::ValuesIn(kBlocks));

TEST(NumberToText, PlaceAndKindPickTheForm) {
  // Number, kind and text, by language; first what is beyond the reader. A negative kind matters
  // only where the word for one is reached with it.
  const StringView tables[] = {
      u"1000000000000000|0|mille billions;2001000000000000001|0|deux millions mille billions un;"
      u"1000001000000000001|1|un million un billions une;1|-1|!9;101|-1|!9;922337203685471|-1|!9;"
      u"1|1|une;21|1|vingt-et-une;1001|32767|mille-une;21000|1|vingt-et-un-mille;"
      u"1000001|1|un million une;22000|-1|vingt-deux-mille;21000|-1|vingt-et-un-mille",
      u"1000000000000000|0|one thousand billion;2001000000000000001|0|two million and one thousand "
      u"billion and one;21|2|twenty-one;21|-1|!9",
      u"1000000000000000|0|duizend biljoen;2001000000000000001|0|twee miljoen duizend biljoen een;"
      u"21|2|eenentwintig;21|-1|eenentwintig;101|-1|!9",
      u"1000000000000000|0|tausend Billionen;2001000000000000001|0|zwei Millionen tausend "
      u"Billionen "
      u"eins;1|1|ein;1|9|eine;101|2|hunderteins;21|2|einundzwanzig;101|-1|hunderteins;1|-1|!9"};
  for (std::size_t at = 0; at < kBlocks.size(); ++at) {
    for (const auto& row : Rows(tables[at])) {
      const auto kind = static_cast<Int16>(std::stoi(Utf8(row[1])));
      EXPECT_EQ(ResultOf([&] { return Words(kBlocks[at], std::stoull(Utf8(row[0])), kind); }),
                Utf8(row[2]));
    }
  }
}

}  // namespace
}  // namespace quorl
