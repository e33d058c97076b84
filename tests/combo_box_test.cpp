// Picking entries of a combo box, with honest, failing and lying combos.
#include <gtest/gtest.h>

#include "quorl/forms/combo_box_ex.hpp"
#include "quorl/runtime/locale.hpp"
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

// A combo box that tells the truth about its entries, with entry 5 selected.
class Combo {
 public:
  explicit Combo(std::vector<Variant> entries, std::vector<Variant> data = {}) {
    host->With(u"ListIndex", Int16{5}).With(u"ListCount", static_cast<Int32>(entries.size()));
    host->WithMember(u"List", At(std::move(entries))).WithMember(u"ItemData", At(std::move(data)));
  }

  // "2" for a selection written once and last, "kept" for none, "#6" for a failure without one.
  std::string After(const Pick& pick) {
    journal.clear();
    const Int32 failure = NumberRaised([&] { pick(object); });
    std::string written = "kept";
    for (const std::string& use : journal) {
      EXPECT_EQ(written, "kept") << use << " behind the selection";
      if (use.starts_with("combo.ListIndex = Int16 ")) written = use.substr(24);
    }
    if (failure == 0) return written;
    EXPECT_EQ(written, "kept");
    return ShownFailure(failure);
  }

  Journal journal;
  std::shared_ptr<RecordingHost> host = std::make_shared<RecordingHost>("combo", &journal);
  Object object{host};

 private:
  // Writes the index back, which must not lead the walk astray.
  static RecordingHost::Member At(std::vector<Variant> values) {
    return [values](RecordingHost::Arguments arguments) {
      const Variant value = values.at(static_cast<std::size_t>(*arguments[0].If<Int16>()));
      arguments[0] = Int16{0};
      return value;
    };
  }
};

TEST(ComboBoxTest, PicksTheLowestMatch) {
  struct Case {
    const char* what;
    Pick pick;
    std::string selected;
  };
  const Case cases[] = {
      {"rome", ByText(u"rome"), "2"},
      {"blanks around", ByText(u"  ROME "), "2"},
      {"lowest of two", ByText(u"bruxelles 1000"), "1"},
      {"not whole", ByText(u"bruxelles"), "-1"},
      {"first 9", ByText(u"bruxelles", 9), "1"},
      {"first 10, a blank", ByText(u"BRUXELLES", 10), "1"},
      {"both are cut", ByText(u"parisien", 5), "0"},
      {"a leading blank counts", ByText(u" paris", 5), "-1"},
      {"beyond all ends", ByText(u"Rome", 32767), "2"},
      {"empty text", ByText(u""), "4"},
      {"empty text, first 3", ByText(u"", 3), "4"},
      {"accents", ByText(u"\u00C9T\u00C9"), "5"},
      {"accents count", ByText(u"ete"), "-1"},
      {"a number's text", ByText(u"42"), "6"},
      {"Empty has no text but is one", ByText(u" ", 1), "4"},
      {"token 2", ByToken(u"1000", 2), "1"},
      {"token 1", ByToken(u" rome "), "2"},
      {"token 0", ByToken(u"ROME", 0), "2"},
      {"token -32767", ByToken(u"rome", -32767), "2"},
      {"token -32768", ByToken(u"rome", -32768), "#6"},
      {"no second token", ByToken(u"", 2), "0"},
      {"no such token", ByToken(u"1000", 32767), "-1"},
      {"a leading blank ends a token", ByToken(u"gand", 2), "8"},
      {"so does each of two", ByToken(u"9", 4), "8"},
      {"an empty first token", ByToken(u""), "4"},
      {"from 11", ByPart(u"1000", 11), "1"},
      {"4 from 2", ByPart(u"ruxe", 2, 4), "1"},
      {"the text is not cut", ByPart(u"arisien", 2, 5), "-1"},
      {"blanks are cut last", ByPart(u"bruxelles", 1, 10), "1"},
      {"past the end", ByPart(u"", 32767, 32767), "0"},
      {"start 0", ByPart(u"paris", 0), "#5"},
      {"start below 0", ByPart(u"paris", -32768, 2), "#5"},
      {"length below 0", ByPart(u"paris", 1, -1), "#5"},
      {"text, length below 0", ByText(u"paris", -1), "#5"},
      {"number", ByData(20), "1"},
      {"number as text", ByData(7), "3"},
      {"True is -1", ByData(-1), "4"},
      {"Empty is 0", ByData(0), "5"},
      {"half is no whole", ByData(2), "-1"},
  };
  Combo combo({u"Paris", u"Bruxelles 1000", u"Rome", u"bruxelles 1000", u"   ", u"\u00E9t\u00E9",
               Int16{42}, Empty, u" Gand  9"},
              {Null, Int32{20}, 20.0, u"7", true, Empty, 2.5, 7.00, Int16{7}});
  for (const Case& c : cases) EXPECT_EQ(combo.After(c.pick), c.selected) << c.what;
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
  combo.journal.clear();
  EXPECT_EQ(ComboBoxEx::CmbCurrentItemData(combo.object, 7), 7);
  EXPECT_EQ(combo.journal, Journal{"combo.ListIndex"});
  // The index goes on as the second reading gave it.
  combo.host->WithMember(u"ListIndex", [n = Int32{0}](auto) mutable { return Variant(n++); });
  combo.host->WithMember(u"ItemData", [](auto index) { return index[0]; });
  combo.journal.clear();
  EXPECT_EQ(ComboBoxEx::CmbCurrentItemData(combo.object, 7), 1);
  EXPECT_EQ(combo.journal,
            (Journal{"combo.ListIndex", "combo.ListIndex", "combo.ItemData(Int32 1)"}));
}

