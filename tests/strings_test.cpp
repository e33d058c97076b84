// Strings: tables of cases, and slow oracles that follow each algorithm step by step.

#include "quorl/text/strings.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <limits>
#include <random>

#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {
namespace {

constexpr Int16 kMost = std::numeric_limits<Int16>::max();
constexpr Int16 kLeast = std::numeric_limits<Int16>::min();

// What a call came to: its result, or the Number of its failure.
template <class Result>
struct Outcome {
  Result result{};
  Int32 number = 0;
  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome<String>& outcome, std::ostream* out) {
  *out << outcome.number << " \"" << Utf8(outcome.result) << "\"";
}
template <class Result>
void PrintTo(const Outcome<Result>& outcome, std::ostream* out) {
  *out << outcome.number << " " << outcome.result;
}

template <class Work>
auto OutcomeOf(Work work) -> Outcome<decltype(work())> {
  try {
    return {work(), 0};
  } catch (const RaisedError& error) {
    EXPECT_EQ(error.Source(), kRuntimeSource);
    return {{}, error.Number()};
  }
}

String Repeated(std::size_t count, char16_t unit = u'a') { return String(count, unit); }

// --- The oracles: own primitives, no view is cut before it is checked ---

[[noreturn]] void Fail(Int32 number) { throw RaisedError(number, kRuntimeSource, u""); }

std::int64_t Narrow(std::int64_t value) {
  if (value < kLeast || value > kMost) Fail(6);
  return value;
}

std::int64_t SlowFind(std::int64_t start, const String& text, const String& sought) {
  if (start < 1) Fail(5);
  const auto length = static_cast<std::int64_t>(text.size());
  const auto width = static_cast<std::int64_t>(sought.size());
  if (length == 0) return 0;
  if (width == 0) return start <= length + 1 ? start : 0;
  for (std::int64_t p = start; p + width <= length + 1; ++p) {
    if (text.substr(static_cast<std::size_t>(p - 1), sought.size()) == sought) return p;
  }
  return 0;
}

String SlowSlice(const String& text, std::int64_t start, std::int64_t count) {
  String slice;
  for (std::int64_t p = start; p < start + count; ++p) {
    if (p >= 1 && p <= static_cast<std::int64_t>(text.size())) {
      slice += text[static_cast<std::size_t>(p - 1)];
    }
  }
  return slice;
}

Int32 SlowCount(const String& text, const String& sought) {
  if (sought.empty() && !text.empty()) Fail(6);
  Int32 count = 0;
  const auto width = static_cast<std::int64_t>(sought.size());
  for (std::int64_t p = SlowFind(1, text, sought); p > 0;) {
    p = SlowFind(p + width, text, sought);
    ++count;
  }
  return count;
}

String SlowToken(const String& text, const String& separator, Int16 index) {
  if (text.empty()) return {};
  const String w = text + separator;
  const std::int64_t n = Narrow(std::int64_t{index} - 1);
  std::int64_t p = 1;
  for (std::int64_t i = 0; i < n; ++i) {
    p = SlowFind(p, w, separator);
    if (p == 0) return {};
    p += static_cast<std::int64_t>(separator.size());
    if (separator.empty() && i > 3) break;  // nothing will move any more
  }
  const std::int64_t e = SlowFind(p, w, separator);
  return e > 0 ? SlowSlice(w, p, e - p) : SlowSlice(w, p + 1, static_cast<std::int64_t>(w.size()));
}

String SlowReplace(const String& text, const String& old_part, const String& new_part) {
  const std::int64_t p = Narrow(SlowFind(1, text, old_part));
  const std::int64_t q = Narrow(p + static_cast<std::int64_t>(old_part.size()));
  if (p < 1) return text;
  return SlowSlice(text, 1, p - 1) + new_part +
         SlowSlice(text, q, static_cast<std::int64_t>(text.size()));
}

std::int64_t SlowEnd(const String& text, Int16 start, Int16 count) {
  return std::min(Narrow(Narrow(std::int64_t{start} + count) - 1),
                  static_cast<std::int64_t>(text.size()));
}

Int16 SlowIndexOf(const String& text, const String& sought, Int16 start, Int16 count) {
  String searched = text;
  if (count != 0) {
    const std::int64_t e = SlowEnd(text, start, count);
    if (e < 0) Fail(5);
    searched = SlowSlice(text, 1, e);
  }
  return static_cast<Int16>(Narrow(SlowFind(start, searched, sought)));
}

Int16 SlowIndexOfAny(const String& text, const String& any_of, Int16 start, Int16 count) {
  const std::int64_t e =
      count > 0 ? SlowEnd(text, start, count) : Narrow(static_cast<std::int64_t>(text.size()));
  for (std::int64_t i = start; i <= e; Narrow(++i)) {
    if (i < 1) Fail(5);
    if (SlowFind(1, any_of, SlowSlice(text, i, 1)) > 0) return static_cast<Int16>(i);
  }
  return 0;
}

// Short texts over two or three letters, so that overlaps and matches abound, and numbers that are
// mostly near but sometimes wild.
class Wild {
 public:
  String Text(std::size_t longest) {
    String text(Below(longest + 1), u' ');
    for (char16_t& unit : text) unit = static_cast<char16_t>(u'a' + Below(letters_));
    letters_ = 1 + Below(3);
    return text;
  }
  Int16 Number() {
    static constexpr Int16 kEdges[] = {kLeast, kLeast + 1, -16384, 16384, kMost - 1, kMost};
    if (Below(5) == 0) return kEdges[Below(std::size(kEdges))];
    if (Below(9) == 0) return static_cast<Int16>(Below(65536));
    return static_cast<Int16>(static_cast<int>(Below(20)) - 5);
  }

