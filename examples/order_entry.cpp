// A small order desk without a window: a script plays the person at the desk, and the program
// prints what the desk shows. It is a host in plain C++, with a record set, a combo box and a form
// of its own that the library knows only by the names of their members.
//
//     order_entry examples/order_entry.script
//
// What that prints stands in examples/order_entry.out. Settings are kept in memory and end with it.
// Lines that fail say why and leave the desk as it was; a line that begins with "#" is a remark.
#include <array>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "quorl/buffer/roll_buffer.hpp"
#include "quorl/fields/db_lib.hpp"
#include "quorl/forms/combo_box_ex.hpp"
#include "quorl/forms/forms.hpp"
#include "quorl/money/money.hpp"
#include "quorl/numeric/math.hpp"
#include "quorl/regional/guids.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/arithmetic.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/screen.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/text/strings.hpp"

namespace {

using namespace quorl;
using Arguments = std::span<Variant>;

// Without the blanks at both ends.
String Trimmed(StringView text) { return Strings::LTrimEx(Strings::RTrimEx(text)); }

constexpr Int16 kMaximised = 2;

std::size_t IndexOf(Arguments arguments) { return static_cast<std::size_t>(ToInt16(arguments[0])); }

// What all objects of this host are: properties with names.
class Host : public LateBound {
 public:
  explicit Host(std::map<String, Variant> properties) : properties_(std::move(properties)) {}

  Variant Get(StringView name, Arguments arguments) override {
    const auto found = properties_.find(String(name));
    return found == properties_.end() ? LateBound::Get(name, arguments) : found->second;
  }
  void Put(StringView name, Arguments, const Variant& value) override {
    properties_[String(name)] = value;
  }

 private:
  std::map<String, Variant> properties_;
};

// The record at hand: fields with a name and a value, by position.
class Record : public Host {
 public:
  Record() : Host({{u"Count", Int16{0}}}) {}

  void Add(StringView name, const Variant& value) {
    fields_.push_back(
        MakeObject<Host>(std::map<String, Variant>{{u"Name", name}, {u"Value", value}}));
    Put(u"Count", {}, static_cast<Int32>(fields_.size()));
  }
  Variant Get(StringView name, Arguments arguments) override {
    return name.empty() ? fields_.at(IndexOf(arguments)) : Host::Get(name, arguments);
  }

 private:
  std::vector<Object> fields_;
};

// The customers to choose from, each entry with the customer's number.
class Combo : public Host {
 public:
  Combo() : Host({{u"ListIndex", Int16{-1}}, {u"ListCount", Int16{0}}}) {}

  void Add(Int32 number, StringView entry) {
    entries_.emplace_back(String(entry), number);
    Put(u"ListCount", {}, static_cast<Int32>(entries_.size()));
  }
  Variant Get(StringView name, Arguments arguments) override {
    if (name == u"List") return entries_.at(IndexOf(arguments)).first;
    if (name == u"ItemData") return entries_.at(IndexOf(arguments)).second;
    return Host::Get(name, arguments);
  }

 private:
  std::vector<std::pair<String, Int32>> entries_;
};

class Form : public Host {
 public:
  Form()
      : Host({{u"Name", u"FrmOrders"},
              {u"BorderStyle", Int16{2}},
              {u"MDIChild", false},
              {u"WindowState", Int16{0}},
              {u"Left", 0.0},
              {u"Top", 0.0},
              {u"Width", 0.0},
              {u"Height", 0.0}}) {}

  Variant Call(StringView name, Arguments place) override {
    if (name != u"Move") return LateBound::Call(name, place);
    const std::array<StringView, 4> lengths{u"Left", u"Top", u"Width", u"Height"};
    for (std::size_t i = 0; i < place.size(); ++i) Put(lengths.at(i), {}, place[i]);
    return {};
  }
};

class OrderDesk {
 public:
  OrderDesk() {
    settings_.InitApp(u"Atelier", u"Order desk");
    recent_.BufferSize(3);
    euros_.Unit = u"euro";
    euros_.Units = u"euros";
    euros_.SubUnit = u"cent";
    euros_.SubUnits = u"cents";
    euros_.SubUnitRow = 2;
  }