TEST(ComboBoxTest, AnEmptyListIsClearedWithoutReadingIt) {
  Combo combo({});
  for (const Pick& pick : {ByText(u""), ByToken(u"", -32768), ByPart(u"", 0, -1), ByData(0)}) {
    EXPECT_EQ(combo.After(pick), "-1");
    EXPECT_EQ(combo.journal, (Journal{"combo.ListCount", "combo.ListIndex = Int16 -1"}));
  }
  EXPECT_EQ(combo.After(ByText(u"", -1)), "#5");
  EXPECT_TRUE(combo.journal.empty());
}

TEST(ComboBoxTest, LyingCounts) {
  struct Case {
    Variant count;
    std::string found, not_found;
  };
  const Case cases[] = {
      {u"3", "2", "-1"},
      {u" 2,6", "2", "-1"},
      {3.5, "2", "-1"},
      {2.5, "2", "-1"},
      {2.4, "-1", "-1"},
      {Empty, "-1", "-1"},
      {true, "-1", "-1"},
      {Int16{-5}, "-1", "-1"},
      {Int32{-32767}, "-1", "-1"},
      {Int32{-32768}, "#6", "#6"},
      {Int32{32767}, "2", "-1"},
      {Int32{32768}, "2", "#6"},
      {Int32{32769}, "#6", "#6"},
      {1e300, "#6", "#6"},
      {u"three", "#13", "#13"},
      {Null, "#94", "#94"},
      {Missing, "#13", "#13"},
      {Object(), "#13", "#13"},
      {Array::OfBytes({1}), "#13", "#13"},
  };
  const LocaleScope french(*Locale::Named(u"fr-FR"));
  Combo combo({});
  combo.host->WithMember(
      u"List", [](auto i) { return Variant(*i[0].template If<Int16>() == 2 ? u"x" : u"y"); });
  combo.host->WithMember(u"ItemData", [](auto index) { return index[0]; });
  for (const Case& c : cases) {
    SCOPED_TRACE(Shown(c.count));
    combo.host->With(u"ListCount", c.count);
    EXPECT_EQ(combo.After(ByText(u"X")), c.found);
    EXPECT_EQ(combo.After(ByText(u"z")), c.not_found);
    EXPECT_EQ(combo.After(ByData(2)), c.found);
    EXPECT_EQ(combo.After(ByData(-2)), c.not_found);
  }
  combo.host->With(u"ListCount", Int32{32768});
  EXPECT_EQ(combo.After(ByData(32767)), "32767");
}

TEST(ComboBoxTest, UselessEntries) {
  const std::pair<Variant, std::string> texts[] = {
      {Null, "#94"}, {Missing, "#13"}, {Object(), "#13"}, {Array::OfBytes({}), "#13"}};
  for (const auto& [entry, outcome] : texts) {
    Combo combo({u"a", entry, u"b"});
    for (const auto& by :
         {+[](String text) { return ByText(text); }, +[](String text) { return ByToken(text); },
          +[](String text) { return ByPart(text); }}) {
      EXPECT_EQ(combo.After(by(u"a")), "0") << Shown(entry);
      EXPECT_EQ(combo.After(by(u"b")), outcome) << Shown(entry);
    }
    // Read before it is cut.
    EXPECT_EQ(Combo({entry}).After(ByPart(u"a", 0)), outcome);
  }
  struct Case {
    Variant data;
    std::string search, current;
  };
  const Case numbers[] = {
      {Null, "2", "#94"},
      {u"x", "#13", "#13"},
      {Object(), "#13", "#13"},
      {2147483648.0, "2", "#6"},
      {-2147483648.4, "2", "Int32 -2147483648"},
      {2.5, "2", "Int32 2"},
      {u"12", "2", "Int32 12"},
      {Empty, "2", "Int32 0"},
      {true, "2", "Int32 -1"},
  };
  for (const Case& c : numbers) {
    Combo combo({u"", u"", u""}, {Int16{8}, c.data, Int16{9}});
    EXPECT_EQ(combo.After(ByData(9)), c.search) << Shown(c.data);
    combo.host->With(u"ListIndex", Int16{1});
    EXPECT_EQ(Outcome([&] { return ComboBoxEx::CmbCurrentItemData(combo.object, 7); }), c.current)
        << Shown(c.data);
  }
}

