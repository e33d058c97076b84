// Picking entries of a combo box, with honest, failing and lying combos.
#include "quorl/forms/combo_box_ex.hpp"

#include "tests/support/recording_host.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace literals;
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

  // "2" for a selection written once and last, "!6" for a failure without one.
  std::string After(const Pick& pick) {
    journal.clear();
    std::string outcome = ResultOf([&] { pick(object); });
    for (const std::string& use : journal) {
      if (!use.starts_with("combo.ListIndex = Int16 ")) continue;
      EXPECT_TRUE(outcome.empty() && &use == &journal.back()) << use;
      outcome = use.substr(24);
    }
    return outcome;
  }

  Journal journal;
  std::shared_ptr<RecordingHost> host = std::make_shared<RecordingHost>("combo", &journal);
  Object object{host};
};

TEST(ComboBoxTest, PicksTheLowestMatch) {
  // A text, a length, index or start, and the selection.
  const std::pair<Pick (*)(String, Int16), StringView> groups[] = {
      {ByText,
       u"  ROME |0|2;bruxelles 1000|0|1;bruxelles|0|-1;bruxelles|9|1;BRUXELLES|10|1;parisien|5|0;"
       u"Rome|32767|2;|0|4;ete|0|-1;\u00C9T\u00C9|0|5;42|0|6;paris|-1|!5"},
      {ByToken,
       u"1000|2|1; rome |1|2;ROME|0|2;rome|-32767|2;rome|-32768|!6;|2|0;1000|32767|-1;gand|2|8;"
       u"9|4|8;|1|4"},
      {[](String text, Int16 start) { return ByPart(text, start); },
       u"1000|11|1;|32767|0;paris|0|!5"},
      {[](String text, Int16 length) { return ByPart(text, 2, length); },
       u"RUXE|4|1;arisien|5|-1;|32767|4;a|-1|!5"},
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
  combo.After(Current);
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
  EXPECT_EQ(empty.After(ByText(u"", -1)), "!5");
  EXPECT_TRUE(empty.journal.empty());
}

// Whether the third entry is looked at: "2", "-1", or the failure. In a locale with a comma.
TEST(ComboBoxTest, LyingCounts) {
  const LocaleScope french(*Locale::Named(u"fr-FR"));
  Combo combo({});
  combo.host->WithMember(u"List", [](auto i) { return Variant(i[0] == Int16{2} ? u"x" : u"y"); });
  combo.host->WithMember(u"ItemData", [](auto index) { return index[0]; });
  const std::pair<Variant, std::string> counts[] = {
      {u" 2,6", "2"},        {2.5001_cy, "2"},      {2.4, "-1"},         {Empty, "-1"},
      {Int32{-32767}, "-1"}, {Int32{-32768}, "!6"}, {Int32{32767}, "2"}, {Int32{32769}, "!6"},
      {u"three", "!13"},     {Null, "!94"},         {Missing, "!13"},    {Object(), "!13"}};
  for (const auto& [count, selected] : counts) {
    combo.host->With(u"ListCount", count);
    EXPECT_EQ(combo.After(ByText(u"X")), selected) << Shown(count);
    EXPECT_EQ(combo.After(ByData(2)), selected) << Shown(count);
    EXPECT_EQ(combo.After(ByText(u"z")), selected == "2" ? "-1" : selected) << Shown(count);
  }
  // One index too many for the walk to count.
  combo.host->With(u"ListCount", Int32{32768});
  EXPECT_EQ(combo.After(ByData(32767)), "32767");
  EXPECT_EQ(combo.After(ByText(u"z")), "!6");
}

TEST(ComboBoxTest, UselessEntries) {
  const std::pair<Variant, std::string> texts[] = {
      {Null, "!94"}, {Missing, "!13"}, {Array::OfBytes({}), "!13"}};
  for (const auto& [entry, outcome] : texts) {
    Combo combo({u"a", entry, u"b"});
    for (const auto& by : {&ByText, &ByToken}) {
      EXPECT_EQ(combo.After(by(u"a", 1)), "0") << Shown(entry);
      EXPECT_EQ(combo.After(by(u"b", 1)), outcome) << Shown(entry);
    }
    // Read before it is cut.
    EXPECT_EQ(Combo({entry}).After(ByPart(u"a", 0)), outcome) << Shown(entry);
  }
  // The current index, the number at 1, a search past it, and the current number.
  const std::tuple<Variant, Variant, std::string, std::string> numbers[] = {
      {Int16{1}, Null, "2", "!94"},
      {Int16{1}, u"x", "!13", "!13"},
      {Int16{1}, 2147483648.0, "2", "!6"},
      {Int16{1}, -2147483648.4, "2", "-2147483648"},
      {u"-1", 0, "2", "7"},
      {-0.25, 0, "2", "7"},
      {Int16{0}, 0, "2", "8"},
      {u"x", 0, "2", "!13"}};
  for (const auto& [index, data, search, current] : numbers) {
    Combo combo({u"", u"", u""}, {Int16{8}, data, Int16{9}});
    EXPECT_EQ(combo.After(ByData(9)), search) << Shown(data);
    combo.host->With(u"ListIndex", index);
    EXPECT_EQ(ResultOf([&] { return Current(combo.object); }), current) << Shown(index);
  }
}

TEST(ComboBoxTest, MissingMembersAndFailuresOfTheHostPassThrough) {
  const std::pair<String, std::vector<Pick>> users[] = {
      {u"ListCount", {ByText(u"a"), ByToken(u"a"), ByPart(u"a"), ByData(1)}},
      {u"List", {ByText(u"a"), ByToken(u"a"), ByPart(u"a")}},
      {u"ItemData", {ByData(1), Current}},
      {u"ListIndex", {ByText(u"a"), Current}}};
  for (const auto& [member, picks] : users) {
    for (const Pick& pick : picks) {
      Combo combo({u"a"}, {Int16{1}});
      combo.host->With(u"ListIndex", Int16{0}).Remove(member);
      EXPECT_EQ(ResultOf([&] { pick(combo.object); }), "!438") << Utf8(member);
      EXPECT_EQ(ResultOf([&] { pick(Object()); }), "!91");
      if (member == u"ListIndex") continue;
      combo.host->WithFailure(member, -7);
      EXPECT_EQ(combo.After(pick), "!-7 of Host") << Utf8(member);
    }
  }
  EXPECT_EQ(ResultOf([] { ByText(u"a", -1)(Object()); }), "!5");
}

}  // namespace
}  // namespace quorl
