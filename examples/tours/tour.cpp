// The tour in C++: the same program stands here in C, Python and JavaScript, and prints the same.
#include <iostream>
#include <map>
#include <span>
#include <vector>

#include "quorl/quorl.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"

using namespace quorl;
using namespace quorl::literals;

namespace {

// ---------------------------------------------------------------- objects of the host's own

class Combo : public LateBound {
 public:
  Variant Get(StringView name, std::span<Variant> arguments) override {
    if (name == u"ListCount") return static_cast<Int32>(entries_.size());
    if (name == u"ListIndex") return selected_;
    const Int32 index = ToInt32(arguments[0]);
    if (name == u"ItemData") return 100 + index;
    return entries_.at(static_cast<std::size_t>(index));  // List
  }
  void Put(StringView, std::span<Variant>, const Variant& value) override { selected_ = value; }

 private:
  std::vector<String> entries_{u"Anvers 2000", u"Bruxelles 1000", u"Namur 5000"};
  Variant selected_ = -1;
};

class ClosedCombo : public LateBound {
 public:
  Variant Get(StringView, std::span<Variant>) override {
    throw RaisedError(1004, u"Combo", u"La liste est fermée.");
  }
};

class Form : public LateBound {
 public:
  Variant Get(StringView name, std::span<Variant>) override { return properties_[String(name)]; }
  void Put(StringView name, std::span<Variant>, const Variant& value) override {
    properties_[String(name)] = value;
  }
  Variant Call(StringView, std::span<Variant> place) override {  // Move
    const char16_t* const kLengths[] = {u"Left", u"Top", u"Width", u"Height"};
    for (std::size_t i = 0; i < place.size(); ++i) properties_[kLengths[i]] = place[i];
    return Empty;
  }

 private:
  std::map<String, Variant> properties_{
      {u"Name", u"Orders"}, {u"BorderStyle", 2}, {u"MDIChild", false}, {u"WindowState", 0},
      {u"Left", 0.0},       {u"Top", 0.0},       {u"Width", 400.0},    {u"Height", 300.0}};
};

// -------------------------------------------------------------------------------- the tour

void Say(const char* what, const Variant& value) {
  std::cout << what << ": " << Utf8(ToString(value)) << '\n';
}

void WriteAnAmount() {
  Money amount;
  amount.Unit = u"euro";
  amount.Units = u"euros";
  amount.SubUnit = u"cent";
  amount.SubUnits = u"cents";
  amount.SubUnitRow = 2;
  amount.Language = u"FR";
  Say("amount in words", amount.ToText(1280.21_cy));
}

void RoundAndSplit() {
  std::cout << "1.21 rounded up: " << Math::RoundSup(1.21, 1) << '\n';
  Say("second token", Strings::GetToken(u"un deux trois", u" ", 2));
}

void KeepSettings(Registry& settings) {
  settings.SaveValue(u"Ticket", u"Copies", 2);
  Say("copies", settings.GetValue(u"Ticket", u"Copies", 1));
  Say("font", settings.GetValue(u"Ticket", u"Font", u"none yet"));
}

void LendACombo() {
  const Object combo = MakeObject<Combo>();
  ComboBoxEx::CmbSelectMatchToken(combo, u"1000", 2);
  std::cout << "combo: entry " << ToInt32(combo.Get(u"ListIndex")) << ", data "
            << ComboBoxEx::CmbCurrentItemData(combo, 0) << '\n';
}

void LendAForm(Registry& settings) {
  const Object form = MakeObject<Form>();
  Forms::InitFormSettings(form, Object(), 800, 600);
  Forms::SaveFormSettings(settings, form);
  form.Put(u"Left", {}, 0.0);
  Forms::GetFormSettings(settings, form);
  const auto length = [&](StringView name) { return ToDouble(form.Get(name)); };
  std::cout << "form: " << length(u"Left") << ", " << length(u"Top") << ", " << length(u"Width")
            << " by " << length(u"Height") << '\n';
}

template <class Action>
void ShowFailure(Action action) {
  try {
    action();
  } catch (const RaisedError& error) {
    std::cout << "failure " << error.Number() << " of " << Utf8(error.Source()) << ": "
              << Utf8(error.Description()) << '\n';
  }
}

}  // namespace

int main() {
  // Settings in memory: the tour leaves nothing behind.
  MemoryStore store;
  const ScopedStore in_memory(store);
  const LocaleScope belgian(*Locale::Named(u"fr-BE"));
  Screen::SetSize(1800, 1600);
  Registry settings;
  settings.InitApp(u"Maison", u"Caisse");

  WriteAnAmount();
  RoundAndSplit();
  KeepSettings(settings);
  LendACombo();
  LendAForm(settings);
  ShowFailure([] { Math::RoundSup(1.21, -1); });
  ShowFailure([] { ComboBoxEx::CmbSelectItemData(MakeObject<ClosedCombo>(), 1); });
}
