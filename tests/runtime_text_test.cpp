#include <algorithm>
#include <cstdlib>
#include <set>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/search.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/text_case.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace internal;

constexpr std::int64_t kFar = std::numeric_limits<std::int64_t>::max();

String Naive(StringView text, std::int64_t start, std::int64_t count) {
  String kept;
  for (std::int64_t i = 0; start > 0 && i < std::ssize(text); ++i) {
    if (i + 1 >= start && i + 1 - start < count) kept += text[static_cast<std::size_t>(i)];
  }
  return kept;
}

std::int64_t NaiveFind(std::int64_t start, StringView text, StringView sought) {
  if (start < 1 || text.empty()) return 0;
  return static_cast<std::int64_t>(text.find(sought, static_cast<std::size_t>(start - 1)) + 1);
}

TEST(Text, SearchesCutsAndTrimsLikeTheNaiveWay) {
  Random random(4);
  for (int i = 0; i < 20000; ++i) {
    const auto draw = [&] {
      const std::int64_t drawn = random.Whole(-2, 12);
      return drawn == -2 ? -kFar - 1 : drawn > 10 ? kFar : drawn;
    };
    const String text = random.Text(u"ab ", 8);
    const String sought = random.Text(u"ab ", 3);
    const std::int64_t start = draw();
    const std::int64_t count = draw();
    const auto expect = [&](auto work, bool refused, StringView expected) {
      EXPECT_EQ(ResultOf(work), refused ? "!5" : Utf8(expected))
          << Shown(text) << ", " << Shown(sought) << ", " << start << ", " << count;
    };
    expect([&] { return std::to_string(Find(start, text, sought)); }, start < 1,
           Utf16(std::to_string(NaiveFind(start, text, sought))));
    expect([&] { return Slice(text, start, count); }, start < 1 || count < 0,
           Naive(text, start, count));
    expect([&] { return SliceFrom(text, start); }, start < 1, Naive(text, start, kFar));
    expect([&] { return FirstOf(text, count); }, count < 0, Naive(text, 1, count));
    String last = text;
    while (std::ssize(last) > count && !last.empty()) last.erase(0, 1);
    expect([&] { return LastOf(text, count); }, count < 0, last);
    StringView trimmed = text;
    while (trimmed.starts_with(u' ')) trimmed.remove_prefix(1);
    expect([&] { return TrimLeading(text); }, false, trimmed);
    while (trimmed.ends_with(u' ')) trimmed.remove_suffix(1);
    expect([&] { return Trim(text); }, false, trimmed);
  }
  EXPECT_EQ(String(TrimLeading(u"--a-", u'-')), u"a-");
  EXPECT_EQ(String(Trim(u"\t\u00A0 x\n")), u"\t\u00A0 x\n");  // nothing but U+0020 is a blank
}

TEST(Text, TextsOfAnyLengthAreFoundWhereTheStandardSearchFindsThem) {
  Random random(5);
  for (int i = 0; i < 20000; ++i) {
    // Of few letters, so that beginnings without the rest abound.
    const String text = random.Text(i % 3 == 0 ? u"ab" : u"aaaaaaaaaaaaaaab", 400) + u"a";
    const auto size = static_cast<std::size_t>(random.Whole(1, 80));
    const std::int64_t from = random.Whole(0, std::ssize(text) - 1), start = from / 2 + 1;
    const String run = String(size, u'a') + u'b';
    const String sought = i % 2 == 0 ? text.substr(static_cast<std::size_t>(from), size) : run;
    ASSERT_EQ(Find(start, text, sought), NaiveFind(start, text, sought)) << Shown(text);
    Search search(text, sought);
    const std::size_t step = i % 5 < 2 ? 1 : sought.size();
    for (std::size_t at = 0, found = 0; found != text.npos; at = found + step) {
      found = search.Next(at);
      ASSERT_EQ(found, text.find(sought, at)) << Shown(text) << ", " << Shown(sought);
    }
    ASSERT_EQ(CountOf(text, u'b'), static_cast<std::size_t>(std::ranges::count(text, u'b')));
  }
}

