// Field values of every type through every reader, entries through every writer, and the search for
// a field in honest and failing collections.
#include "quorl/fields/db_lib.hpp"

#include "tests/support/recording_host.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace literals;

template <auto Reader>
std::string Read(const Variant& value) {
  return ResultOf([&] { return Utf8(ToString(Reader(value))); });
}

// In a locale with a decimal comma: GuidFieldValue, StrFieldValue, DotStrFieldValue,
// SpaceIfEmptyOrNull, DateFieldValue, StrDateFieldValue, BoolFieldValue and TriStateFieldValue; "="
// is as the one before, and so is what is left out at the end.
TEST(DbLibTest, EveryTypeThroughEveryReader) {
  const std::pair<Variant, StringView> rows[] = {
      {Null, u"{00000000-0000-0000-0000-000000000000}||| |00:00:00||Faux|2"},
      {Empty, u"||0| |00:00:00|=|Faux|0"},
      {Missing, u"!13"},
      {Int16{-1}, u"-1|=|=|=|29/12/1899|=|Vrai|1"},
      {Int16{1}, u"1|=|=|=|31/12/1899|=|Vrai|0"},
      {-0.5, u"-0,5|=|-.5|-0,5|12:00:00|=|Vrai|0"},
      {1234.5678_cy, u"1234,5678|=|1234.5678|1234,5678|18/05/1903 13:37:38|=|Vrai|0"},
      {Date(45351.75), u"29/02/2024 18:00:00|=|45351.75|29/02/2024 18:00:00|=|=|Vrai|0"},
      {true, u"Vrai|=|-1|Vrai|29/12/1899|=|Vrai|1"},
      {u"", u"||| |!13"},
      {u"abc\u00A0\t ", u"abc\u00A0\t |abc\u00A0\t|=|abc\u00A0\t |!13"},
      {u" 1,5 ", u" 1,5 | 1,5|=| 1,5 |!13|=|Vrai|0"},
      {u"-1", u"-1|=|=|=|!13|=|Vrai|1"},
      {u"1e999", u"1e999|=|=|=|!13|=|!6"},
      {u"31/12/1999 06:00", u"31/12/1999 06:00|=|=|=|31/12/1999 06:00:00|=|!13"},
      {MakeObject<Holder>(u"  a "), u"  a |a|!13|  a |!13"},
      {MakeObject<Holder>(Null), u"!94|=|=|=|=|=|=|0"},
      {Object(), u"!13"},
      {MakeObject<RecordingHost>("none"), u"!13"},
      {Array::OfBytes({65, 0}), u"!13"}};
  const LocaleScope scope(*Locale::Named(u"fr-FR"));
  for (const auto& [value, row] : rows) {
    std::vector<String> cells = Cells(row);
    cells.resize(8, u"=");
    std::vector<std::string> expected;
    for (const String& cell : cells) {
      expected.push_back(cell == u"=" ? expected.back() : Utf8(cell));
    }
    const std::vector<std::string> read{
        Read<DbLib::GuidFieldValue>(value),   Read<DbLib::StrFieldValue>(value),
        Read<DbLib::DotStrFieldValue>(value), Read<DbLib::SpaceIfEmptyOrNull>(value),
        Read<DbLib::DateFieldValue>(value),   Read<DbLib::StrDateFieldValue>(value),
        Read<DbLib::BoolFieldValue>(value),   Read<DbLib::TriStateFieldValue>(value)};
    EXPECT_EQ(read, expected) << Shown(value);
    EXPECT_EQ(Shown(DbLib::NumFieldValue(value)), value.IsNull() ? "Int16 0" : Shown(value));
  }
}

// What StrNumToField, DotStrNumToField and StrDateToField make of a text.
TEST(DbLibTest, EntriesToFields) {
  const LocaleScope scope(*Locale::Named(u"fr-FR"));
  for (const auto& row :
       Rows(u"|Null|Null|Null;   |Null|Null|Null;\t|Null|Double 0|Null;12.5|Null|Double 12.5|Null;"
            u" 12,5 |Double 12.5|Double 12|Null;12abc|Null|Double 12|Null;1e999|Null|!6|Null;"
            u"31/12/1999|Null|Double 31|Date day 36525;29/02/2023|Null|Double "
            u"29|Null")) {
    const String& text = row[0];
    EXPECT_EQ(ResultOf([&] { return DbLib::StrNumToField(text); }), Utf8(row[1])) << Shown(text);
    EXPECT_EQ(ResultOf([&] { return DbLib::DotStrNumToField(text); }), Utf8(row[2])) << Shown(text);
    EXPECT_EQ(ResultOf([&] { return DbLib::StrDateToField(text); }), Utf8(row[3])) << Shown(text);
    const bool blank = text.find_first_not_of(u' ') == text.npos;
    EXPECT_EQ(DbLib::StrToField(text), blank ? Variant(Null) : Variant(text));
    EXPECT_EQ(DbLib::StrGuidToField(text), Variant(text));
  }
  EXPECT_EQ(DbLib::StrGuidToField(u"{00000000-0000-0000-0000-000000000000}"), Variant(Null));
  for (const int state : {-32768, -1, 0, 1, 2, 32767}) {
    const Variant value = state == 0 || state == 1 ? Variant(state == 1) : Variant(Null);
    EXPECT_EQ(DbLib::TriStateToBoolField(static_cast<Int16>(state)), value) << state;
  }
}

