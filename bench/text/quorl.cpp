#include "bench/text/inputs.hpp"
#include "quorl/text/strings.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "Quorl";

void ShortTexts() {
  Measure(kToken, kWho, Lines, [](const String& t) { return Strings::GetToken(t, u";", 3); });
  Measure(kReplace, kWho, TextsWithOld,
          [](const String& text) { return Strings::StrTran(text, kOld, kNew); });
  Measure(kPad, kWho, Figures, [](const String& text) { return Strings::Padl(text, 20, u"*"); });
  Measure(kShorten, kWho, Names,
          [](const String& text) { return Strings::TruncateMiddle(text, 20); });
  Measure(kTrim, kWho, FiguresWithZeros,
          [](const String& text) { return Strings::RTrimEx(text, u"0"); });
  Measure(kDigits, kWho, MixedTexts, Strings::DigitsOf);
  Measure(kProper, kWho, FrenchNames, Strings::ProperCase);
  Measure(kAnyInShort, kWho, TextsWithMarks,
          [](const String& text) { return Strings::IndexOfAny(text, kMarks); });
}

void LongTexts() {
  for (const std::size_t size : {kMillion / 100, kMillion / 10, kMillion}) {
    Measure(kCountOne, AtSize(kWho, size), StretchesOf(size),
            [](StringView text) { return Strings::StrCount(text, u";"); });
    Measure(kCountWord, AtSize(kWho, size), StretchesOf(size),
            [](StringView text) { return Strings::StrCount(text, kCountedWord); });
  }
  MeasureWorstFind(
      kWho, [](StringView text, StringView sought) { return Strings::IndexOf(text, sought); });
  for (const std::size_t size : kAnySizes) {
    Measure(kAnyInLong, AtSize(kWho, size), NoneFound(size),
            [](const Search& search) { return Strings::IndexOfAny(search.text, search.sought); });
  }
}

// A line of so many units, in which every token has nine.
auto LinesOf(std::size_t units) {
  return [=] {
    String line;
    while (line.size() < units) line += u"abcdefghi;";
    return std::array{line};
  };
}

void Growth() {
  for (const std::size_t size : {300U, 3'000U, 30'000U}) {
    const std::string who = AtSize(kWho, size);
    const auto units = static_cast<Int16>(size);
    Measure("GetToken, the last of N units", who, LinesOf(size),
            [=](const String& text) { return Strings::GetToken(text, u";", units / 10); });
    Measure("StrTran at the end of N units", who, LinesOf(size),
            [](const String& text) { return Strings::StrTran(text, u"hij", u"x"); });
    Measure("Padl to N units", who, Figures,
            [=](const String& text) { return Strings::Padl(text, units); });
    Measure("TruncateMiddle, N units to half", who, LinesOf(size),
            [=](const String& text) { return Strings::TruncateMiddle(text, units / 2); });
    Measure(
        "DigitsOf N units", who, [=] { return std::array{Seeded(3).Text(size, kMixed)}; },
        Strings::DigitsOf);
    Measure(
        "ProperCase of N units", who,
        [=] { return std::array{Seeded(3).Text(size, kFrenchCapitals)}; }, Strings::ProperCase);
  }
}

const AtStart rows([] {
  LongTexts();
  ShortTexts();
  Growth();
});

}  // namespace
