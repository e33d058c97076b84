// Placing a form, saving and restoring it: every use of the host's objects in order, and where the
// form ends up.
#include "quorl/forms/forms.hpp"

#include "quorl/runtime/screen.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/recording_host.hpp"
#include "tests/support/values.hpp"

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
    form->With(u"Left", Int32{10}).With(u"Top", Int32{20}).With(u"WindowState", Int16{0});
    form->With(u"Width", Single{300}).With(u"Height", u"200").With(u"Move", Variant());
    container->With(u"ScaleWidth", Int16{900}).With(u"ScaleHeight", 600.0);
    container->With(u"Left", 1000.0).With(u"Top", Int32{2000});
  }

  // The uses of the objects that a call makes, and what went wrong, if anything did.
  std::string Init(const Object& where, Double width = 0, Double height = 0) {
    return Noted([&] { Forms::InitFormSettings(form_object, where, width, height); });
  }
  std::string Save(const Variant& name = Missing) {
    return Noted([&] { Forms::SaveFormSettings(settings, form_object, name); });
  }
  std::string Restore(const Variant& name = Missing) {
    return Noted([&] { Forms::GetFormSettings(settings, form_object, name); });
  }
  template <class Work>
  std::string Noted(Work work) {
    journal.clear();
    std::string uses = ResultOf(work);
    for (auto use = journal.rbegin(); use != journal.rend(); ++use) uses = *use + "; " + uses;
    return uses;
  }
  void Store(StringView name, const Variant& value, RegTypeEnum type = REG_DWORD) {
    settings.SaveValue(u"FrmOrder", name, value, type);
  }
  // Top, Left, Height, Width and WindowState as they are stored; "-" for one that is not.
  std::string Stored(StringView key = u"FrmOrder") {
    std::string all;
    for (const StringView name : {u"Top", u"Left", u"Height", u"Width", u"WindowState"}) {
      all += Utf8(ToString(settings.GetValue(key, name, u"-"))) + " ";
    }
    return all;
  }

  MemoryStore store;
  ScopedStore in_memory{store};
  Registry settings;
  Journal journal;
  std::shared_ptr<RecordingHost> form = std::make_shared<RecordingHost>("form", &journal);
  std::shared_ptr<RecordingHost> container = std::make_shared<RecordingHost>("in", &journal);
  Object form_object{form}, in{container};
};

// The call of Move with these numbers, "1300 2200 300 200".
std::string Moved(StringView place) {
  std::string call = "form.Move";
  for (const String& number : Cells(place, u' ')) {
    call += (call.ends_with("Move") ? "(Double " : ", Double ") + Utf8(number);
  }
  return call + ")!; ";
}

TEST_F(FormsTest, EveryUseOnceInOrder) {
  EXPECT_EQ(Init(in),
            "in.ScaleWidth; in.ScaleHeight; form.BorderStyle; form.Width; form.BorderStyle; "
            "form.Height; form.MDIChild; in.Left; in.Top; " +
                Moved(u"1300 2200 300 200"));
  EXPECT_EQ(Init(in, 50, 50), "in.ScaleWidth; in.ScaleHeight; form.MDIChild; in.Left; in.Top; " +
                                  Moved(u"1425 2275 50 50"));
  form->With(u"MDIChild", true).With(u"BorderStyle", Int16{2});
  EXPECT_EQ(Init(in),
            "in.ScaleWidth; in.ScaleHeight; form.BorderStyle; form.BorderStyle; "
            "form.MDIChild; " +
                Moved(u"150 100 600 400"));
  EXPECT_EQ(Init({}, 0, 100), "form.BorderStyle; form.MDIChild; " + Moved(u"250 550 1000 100"));
}

// The screen's width and the form's border and size; a screen's 16777217 has no place in single
// precision.
TEST_F(FormsTest, PlacesOnTheScreen) {
  for (const auto& row :
       Rows(u"900|2|0|0|150 100 600 400;900|5|0|0|300 200 300 200;900|2|0|300|150 150 600 300;"
            u"900|1|699|401|100.5 100 699 401;900|1|700|400|100 100 700 400;"
            u"900|1|-100|-1|500 300.5 -100 -1;16777217|1|16|0|8388600 200 16 200")) {
    const auto number = [&](std::size_t i) { return std::stod(Utf8(row[i])); };
    Screen::SetSize(number(0), 600);
    form->With(u"BorderStyle", number(1));
    EXPECT_TRUE(Init({}, number(2), number(3)).ends_with(Moved(row[4]))) << Utf8(row[4]);
  }
  // The shift comes after the margin.
  container->With(u"Left", -250.5).With(u"Top", true);
  form->With(u"MDIChild", u"0").With(u"BorderStyle", Null);
  EXPECT_TRUE(Init(in, 900, 600).ends_with(Moved(u"-150.5 99 900 600")));
}

