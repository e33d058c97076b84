// Strings: tables of cases, and slow oracles that follow each algorithm step by step.

#include "quorl/text/strings.hpp"

#include "tests/support/values.hpp"

namespace quorl {
namespace {

using S = Strings;
constexpr Int16 kMost = 32767, kLeast = -32768;

// The oracles stand on primitives of their own.
void Require(bool holds, FailureNumber otherwise) {
  if (!holds) Raise(otherwise);
}

std::int64_t Length(const String& text) { return static_cast<std::int64_t>(text.size()); }

std::int64_t Narrow(std::int64_t value) {
  return Require(value >= kLeast && value <= kMost, FailureNumber::kOverflow), value;
}

String SlowSlice(const String& text, std::int64_t start, std::int64_t count) {
  if (start > Length(text)) return {};
  return text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(count));
}

std::int64_t SlowFind(std::int64_t start, const String& text, const String& sought) {
  Require(start >= 1, FailureNumber::kInvalidArgument);
  if (text.empty()) return 0;
  const std::size_t at = text.find(sought, static_cast<std::size_t>(start - 1));
  return at == text.npos ? 0 : static_cast<std::int64_t>(at + 1);
}

std::int64_t SlowCount(const String& text, const String& sought) {
  Require(!sought.empty() || text.empty(), FailureNumber::kOverflow);
  std::int64_t count = 0;
  for (std::int64_t p = SlowFind(1, text, sought); p > 0; ++count) {
    p = SlowFind(p + Length(sought), text, sought);
  }
  return count;
}

String SlowToken(const String& text, const String& separator, Int16 index) {
  if (text.empty()) return {};
  const String w = text + separator;
  std::int64_t p = 1;
  // An empty separator moves nothing, however often.
  const std::int64_t n = Narrow(index - 1);
  for (std::int64_t i = 0; i < n && !separator.empty(); ++i) {
    p = SlowFind(p, w, separator);
    if (p == 0) return {};
    p += Length(separator);
  }
  const std::int64_t e = SlowFind(p, w, separator);
  return e > 0 ? SlowSlice(w, p, e - p) : SlowSlice(w, p + 1, Length(w));
}

String SlowReplace(const String& text, const String& old_part, const String& new_part) {
  const std::int64_t p = SlowFind(1, text, old_part);
  if (p < 1) return text;
  return SlowSlice(text, 1, p - 1) + new_part + SlowSlice(text, p + Length(old_part), Length(text));
}

std::int64_t SlowEnd(const String& text, Int16 start, Int16 count) {
  return std::min(Narrow(Narrow(start + count) - 1), Length(text));
}

std::int64_t SlowIndexOf(const String& text, const String& sought, Int16 start, Int16 count) {
  const std::int64_t e = count == 0 ? Length(text) : SlowEnd(text, start, count);
  Require(e >= 0, FailureNumber::kInvalidArgument);
  return SlowFind(start, SlowSlice(text, 1, e), sought);
}

std::int64_t SlowIndexOfAny(const String& text, const String& any_of, Int16 start, Int16 count) {
  const std::int64_t e = count > 0 ? SlowEnd(text, start, count) : Length(text);
  for (std::int64_t i = start; i <= e; ++i) {
    Require(i >= 1, FailureNumber::kInvalidArgument);
    if (SlowFind(1, any_of, SlowSlice(text, i, 1)) > 0) return i;
  }
  return 0;
}

// Mostly near, but sometimes wild.
Int16 WildNumber(Random& random) {
  static constexpr Int16 kEdges[] = {kLeast, kLeast + 1, -16384, 16384, kMost - 1, kMost};
  const bool is_wild = random.Whole(0, 4) == 0;
  return is_wild ? kEdges[random.Whole(0, 5)] : static_cast<Int16>(random.Whole(-5, 14));
}

#define EXPECT_SAME(ours, oracle) \
  EXPECT_EQ(ResultOf([&] { return ours; }), ResultOf([&] { return oracle; }))

TEST(Strings, SearchMembersFollowTheirStepsOnWildArguments) {
  Random random(20240607);
  // Few letters, so that overlaps and matches abound.
  const auto wild = [&](std::int64_t longest) {
    return random.Text(StringView(u"abc").substr(0, 1 + random.Bits() % 3), longest);
  };
  for (int round = 0; round < 200000 && !HasFailure(); ++round) {
    const String t = wild(14), s = wild(4), other = wild(3);
    const Int16 start = WildNumber(random), count = WildNumber(random);
    SCOPED_TRACE(Shown(t) + Shown(s) + std::to_string(start) + ", " + std::to_string(count));
    EXPECT_SAME(S::GetToken(t, s, start), SlowToken(t, s, start));
    EXPECT_SAME(S::StrCount(t, s), SlowCount(t, s));
    EXPECT_SAME(S::NbrTokens(t, s), t.empty() ? 0 : SlowCount(t, s) + 1);
    EXPECT_SAME(S::StrTran(t, s, other), SlowReplace(t, s, other));
    EXPECT_SAME(S::IndexOf(t, s, start, count), SlowIndexOf(t, s, start, count));
    EXPECT_SAME(S::Contains(t, s, start, count), SlowIndexOf(t, s, start, count) > 0);
    const String any = s + String(round % 4 == 0 ? 99 : round % 4 == 1 ? 20 : 0, u'x');
    EXPECT_SAME(S::IndexOfAny(t, any, start, count), SlowIndexOfAny(t, s, start, count));
    EXPECT_SAME(S::ContainsAny(t, any, start, count), SlowIndexOfAny(t, s, start, count) > 0);
  }
}

// Each member with a 16-bit limit on 32766, 32767 and 32768 characters, a failure being X.
TEST(Strings, SixteenBitLimits) {
  using T = const String&;
  const std::pair<void (*)(T), const char*> cases[] = {
      {[](T t) { S::StrCount(u"a", t); }, "--X"},
      {[](T t) { S::NbrTokens(u"a", t); }, "--X"},
      {[](T t) { S::NbrTokens(u"", t); }, "---"},
      {[](T t) { S::StrTran(u"", t, u""); }, "--X"},
      {[](T t) { S::StrTran(t, t, u""); }, "-XX"},
      {[](T t) { S::StrTran(t + u"b", u"b", u""); }, "XXX"},
      {[](T t) { S::StrTran(t.substr(1) + u"b", u"b", u""); }, "-XX"},
      {[](T t) { S::IndexOf(t + u"b", u"b"); }, "-XX"},
      {[](T t) { S::IndexOfAny(t, u"a"); }, "--X"},
      {[](T t) { S::IndexOfAny(t, u"b", 9); }, "-XX"},
      {[](T t) { S::ContainsAny(t, u"b", 1, 32766); }, "---"},
      {[](T t) { S::ProperCase(t); }, "--X"},
      {[](T t) { S::ProperCase(t.substr(1) + u" "); }, "-XX"},
      {[](T t) { S::AphpaNumericOf(t); }, "-XX"},
      {[](T t) { S::DigitsOf(t); }, "-XX"},
      {[](T t) { S::IsDigits(t); }, "--X"},
      {[](T t) { S::IsDigits(String(t.size(), u'1')); }, "-XX"},
      {[](T t) { S::GetToken(t, t + u"a", 2); }, "---"}};
  for (const auto& c : cases) {
    std::string outcomes;
    for (std::size_t size = 32766; size <= 32768; ++size) {
      const std::string outcome = ResultOf([&] { return c.first(String(size, u'a')), 0; });
      outcomes += outcome == "0" ? "-" : outcome == "!6" ? "X" : outcome;
    }
    EXPECT_EQ(outcomes, c.second) << "row " << &c - cases;
  }
  EXPECT_EQ(S::NbrTokens(String(70000, u';'), u";"), u"70001");
  EXPECT_EQ(S::GetToken(String(kMost - 1, u' ') + u"last", u" ", kMost), u"last");
}

TEST(Strings, TrimmingByTable) {
  // A text, a unit, and the text without it at the right and at the left.
  for (const auto& row :
       Rows(u"ax  |x|a|ax  ;ax x|x|ax |ax x;xxx|x||;xyxy|xy|xyxy|xyxy;  a  ||  a|a  ;"
            u"  007|0|  007|7;00 7|0|00 7| 7;Xx|x|X|Xx; \t a| | \t a|\t a;a\u00A0 | "
            u"|a\u00A0|a\u00A0 ")) {
    EXPECT_EQ(S::RTrimEx(row[0], row[1]), row[2]) << Utf8(row[0]);
    EXPECT_EQ(S::LTrimEx(row[0], row[1]), row[3]) << Utf8(row[0]);
  }
  EXPECT_TRUE(S::IsEmptyString(u"   "));
  EXPECT_FALSE(S::IsEmptyString(u" \t "));
}

TEST(Strings, PaddingFillsOrCutsTheFarEnd) {
  const String text = u"abcdef";
  for (const int length : {0, 1, 5, 6, 7, 12, 32767}) {
    const String run(static_cast<std::size_t>(length), u'x');
    const auto size = static_cast<Int16>(length);
    EXPECT_EQ(S::Padl(text, size, u"xyz"), (run + text).substr(text.size())) << length;
    EXPECT_EQ(S::Padr(text, size, u"xyz"), (text + run).substr(0, run.size())) << length;
  }
  EXPECT_EQ(ResultOf([] { return S::Padl(u"a", -1); }), "!5");
  EXPECT_EQ(ResultOf([] { return S::Padr(u"a", 0, u""); }), "!5");
}

TEST(Strings, TruncateMiddleAtEveryLength) {
  const String text = u"abcdefghijklmnopqrstuvwxyz";
  // Characters before the dots in the middle form, for each length from 5 on.
  const std::string heads = "CDEEEFGGGHIIIJKKKLMMM";
  for (std::size_t length = 5; length < text.size(); ++length) {
    for (std::size_t dots = 0; dots <= 30; ++dots) {
      const auto middle = static_cast<std::size_t>(heads[length - 5] - 'A');
      const std::size_t head = dots >= 6 && dots + 6 <= length ? dots : middle;
      EXPECT_EQ(S::TruncateMiddle(text, static_cast<Int16>(length), static_cast<Int16>(dots)),
                text.substr(0, head) + u"..." + text.substr(text.size() - (length - head - 3)))
          << length << ", " << dots;
    }
  }
  EXPECT_EQ(S::TruncateMiddle(text, 26), text);
  EXPECT_EQ(ResultOf([] { return S::TruncateMiddle(u"abcde", 4); }), "!5");
  EXPECT_EQ(ResultOf([] { return S::TruncateMiddle(u"", kLeast + 5); }), "!5");
  EXPECT_EQ(ResultOf([] { return S::TruncateMiddle(u"", kLeast + 4); }), "!6");
}

TEST(Strings, WordFormsByTable) {
  for (const auto& row :
       Rows(u"mota|motas|Mota;MOT|MOTS|Mot; BRAS  |BRAS| Bras  ;prix|prix|Prix;ÉTÉ|ÉTÉs|Été;"
            u"z`|z`S|Z`;  |S|  ;l'école-du PORT|l'école-du PORTS|L'école-du Port;"
            u"a  éb|a  ébs|A  Éb;ßa\tÿb ÿ|ßa\tÿb ÿs|ßa\tÿb Ÿ")) {
    EXPECT_EQ(S::Pluriel(row[0]), row[1]) << Utf8(row[0]);
    EXPECT_EQ(S::ProperCase(row[0]), row[2]) << Utf8(row[0]);
  }
  EXPECT_TRUE(S::IsVoyelle(u""));
  EXPECT_FALSE(S::IsVoyelle(u" a"));
}

TEST(Strings, EveryCodeUnitFallsIntoItsClass) {
  const StringView vowels = u"aàâäeéèêioôöuûüAÀÂÄEÉÈÊIİOÔÖUÛÜ";
  for (std::uint32_t code = 0; code <= 0xFFFF; ++code) {
    const String unit(1, static_cast<char16_t>(code)), text = u"x" + unit + u"1";
    const bool digit = code >= 0x30 && code <= 0x39;
    const bool letter = (code >= 0x41 && code <= 0x5A) || (code >= 0x61 && code <= 0x7A);
    ASSERT_EQ(S::DigitsOf(text), (digit ? unit : u"") + u"1") << code;
    ASSERT_EQ(S::AlphpabeticOf(text), u"x" + (letter ? unit : u"")) << code;
    ASSERT_EQ(S::AphpaNumericOf(text), digit || letter ? text : u"x1") << code;
    ASSERT_EQ(S::AlphpaNumericOf(text), digit || letter ? text : u"x1") << code;
    ASSERT_EQ(S::IsDigits(unit), digit) << code;
    ASSERT_EQ(S::IsVoyelle(unit), vowels.find(unit) != StringView::npos) << code;
  }
  EXPECT_TRUE(S::IsDigits(u""));
}

TEST(Strings, WinValReadsByTheCurrentLocale) {
  for (const auto& row :
       Rows(u"fr-FR|1,5|1.5;fr-FR|1.5|0;fr-FR|1 234,56|1234.56;en-US|1,5|15;en-US|1 234.56|0;"
            u"nl-BE|1.234,56|1234.56;de-DE|  -12,25 |-12.25;en-GB|12abc|0;en-GB|1E999|0")) {
    const LocaleScope scope(*Locale::Named(row[0]));
    EXPECT_EQ(S::WinVal(row[1]), std::stod(Utf8(row[2]))) << Utf8(row[0]) << " " << Utf8(row[1]);
  }
}

TEST(Strings, OnlyNullIsReplaced) {
  EXPECT_EQ(S::IfIsNull(Null, u"x"), Variant(u"x"));
  for (const Variant& value : {Variant(Empty), Variant(Missing), Variant(Int16{0}), Variant(u"")}) {
    EXPECT_EQ(S::IfIsNull(value, 5), value);
  }
}

}  // namespace
}  // namespace quorl