TEST(DbLibTest, QuotesAreDoubledUpToTheirLimit) {
  EXPECT_EQ(DbLib::DuplicateQuotte(u""), u"");
  EXPECT_EQ(DbLib::DuplicateQuotte(u"''a'b\u2019'"), u"''''a''b\u2019''");
  for (const std::size_t place : {32765U, 32766U, 32767U, 32768U}) {
    const String run(place - 1, u'x');
    EXPECT_EQ(DbLib::DuplicateQuotte(run), run);
    EXPECT_EQ(ResultOf([&] { return Utf8(DbLib::DuplicateQuotte(run + u"'y")); }),
              place > 32766 ? "!6" : Utf8(run) + "''y");
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
    return ResultOf([&] { return DbLib::FieldPos(name, Object(collection)); });
  }

  Journal journal;
  std::shared_ptr<RecordingHost> collection = std::make_shared<RecordingHost>("fields", &journal);
  std::shared_ptr<RecordingHost> field = std::make_shared<RecordingHost>("field", &journal);
};

TEST(DbLibTest, FieldsAreFoundByNameEachReadOnce) {
  const Variant names[] = {u"Ref", Null, u"NOM", u"Nom", Empty, Int16{42}, u"Nom", Missing};
  Fields fields(6.6, [&](Int16 i) { return names[i]; });
  EXPECT_EQ(fields.Find(u"Nom"), "4");
  EXPECT_EQ(fields.journal, (Journal{"fields.Count", "fields.(Int16 0)", "field.Name",
                                     "fields.(Int16 1)", "field.Name", "fields.(Int16 2)",
                                     "field.Name", "fields.(Int16 3)", "field.Name"}));
  for (const auto& [name, at] : Pairs(u"ref=0|=5|42=6|Ref =0")) {
    EXPECT_EQ(fields.Find(name), at);
  }
  fields.collection->With(u"Count", Int16{8});
  EXPECT_EQ(fields.Find(u"ref"), "!13");
}

TEST(DbLibTest, CollectionsThatLieOrFail) {
  // The last positions that an Int16 holds, and the first that it does not.
  for (const Int32 at : {32765, 32766, 32767}) {
    Fields fields(Int32{32768}, [at](Int16 i) { return i == at ? u"Nom" : u"Ref"; });
    EXPECT_EQ(fields.Find(u"Nom"), at == 32767 ? "!6" : std::to_string(at + 1));
    EXPECT_EQ(fields.Find(u"nom"), "0");
  }
  for (const Variant& none : {Variant(), Variant(Null), Variant(u"Fields")}) {
    EXPECT_RAISES(DbLib::FieldPos(u"Nom", none), RuntimeFailure(424)) << Shown(none);
  }
  EXPECT_RAISES(DbLib::FieldPos(u"Nom", Object()), RuntimeFailure(91));
  // A count, and an item where one is read.
  const std::tuple<Variant, Variant, const char*> lies[] = {
      {0, u"Nom", "0"},         {Null, u"Nom", "!94"},
      {Int32{32769}, {}, "!6"}, {u"three", {}, "!13"},
      {2, u"Nom", "!424"},      {2, Null, "!424"},
      {2, Object(), "!91"},     {2, MakeObject<RecordingHost>(""), "!438"}};
  for (const auto& [count, item, outcome] : lies) {
    Fields fields(count, [](Int16) { return Null; });
    if (item.Type() != VariantType::kEmpty) fields.collection->With(u"", item);
    EXPECT_EQ(fields.Find(u"Nom"), outcome) << Shown(count) << Shown(item);
  }
  for (const String member : {u"Count", u""}) {
    Fields fields(Int16{2}, [](Int16) { return u"Ref"; });
    fields.collection->Remove(member);
    EXPECT_EQ(fields.Find(u"Nom"), "!438") << Utf8(member);
    fields.collection->WithFailure(member, 3021);
    EXPECT_EQ(fields.Find(u"Nom"), "!3021 of Host") << Utf8(member);
  }
}

}  // namespace
}  // namespace quorl