  void Do(StringView line) {
    const String verb = Strings::GetToken(line);
    const auto command = kCommands.find(verb);
    if (command == kCommands.end()) {
      throw RaisedError(kFailedCheck, u"Order desk", u"Nobody here knows how to " + verb);
    }
    (this->*command->second)(Trimmed(line.substr(verb.size())));
  }

 private:
  using Command = void (OrderDesk::*)(StringView);
  static const std::map<String, Command> kCommands;

  static void Print(const String& line) { std::cout << Utf8(line) << '\n'; }

  // "fr-BE FR": how numbers and dates are written, and the language of amounts in words.
  void Speak(StringView names) {
    const std::optional<Locale> locale = Locale::Named(Strings::GetToken(names));
    if (!locale) throw RaisedError(kFailedCheck, u"Order desk", u"Unknown locale");
    Locale::SetCurrent(*locale);
    euros_.Language = Strings::GetToken(names, u" ", 2);
  }

  void SetScreen(StringView size) { Screen::SetSize(NumberAt(size, 1), NumberAt(size, 2)); }

  // Placed in the middle of the screen the first time, then where it was when it was closed.
  void Open(StringView) {
    form_ = MakeObject<Form>();
    Forms::InitFormSettings(form_);
    Forms::GetFormSettings(settings_, form_);
    ShowForm();
  }
  void Drag(StringView place) {
    std::array<Variant, 4> lengths{NumberAt(place, 1), NumberAt(place, 2), NumberAt(place, 3),
                                   NumberAt(place, 4)};
    form_.Call(u"Move", lengths);
    ShowForm();
  }
  void Maximise(StringView) {
    form_.Put(u"WindowState", {}, kMaximised);
    ShowForm();
  }
  void Close(StringView) {
    Forms::SaveFormSettings(settings_, form_);
    form_ = {};
    Print(u"form closed");
  }
  void ShowForm() {
    if (ToInt16(form_.Get(u"WindowState")) == kMaximised) return Print(u"form maximised");
    const auto text = [&](StringView name) { return ToString(form_.Get(name)); };
    Print(u"form at " + text(u"Left") + u"; " + text(u"Top") + u", " + text(u"Width") + u" by " +
          text(u"Height"));
  }

  // "101 Liège Atelier du Pont": the number, then the entry as the combo box lists it.
  void AddCustomer(StringView text) {
    const String number = Strings::GetToken(text);
    customers_->Add(ToInt32(Variant(number)), Trimmed(text.substr(number.size())));
  }
  void PickByTown(StringView town) {
    ComboBoxEx::CmbSelectMatchToken(combo_, town, 1);
    ShowCustomer();
  }
  void PickByNumber(StringView number) {
    ComboBoxEx::CmbSelectItemData(combo_, ToInt32(Variant(number)));
    ShowCustomer();
  }
  Int32 Customer() { return ComboBoxEx::CmbCurrentItemData(combo_, 0); }
  void ShowCustomer() {
    const Int32 number = Customer();
    if (number == 0) return Print(u"no customer");
    std::array<Variant, 1> index{combo_.Get(u"ListIndex")};
    Print(u"customer " + ToString(number) + u", " + ToString(combo_.Get(u"List", index)));
  }