 private:
  std::size_t Below(std::size_t limit) { return generator_() % limit; }

  std::mt19937_64 generator_{20240607};
  std::size_t letters_ = 2;
};

TEST(Strings, SearchMembersFollowTheirStepsOnWildArguments) {
  Wild wild;
  for (int round = 0; round < 400000; ++round) {
    const String text = wild.Text(14), sought = wild.Text(4), other = wild.Text(3);
    const Int16 start = wild.Number(), count = wild.Number();
    SCOPED_TRACE(testing::Message() << "text " << Utf8(text) << ", sought " << Utf8(sought) << ", "
                                    << start << ", " << count);
    const auto token = OutcomeOf([&] { return SlowToken(text, sought, start); });
    ASSERT_EQ(OutcomeOf([&] { return Strings::GetToken(text, sought, start); }), token);
    const auto times = OutcomeOf([&] { return SlowCount(text, sought); });
    ASSERT_EQ(OutcomeOf([&] { return Strings::StrCount(text, sought); }), times);
    const auto tokens = OutcomeOf([&] { return Strings::NbrTokens(text, sought); });
    ASSERT_EQ(tokens.number, text.empty() ? 0 : times.number);
    if (tokens.number == 0) {
      ASSERT_EQ(Utf8(tokens.result), text.empty() ? "0" : std::to_string(times.result + 1));
    }
    const auto replaced = OutcomeOf([&] { return SlowReplace(text, sought, other); });
    ASSERT_EQ(OutcomeOf([&] { return Strings::StrTran(text, sought, other); }), replaced);
    const auto position = OutcomeOf([&] { return SlowIndexOf(text, sought, start, count); });
    ASSERT_EQ(OutcomeOf([&] { return Strings::IndexOf(text, sought, start, count); }), position);
    const auto contains = OutcomeOf([&] { return Strings::Contains(text, sought, start, count); });
    ASSERT_EQ(contains, (Outcome<bool>{position.result > 0, position.number}));
    const auto any = OutcomeOf([&] { return SlowIndexOfAny(text, sought, start, count); });
    ASSERT_EQ(OutcomeOf([&] { return Strings::IndexOfAny(text, sought, start, count); }), any);
    const auto has = OutcomeOf([&] { return Strings::ContainsAny(text, sought, start, count); });
    ASSERT_EQ(has, (Outcome<bool>{any.result > 0, any.number}));
  }
}

TEST(Strings, TokensByTable) {
  const struct {
    StringView text, separator;
    Int16 index;
    StringView token, tokens;
  } cases[] = {
      {u"a,b,c", u",", 1, u"a", u"3"},   {u"a,b,c", u",", 4, u"", u"3"},
      {u"a,b,c", u",", -5, u"a", u"3"},  {u",a", u",", 1, u"", u"2"},
      {u"a,", u",", 2, u"", u"2"},       {u"a,,b", u",", 3, u"b", u"3"},
      {u"abc", u",", 1, u"abc", u"1"},   {u"", u",", kLeast, u"", u"0"},
      {u"", u"", 1, u"", u"0"},          {u"a--b--c", u"--", 2, u"b", u"3"},
      {u"aaaa", u"aa", 4, u"", u"3"},    {u"xaa", u"aaa", 1, u"x", u"1"},
      {u"xaa", u"aaa", 2, u"a", u"1"},   {u"a", u"aa", 1, u"", u"1"},
      {u"abab", u"ababa", 2, u"", u"1"}, {u"a b", u" ", kMost, u"", u"2"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Strings::GetToken(c.text, c.separator, c.index), c.token)
        << Utf8(c.text) << " by " << Utf8(c.separator) << " at " << c.index;
    EXPECT_EQ(Strings::NbrTokens(c.text, c.separator), c.tokens) << Utf8(c.text);
  }
  EXPECT_EQ(Strings::GetToken(u"one two"), u"one");
}

TEST(Strings, TokenOfALongTextCountsPastThe16BitLimit) {
  const String text = Repeated(70000, u';') + u"last";
  EXPECT_EQ(Strings::NbrTokens(text, u";"), u"70001");
  EXPECT_EQ(Strings::StrCount(text, u";"), 70000);
  EXPECT_EQ(Strings::GetToken(Repeated(kMost - 1, u';') + u"last", u";", kMost), u"last");
}

// Each member with a 16-bit limit, on a text of 32766, 32767 and 32768 characters: the Numbers.
TEST(Strings, SixteenBitLimits) {
  const struct {
    const char* what;
    std::function<void(const String&)> call;
    Int32 numbers[3];
  } cases[] = {
      {"StrCount", [](const String& t) { Strings::StrCount(u"a", t); }, {0, 0, 6}},
      {"StrCount, empty text", [](const String& t) { Strings::StrCount(u"", t); }, {0, 0, 6}},
      {"NbrTokens", [](const String& t) { Strings::NbrTokens(u"a", t); }, {0, 0, 6}},
      {"NbrTokens, empty text", [](const String& t) { Strings::NbrTokens(u"", t); }, {0, 0, 0}},
      {"StrTran, nothing found", [](const String& t) { Strings::StrTran(u"", t, u""); }, {0, 0, 6}},
      {"StrTran, found at the front",
       [](const String& t) { Strings::StrTran(t, t, u""); },
       {0, 6, 6}},
      {"StrTran, found behind",
       [](const String& t) { Strings::StrTran(t + u"b", u"b", u""); },
       {6, 6, 6}},
      {"StrTran, found at the end",
       [](const String& t) { Strings::StrTran(t.substr(1) + u"b", u"b", u""); },
       {0, 6, 6}},
      {"IndexOf, found behind",
       [](const String& t) { Strings::IndexOf(t + u"b", u"b"); },
       {0, 6, 6}},
      {"Contains, not found",
       [](const String& t) { Strings::Contains(t + u"b", u"c"); },
       {0, 0, 0}},
      {"IndexOfAny, found", [](const String& t) { Strings::IndexOfAny(t, u"a"); }, {0, 0, 6}},
      {"IndexOfAny, not found", [](const String& t) { Strings::IndexOfAny(t, u"b"); }, {0, 6, 6}},
      {"IndexOfAny, not found, last alone",
       [](const String& t) { Strings::IndexOfAny(t, u"b", kMost); },
       {0, 6, 6}},
      {"ContainsAny, in a range",
       [](const String& t) { Strings::ContainsAny(t, u"b", 1, kMost - 1); },
       {0, 0, 0}},
      {"ProperCase", [](const String& t) { Strings::ProperCase(t); }, {0, 0, 6}},
      {"ProperCase, blank at the end",
       [](const String& t) { Strings::ProperCase(t.substr(1) + u" "); },
       {0, 6, 6}},
      {"AphpaNumericOf", [](const String& t) { Strings::AphpaNumericOf(t); }, {0, 6, 6}},
      {"AlphpaNumericOf", [](const String& t) { Strings::AlphpaNumericOf(t); }, {0, 6, 6}},
      {"AlphpabeticOf", [](const String& t) { Strings::AlphpabeticOf(t); }, {0, 6, 6}},
      {"DigitsOf", [](const String& t) { Strings::DigitsOf(t); }, {0, 6, 6}},
      {"IsDigits, stopped", [](const String& t) { Strings::IsDigits(t); }, {0, 0, 6}},
      {"IsDigits", [](const String& t) { Strings::IsDigits(Repeated(t.size(), u'1')); }, {0, 6, 6}},
      {"IsDigits, last stops",
       [](const String& t) { Strings::IsDigits(Repeated(t.size() - 1, u'1') + u"a"); },
       {0, 0, 6}},
      {"no limit",
       [](const String& t) {
         const String same = Strings::Padl(t, kMost) + Strings::Padr(t, kMost);
         ASSERT_EQ(same.size(), 2U * kMost);
         Strings::TruncateMiddle(t, 100);
         Strings::Pluriel(t);
         Strings::RTrimEx(t, u"a");
         Strings::LTrimEx(t, t);
         Strings::GetToken(t, t);
         Strings::IsVoyelle(t);
         Strings::IsEmptyString(t);
         Strings::WinVal(t);
       },
       {0, 0, 0}},
  };
  for (const auto& c : cases) {
    for (std::size_t i = 0; i < 3; ++i) {
      const String text = Repeated(32766 + i);
      const auto outcome = OutcomeOf([&] { return c.call(text), true; });
      EXPECT_EQ(outcome.number, c.numbers[i]) << c.what << " at " << text.size();
    }
  }
}

TEST(Strings, WhatIsRefused) {
  const struct {
    const char* what;
    std::function<void()> call;
    Int32 number;
  } cases[] = {
      {"pad to less than nothing", [] { Strings::Padl(u"a", -1); }, 5},
      {"pad with nothing", [] { Strings::Padr(u"a", 0, u""); }, 5},
      {"range sum too large", [] { Strings::IndexOf(u"a", u"a", kMost, 1); }, 6},
      {"range sum too small", [] { Strings::IndexOf(u"a", u"a", -1, kLeast); }, 6},
      {"range end too small", [] { Strings::IndexOf(u"a", u"a", -1, kLeast + 1); }, 6},
      {"range end below 0", [] { Strings::IndexOf(u"a", u"a", 1, -1); }, 5},
      {"start below 1", [] { Strings::ContainsAny(u"", u"", 0); }, 5},
      {"token before all", [] { Strings::GetToken(u"a", u"", kLeast); }, 6},
      {"shortened below the dots", [] { Strings::TruncateMiddle(u"abcde", 4); }, 5},
      {"shortened to the least", [] { Strings::TruncateMiddle(u"", kLeast + 5); }, 5},
      {"shortened beyond it", [] { Strings::TruncateMiddle(u"", kLeast + 4); }, 6},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(OutcomeOf([&] { return c.call(), true; }).number, c.number) << c.what;
  }
}

TEST(Strings, TrimmingByTable) {
  const struct {
    StringView text, unit, right, left;
  } cases[] = {
      {u"ax  ", u"x", u"a", u"ax  "},
      {u"ax x", u"x", u"ax ", u"ax x"},
      {u"xxx", u"x", u"", u""},
      {u"abxy", u"xy", u"abxy", u"abxy"},
      {u"", u"0", u"", u""},
      {u"  a  ", u"", u"  a", u"a  "},
      {u"0042", u"0", u"0042", u"42"},
      {u"  007", u"0", u"  007", u"7"},
      {u"00 7", u"0", u"00 7", u" 7"},
      {u"Xx", u"x", u"X", u"Xx"},
      {u"\t a \t", u" ", u"\t a \t", u"\t a \t"},
      {u" \u00A0 ", u" ", u" \u00A0", u"\u00A0 "},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Strings::RTrimEx(c.text, c.unit), c.right) << Utf8(c.text);
    EXPECT_EQ(Strings::LTrimEx(c.text, c.unit), c.left) << Utf8(c.text);
  }
  EXPECT_TRUE(Strings::IsEmptyString(u"   "));
  EXPECT_FALSE(Strings::IsEmptyString(u" \t "));
}