// The form is moved by the last step alone, so whatever fails leaves it where it was.
TEST_F(FormsTest, WhateverIsMissingOrUselessLeavesTheFormInPlace) {
  const std::pair<std::shared_ptr<RecordingHost>, String> uses[] = {
      {container, u"ScaleWidth"}, {container, u"ScaleHeight"}, {form, u"BorderStyle"},
      {form, u"Width"},           {form, u"Height"},           {form, u"MDIChild"},
      {container, u"Left"},       {container, u"Top"}};
  for (const auto& [host, member] : uses) {
    const Variant good = host->Get(member, {});
    host->Remove(member);
    EXPECT_TRUE(Init(in).ends_with(Utf8(member) + "; !438")) << Utf8(member);
    host->With(member, u"wide");
    EXPECT_TRUE(Init(in).ends_with(Utf8(member) + "; !13")) << Utf8(member);
    host->WithFailure(member, 77);
    EXPECT_TRUE(Init(in).ends_with(Utf8(member) + "; !77 of Host")) << Utf8(member);
    host->With(member, good);
  }
  form->Remove(u"MDIChild");
  EXPECT_TRUE(Init({}).ends_with("!438"));
  form_object = {};
  EXPECT_EQ(Restore(u"FrmOrder"), "");
  Store(u"WindowState", Int16{0});
  EXPECT_EQ(Init({}) + Save() + Restore() + Save(u"F") + Restore(u"FrmOrder"), "!91!91!91!91!91");
}

TEST_F(FormsTest, SavesEachStateInItsOwnWay) {
  form->With(u"Left", -10.5).With(u"Top", 2.5);
  EXPECT_EQ(Save(), "form.Name; form.WindowState; form.Top; form.Left; form.Height; form.Width; ");
  EXPECT_EQ(Stored(), "2 -10 200 300 0 ");

  // The normal place outlives the other states.
  form->With(u"Left", Int16{0}).With(u"WindowState", u"2");
  EXPECT_EQ(Save(), "form.Name; form.WindowState; form.WindowState; form.WindowState; ");
  EXPECT_EQ(Stored(), "2 -10 200 300 2 ");
  for (const Variant& other : {Variant(Int16{1}), Variant(Null)}) {
    Store(u"WindowState", Int16{2});
    form->With(u"WindowState", other);
    EXPECT_EQ(Save(), "form.Name; form.WindowState; form.WindowState; ");
    EXPECT_EQ(Stored(), "2 -10 200 300 0 ") << Shown(other);
  }
}

TEST_F(FormsTest, TheNameThatIsGivenIsTheKey) {
  EXPECT_TRUE(Save(u"Desk\\Left").starts_with("form.WindowState; "));
  EXPECT_EQ(Stored() + Stored(u"Desk\\Left"), "- - - - - 20 10 200 300 0 ");
  EXPECT_EQ(Restore(), "form.Name; form.BorderStyle; form.BorderStyle; ");
  EXPECT_TRUE(Restore(u"Desk\\Left").ends_with(Moved(u"10 20")));
  form->With(u"Name", Null);
  EXPECT_EQ(Save() + Save(Null) + Restore(Null), "form.Name; !94!94!94");
}

TEST_F(FormsTest, RestoresEveryUseInOrder) {
  std::string uses = "form.Name; form.BorderStyle; form.BorderStyle; ";
  Store(u"Left", Int16{5});
  EXPECT_EQ(Restore(), uses);
  Store(u"WindowState", Int16{-1});
  EXPECT_EQ(Restore(), uses);
  Store(u"WindowState", Int16{1});
  EXPECT_EQ(Restore(), uses + "form.WindowState = Int32 1; ");
  Store(u"WindowState", Int16{0});
  uses += "form.WindowState = Int32 0; form.Left; form.Top; ";
  EXPECT_EQ(Restore(), uses + Moved(u"5 20"));
  Store(u"Height", Int32{-7000});
  uses += "form.Width; form.Height; " + Moved(u"5 20 300 -7000");
  for (const Int16 border : {Int16{2}, Int16{5}}) {
    form->With(u"BorderStyle", border);
    EXPECT_EQ(Restore(), uses) << border;
  }
  form->Remove(u"BorderStyle");
  EXPECT_TRUE(Restore().ends_with(Moved(u"5 20 300 -7000")));
}

// The screen, the saved place, and where the form is put. One beyond the limit is the limit in
// single precision; a screen narrower than 1000 has a limit below 0.
TEST_F(FormsTest, APlaceIsBroughtOntoTheScreen) {
  Store(u"WindowState", Int16{0});
  for (const auto& row : Rows(u"1500|-5|0;1500|0|0;1500|500|500;1500|501|500;1500|2147483647|500;"
                              u"600|0|-400;600|-1|0;0|20|-1000;16778216|16777217|16777217")) {
    const Int32 screen = std::stoi(Utf8(row[0])), place = std::stoi(Utf8(row[1]));
    Screen::SetSize(screen, 5000);
    Store(u"Left", place);
    Store(u"Top", Int16{20});
    EXPECT_TRUE(Restore().ends_with(Moved(row[2] + u" 20"))) << place << " on " << screen;
    Screen::SetSize(5000, screen);
    Store(u"Left", Int16{0});
    Store(u"Top", place);
    EXPECT_TRUE(Restore().ends_with(Moved(u"0 " + row[2]))) << place << " on " << screen;
  }
}

TEST_F(FormsTest, FailuresOfSavingAndRestoring) {
  Store(u"WindowState", u"0", REG_BINARY);
  EXPECT_EQ(Restore(), "form.Name; form.BorderStyle; form.BorderStyle; !13");
  Store(u"WindowState", u"0", REG_SZ);
  Store(u"Top", u"high", REG_SZ);
  EXPECT_EQ(Restore(),
            "form.Name; form.BorderStyle; form.BorderStyle; form.WindowState = Int32 0; "
            "form.Left; form.Top; !13");
  form->Remove(u"Height");
  Store(u"Left", Int16{77});
  EXPECT_TRUE(Save().ends_with("!438"));
  EXPECT_EQ(Stored(), "20 10 - - 0 ");
  form->Remove(u"Name");
  EXPECT_EQ(Save(), "form.Name; !438");
}

}  // namespace
}  // namespace quorl