  // "reference | article | price | quantity | delivery | paid": what was typed into the form, made
  // a record of a database whose price is a money field, and read again from there.
  void Enter(StringView entries) {
    const auto entry = [&](Int16 index) -> String {
      return Trimmed(Strings::GetToken(entries, u"|", index));
    };
    const auto record = std::make_shared<Record>();
    record->Add(u"Reference", DbLib::StrToField(entry(1)));
    record->Add(u"Article", DbLib::StrToField(entry(2)));
    record->Add(u"Price", ToCurrency(entry(3)));
    record->Add(u"Quantity", DbLib::StrNumToField(entry(4)));
    record->Add(u"Delivery", DbLib::StrDateToField(entry(5)));
    record->Add(u"Paid", DbLib::TriStateToBoolField(StateOf(entry(6))));
    ShowOrder(Object(record));
    recent_.AddItem(entry(1));
  }
  static Int16 StateOf(StringView answer) { return answer == u"no" ? 0 : answer == u"yes" ? 1 : 2; }
  static Variant ValueOf(const Object& record, StringView name) {
    const Int16 position = DbLib::FieldPos(name, record);
    if (position == 0) throw RaisedError(kFailedCheck, u"Order desk", u"No field " + String(name));
    std::array<Variant, 1> index{static_cast<Int16>(position - 1)};
    return RequireObject(record.Get({}, index)).Get(u"Value");
  }
  void ShowOrder(const Object& record) {
    const auto text = [&](StringView name) { return DbLib::StrFieldValue(ValueOf(record, name)); };
    const auto amount = [](const Variant& value) { return FormatNumber(value, u"#,##0.00"); };
    const Variant price = ValueOf(record, u"Price");
    const Variant quantity = DbLib::NumFieldValue(ValueOf(record, u"Quantity"));
    const Variant total = Math::StdRound(Multiply(price, quantity), 2);
    const String words = euros_.ToText(ToCurrency(total));
    Print(u"order " + text(u"Reference") + u" of " + GUIDs::GetNumGUID(Customer()) + u": " +
          text(u"Article"));
    Print(u"  " + text(u"Quantity") + u" x " + text(u"Price") + u" = " + amount(total) +
          u" EUR, in cash " + amount(Math::Round2019(total)));
    Print(u"  " + words);
    const String day = DbLib::StrDateFieldValue(ValueOf(record, u"Delivery"));
    const std::array<String, 3> paid{u"to be paid", u"paid", u"payment unknown"};
    const Int16 state = DbLib::TriStateFieldValue(ValueOf(record, u"Paid"));
    Print(u"  delivery " + (Strings::IsEmptyString(day) ? u"to be agreed" : day) + u", " +
          paid.at(static_cast<std::size_t>(state)));
    Print(u"  insert into orders values ('" + DbLib::DuplicateQuotte(text(u"Article")) + u"', " +
          DbLib::DotStrFieldValue(price) + u")");
  }

  void Back(StringView) {
    recent_.MovePrevious();
    ShowRecent();
  }
  void Forward(StringView) {
    recent_.MoveNext();
    ShowRecent();
  }
  void ShowRecent() {
    String line = u"recent:";
    for (Int32 i = 0; i < recent_.Count(); ++i) {
      const String reference = ToString(recent_.Items(i));
      line += i == recent_.Index() ? u" [" + reference + u"]" : u" " + reference;
    }
    Print(line + (recent_.BOF()     ? u", before the first"
                  : recent_.AtEOF() ? u", past the last"
                                    : u""));
  }

  static Double NumberAt(StringView text, Int16 index) {
    return ToDouble(Variant(Strings::GetToken(text, u" ", index)));
  }

  MemoryStore store_;
  ScopedStore in_memory_{store_};
  Registry settings_;
  Money euros_;
  RollBuffer recent_;
  std::shared_ptr<Combo> customers_ = std::make_shared<Combo>();
  Object combo_{customers_};
  Object form_;
};

const std::map<String, OrderDesk::Command> OrderDesk::kCommands{
    {u"speak", &OrderDesk::Speak},
    {u"screen", &OrderDesk::SetScreen},
    {u"open", &OrderDesk::Open},
    {u"drag", &OrderDesk::Drag},
    {u"maximise", &OrderDesk::Maximise},
    {u"close", &OrderDesk::Close},
    {u"customer", &OrderDesk::AddCustomer},
    {u"pick", &OrderDesk::PickByTown},
    {u"number", &OrderDesk::PickByNumber},
    {u"enter", &OrderDesk::Enter},
    {u"back", &OrderDesk::Back},
    {u"forward", &OrderDesk::Forward},
};

void Play(std::istream& script) {
  OrderDesk desk;
  std::string line;
  for (int number = 1; std::getline(script, line); ++number) {
    if (line.empty() || line.front() == '#') continue;
    std::cout << "> " << line << '\n';
    try {
      desk.Do(Utf16(line));
    } catch (const RaisedError& error) {
      std::cout << "line " << number << ": " << error.what() << '\n';
    }
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: order_entry SCRIPT\n";
    return 2;
  }
  std::ifstream script(arguments[1]);
  if (!script) {
    std::cerr << "order_entry: cannot read " << arguments[1] << '\n';
    return 1;
  }
  Play(script);
}
