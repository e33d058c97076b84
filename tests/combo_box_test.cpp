// Picking entries of a combo box, with honest, failing and lying combos.
#include "quorl/forms/combo_box_ex.hpp"

#include <gtest/gtest.h>

#include "quorl/runtime/locale.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/recording_host.hpp"

namespace quorl {
namespace {

using Pick = std::function<void(const Object&)>;

Pick ByText(String text, Int16 length = 0) {
  return [=](const Object& combo) { ComboBoxEx::CmbSelectMatchString(combo, text, length); };
}
Pick ByToken(String text, Int16 index = 1) {
  return [=](const Object& combo) { ComboBoxEx::CmbSelectMatchToken(combo, text, index); };
}
Pick ByPart(String text, Int16 start = 1, Int16 length = 0) {
  return [=](const Object& c) { ComboBoxEx::CmbSelectMatchSubString(c, text, start, length); };
}
Pick ByData(Int32 number) {
  return [=](const Object& combo) { ComboBoxEx::CmbSelectItemData(combo, number); };
}
Int32 Current(const Object& combo) { return ComboBoxEx::CmbCurrentItemData(combo, 7); }

class ComboHost : public RecordingHost {
 public:
  using RecordingHost::RecordingHost;
  void Put(StringView name, Arguments arguments, const Variant& value) override {
    if (is_read_only) throw RaisedError(380, u"Combo", u"Read only");
    RecordingHost::Put(name, arguments, value);
  }
  bool is_read_only = false;
};

// A combo box that tells the truth about its entries, with entry 5 selected.
struct Combo {
  explicit Combo(std::vector<Variant> entries, std::vector<Variant> data = {}) {
    host->With(u"ListIndex", Int16{5}).With(u"ListCount", static_cast<Int32>(entries.size()));
    host->WithMember(u"List", At(std::move(entries))).WithMember(u"ItemData", At(std::move(data)));
  }
  // Writes the index back, which must not lead the walk astray.
  static RecordingHost::Member At(std::vector<Variant> values) {
    return [values](RecordingHost::Arguments arguments) {
      const Variant value = values.at(static_cast<std::size_t>(*arguments[0].If<Int16>()));
      arguments[0] = Int16{0};
      return value;
    };
  }

  // "2" for a selection written once and last, "#6" for a failure without one.
  std::string After(const Pick& pick) {
    journal.clear();
    std::string outcome = Outcome([&] { pick(object); });
    for (const std::string& use : journal) {
      if (!use.starts_with("combo.ListIndex = Int16 ")) continue;
      EXPECT_TRUE(outcome.empty() && &use == &journal.back()) << use;
      outcome = use.substr(24);
    }
    return outcome;
  }