TEST(TextCase, MapsEveryCodeUnit) {
  String units;
  for (unsigned number = 0; number <= 0xFFFF; ++number) {
    const auto unit = static_cast<char16_t>(number);
    const char16_t lower = LowerCase(unit);
    const char16_t upper = UpperCase(unit);
    units += unit;
    ASSERT_EQ(LowerCase(lower), lower) << std::hex << number;
    ASSERT_EQ(UpperCase(upper), upper) << std::hex << number;
    ASSERT_TRUE(number < 0xD800 || number > 0xDFFF || (lower == unit && upper == unit)) << number;
    if (number >= 0x80) continue;
    ASSERT_EQ(lower, number >= 'A' && number <= 'Z' ? number + 32 : number);
    ASSERT_EQ(upper, number >= 'a' && number <= 'z' ? number - 32 : number);
  }
  // Whole texts go another way, with units of several scripts side by side too.
  units += u"A\u0100B\u0391C";
  for (const String lowered = LowerCase(StringView(units)); char16_t& unit : units) {
    ASSERT_EQ(lowered[static_cast<std::size_t>(&unit - units.data())], LowerCase(unit));
  }
  const String upper = u"ÀÉÎÖØÞŒŸŽΑΣΩЀЁЖЯԱỲⰀＡ";
  const String lower = u"àéîöøþœÿžασωѐёжяաỳⰰａ";
  EXPECT_EQ(LowerCase(StringView(upper)), lower);
  EXPECT_TRUE(EqualsIgnoringCase(upper, lower));
  EXPECT_FALSE(EqualsIgnoringCase(upper, lower.substr(1)) || EqualsIgnoringCase(u"é", u"e"));
  // Beyond pairs: what has no counterpart of one unit, dotless i, final sigma, the micro sign.
  const String alone = lower + u"ß×÷ªºŉ\u0131ς\u00B5";
  const String raised = upper + u"ß×÷ªºŉIΣ\u039C";
  for (std::size_t i = 0; i < alone.size(); ++i) EXPECT_EQ(UpperCase(alone[i]), raised[i]) << i;
  EXPECT_EQ(LowerCase(StringView(u"\u0130\u1E9E")), u"iß");  // whatever the locale
}

TEST(TextCase, TableIsWhatTheGeneratorWrites) {
  const int status = std::system("cd '" QUORL_SOURCE_DIR
                                 "' && tools/generate_case_table.py --check "
                                 "quorl/runtime/internal/case_table.inc");
  if (WEXITSTATUS(status) > 1) GTEST_SKIP() << "the table's character database is not here";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(Utf, EveryCodePointGoesThereAndBack) {
  String text;
  for (char32_t point = 0; point <= 0x10FFFF; ++point) {
    if (point >= 0xD800 && point <= 0xDFFF) continue;
    if (point >= 0x10000) text += static_cast<char16_t>(0xD7C0 + (point >> 10));
    text += static_cast<char16_t>(point < 0x10000 ? point : 0xDC00 + (point & 0x3FF));
  }
  const std::string bytes = Utf8(text);
  EXPECT_EQ(bytes.size(), 0x80 + 0x780 * 2 + (0xF800 - 0x800) * 3 + 0x100000 * 4U);
  EXPECT_TRUE(Utf16(bytes) == text);
}

TEST(Utf, EachByteOrUnitWithoutItsSequenceIsReplaced) {
  // "?" stands for the replacement.
  const std::pair<std::string_view, StringView> bytes[] = {
      {"a\x80z\xC3(\xC3", u"a?z?(?"},
      {"\xC0\x80\xE0\x9F\xBF", u"?????"},                     // too long a form of 0 and of 7FF
      {"\xED\xA0\x80\xF4\x90\x80\x80", u"???????"},           // a surrogate, and one beyond 10FFFF
      {"\xF8\x88\x80\x80\x80\xE2\x82\xC3\xA9", u"???????é"},  // cut off by the next character
      {{"\0\xC3\xA9", 3}, {u"\0é", 2}}};
  for (const auto& [given, expected] : bytes) {
    String text(expected);
    std::ranges::replace(text, u'?', u'\uFFFD');
    EXPECT_EQ(Utf16(given), text);
  }
  constexpr char16_t kUnits[] = {0xDC00, 'a', 0xD800, 0xD83D, 0xDE00, 0xD800, 0xDC00};
  EXPECT_EQ(Utf8({kUnits, std::size(kUnits) - 1}), "\uFFFDa\uFFFD\U0001F600\uFFFD");
}

TEST(Ansi, EveryByteHasACharacterOfItsOwn) {
  std::set<char16_t> characters;
  for (unsigned byte = 0; byte <= 0xFF; ++byte) {
    const std::string one(1, static_cast<char>(byte));
    EXPECT_EQ(ToAnsi(FromAnsi(one)), one) << byte;
    characters.insert(FromAnsi(static_cast<unsigned char>(byte)));
  }
  EXPECT_EQ(FromAnsi("\x80\x8C\x99\x9F\x81\xE9"), u"€Œ™Ÿ\u0081é");
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const auto character = static_cast<char16_t>(unit);
    EXPECT_TRUE(characters.contains(character) || ToAnsi(character) == '?') << unit;
  }
}

}  // namespace
}  // namespace quorl
