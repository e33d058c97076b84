// Field values of every type through every reader in two locales, entries through every writer, and
// the search for a field in honest, failing and lying collections.
#include "quorl/fields/db_lib.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <sstream>

#include "quorl/runtime/locale.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/holder.hpp"
#include "tests/support/random.hpp"
#include "tests/support/recording_host.hpp"

namespace quorl {
namespace {

using namespace literals;

const Locale kFrench = *Locale::Named(u"fr-FR");
const Locale kEnglish = *Locale::Named(u"en-US");
constexpr Double kNan = std::numeric_limits<Double>::quiet_NaN();

// What a reader gives: a text, a number or a date's days as they are, "#13" for a failure.
template <auto Reader>
std::string Read(const Variant& value) {
  std::ostringstream out;
  out.precision(17);
  try {
    const auto result = Reader(value);
    if constexpr (std::is_same_v<decltype(result), const String>) {
      out << Utf8(result);
    } else if constexpr (std::is_same_v<decltype(result), const Date>) {
      out << result.Days();
    } else {
      out << result;
    }
  } catch (const RaisedError& error) {
    out << '#' << error.Number();
  }
  return out.str();
}

Variant WithDefault(Variant value) { return MakeObject<Holder>(std::move(value)); }

// The cells of a row; "a~b" in a cell is a in French and b in English.
std::vector<std::string> CellsIn(bool french, StringView row) {
  std::vector<std::string> cells;
  for (const String& cell : Cells(row)) {
    const std::vector<String> sides = Cells(cell, u'~');
    cells.push_back(Utf8(french ? sides.front() : sides.back()));
  }
  return cells;
}

// GuidFieldValue, StrFieldValue, DotStrFieldValue, DateFieldValue, StrDateFieldValue,
// BoolFieldValue, TriStateFieldValue and SpaceIfEmptyOrNull; "=" is as the first, and so is what is
// left out at the end.
TEST(DbLibTest, EveryTypeThroughEveryReaderInTwoLocales) {
  const std::pair<Variant, StringView> rows[] = {
      {Null, u"{00000000-0000-0000-0000-000000000000}|||0||0|2| "},
      {Empty, u"||0|0|00:00:00|0|0| "},
      {Missing, u"#13"},
      {Byte{255}, u"255|=|=|=|11/09/1900~09/11/1900|1|0"},
      {Int16{-1}, u"-1|=|=|=|29/12/1899~12/29/1899|1|1"},
      {Int16{1}, u"1|=|=|=|31/12/1899~12/31/1899|1|0"},
      {Int32{2958465}, u"2958465|=|=|=|31/12/9999~12/31/9999|1|0"},
      {Int32{2958466}, u"2958466|=|=|#6|#6|1|0"},
      {Single{0.1F}, u"0,1~0.1|=|.1|0.10000000149011612|02:24:00|1|0"},
      {-0.5, u"-0,5~-0.5|=|-.5|-0.5|12:00:00|1|0"},
      {1234.5, u"1234,5~1234.5|=|1234.5|1234.5|18/05/1903 12:00:00~05/18/1903 12:00:00|1|0"},
      {kNan, u"#6|=|=|=|=|=|0"},
      {1234.5678_cy,
       u"1234,5678~1234.5678|=|1234.5678|1234.5678|18/05/1903 13:37:38~05/18/1903 13:37:38|1|0"},
      {Currency::Highest(),
       u"922337203685477,5807~922337203685477.5807|=|922337203685477.5807|#6|#6|1|0"},
      {-1.00_cy, u"-1|=|=|=|29/12/1899~12/29/1899|1|1"},
      {Date(45351.75), u"29/02/2024 18:00:00~02/29/2024 18:00:00|=|45351.75|45351.75|=|1|0"},
      {Date(3e6), u"#6|=|3000000|=|=|1|0"},
      {true, u"Vrai~True|=|-1|-1|29/12/1899~12/29/1899|1|1"},
      {false, u"Faux~False|=|0|0|00:00:00|0|0"},
      {u"", u"|||#13|#13|#13|#13| "},
      {u"abc\u00A0\t ", u"abc\u00A0\t |abc\u00A0\t|abc\u00A0\t|#13|#13|#13|#13"},
      {u" 1,5 ", u" 1,5 | 1,5| 1,5|#13|#13|1|0"},
      {u"1.5", u"1.5|=|=|#13|#13|#13~1|#13~0"},
      {u"-1", u"-1|=|=|#13|#13|1|1"},
      {u"vrai", u"vrai|=|=|#13|#13|1~#13|#13"},
      {u"03/04/2024", u"03/04/2024|=|=|45385~45355|=|#13|#13"},
      {u"31/12/1999 06:00", u"31/12/1999 06:00|=|=|36525.25~#13|31/12/1999 06:00:00~#13|#13|#13"},
      {WithDefault(u"  a "), u"  a |a|#13|#13|#13|#13|#13"},
      {WithDefault(WithDefault(2.5)), u"2,5~2.5|=|2.5|2.5|01/01/1900 12:00:00|1|0"},
      {WithDefault(Null), u"#94|=|=|=|=|=|0"},
      {WithDefault(Empty), u"||0|0|00:00:00|0|0| "},
      {Object(), u"#13"},
      {MakeObject<RecordingHost>("none"), u"#13"},
      {Array::OfBytes({65, 0}), u"#13"},
      {Array::OfStrings({}), u"#13"}};
  for (const bool french : {true, false}) {
    const LocaleScope scope(french ? kFrench : kEnglish);
    for (const auto& [value, row] : rows) {
      std::vector<std::string> cells = CellsIn(french, row);
      cells.resize(8, "=");
      std::ranges::replace(cells, std::string("="), std::string(cells[0]));
      const std::vector<std::string> read{
          Read<DbLib::GuidFieldValue>(value),     Read<DbLib::StrFieldValue>(value),
          Read<DbLib::DotStrFieldValue>(value),   Read<DbLib::DateFieldValue>(value),
          Read<DbLib::StrDateFieldValue>(value),  Read<DbLib::BoolFieldValue>(value),
          Read<DbLib::TriStateFieldValue>(value), Read<DbLib::SpaceIfEmptyOrNull>(value)};
      EXPECT_EQ(read, cells) << Shown(value) << (french ? " in French" : " in English");
      const Variant number = DbLib::NumFieldValue(value);
      EXPECT_EQ(Shown(number), value.IsNull() ? "Int16 0" : Shown(value));
    }
  }
}

// The digits of an amount, put together without any conversion of the library's.
std::string DigitsOf(std::int64_t units, char point, bool zero_before) {
  const auto bits = static_cast<std::uint64_t>(units), size = units < 0 ? 0 - bits : bits;
  std::string text = std::to_string(size / 10000) + std::to_string(size % 10000 + 10000);
  text[text.size() - 5] = point;  // instead of the 1
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == point) text.pop_back();
  if (text.starts_with('0') && text.size() > 1 && !zero_before) text.erase(0, 1);
  return (units < 0 ? "-" : "") + text;
}

TEST(DbLibTest, MoneyIsExactToTheLastDigit) {
  const LocaleScope scope(kFrench);
  Random random(20240229);
  for (int i = 0; i < 20'000; ++i) {
    const auto units = static_cast<std::int64_t>(random.Bits()) >> random.Whole(0, 63);
    const Variant money = Currency::FromTenThousandths(units);
    ASSERT_EQ(Utf8(DbLib::StrFieldValue(money)), DigitsOf(units, ',', true)) << units;
    ASSERT_EQ(Utf8(DbLib::SpaceIfEmptyOrNull(money)), DigitsOf(units, ',', true)) << units;
    ASSERT_EQ(Utf8(DbLib::DotStrFieldValue(money)), DigitsOf(units, '.', false)) << units;
    ASSERT_EQ(DbLib::NumFieldValue(money), money) << units;
  }
}

// What StrNumToField, DotStrNumToField and StrDateToField make of a text.
TEST(DbLibTest, EntriesToFields) {
  const auto rows = Rows(
      u"|Null|Null|Null;   |Null|Null|Null;\u00A0|Null|Double 0|Null;\t|Null|Double 0|Null;"
      u" 12,5 |Double 12.5~Double 125|Double 12|Null;12.5|Null~Double 12.5|Double 12.5|Null;"
      u"12abc|Null|Double 12|Null;1 234,50|Double 1234.5~Null|Double 1234|Null;"
      u"1\u00A0234,50|Double 1234.5~Null|Double 1|Null;1\u202F234,50|Double 1234.5~Null|Double "
      u"1|Null;"
      u"-1e3|Double -1000|Double -1000|Null;1e999|Null|#6|Null;1,2,3|Null~Double 123|Double 1|Null;"
      u"31/12/1999|Null|Double 31|Date day 36525 (1999-12-31)~Null;2023-02-29|Null|Double "
      u"2023|Null;"
      u"2024-02-29 18:00|Null|Double 2024|Date day 45351.75 (2024-02-29 18:00:00)");
  for (const bool french : {true, false}) {
    const LocaleScope scope(french ? kFrench : kEnglish);
    for (const auto& row : rows) {
      const String& text = row[0];
      SCOPED_TRACE(Shown(text) + (french ? " in French" : " in English"));
      const auto cell = [&](std::size_t i) { return CellsIn(french, row[i])[0]; };
      EXPECT_EQ(Outcome([&] { return DbLib::StrNumToField(text); }), cell(1));
      EXPECT_EQ(Outcome([&] { return DbLib::DotStrNumToField(text); }), cell(2));
      EXPECT_EQ(Outcome([&] { return DbLib::StrDateToField(text); }), cell(3));
      const bool blank = text.find_first_not_of(u' ') == text.npos;
      EXPECT_EQ(DbLib::StrToField(text), blank ? Variant(Null) : Variant(text));
      EXPECT_EQ(DbLib::StrGuidToField(text), Variant(text));
    }
  }
  EXPECT_EQ(DbLib::StrGuidToField(u"{00000000-0000-0000-0000-000000000000}"), Variant(Null));
  for (const Int32 state : {-32768, -1, 2, 32767}) {
    EXPECT_EQ(DbLib::TriStateToBoolField(static_cast<Int16>(state)), Variant(Null)) << state;
  }
  EXPECT_EQ(DbLib::TriStateToBoolField(0), Variant(false));
  EXPECT_EQ(DbLib::TriStateToBoolField(1), Variant(true));
}

// Every text of up to six characters out of two, and quotes at each position around the limit.
TEST(DbLibTest, QuotesAreDoubled) {
  std::vector<String> texts(1);
  for (std::size_t i = 0; i < 63; ++i) {
    for (const char16_t unit : {u'\'', u'\u2019'}) texts.push_back(texts[i] + unit);
  }
  for (const std::size_t before : {32764U, 32765U, 32766U, 32767U, 99999U}) {
    const String run(before, u'x');
    for (const String& text : {run, run + u"'", run + u"'y", u"'" + run.substr(1) + u"'"}) {
      texts.push_back(text);
    }
  }
  for (const String& text : texts) {
    SCOPED_TRACE(std::to_string(text.size()) + Utf8(text.substr(0, 6)));
    String doubled;
    for (const char16_t unit : text) doubled.append(unit == u'\'' ? 2 : 1, unit);
    const std::size_t last = text.rfind(u'\'');
    if (last != text.npos && last >= 32766) {
      EXPECT_RAISES(DbLib::DuplicateQuotte(text), RuntimeFailure(6));
    } else {
      EXPECT_EQ(DbLib::DuplicateQuotte(text), doubled);
    }
  }
}

// A collection whose field i is an object with the name that `name_of` gives.
struct Fields {
  Fields(Variant count, std::function<Variant(Int16)> name_of) {
    collection->With(u"Count", std::move(count));
    collection->WithMember(u"", [this, name_of](RecordingHost::Arguments arguments) {
      field->With(u"Name", name_of(*arguments[0].If<Int16>()));
      // Must not lead the search astray.
      arguments[0] = Int16{-1};
      return Variant(Object(field));
    });
  }
  std::string Find(StringView name) {
    return Outcome([&] { return DbLib::FieldPos(name, Object(collection)); });
  }