TEST(Strings, PaddingKeepsTheNearEnd) {
  EXPECT_EQ(Strings::Padl(u"12", 5, u"0"), u"00012");
  EXPECT_EQ(Strings::Padr(u"12", 5, u"0"), u"12000");
  for (Int16 length = 0; length <= 12; ++length) {
    const String text = u"abcdef";
    const String run = Repeated(static_cast<std::size_t>(length), u'x');
    EXPECT_EQ(Strings::Padl(text, length, u"xyz"), (run + text).substr(text.size())) << length;
    EXPECT_EQ(Strings::Padr(text, length, u"xyz"), (text + run).substr(0, run.size())) << length;
  }
}

TEST(Strings, TruncateMiddleAtEveryLength) {
  const String text = u"abcdefghijklmnopqrstuvwxyz";
  // Characters before the dots for each length from 5 on.
  constexpr int kHeads[] = {2, 3, 4, 4, 4, 5, 6, 6, 6, 7, 8, 8, 8, 9, 10, 10, 10, 11, 12, 12, 12};
  for (int length = 5; length <= 25; ++length) {
    for (int dots = -1; dots <= 30; ++dots) {
      const int head = dots >= 6 && dots <= length - 6 ? dots : kHeads[length - 5];
      const String expected =
          text.substr(0, static_cast<std::size_t>(head)) + u"..." +
          text.substr(text.size() - static_cast<std::size_t>(length - head - 3));
      EXPECT_EQ(Strings::TruncateMiddle(text, static_cast<Int16>(length), static_cast<Int16>(dots)),
                expected)
          << length << ", " << dots;
    }
  }
  EXPECT_EQ(Strings::TruncateMiddle(text, 26), text);
  EXPECT_EQ(Strings::TruncateMiddle(u"abcd", 4), u"abcd");
  EXPECT_EQ(Strings::TruncateMiddle(u"", 0), u"");
}