TEST(ComboBoxTest, CurrentSelectionOfAnyKind) {
  const std::pair<Variant, std::string> cases[] = {
      {Int16{-1}, "Int32 7"}, {Int32{-9}, "Int32 7"}, {u"-1", "Int32 7"}, {-0.25, "Int32 7"},
      {true, "Int32 7"},      {Int16{0}, "Int32 0"},  {u"x", "#13"},      {Missing, "#13"},
  };
  for (const auto& [index, outcome] : cases) {
    Combo combo({u"a"}, {Int16{0}});
    combo.host->With(u"ListIndex", index);
    EXPECT_EQ(Outcome([&] { return ComboBoxEx::CmbCurrentItemData(combo.object, 7); }), outcome)
        << Shown(index);
  }
}

TEST(ComboBoxTest, MissingMembersAndFailuresOfTheHostPassThrough) {
  const auto current = [](const Object& c) { ComboBoxEx::CmbCurrentItemData(c, 7); };
  const std::pair<String, std::vector<Pick>> users[] = {
      {u"ListCount", {ByText(u"a"), ByToken(u"a"), ByPart(u"a"), ByData(1)}},
      {u"List", {ByText(u"a"), ByToken(u"a"), ByPart(u"a")}},
      {u"ItemData", {ByData(1), current}},
      {u"ListIndex", {current}}};
  for (const auto& [member, picks] : users) {
    for (const Pick& pick : picks) {
      Combo combo({u"a"}, {Int16{1}});
      combo.host->With(u"ListIndex", Int16{0});
      combo.host->Remove(member);
      EXPECT_EQ(combo.After(pick), "#438") << Utf8(member);
      combo.host->WithMember(member, [](auto) -> Variant { throw RaisedError(-7, u"H", u"no"); });
      EXPECT_EQ(combo.After(pick), "#-7") << Utf8(member);
    }
  }
  // A failure of the write itself, with its whole record.
  Combo combo({u"a"});
  combo.host->OnPut(u"ListIndex", [](auto&) { throw RaisedError(380, u"Combo", u"Read only"); });
  try {
    ByText(u"a")(combo.object);
    FAIL();
  } catch (const RaisedError& error) {
    EXPECT_EQ(error.Number(), 380);
    EXPECT_EQ(error.Source(), u"Combo");
    EXPECT_EQ(error.Description(), u"Read only");
  }
  for (const Pick& pick :
       {ByText(u""), ByToken(u"", -32768), ByPart(u"", 0), ByData(0), Pick(current)}) {
    EXPECT_EQ(NumberRaised([&] { pick(Object()); }), 91);
  }
  EXPECT_EQ(NumberRaised([] { ByText(u"a", -1)(Object()); }), 5);
}

// Blanks, letters of two cases and accents in every short combination, against plain search.
TEST(ComboBoxTest, TextsAgainstAnObviousSearch) {
  const auto normal = [](String text) {
    while (!text.empty() && text.front() == u' ') text.erase(0, 1);
    while (!text.empty() && text.back() == u' ') text.pop_back();
    for (char16_t& unit : text) unit = unit == u'A' ? u'a' : unit == u'\u00C9' ? u'\u00E9' : unit;
    return text;
  };
  std::vector<String> texts{u""};
  for (std::size_t i = 0; i < 100; ++i) {
    for (const char16_t unit : {u' ', u'A', u'a', u'\u00C9', u'\u00E9'})
      texts.push_back(texts[i] + unit);
  }
  for (const String& entry : texts) {
    Combo combo({entry});
    for (std::size_t i = 0; i < texts.size(); i += 7) {
      const auto length = static_cast<Int16>(1 + i % 3);
      const String& text = texts[i];
      const auto said = [](bool match) { return match ? "0" : "-1"; };
      SCOPED_TRACE(Utf8(entry) + "|" + Utf8(text) + "|" + std::to_string(length));
      const auto cut = [&](const String& whole) {
        return normal(whole.substr(0, static_cast<std::size_t>(length)));
      };
      ASSERT_EQ(combo.After(ByText(text)), said(normal(entry) == normal(text)));
      ASSERT_EQ(combo.After(ByText(text, length)), said(cut(entry) == cut(text)));
      ASSERT_EQ(combo.After(ByPart(text, 1, length)), said(cut(entry) == normal(text)));
    }
  }
}

}  // namespace
}  // namespace quorl