  Journal journal;
  std::shared_ptr<RecordingHost> collection = std::make_shared<RecordingHost>("fields", &journal);
  std::shared_ptr<RecordingHost> field = std::make_shared<RecordingHost>("field", &journal);
};

TEST(DbLibTest, FieldsAreFoundByNameEachReadOnce) {
  const Variant names[] = {u"Ref", Null, u"NOM", u"Nom", Empty, Int16{42}, u"Nom"};
  Fields fields(Int16{7}, [&](Int16 i) { return names[i]; });
  EXPECT_EQ(fields.Find(u"Nom"), "Int16 4");
  EXPECT_EQ(fields.journal, (Journal{"fields.Count", "fields.(Int16 0)", "field.Name",
                                     "fields.(Int16 1)", "field.Name", "fields.(Int16 2)",
                                     "field.Name", "fields.(Int16 3)", "field.Name"}));
  EXPECT_EQ(fields.Find(u"ref"), "Int16 0");
  EXPECT_EQ(fields.Find(u""), "Int16 5");
  EXPECT_EQ(fields.Find(u"42"), "Int16 6");
  EXPECT_EQ(fields.Find(u"Ref "), "Int16 0");
}

TEST(DbLibTest, LyingCounts) {
  const LocaleScope scope(kFrench);
  for (const auto& [count, seen] : LyingCounts()) {
    Fields fields(count, [](Int16 i) { return i == 2 ? u"Nom" : u"Ref"; });
    const std::string failed = seen[0] == '#' ? seen : "Int16 0";
    EXPECT_EQ(fields.Find(u"Nom"), seen == "yes" ? "Int16 3" : failed) << Shown(count);
    EXPECT_EQ(fields.Find(u"nom"), failed) << Shown(count);
  }
  // The last positions that an Int16 holds, and the first that it does not.
  for (const Int32 at : {32765, 32766, 32767}) {
    Fields fields(Int32{32768}, [at](Int16 i) { return i == at ? u"Nom" : u"Ref"; });
    EXPECT_EQ(fields.Find(u"Nom"), at == 32767 ? "#6" : "Int16 " + std::to_string(at + 1));
    EXPECT_EQ(fields.Find(u"nom"), "Int16 0");
  }
}

TEST(DbLibTest, CollectionsThatFail) {
  for (const Variant& none : {Variant(), Variant(Null), Variant(Missing), Variant(u"Fields"),
                              Variant(Int16{1}), Variant(Array::OfStrings({}))}) {
    EXPECT_RAISES(DbLib::FieldPos(u"Nom", none), RuntimeFailure(424)) << Shown(none);
  }
  EXPECT_RAISES(DbLib::FieldPos(u"Nom", Object()), RuntimeFailure(91));

  const auto ref = [](Int16) { return u"Ref"; };
  const std::pair<Variant, const char*> items[] = {{u"Nom", "#424"},
                                                   {Null, "#424"},
                                                   {Empty, "#424"},
                                                   {Object(), "#91"},
                                                   {MakeObject<RecordingHost>("nameless"), "#438"}};
  for (const auto& [item, outcome] : items) {
    Fields fields(Int16{2}, ref);
    fields.collection->With(u"", item);
    EXPECT_EQ(fields.Find(u"Nom"), outcome) << Shown(item);
  }
  const std::pair<Variant, const char*> names[] = {{Missing, "#13"},
                                                   {Object(), "#13"},
                                                   {Array::OfBytes({}), "#13"},
                                                   {WithDefault(u"Nom"), "Int16 1"}};
  for (const auto& [name, outcome] : names) {
    EXPECT_EQ(Fields(Int16{2}, [&, n = name](Int16) { return n; }).Find(u"Nom"), outcome);
  }
  for (const String member : {u"Count", u""}) {
    Fields fields(Int16{2}, ref);
    fields.collection->Remove(member);
    EXPECT_EQ(fields.Find(u"Nom"), "#438") << Utf8(member);
    fields.collection->WithFailure(member, 3021);
    EXPECT_EQ(fields.Find(u"Nom"), "#3021") << Utf8(member);
  }
}

}  // namespace
}  // namespace quorl