TEST(Strings, WordFormsByTable) {
  const struct {
    StringView text, plural, proper;
    bool vowel;
  } cases[] = {
      {u"mot", u"mots", u"Mot", false},
      {u"MOT", u"MOTS", u"Mot", false},
      {u"BRAS", u"BRAS", u"Bras", false},
      {u" bras  ", u"bras", u" Bras  ", false},
      {u"prix", u"prix", u"Prix", false},
      {u"PRIX", u"PRIX", u"Prix", false},
      {u"bateau", u"bateaus", u"Bateau", false},
      {u"ÉTÉ", u"ÉTÉs", u"Été", true},
      {u"42", u"42S", u"42", false},
      {u"z`", u"z`S", u"Z`", false},
      {u"", u"S", u"", true},
      {u"  ", u"S", u"  ", false},
      {u"jean-pierre", u"jean-pierres", u"Jean-pierre", false},
      {u"l'école du PORT", u"l'école du PORTS", u"L'école Du Port", false},
      {u"a  b", u"a  bs", u"A  B", true},
      {u"ab\tcd ", u"ab\tcds", u"Ab\tcd ", true},
      {u"2e étage", u"2e étages", u"2e Étage", false},
      {u"ßa ÿb", u"ßa ÿbs", u"ßa Ÿb", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Strings::Pluriel(c.text), c.plural) << Utf8(c.text);
    EXPECT_EQ(Strings::ProperCase(c.text), c.proper) << Utf8(c.text);
    EXPECT_EQ(Strings::IsVoyelle(c.text), c.vowel) << Utf8(c.text);
  }
}

