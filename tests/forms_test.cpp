// Placing a form, saving and restoring it: every use of the host's objects in order, and where the
// form ends up.
#include "quorl/forms/forms.hpp"

#include <gtest/gtest.h>

#include "quorl/runtime/screen.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/recording_host.hpp"

namespace quorl {
namespace {

// A form at 10, 20 of 300 by 200 in a container at 1000, 2000 of 900 by 600, on a screen of 1500 by
// 1200.
class FormsTest : public testing::Test {
 protected:
  FormsTest() {
    Screen::SetSize(1500, 1200);
    settings.InitApp(u"Atelier", u"Orders");
    form->With(u"Name", u"FrmOrder").With(u"BorderStyle", Int16{1}).With(u"MDIChild", false);
    form->With(u"Left", Int32{10}).With(u"Top", Int32{20});
    form->With(u"Width", Single{300}).With(u"Height", u"200").With(u"WindowState", Int16{0});
    form->With(u"Move", Variant());
    container->With(u"ScaleWidth", Int16{900}).With(u"ScaleHeight", 600.0);
    container->With(u"Left", 1000.0).With(u"Top", Int32{2000});
  }

  // The uses of the objects that a call makes, and what went wrong, if anything did.
  Journal Init(const Object& in, Double width = 0, Double height = 0) {
    return Noted([&] { Forms::InitFormSettings(form_object, in, width, height); });
  }
  Journal Save(const Variant& name = Missing) {
    return Noted([&] { Forms::SaveFormSettings(settings, form_object, name); });
  }
  Journal Restore(const Variant& name = Missing) {
    return Noted([&] { Forms::GetFormSettings(settings, form_object, name); });
  }
  template <class Work>
  Journal Noted(Work work) {
    journal.clear();
    if (const std::string failure = Outcome(work); !failure.empty()) journal.push_back(failure);
    return journal;
  }
  void Store(StringView name, const Variant& value, RegTypeEnum type = REG_DWORD) {
    settings.SaveValue(u"FrmOrder", name, value, type);
  }
  // Top, Left, Height, Width and WindowState as they are stored; -99 for one that is not.
  std::string Stored(StringView key = u"FrmOrder") {
    std::string all;
    for (const StringView name : {u"Top", u"Left", u"Height", u"Width", u"WindowState"}) {
      all += Shown(settings.GetValue(key, name, Int32{-99})) + "; ";
    }
    return all;
  }

