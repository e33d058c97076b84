// A tour of the library: one short example a class, as a C++ host would write it.
#include <array>
#include <iostream>
#include <map>
#include <vector>

#include "quorl/quorl.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"

using namespace quorl;
using namespace quorl::literals;

namespace {

void Say(const char* what, const Variant& value) {
  std::cout << what << ": " << Utf8(ToString(value)) << '\n';
}

void TourMath() {
  Say("1.005 to two decimals", Math::StdRound(1.005, 2));
  Say("-1.23 up in size", Math::RoundSup(-1.23, 1));
  Say("12.33 to five hundredths", Math::Round2019(12.33));
  Say("the greater of 3 and 5", Math::Max(3, 5));
}

void TourDates() {
  Say("a date or nothing", Dates::IsDateOrEmpty(u"2024-02-29"));
  Say("no date", Dates::IsDateOrEmpty(u"2024-02-30"));
}

void TourStrings() {
  Say("third token", Strings::GetToken(u"red;green;blue", u";", 3));
  Say("padded", Strings::Padl(u"42", 8, u"0"));
  Say("shortened", Strings::TruncateMiddle(u"/home/anna/letters/2024/march.txt", 20));
  Say("a plural", Strings::Pluriel(u"mot"));
}

void TourMoney() {
  Money amount;
  amount.Unit = u"pound";
  amount.Units = u"pounds";
  amount.SubUnit = u"penny";
  amount.SubUnits = u"pence";
  amount.SubUnitRow = 2;
  amount.Language = u"UK";
  Say("in words", amount.ToText(1234.56_cy));
}

void TourDbLib() {
  Say("a field without a value", DbLib::StrFieldValue(Null));
  Say("dotted", DbLib::DotStrFieldValue(0.5));
  Say("quotes doubled", DbLib::DuplicateQuotte(u"l'eau"));
  std::cout << "an empty entry is Null: " << DbLib::StrToField(u"  ").IsNull() << '\n';
}

void TourRollBuffer() {
  RollBuffer recent;
  recent.BufferSize(2);
  for (const char16_t* order : {u"first", u"second", u"third"}) recent.AddItem(order);
  Say("kept", recent.Count());
  Say("oldest", recent.Items(0));
  recent.MovePrevious();
  Say("one back", recent.CurrentItem());
}

void TourRegistry() {
  Registry settings;
  settings.InitApp(u"Maison", u"Caisse");
  settings.SaveValue(u"Ticket", u"Copies", 2);
  Say("copies", settings.GetValue(u"Ticket", u"Copies", 1));
  Say("font", settings.GetValue(u"Ticket", u"Font", u"none yet"));
}

void TourRegional() {
  const LocaleScope french(*Locale::Named(u"fr-BE"));
  Regional regional;
  Int16 key = '.';
  regional.ConvertDecimalPoint(key);
  Say("a typed point becomes", String(1, static_cast<char16_t>(key)));
  regional.SetRegional(riNumDecimalChar, u",");
  Say("the user's decimal separator", regional.NumDecimalChar());
}

void TourGUIDs() {
  Say("length of a new one", static_cast<Int32>(GUIDs::CreateGUID().size()));
  Say("from a number", GUIDs::GetNumGUID(42));
}

// A host's window, known to the library by the names of its members. What it lacks is failure 438,
// which the base class raises.
class Window : public LateBound {
 public:
  Variant Get(StringView name, std::span<Variant> arguments) override {
    const auto found = properties_.find(String(name));
    return found == properties_.end() ? LateBound::Get(name, arguments) : found->second;
  }
  void Put(StringView name, std::span<Variant> arguments, const Variant& value) override {
    const auto found = properties_.find(String(name));
    if (found == properties_.end()) return LateBound::Put(name, arguments, value);
    found->second = value;
  }
  Variant Call(StringView name, std::span<Variant> arguments) override {
    if (name != u"Move" || arguments.size() < 2) return LateBound::Call(name, arguments);
    properties_[u"Left"] = arguments[0];
    properties_[u"Top"] = arguments[1];
    return Empty;
  }

 private:
  std::map<String, Variant> properties_{
      {u"Name", u"Orders"}, {u"BorderStyle", 2}, {u"MDIChild", false}, {u"WindowState", 0},
      {u"Left", 0.0},       {u"Top", 0.0},       {u"Width", 400.0},    {u"Height", 300.0}};
};

void TourForms() {
  Screen::SetSize(1800, 1200);
  const Object window = MakeObject<Window>();
  Forms::InitFormSettings(window, Object(), 800, 600);
  Say("centred at", window.Get(u"Left"));
  Registry settings;
  settings.InitApp(u"Maison", u"Caisse");
  Forms::SaveFormSettings(settings, window);
  window.Put(u"Left", {}, 0.0);
  Forms::GetFormSettings(settings, window);
  Say("restored at", window.Get(u"Left"));
}

// A host's combo box. A bad index is failure 9.
class Customers : public LateBound {
 public:
  Variant Get(StringView name, std::span<Variant> arguments) override {
    if (name == u"ListCount") return static_cast<Int32>(entries_.size());
    if (name == u"ListIndex") return index_;
    if (name != u"List" || arguments.empty()) return LateBound::Get(name, arguments);
    const Int32 index = ToInt32(arguments[0]);
    if (index < 0 || index >= static_cast<Int32>(entries_.size())) {
      Raise(FailureNumber::kSubscriptOutOfRange);
    }
    return entries_[static_cast<std::size_t>(index)];
  }
  void Put(StringView name, std::span<Variant> arguments, const Variant& value) override {
    if (name != u"ListIndex") return LateBound::Put(name, arguments, value);
    index_ = value;
  }

 private:
  std::vector<String> entries_{u"1001 Anna", u"1002 Bruno", u"1003 Chloé"};
  Variant index_ = Int16{-1};
};

void TourComboBoxEx() {
  const Object combo = MakeObject<Customers>();
  ComboBoxEx::CmbSelectMatchToken(combo, u"CHLOÉ", 2);
  Say("selected", combo.Get(u"ListIndex"));
}

}  // namespace

int main() {
  // Settings in memory: the tour leaves nothing behind.
  MemoryStore store;
  const ScopedStore in_memory(store);
  const LocaleScope plain{Locale()};
  TourMath();
  TourDates();
  TourStrings();
  TourMoney();
  TourDbLib();
  TourRollBuffer();
  TourRegistry();
  TourRegional();
  TourGUIDs();
  TourForms();
  TourComboBoxEx();
}