// Everything that one character can be, through the members that look at one at a time.
TEST(Strings, EveryCodeUnit) {
  const StringView vowels = u"aàâäeéèêioôöuûüAÀÂÄEÉÈÊIOÔÖUÛÜ";
  for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
    const String unit(1, static_cast<char16_t>(code));
    const bool digit = code >= 0x30 && code <= 0x39;
    const bool letter = (code >= 0x41 && code <= 0x5A) || (code >= 0x61 && code <= 0x7A);
    ASSERT_EQ(Strings::DigitsOf(unit), digit ? unit : u"") << code;
    ASSERT_EQ(Strings::AlphpabeticOf(unit), letter ? unit : u"") << code;
    ASSERT_EQ(Strings::AphpaNumericOf(unit), digit || letter ? unit : u"") << code;
    ASSERT_EQ(Strings::AlphpaNumericOf(unit), digit || letter ? unit : u"") << code;
    ASSERT_EQ(Strings::IsDigits(unit), digit) << code;
    ASSERT_EQ(Strings::IsVoyelle(unit), vowels.find(unit) != StringView::npos) << code;
  }
}

TEST(Strings, FiltersKeepOrder) {
  EXPECT_EQ(Strings::AphpaNumericOf(u"aB3-c 4"), u"aB3c4");
  EXPECT_EQ(Strings::AlphpabeticOf(u"aB3-c 4"), u"aBc");
  EXPECT_EQ(Strings::DigitsOf(u"aB3-c 4"), u"34");
  EXPECT_TRUE(Strings::IsDigits(u""));
  EXPECT_FALSE(Strings::IsDigits(u"30 5"));
}

