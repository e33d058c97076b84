#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/text.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/runtime/utf.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"

namespace quorl {
namespace {

constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max();

String Naive(StringView text, std::int64_t start, std::int64_t count) {
  String kept;
  for (std::int64_t i = 0; i < std::ssize(text); ++i) {
    if (i + 1 >= start && i + 1 - start < count) kept += text[static_cast<std::size_t>(i)];
  }
  return kept;
}

std::int64_t NaiveFind(std::int64_t start, StringView text, StringView sought) {
  for (std::int64_t at = start; !text.empty() && at <= std::ssize(text) + 1; ++at) {
    const String here = Naive(text, at, std::ssize(sought));
    if (here == sought) return at;
  }
  return 0;
}

TEST(Text, SearchesCutsAndTrimsLikeTheNaiveWay) {
  Random random(4);
  for (int i = 0; i < 20000; ++i) {
    const String text = random.Text(u"ab ", 8);
    const String sought = random.Text(u"ab ", 3);
    const std::int64_t start = random.Whole(1, 10);
    const std::int64_t count = random.Whole(0, 10);
    const std::int64_t size = std::ssize(text);
    const std::string shown = Shown(text) + ", " + Shown(sought) + ", " + std::to_string(start) +
                              ", " + std::to_string(count);
    ASSERT_EQ(Find(start, text, sought), NaiveFind(start, text, sought)) << shown;
    ASSERT_EQ(String(Slice(text, start, count)), Naive(text, start, count)) << shown;
    ASSERT_EQ(String(SliceFrom(text, start)), Naive(text, start, kFar)) << shown;
    ASSERT_EQ(String(FirstOf(text, count)), Naive(text, 1, count)) << shown;
    ASSERT_EQ(String(LastOf(text, count)), Naive(text, size - count + 1, kFar)) << shown;
    String trimmed = text;
    while (trimmed.ends_with(u' ')) trimmed.pop_back();
    ASSERT_EQ(String(TrimTrailing(text)), trimmed) << shown;
    while (trimmed.starts_with(u' ')) trimmed.erase(0, 1);
    ASSERT_EQ(String(Trim(text)), trimmed) << shown;
    trimmed = text;
    while (trimmed.starts_with(u'a')) trimmed.erase(0, 1);
    ASSERT_EQ(String(TrimLeading(text, u'a')), trimmed) << shown;
  }
  EXPECT_EQ(String(Trim(u"\t\u00A0 x\n")), u"\t\u00A0 x\n");  // nothing but U+0020 is a blank
}

TEST(Text, TakesAnyPositionAndRefusesThoseBelowOne) {
  const StringView text = u"abc";
  EXPECT_EQ(Find(kFar, text, u"a"), 0);
  EXPECT_EQ(String(Slice(text, 2, kFar)), u"bc");
  EXPECT_EQ(String(Slice(text, kFar, kFar)), u"");
  for (const std::int64_t start : {std::int64_t{0}, std::int64_t{-1}, -kFar - 1}) {
    EXPECT_RAISES(Find(start, text, u"a"), RuntimeFailure(5)) << start;
    EXPECT_RAISES(Slice(text, start, 1), RuntimeFailure(5)) << start;
    EXPECT_RAISES(SliceFrom(text, start), RuntimeFailure(5)) << start;
    if (start == 0) continue;
    EXPECT_RAISES(Slice(text, 1, start), RuntimeFailure(5)) << start;
    EXPECT_RAISES(FirstOf(text, start), RuntimeFailure(5)) << start;
    EXPECT_RAISES(LastOf(text, start), RuntimeFailure(5)) << start;
  }
}

TEST(TextCase, MapsEveryCodeUnit) {
  for (unsigned number = 0; number <= 0xFFFF; ++number) {
    const auto unit = static_cast<char16_t>(number);
    const char16_t lower = LowerCase(unit);
    const char16_t upper = UpperCase(unit);
    ASSERT_EQ(LowerCase(lower), lower) << std::hex << number;
    ASSERT_EQ(UpperCase(upper), upper) << std::hex << number;
    ASSERT_TRUE(number < 0xD800 || number > 0xDFFF || (lower == unit && upper == unit)) << number;
    if (number < 0x80) {
      ASSERT_EQ(lower, number >= 'A' && number <= 'Z' ? number + 32 : number);
      ASSERT_EQ(upper, number >= 'a' && number <= 'z' ? number - 32 : number);
    }
  }
  const String upper = u"ÀÉÎÖØÞŒŸŽΑΣΩЀЁЖЯԱỲⰀＡ";
  const String lower = u"àéîöøþœÿžασωѐёжяաỳⰰａ";
  EXPECT_EQ(LowerCase(StringView(upper)), lower);
  for (std::size_t i = 0; i < upper.size(); ++i) EXPECT_EQ(UpperCase(lower[i]), upper[i]) << i;
  const String unchanged = u"ß×÷ªºŉ";
  for (const char16_t unit : unchanged) EXPECT_EQ(UpperCase(unit), unit);
  EXPECT_EQ(LowerCase(u'\u0130'), u'i');  // İ, whatever the locale
  EXPECT_EQ(UpperCase(u'\u0131'), u'I');  // ı
  EXPECT_EQ(UpperCase(u'ς'), u'Σ');
  EXPECT_EQ(UpperCase(u'\u00B5'), u'\u039C');  // µ
  EXPECT_EQ(LowerCase(u'\u1E9E'), u'ß');
}

TEST(TextCase, TableIsWhatTheGeneratorWrites) {
  const std::string generator = QUORL_SOURCE_DIR "/tools/generate_case_table.py";
  const auto output = [&](const std::string& arguments) {
    std::string text;
    FILE* pipe = popen(("python3 '" + generator + "' " + arguments + " 2>&1").c_str(), "r");
    for (int c = 0; pipe != nullptr && (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    if (pipe != nullptr) pclose(pipe);
    return text;
  };
  std::ifstream file(QUORL_SOURCE_DIR "/quorl/runtime/case_table.inc");
  const std::string table((std::istreambuf_iterator<char>(file)), {});
  const std::string version = output("--version");
  if (!table.starts_with("// Made by tools/generate_case_table.py; do not edit.\n// Unicode " +
                         version.substr(0, version.find('\n')) + ". ")) {
    GTEST_SKIP() << "the table's character database is not on this machine: " << version;
  }
  EXPECT_EQ(output(""), table);
}

TEST(Utf, EveryCodePointGoesThereAndBack) {
  String text;
  for (char32_t point = 0; point <= 0x10FFFF; ++point) {
    if (point >= 0xD800 && point <= 0xDFFF) continue;
    if (point < 0x10000) {
      text += static_cast<char16_t>(point);
    } else {
      text += {static_cast<char16_t>(0xD7C0 + (point >> 10)),
               static_cast<char16_t>(0xDC00 + (point & 0x3FF))};
    }
  }
  const std::string bytes = Utf8(text);
  EXPECT_EQ(bytes.size(), 0x80 + 0x780 * 2 + (0xF800 - 0x800) * 3 + 0x100000 * 4U);
  EXPECT_TRUE(Utf16(bytes) == text);
}

TEST(Utf, EachByteOrUnitWithoutItsSequenceIsReplaced) {
  const std::pair<std::string_view, StringView> bytes[] = {
      {"a\x80z", u"a\uFFFDz"},
      {"\xC3", u"\uFFFD"},
      {"\xC3(", u"\uFFFD("},
      {"\xC0\x80", u"\uFFFD\uFFFD"},                      // too long a form of 0
      {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},            // too long a form of 7FF
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},            // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond 10FFFF
      {"\xF8\x88\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xE2\x82\xC3\xA9", u"\uFFFD\uFFFDé"},  // cut off by the next character
      {{"\0\xC3\xA9", 3}, {u"\0é", 2}},
  };
  for (const auto& [given, expected] : bytes) EXPECT_EQ(Utf16(given), String(expected));
  constexpr char16_t kUnits[] = {0xDC00, 'a', 0xD800, 0xD83D, 0xDE00, 0xD800};
  EXPECT_EQ(Utf8({kUnits, std::size(kUnits)}), "\uFFFDa\uFFFD\U0001F600\uFFFD");
}

TEST(Ansi, EveryByteHasACharacterOfItsOwn) {
  std::set<char16_t> characters;
  std::string all;
  for (unsigned byte = 0; byte <= 0xFF; ++byte) all += static_cast<char>(byte);
  const String text = FromAnsi(all);
  EXPECT_EQ(std::set(text.begin(), text.end()).size(), 256U);
  EXPECT_EQ(ToAnsi(text), all);
  EXPECT_EQ(FromAnsi("\x80\x8C\x99\x9F\x81\xE9"), u"€Œ™Ÿ\u0081é");
  unsigned known = 0;
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const unsigned char byte = ToAnsi(static_cast<char16_t>(unit));
    if (byte != '?' || unit == '?') known += FromAnsi(byte) == unit ? 1U : 1000U;
  }
  EXPECT_EQ(known, 256U);
}

}  // namespace
}  // namespace quorl
