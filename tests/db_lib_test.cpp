// Field values of every type through every reader in two locales, entries through every writer, and
// the search for a field in honest, failing and lying collections.
#include "quorl/fields/db_lib.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <random>

#include "quorl/runtime/locale.hpp"
#include "tests/support/recording_host.hpp"

namespace quorl {
namespace {

using namespace literals;

constexpr const char16_t* kZeroGuid = u"{00000000-0000-0000-0000-000000000000}";

const Locale kFrench = *Locale::Named(u"fr-FR");
const Locale kEnglish = *Locale::Named(u"en-US");

// What a reader gives: a text, a number or a date's days as they are, "#13" for a failure.
template <class Result>
std::string Plain(const Result& result) {
  if constexpr (std::is_same_v<Result, String>) return Utf8(result);
  if constexpr (std::is_same_v<Result, Boolean>) return result ? "True" : "False";
  if constexpr (std::is_same_v<Result, Int16>) return std::to_string(result);
  if constexpr (std::is_same_v<Result, Date>) return Plain(result.Days());
  if constexpr (std::is_same_v<Result, Double>) {
    return Shown(Variant(result)).substr(std::strlen("Double "));
  }
}

template <auto Reader>
std::string Read(const Variant& value) {
  try {
    return Plain(Reader(value));
  } catch (const RaisedError& error) {
    return ShownFailure(error.Number());
  }
}

Object WithDefault(Variant value) {
  const auto host = std::make_shared<RecordingHost>("host");
  host->With(u"", std::move(value));
  return Object(host);
}

// One row of the matrix. A cell "a|b" is a in French and b in English. `days` is for
// DateFieldValue, `date` for StrDateFieldValue; `raw` is for GuidFieldValue and, unless `space` is
// given, for SpaceIfEmptyOrNull too.
struct Row {
  Variant value;
  std::string text, raw, dotted, days, date, truth, state, space = "=";
};

const std::vector<Row>& Matrix() {
  constexpr Double kNan = std::numeric_limits<Double>::quiet_NaN();
  static const std::vector<Row> rows{
      {Null, "", Utf8(kZeroGuid), "", "0", "", "False", "2", " "},
      {Empty, "", "", "0", "0", "00:00:00", "False", "0", " "},
      {Missing, "#13", "#13", "#13", "#13", "#13", "#13", "#13"},
      {Byte{255}, "255", "255", "255", "255", "11/09/1900|09/11/1900", "True", "0"},
      {Int16{-1}, "-1", "-1", "-1", "-1", "29/12/1899|12/29/1899", "True", "1"},
      {Int16{1}, "1", "1", "1", "1", "31/12/1899|12/31/1899", "True", "0"},
      {Int32{0}, "0", "0", "0", "0", "00:00:00", "False", "0"},
      {Int32{2958465}, "2958465", "2958465", "2958465", "2958465", "31/12/9999|12/31/9999", "True",
       "0"},
      {Int32{2958466}, "2958466", "2958466", "2958466", "#6", "#6", "True", "0"},
      {Single{0.1F}, "0,1|0.1", "0,1|0.1", ".1", "0.10000000149011612", "02:24:00", "True", "0"},
      {-0.5, "-0,5|-0.5", "-0,5|-0.5", "-.5", "-0.5", "12:00:00", "True", "0"},
      {1234.5, "1234,5|1234.5", "1234,5|1234.5", "1234.5", "1234.5",
       "18/05/1903 12:00:00|05/18/1903 12:00:00", "True", "0"},
      {-1.0, "-1", "-1", "-1", "-1", "29/12/1899|12/29/1899", "True", "1"},
      {1e300, "1E+300", "1E+300", "1E+300", "#6", "#6", "True", "0"},
      {kNan, "#6", "#6", "#6", "#6", "#6", "#6", "0"},
      {1234.5678_cy, "1234,5678|1234.5678", "1234,5678|1234.5678", "1234.5678", "1234.5678",
       "18/05/1903 13:37:38|05/18/1903 13:37:38", "True", "0"},
      {Currency::Highest(), "922337203685477,5807|922337203685477.5807",
       "922337203685477,5807|922337203685477.5807", "922337203685477.5807", "#6", "#6", "True",
       "0"},
      {-1.00_cy, "-1", "-1", "-1", "-1", "29/12/1899|12/29/1899", "True", "1"},
      {Date(45351.75), "29/02/2024 18:00:00|02/29/2024 18:00:00",
       "29/02/2024 18:00:00|02/29/2024 18:00:00", "45351.75", "45351.75",
       "29/02/2024 18:00:00|02/29/2024 18:00:00", "True", "0"},
      {Date(3e6), "#6", "#6", "3000000", "#6", "#6", "True", "0"},
      {true, "Vrai|True", "Vrai|True", "-1", "-1", "29/12/1899|12/29/1899", "True", "1"},
      {false, "Faux|False", "Faux|False", "0", "0", "00:00:00", "False", "0"},
      {u"", "", "", "", "#13", "#13", "#13", "#13", " "},
      {u"   ", "", "   ", "", "#13", "#13", "#13", "#13"},
      {u"  abc  ", "  abc", "  abc  ", "  abc", "#13", "#13", "#13", "#13"},
      {u"abc\u00A0\t ", "abc\u00A0\t", "abc\u00A0\t ", "abc\u00A0\t", "#13", "#13", "#13", "#13"},
      {u" 1,5 ", " 1,5", " 1,5 ", " 1,5", "#13", "#13", "True", "0"},
      {u"1.5", "1.5", "1.5", "1.5", "#13", "#13", "#13|True", "#13|0"},
      {u"-1", "-1", "-1", "-1", "#13", "#13", "True", "1"},
      {u"1 000", "1 000", "1 000", "1 000", "#13", "#13", "True|#13", "0|#13"},
      {u"vrai", "vrai", "vrai", "vrai", "#13", "#13", "True|#13", "#13"},
      {u"FALSE", "FALSE", "FALSE", "FALSE", "#13", "#13", "False", "#13"},
      {u"03/04/2024", "03/04/2024", "03/04/2024", "03/04/2024", "45385|45355", "03/04/2024", "#13",
       "#13"},
      {u"31/12/1999 06:00", "31/12/1999 06:00", "31/12/1999 06:00", "31/12/1999 06:00",
       "36525.25|#13", "31/12/1999 06:00:00|#13", "#13", "#13"},
      {WithDefault(u"  a "), "a", "  a ", "#13", "#13", "#13", "#13", "#13"},
      {WithDefault(WithDefault(2.5)), "2,5|2.5", "2,5|2.5", "2.5", "2.5",
       "01/01/1900 12:00:00|01/01/1900 12:00:00", "True", "0"},
      {WithDefault(Null), "#94", "#94", "#94", "#94", "#94", "#94", "0"},
      {WithDefault(Empty), "", "", "0", "0", "00:00:00", "False", "0", " "},
      {Object(), "#13", "#13", "#13", "#13", "#13", "#13", "#13"},
      {MakeObject<RecordingHost>("none"), "#13", "#13", "#13", "#13", "#13", "#13", "#13"},
      {Array::OfBytes({65, 0}), "#13", "#13", "#13", "#13", "#13", "#13", "#13"},
      {Array::OfStrings({}), "#13", "#13", "#13", "#13", "#13", "#13", "#13"},
  };
  return rows;
}

std::string Side(const std::string& cell, bool french) {
  const std::size_t bar = cell.find('|');
  if (bar == std::string::npos) return cell;
  return french ? cell.substr(0, bar) : cell.substr(bar + 1);
}

TEST(DbLibTest, EveryTypeThroughEveryReaderInTwoLocales) {
  for (const bool french : {true, false}) {
    const LocaleScope scope(french ? kFrench : kEnglish);
    for (const Row& row : Matrix()) {
      SCOPED_TRACE(Shown(row.value) + (french ? " in French" : " in English"));
      const auto side = [&](const std::string& cell) { return Side(cell, french); };
      EXPECT_EQ(Read<DbLib::StrFieldValue>(row.value), side(row.text));
      EXPECT_EQ(Read<DbLib::GuidFieldValue>(row.value), side(row.raw));
      EXPECT_EQ(Read<DbLib::DotStrFieldValue>(row.value), side(row.dotted));
      EXPECT_EQ(Read<DbLib::DateFieldValue>(row.value), side(row.days));
      EXPECT_EQ(Read<DbLib::StrDateFieldValue>(row.value), side(row.date));
      EXPECT_EQ(Read<DbLib::BoolFieldValue>(row.value), side(row.truth));
      EXPECT_EQ(Read<DbLib::TriStateFieldValue>(row.value), side(row.state));
      EXPECT_EQ(Read<DbLib::SpaceIfEmptyOrNull>(row.value),
                side(row.space == "=" ? row.raw : row.space));
      const Variant number = DbLib::NumFieldValue(row.value);
      EXPECT_EQ(Shown(number), row.value.IsNull() ? "Int16 0" : Shown(row.value));
      EXPECT_EQ(number.Type(), row.value.IsNull() ? VariantType::kInt16 : row.value.Type());
    }
  }
}

// The digits of an amount, put together without any conversion of the library's.
std::string DigitsOf(std::int64_t units, const std::string& point, bool zero_before) {
  const std::uint64_t size =
      units < 0 ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
  std::string fraction = std::to_string(size % 10000 + 10000).substr(1);
  fraction.erase(fraction.find_last_not_of('0') + 1);
  std::string whole = std::to_string(size / 10000);
  if (whole == "0" && !zero_before && !fraction.empty()) whole.clear();
  return (units < 0 ? "-" : "") + whole + (fraction.empty() ? "" : point + fraction);
}

TEST(DbLibTest, MoneyIsExactToTheLastDigit) {
  const LocaleScope scope(kFrench);
  std::mt19937_64 random(20240229);
  for (int i = 0; i < 20'000; ++i) {
    const auto units = static_cast<std::int64_t>(random()) >> random() % 64;
    const Variant money = Currency::FromTenThousandths(units);
    ASSERT_EQ(Utf8(DbLib::StrFieldValue(money)), DigitsOf(units, ",", true)) << units;
    ASSERT_EQ(Utf8(DbLib::SpaceIfEmptyOrNull(money)), DigitsOf(units, ",", true)) << units;
    ASSERT_EQ(Utf8(DbLib::DotStrFieldValue(money)), DigitsOf(units, ".", false)) << units;
    ASSERT_EQ(DbLib::NumFieldValue(money), money) << units;
  }
}

TEST(DbLibTest, EntriesToFields) {
  struct Case {
    String text;
    std::string number, dotted, date;  // "a|b" as above
    bool is_blank = false;
  };
  const Case cases[] = {
      {u"", "Null", "Null", "Null", true},
      {u"   ", "Null", "Null", "Null", true},
      {u"\u00A0", "Null", "Double 0", "Null"},
      {u"\t", "Null", "Double 0", "Null"},
      {u" a ", "Null", "Double 0", "Null"},
      {u"12", "Double 12", "Double 12", "Null"},
      {u" 12,5 ", "Double 12.5|Double 125", "Double 12", "Null"},
      {u"12.5", "Null|Double 12.5", "Double 12.5", "Null"},
      {u"12abc", "Null", "Double 12", "Null"},
      {u"1 234,50", "Double 1234.5|Null", "Double 1234", "Null"},
      {u"1\u00A0234,50", "Double 1234.5|Null", "Double 1", "Null"},
      {u"1\u202F234,50", "Double 1234.5|Null", "Double 1", "Null"},
      {u"-1e3", "Double -1000", "Double -1000", "Null"},
      {u"1e999", "Null", "#6", "Null"},
      {u"1,2,3", "Null|Double 123", "Double 1", "Null"},
      {u"vrai", "Null", "Double 0", "Null"},
      {u"31/12/1999", "Null", "Double 31", "Date day 36525 (1999-12-31)|Null"},
      {u"12/31/1999", "Null", "Double 12", "Null|Date day 36525 (1999-12-31)"},
      {u"2024-02-29 18:00", "Null", "Double 2024", "Date day 45351.75 (2024-02-29 18:00:00)"},
      {u"2023-02-29", "Null", "Double 2023", "Null"},
      {kZeroGuid, "Null", "Double 0", "Null"},
  };
  for (const bool french : {true, false}) {
    const LocaleScope scope(french ? kFrench : kEnglish);
    for (const Case& c : cases) {
      SCOPED_TRACE(Utf8(c.text) + (french ? " in French" : " in English"));
      EXPECT_EQ(DbLib::StrToField(c.text), c.is_blank ? Variant(Null) : Variant(c.text));
      EXPECT_EQ(DbLib::StrGuidToField(c.text),
                c.text == kZeroGuid ? Variant(Null) : Variant(c.text));
      EXPECT_EQ(Shown(DbLib::StrNumToField(c.text)), Side(c.number, french));
      EXPECT_EQ(Outcome([&] { return DbLib::DotStrNumToField(c.text); }), Side(c.dotted, french));
      EXPECT_EQ(Shown(DbLib::StrDateToField(c.text)), Side(c.date, french));
    }
  }
  for (Int32 state = -32768; state <= 32767; ++state) {
    const Variant expected = state == 0 ? Variant(false) : state == 1 ? Variant(true) : Null;
    ASSERT_EQ(DbLib::TriStateToBoolField(static_cast<Int16>(state)), expected) << state;
  }
}

TEST(DbLibTest, QuotesAreDoubled) {
  // Every text of up to six characters out of two, against a character at a time.
  for (std::size_t length = 0; length <= 6; ++length) {
    for (unsigned bits = 0; bits < 1U << length; ++bits) {
      String text, doubled;
      for (std::size_t i = 0; i < length; ++i) {
        text += (bits >> i & 1) != 0 ? u'\'' : u'\u2019';
        doubled += (bits >> i & 1) != 0 ? u"''" : u"\u2019";
      }
      ASSERT_EQ(DbLib::DuplicateQuotte(text), doubled) << Utf8(text);
    }
  }
  // A quote at each position around the limit, alone and behind another one.
  for (const std::size_t position : {32765U, 32766U, 32767U, 32768U, 100000U}) {
    const String text = String(position - 1, u'x').append(1, u'\'');
    String two_quotes = text;
    two_quotes[0] = u'\'';
    for (const String& whole : {text, text + String(9, u'y'), two_quotes}) {
      SCOPED_TRACE(std::to_string(position) + " of " + std::to_string(whole.size()));
      if (position > 32766) {
        EXPECT_EQ(NumberRaised([&] { DbLib::DuplicateQuotte(whole); }), 6);
      } else {
        String expected = whole;
        expected.insert(position, 1, u'\'');
        if (whole[0] == u'\'') expected.insert(0, 1, u'\'');
        EXPECT_EQ(DbLib::DuplicateQuotte(whole), expected);
      }
    }
    EXPECT_EQ(DbLib::DuplicateQuotte(String(position, u'x')), String(position, u'x'));
  }
}

// A collection whose field i is an object with the name that `name_of` gives.
class Fields {
 public:
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
    journal.clear();
    return Outcome([&] { return Variant(DbLib::FieldPos(name, Object(collection))); });
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
  struct Case {
    Variant count;
    std::string found_third, not_found;
  };
  const Case cases[] = {
      {u"3", "Int16 3", "Int16 0"},
      {u" 2,6", "Int16 3", "Int16 0"},
      {2.5, "Int16 3", "Int16 0"},
      {3.5, "Int16 3", "Int16 0"},
      {2.4, "Int16 0", "Int16 0"},
      {2.5001_cy, "Int16 3", "Int16 0"},
      {Empty, "Int16 0", "Int16 0"},
      {true, "Int16 0", "Int16 0"},
      {Int16{-5}, "Int16 0", "Int16 0"},
      {Int32{-32767}, "Int16 0", "Int16 0"},
      {Int32{-32768}, "#6", "#6"},
      {Int32{32766}, "Int16 3", "Int16 0"},
      {Int32{32767}, "Int16 3", "Int16 0"},
      {Int32{32768}, "Int16 3", "Int16 0"},
      {Int32{32769}, "#6", "#6"},
      {1e300, "#6", "#6"},
      {u"three", "#13", "#13"},
      {Null, "#94", "#94"},
      {Missing, "#13", "#13"},
      {Object(), "#13", "#13"},
      {Array::OfBytes({3}), "#13", "#13"},
  };
  const LocaleScope scope(kFrench);
  for (const Case& c : cases) {
    SCOPED_TRACE(Shown(c.count));
    Fields fields(c.count, [](Int16 i) { return i == 2 ? u"Nom" : u"Ref"; });
    EXPECT_EQ(fields.Find(u"Nom"), c.found_third);
    EXPECT_EQ(fields.Find(u"nom"), c.not_found);
  }
  // The last positions that an Int16 holds, and the first that it does not.
  for (const Int16 at : {Int16{32765}, Int16{32766}, Int16{32767}}) {
    Fields fields(Int32{32768}, [at](Int16 i) { return i == at ? u"Nom" : u"Ref"; });
    EXPECT_EQ(fields.Find(u"Nom"), at == 32767 ? "#6" : "Int16 " + std::to_string(at + 1));
  }
}

TEST(DbLibTest, CollectionsThatFail) {
  for (const Variant& none : {Variant(), Variant(Null), Variant(Missing), Variant(u"Fields"),
                              Variant(Int16{1}), Variant(Array::OfStrings({}))}) {
    EXPECT_EQ(NumberRaised([&] { DbLib::FieldPos(u"Nom", none); }), 424) << Shown(none);
  }
  EXPECT_EQ(NumberRaised([] { DbLib::FieldPos(u"Nom", Object()); }), 91);

  const auto ref = [](Int16) { return u"Ref"; };
  for (const Variant& useless : {Variant(u"Nom"), Variant(Null), Variant(), Variant(Object())}) {
    Fields fields(Int16{2}, ref);
    fields.collection->With(u"", useless);
    EXPECT_EQ(fields.Find(u"Nom"), useless.Holds<Object>() ? "#91" : "#424") << Shown(useless);
  }
  for (const Variant& name : {Variant(Missing), Variant(Object()), Variant(Array::OfBytes({}))}) {
    EXPECT_EQ(Fields(Int16{2}, [&](Int16) { return name; }).Find(u"Nom"), "#13") << Shown(name);
  }
  EXPECT_EQ(Fields(Int16{2}, [](Int16) { return WithDefault(u"Nom"); }).Find(u"Nom"), "Int16 1");

  for (const String member : {u"Count", u""}) {
    Fields fields(Int16{2}, ref);
    fields.collection->Remove(member);
    EXPECT_EQ(fields.Find(u"Nom"), "#438") << Utf8(member);
    fields.collection->WithMember(
        member, [](auto) -> Variant { throw RaisedError(3021, u"Records", u"No current record"); });
    EXPECT_EQ(fields.Find(u"Nom"), "#3021") << Utf8(member);
  }
  Fields nameless(Int16{2}, ref);
  nameless.collection->With(u"", MakeObject<RecordingHost>("nameless"));
  EXPECT_EQ(nameless.Find(u"Nom"), "#438");
}

}  // namespace
}  // namespace quorl