TEST(Strings, WinValReadsByTheCurrentLocale) {
  const struct {
    StringView locale, text;
    Double number;
  } cases[] = {
      {u"fr-FR", u"1,5", 1.5},
      {u"fr-FR", u"1.5", 0},
      {u"fr-FR", u"1 234,56", 1234.56},
      {u"fr-FR", u"1\u00A0234,56", 1234.56},
      {u"fr-FR", u"1\u202F234,56", 1234.56},
      {u"fr-FR", u"1,234.56", 0},
      {u"fr-FR", u"1,2,3", 0},
      {u"en-US", u"1.5", 1.5},
      {u"en-US", u"1,5", 15},
      {u"en-US", u"1,234.56", 1234.56},
      {u"en-US", u"1\u00A0234.56", 0},
      {u"nl-BE", u"1.234,56", 1234.56},
      {u"de-CH", u"1'234.56", 1234.56},
      {u"de-DE", u"  -12,25 ", -12.25},
      {u"en-GB", u"12abc", 0},
      {u"en-GB", u"abc", 0},
      {u"en-GB", u"1-2", 0},
      {u"en-GB", u"  ", 0},
      {u"en-GB", u"", 0},
      {u"en-GB", u"1E999", 0},
  };
  for (const auto& c : cases) {
    const LocaleScope scope(*Locale::Named(c.locale));
    EXPECT_EQ(Strings::WinVal(c.text), c.number) << Utf8(c.locale) << " " << Utf8(c.text);
    if (c.number != 0) {
      EXPECT_TRUE(IsNumber(c.text)) << Utf8(c.text);
    }
  }
}

TEST(Strings, OnlyNullIsReplaced) {
  EXPECT_EQ(Strings::IfIsNull(Int16{0}, 5), Variant(Int16{0}));
  EXPECT_EQ(Strings::IfIsNull(Empty, 5), Variant(Empty));
  EXPECT_EQ(Strings::IfIsNull(Missing, 5), Variant(Missing));
  EXPECT_EQ(Strings::IfIsNull(u"", 5), Variant(u""));
  EXPECT_EQ(Strings::IfIsNull(Null, u"x"), Variant(u"x"));
  EXPECT_EQ(Strings::IfIsNull(Null, Null), Variant(Null));
}

// The example of the class's header, with an object as well.
TEST(Strings, HeaderExample) {
  EXPECT_EQ(Strings::GetToken(u"red;green;blue", u";", 2), u"green");
  EXPECT_EQ(Strings::NbrTokens(u"red;green;blue", u";"), u"3");
  EXPECT_EQ(Strings::Padl(u"42", 8, u"0"), u"00000042");
  EXPECT_EQ(Strings::ProperCase(u"JEAN DUPONT"), u"Jean Dupont");
  Strings strings;
  EXPECT_EQ(strings.DigitsOf(u"+32 2 555 01 20"), u"3225550120");
}

}  // namespace
}  // namespace quorl