  MemoryStore store;
  ScopedStore in_memory{store};
  Registry settings;
  Journal journal;
  std::shared_ptr<RecordingHost> form = std::make_shared<RecordingHost>("form", &journal);
  std::shared_ptr<RecordingHost> container = std::make_shared<RecordingHost>("in", &journal);
  Object form_object{form};
  Object container_object{container};
};

// The call of Move with these numbers, "1300 2200 300 200".
std::string Moved(StringView place) {
  std::string call = "form.Move";
  for (const String& number : Cells(place, u' ')) {
    call += (call.ends_with("Move") ? "(Double " : ", Double ") + Utf8(number);
  }
  return call + ")!";
}

TEST_F(FormsTest, EveryUseOnceInOrder) {
  EXPECT_EQ(Init(container_object),
            (Journal{"in.ScaleWidth", "in.ScaleHeight", "form.BorderStyle", "form.Width",
                     "form.BorderStyle", "form.Height", "form.MDIChild", "in.Left", "in.Top",
                     Moved(u"1300 2200 300 200")}));
  EXPECT_EQ(Init(container_object, 50, 50),
            (Journal{"in.ScaleWidth", "in.ScaleHeight", "form.MDIChild", "in.Left", "in.Top",
                     Moved(u"1425 2275 50 50")}));
  form->With(u"MDIChild", true).With(u"BorderStyle", Int16{2});
  EXPECT_EQ(Init(container_object),
            (Journal{"in.ScaleWidth", "in.ScaleHeight", "form.BorderStyle", "form.BorderStyle",
                     "form.MDIChild", Moved(u"150 100 600 400")}));
  EXPECT_EQ(Init({}, 0, 100),
            (Journal{"form.BorderStyle", "form.MDIChild", Moved(u"250 550 1000 100")}));
}

// The screen's width and the form's border and size; a screen's 16777217 has no place in single
// precision.
TEST_F(FormsTest, PlacesOnTheScreen) {
  for (const auto& [given, place] :
       Pairs(u"900 2 0 0=150 100 600 400|900 5 0 0=300 200 300 200|900 2 0 300=150 150 600 300|"
             u"900 1 699 401=100.5 100 699 401|900 1 700 400=100 100 700 400|"
             u"900 1 -100 -1=500 300.5 -100 -1|0 2 0 0=100 100 0 400|"
             u"16777217 1 16 0=8388600 200 16 200")) {
    std::vector<Double> numbers;
    for (const String& number : Cells(given, u' ')) numbers.push_back(std::stod(Utf8(number)));
    Screen::SetSize(numbers[0], 600);
    form->With(u"BorderStyle", numbers[1]);
    EXPECT_EQ(Init({}, numbers[2], numbers[3]).back(), Moved(Utf16(place)));
  }
  // The shift comes after the margin.
  container->With(u"Left", -250.5).With(u"Top", true);
  form->With(u"MDIChild", u"0").With(u"BorderStyle", Null);
  EXPECT_EQ(Init(container_object, 900, 600).back(), Moved(u"-150.5 99 900 600"));
  form->With(u"MDIChild", Int16{7});
  EXPECT_EQ(Init(container_object, 900, 600).back(), Moved(u"100 100 900 600"));
}

// The form is moved by the last step alone, so whatever fails leaves it where it was.
TEST_F(FormsTest, WhateverIsMissingOrUselessLeavesTheFormInPlace) {
  const auto expect_failure = [&](const std::string& number) {
    const Journal uses = Init(container_object);
    EXPECT_EQ(uses.back(), number);
  };
  const std::pair<std::shared_ptr<RecordingHost>, String> uses[] = {
      {container, u"ScaleWidth"}, {container, u"ScaleHeight"}, {form, u"BorderStyle"},
      {form, u"Width"},           {form, u"Height"},           {form, u"MDIChild"},
      {container, u"Left"},       {container, u"Top"}};
  for (const auto& [host, member] : uses) {
    SCOPED_TRACE(Utf8(member));
    const Variant good = host->Get(member, {});
    host->Remove(member);
    expect_failure("!438");
    host->With(member, u"wide");
    expect_failure("!13");
    host->WithFailure(member, 77);
    expect_failure("!77");
    host->With(member, good);
  }
  form->Remove(u"MDIChild");
  EXPECT_EQ(Init({}).back(), "!438");
  Store(u"WindowState", Int16{0});
  form_object = {};
  for (const Journal& uses_of_none :
       {Init({}), Save(), Restore(), Save(u"FrmOrder"), Restore(u"FrmOrder")}) {
    EXPECT_EQ(uses_of_none, Journal{"!91"});
  }
}

TEST_F(FormsTest, SavesEachStateInItsOwnWay) {
  form->With(u"Left", -10.5).With(u"Top", 2.5);
  EXPECT_EQ(Save(), (Journal{"form.Name", "form.WindowState", "form.Top", "form.Left",
                             "form.Height", "form.Width"}));
  const std::string place = "Int32 2; Int32 -10; Int32 200; Int32 300; ";
  EXPECT_EQ(Stored(), place + "Int32 0; ");

  // The normal place outlives the other states.
  form->With(u"Left", Int16{0}).With(u"WindowState", u"2");
  EXPECT_EQ(Save(),
            (Journal{"form.Name", "form.WindowState", "form.WindowState", "form.WindowState"}));
  EXPECT_EQ(Stored(), place + "Int32 2; ");
  for (const Variant& other : {Variant(Int16{1}), Variant(Int16{-1}), Variant(Null)}) {
    Store(u"WindowState", Int16{2});
    form->With(u"WindowState", other);
    EXPECT_EQ(Save(), (Journal{"form.Name", "form.WindowState", "form.WindowState"}));
    EXPECT_EQ(Stored(), place + "Int32 0; ") << Shown(other);
  }
}

TEST_F(FormsTest, TheNameThatIsGivenIsTheKey) {
  EXPECT_EQ(Save(u"Desk\\Left")[0], "form.WindowState");
  EXPECT_EQ(Stored(), "Int32 -99; Int32 -99; Int32 -99; Int32 -99; Int32 -99; ");
  EXPECT_EQ(Stored(u"Desk\\Left"), "Int32 20; Int32 10; Int32 200; Int32 300; Int32 0; ");
  EXPECT_EQ(Restore(), (Journal{"form.Name", "form.BorderStyle", "form.BorderStyle"}));
  EXPECT_EQ(Restore(u"Desk\\Left").back(), Moved(u"10 20"));
  form->With(u"Name", Null);
  EXPECT_EQ(Save(), (Journal{"form.Name", "!94"}));
  EXPECT_EQ(Save(Null), Journal{"!94"});
  EXPECT_EQ(Restore(Null), Journal{"!94"});
}

TEST_F(FormsTest, RestoresEveryUseInOrder) {
  Journal uses{"form.Name", "form.BorderStyle", "form.BorderStyle"};
  Store(u"Left", Int16{5});
  EXPECT_EQ(Restore(), uses);
  Store(u"WindowState", Int16{-1});
  EXPECT_EQ(Restore(), uses);
  Store(u"WindowState", Int16{1});
  uses.push_back("form.WindowState = Int32 1");
  EXPECT_EQ(Restore(), uses);
  Store(u"WindowState", Int16{0});
  uses.back() = "form.WindowState = Int32 0";
  uses.insert(uses.end(), {"form.Left", "form.Top", Moved(u"5 20")});
  EXPECT_EQ(Restore(), uses);
  Store(u"Height", Int32{-7000});
  uses.back() = "form.Width";
  uses.insert(uses.end(), {"form.Height", Moved(u"5 20 300 -7000")});
  for (const Int16 border : {Int16{2}, Int16{5}}) {
    form->With(u"BorderStyle", border);
    EXPECT_EQ(Restore(), uses) << border;
  }
  form->Remove(u"BorderStyle");
  EXPECT_EQ(Restore().back(), uses.back());
}

// The screen, the saved place, and where the form is put. One beyond the limit is the limit in
// single precision; a screen narrower than 1000 has a limit below 0.
TEST_F(FormsTest, APlaceIsBroughtOntoTheScreen) {
  Store(u"WindowState", Int16{0});
  for (const auto& row : Rows(u"1500|-5|0;1500|0|0;1500|500|500;1500|501|500;1500|2147483647|500;"
                              u"600|0|-400;600|-1|0;0|20|-1000;16778216|16777217|16777217")) {
    const Int32 screen = std::stoi(Utf8(row[0])), place = std::stoi(Utf8(row[1]));
    SCOPED_TRACE(Utf8(row[1]) + " on " + Utf8(row[0]));
    Screen::SetSize(screen, 5000);
    Store(u"Left", place);
    Store(u"Top", Int16{20});
    EXPECT_EQ(Restore().back(), Moved(row[2] + u" 20"));
    Screen::SetSize(5000, screen);
    Store(u"Left", Int16{0});
    Store(u"Top", place);
    EXPECT_EQ(Restore().back(), Moved(u"0 " + row[2]));
  }
}

TEST_F(FormsTest, FailuresOfSavingAndRestoring) {
  Store(u"WindowState", u"open", REG_SZ);
  EXPECT_EQ(Restore().back(), "!13");
  Store(u"WindowState", u"0", REG_SZ);
  Store(u"Top", u"high", REG_SZ);
  EXPECT_EQ(Restore(), (Journal{"form.Name", "form.BorderStyle", "form.BorderStyle",
                                "form.WindowState = Int32 0", "form.Left", "form.Top", "!13"}));
  form->Remove(u"Height");
  Store(u"Left", Int16{77});
  EXPECT_EQ(Save().back(), "!438");
  EXPECT_EQ(Stored(), "Int32 20; Int32 10; Int32 -99; Int32 -99; String \"0\"; ");
  form->Remove(u"Name");
  EXPECT_EQ(Save(), (Journal{"form.Name", "!438"}));
}

}  // namespace
}  // namespace quorl