  Journal journal;
  std::shared_ptr<ComboHost> host = std::make_shared<ComboHost>("combo", &journal);
  Object object{host};
};

TEST(ComboBoxTest, PicksTheLowestMatch) {
  // A text, a length, index or start, and the selection.
  const std::pair<Pick (*)(String, Int16), StringView> groups[] = {
      {ByText,
       u"  ROME |0|2;bruxelles 1000|0|1;bruxelles|0|-1;bruxelles|9|1;BRUXELLES|10|1;parisien|5|0;"
       u"Rome|32767|2;|0|4;ete|0|-1;42|0|6;paris|-1|#5"},
      {ByToken,
       u"1000|2|1; rome |1|2;ROME|0|2;rome|-32767|2;rome|-32768|#6;|2|0;1000|32767|-1;gand|2|8;"
       u"9|4|8;|1|4"},
      {[](String text, Int16 start) { return ByPart(text, start); },
       u"1000|11|1;|32767|0;paris|0|#5"},
      {[](String text, Int16 length) { return ByPart(text, 2, length); },
       u"ruxe|4|1;arisien|5|-1;|32767|4;a|-1|#5"},
      {[](String, Int16 number) { return ByData(number); }, u"|20|1;|7|3;|-1|4;|0|5;|2|-1"}};
  Combo combo({u"Paris", u"Bruxelles 1000", u"Rome", u"bruxelles 1000", u"   ", u"\u00E9t\u00E9",
               Int16{42}, Empty, u" Gand  9"},
              {Null, Int32{20}, 20.0, u"7", true, Empty, 2.5, 7.00, Int16{7}});
  for (const auto& [by, cases] : groups) {
    for (const auto& row : Rows(cases)) {
      const auto number = static_cast<Int16>(std::stoi(Utf8(row[1])));
      EXPECT_EQ(combo.After(by(row[0], number)), Utf8(row[2])) << Shown(row[0]) << number;
    }
  }
}

// Blanks, letters of two cases and accents in every short combination, against plain search.
TEST(ComboBoxTest, TextsAgainstAnObviousSearch) {
  const auto normal = [](String text) {
    while (text.starts_with(u' ')) text.erase(0, 1);
    while (text.ends_with(u' ')) text.pop_back();
    for (char16_t& unit : text) unit = unit == u'A' ? u'a' : unit == u'\u00C9' ? u'\u00E9' : unit;
    return text;
  };
  const auto said = [](bool match) { return match ? "0" : "-1"; };
  std::vector<String> texts{u""};
  for (std::size_t i = 0; i < 100; ++i) {
    for (const char16_t unit : String(u" Aa\u00C9\u00E9")) texts.push_back(texts[i] + unit);
  }
  for (const String& entry : texts) {
    Combo combo({entry});
    for (std::size_t i = 0; i < texts.size(); i += 7) {
      const String& text = texts[i];
      const std::size_t length = 1 + i % 3;
      SCOPED_TRACE(Utf8(entry) + "|" + Utf8(text) + "|" + std::to_string(length));
      const String cut = normal(entry.substr(0, length));
      const auto first = static_cast<Int16>(length);
      ASSERT_EQ(combo.After(ByText(text)), said(normal(entry) == normal(text)));
      ASSERT_EQ(combo.After(ByText(text, first)), said(cut == normal(text.substr(0, length))));
      ASSERT_EQ(combo.After(ByPart(text, 1, first)), said(cut == normal(text)));
    }
  }
}

TEST(ComboBoxTest, EveryUseOnceInOrder) {
  Combo combo({u"a b", u"b", u"c"}, {Int16{1}, Int16{2}, Int16{3}});
  for (const Pick& pick : {ByText(u"b"), ByPart(u"b"), ByToken(u"b")}) {
    combo.After(pick);
    EXPECT_EQ(combo.journal,
              (Journal{"combo.ListCount", "combo.List(Int16 0) by reference",
                       "combo.List(Int16 1) by reference", "combo.ListIndex = Int16 1"}));
  }
  combo.After(ByData(9));
  EXPECT_EQ(combo.journal,
            (Journal{"combo.ListCount", "combo.ItemData(Int16 0)", "combo.ItemData(Int16 1)",
                     "combo.ItemData(Int16 2)", "combo.ListIndex = Int16 -1"}));
  EXPECT_EQ(combo.After(Current), "");
  EXPECT_EQ(combo.journal, Journal{"combo.ListIndex"});
  // The index goes on as the second reading gave it.
  combo.host->WithMember(u"ListIndex", [n = Int32{0}](auto) mutable { return Variant(n++); });
  combo.host->WithMember(u"ItemData", [](auto index) { return index[0]; });
  combo.journal.clear();
  EXPECT_EQ(Current(combo.object), 1);
  EXPECT_EQ(combo.journal,
            (Journal{"combo.ListIndex", "combo.ListIndex", "combo.ItemData(Int32 1)"}));
  // An empty list is not read.
  Combo empty({});
  for (const Pick& pick : {ByText(u""), ByToken(u"", -32768), ByPart(u"", 0, -1), ByData(0)}) {
    empty.After(pick);
    EXPECT_EQ(empty.journal, (Journal{"combo.ListCount", "combo.ListIndex = Int16 -1"}));
  }
  EXPECT_EQ(empty.After(ByText(u"", -1)), "#5");
  EXPECT_TRUE(empty.journal.empty());
}

TEST(ComboBoxTest, LyingCounts) {
  const LocaleScope french(*Locale::Named(u"fr-FR"));
  Combo combo({});
  combo.host->WithMember(
      u"List", [](auto i) { return Variant(*i[0].template If<Int16>() == 2 ? u"x" : u"y"); });
  combo.host->WithMember(u"ItemData", [](auto index) { return index[0]; });
  for (const auto& [count, seen] : LyingCounts()) {
    SCOPED_TRACE(Shown(count));
    const std::string failed = seen[0] == '#' ? seen : "-1";
    combo.host->With(u"ListCount", count);
    EXPECT_EQ(combo.After(ByText(u"X")), seen == "yes" ? "2" : failed);
    EXPECT_EQ(combo.After(ByText(u"z")), failed);
    EXPECT_EQ(combo.After(ByData(2)), seen == "yes" ? "2" : failed);
    EXPECT_EQ(combo.After(ByData(-2)), failed);
  }
  // One index too many for the walk to count.
  combo.host->With(u"ListCount", Int32{32768});
  EXPECT_EQ(combo.After(ByText(u"X")), "2");
  EXPECT_EQ(combo.After(ByData(32767)), "32767");
  EXPECT_EQ(combo.After(ByText(u"z")), "#6");
  EXPECT_EQ(combo.After(ByData(-2)), "#6");
}

TEST(ComboBoxTest, UselessEntries) {
  const std::pair<Variant, std::string> texts[] = {
      {Null, "#94"}, {Missing, "#13"}, {Object(), "#13"}, {Array::OfBytes({}), "#13"}};
  for (const auto& [entry, outcome] : texts) {
    SCOPED_TRACE(Shown(entry));
    Combo combo({u"a", entry, u"b"});
    for (const auto& by : {&ByText, &ByToken}) {
      EXPECT_EQ(combo.After(by(u"a", 1)), "0");
      EXPECT_EQ(combo.After(by(u"b", 1)), outcome);
    }
    // Read before it is cut.
    EXPECT_EQ(Combo({entry}).After(ByPart(u"a", 0)), outcome);
  }
  const struct {
    Variant data;
    std::string search, current;
  } numbers[] = {{Null, "2", "#94"},
                 {u"x", "#13", "#13"},
                 {2147483648.0, "2", "#6"},
                 {-2147483648.4, "2", "Int32 -2147483648"},
                 {u"12", "2", "Int32 12"}};
  for (const auto& [data, search, current] : numbers) {
    Combo combo({u"", u"", u""}, {Int16{8}, data, Int16{9}});
    EXPECT_EQ(combo.After(ByData(9)), search) << Shown(data);
    combo.host->With(u"ListIndex", Int16{1});
    EXPECT_EQ(Outcome([&] { return Current(combo.object); }), current) << Shown(data);
  }
  const std::pair<Variant, std::string> selections[] = {
      {Int16{-1}, "Int32 7"}, {u"-1", "Int32 7"}, {-0.25, "Int32 7"}, {true, "Int32 7"},
      {Int16{0}, "Int32 0"},  {u"x", "#13"},      {Missing, "#13"}};
  for (const auto& [index, outcome] : selections) {
    Combo combo({u"a"}, {Int16{0}});
    combo.host->With(u"ListIndex", index);
    EXPECT_EQ(Outcome([&] { return Current(combo.object); }), outcome) << Shown(index);
  }
}

TEST(ComboBoxTest, MissingMembersAndFailuresOfTheHostPassThrough) {
  const std::pair<String, std::vector<Pick>> users[] = {
      {u"ListCount", {ByText(u"a"), ByToken(u"a"), ByPart(u"a"), ByData(1)}},
      {u"List", {ByText(u"a"), ByToken(u"a"), ByPart(u"a")}},
      {u"ItemData", {ByData(1), Current}},
      {u"ListIndex", {Current}}};
  for (const auto& [member, picks] : users) {
    for (const Pick& pick : picks) {
      Combo combo({u"a"}, {Int16{1}});
      combo.host->With(u"ListIndex", Int16{0}).Remove(member);
      EXPECT_EQ(combo.After(pick), "#438") << Utf8(member);
      combo.host->WithFailure(member, -7);
      EXPECT_EQ(combo.After(pick), "#-7") << Utf8(member);
      EXPECT_EQ(Outcome([&] { pick(Object()); }), "#91");
    }
  }
  Combo combo({u"a"});
  combo.host->is_read_only = true;
  EXPECT_RAISES(ByText(u"a")(combo.object), (Failure{380, u"Combo", u"Read only"}));
  EXPECT_EQ(Outcome([] { ByText(u"a", -1)(Object()); }), "#5");
}

}  // namespace
}  // namespace quorl
