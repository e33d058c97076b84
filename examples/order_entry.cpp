// A small order desk without a window: a script plays the person at the desk, and the program
// prints what the desk shows. It is a host in plain C++, with a record set, a combo box and a form
// of its own that the library knows only by the names of their members.
//
//     order_entry examples/order_entry.script
//
// What that prints stands in examples/order_entry.out. Settings are kept in memory and end with it.
// Lines that fail say why and leave the desk as it was; a line that begins with "#" is a remark. An
// entry that cannot be read is refused and stays in the form until it is corrected or dropped.
#include <algorithm>
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
#include "quorl/numeric/dates.hpp"
#include "quorl/numeric/math.hpp"
#include "quorl/regional/guids.hpp"
#include "quorl/regional/regional.hpp"
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

[[noreturn]] void Refuse(StringView why) { throw RaisedError(kFailedCheck, u"Order desk", why); }

// An item of a collection of this host; failure 9 for a position that there is not.
template <class Item>
const Item& ItemAt(const std::vector<Item>& items, Arguments position) {
  const Int32 index = position.size() == 1 ? ToInt32(position[0]) : -1;
  const auto count = static_cast<Int32>(items.size());
  if (index < 0 || index >= count) Raise(FailureNumber::kSubscriptOutOfRange);
  return items[static_cast<std::size_t>(index)];
}

// What all objects of this host are: properties with names; failure 438 for any other name.
class Host : public LateBound {
 public:
  explicit Host(std::map<String, Variant> properties) : properties_(std::move(properties)) {}

  Variant Get(StringView name, Arguments arguments) override {
    const auto found = properties_.find(String(name));
    return found == properties_.end() ? LateBound::Get(name, arguments) : found->second;
  }
  void Put(StringView name, Arguments arguments, const Variant& value) override {
    const auto found = properties_.find(String(name));
    if (found == properties_.end()) return LateBound::Put(name, arguments, value);
    found->second = value;
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
    return name.empty() ? ItemAt(fields_, arguments) : Host::Get(name, arguments);
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
    if (name == u"List") return ItemAt(entries_, arguments).first;
    if (name == u"ItemData") return ItemAt(entries_, arguments).second;
    return Host::Get(name, arguments);
  }
  // -1 is no entry.
  void Put(StringView name, Arguments arguments, const Variant& value) override {
    if (name == u"ListIndex" && ToInt32(value) != -1) {
      std::array<Variant, 1> index{value};
      ItemAt(entries_, index);
    }
    Host::Put(name, arguments, value);
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
    if (place.size() > lengths.size()) Raise(FailureNumber::kInvalidArgument);
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
    if (command == kCommands.end()) Refuse(u"Nobody here knows how to " + verb);
    (this->*command->second)(Trimmed(line.substr(verb.size())));
  }

 private:
  using Command = void (OrderDesk::*)(StringView);
  static const std::map<String, Command> kCommands;

  static void Print(const String& line) { std::cout << Utf8(line) << '\n'; }

  // "fr-BE FR": how numbers and dates are written, and the language of amounts in words.
  void Speak(StringView names) {
    const std::optional<Locale> locale = Locale::Named(Strings::GetToken(names));
    if (!locale) Refuse(u"Unknown locale");
    Locale::SetCurrent(*locale);
    regional_.GetRegional();
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

  // What stands in the form's entry fields, as it was typed.
  struct Draft {
    std::array<String, 6> entries;

    const String& operator[](StringView field) const { return entries.at(PositionOf(field)); }
    String& operator[](StringView field) { return entries.at(PositionOf(field)); }
    static std::size_t PositionOf(StringView field) {
      static constexpr std::array<StringView, 6> kFields{u"reference", u"article",  u"price",
                                                         u"quantity",  u"delivery", u"paid"};
      const auto* const found = std::ranges::find(kFields, field);
      if (found == kFields.end()) Refuse(u"There is no field " + String(field));
      return static_cast<std::size_t>(found - kFields.begin());
    }
  };

  // "reference | article | price | quantity | delivery | paid": all fields of the form.
  void Enter(StringView text) {
    if (draft_) Refuse(u"Correct or drop the order that stands in the form");
    if (std::ranges::count(text, u'|') != 5) Refuse(u"An order has six fields");
    draft_.emplace();
    for (Int16 i = 0; i < 6; ++i) {
      draft_->entries.at(static_cast<std::size_t>(i)) =
          Trimmed(Strings::GetToken(text, u"|", static_cast<Int16>(i + 1)));
    }
    Accept({});
  }
  // "quantity 10": one field of the form again.
  void Correct(StringView text) {
    if (!draft_) Refuse(u"No order stands in the form");
    const String field = Strings::GetToken(text);
    (*draft_)[field] = Trimmed(text.substr(field.size()));
    Accept({});
  }
  void Drop(StringView) { draft_.reset(); }

  // The draft becomes an order, or is refused and stays.
  void Accept(StringView) {
    if (!draft_) Refuse(u"No order stands in the form");
    if (Customer() == 0) Refuse(u"Pick a customer first");
    const auto record = std::make_shared<Record>();
    const Draft& draft = *draft_;
    record->Add(u"Reference", DbLib::StrToField(draft[u"reference"]));
    record->Add(u"Article", DbLib::StrToField(draft[u"article"]));
    record->Add(u"Price", ToCurrency(Variant(NumberIn(u"price"))));
    record->Add(u"Quantity", DbLib::StrNumToField(NumberIn(u"quantity")));
    record->Add(u"Delivery", DbLib::StrDateToField(DateIn(u"delivery")));
    record->Add(u"Paid", DbLib::TriStateToBoolField(StateIn(u"paid")));
    const String order = TextOf(Object(record));
    recent_.AddItem(draft[u"reference"]);
    draft_.reset();
    Print(order);
  }

  // The library's conversions to fields make Null of what they cannot read, so that a form looks at
  // an entry before it converts it.
  [[noreturn]] void RefuseEntry(StringView field, StringView what) const {
    Refuse(String(field) + u": \"" + (*draft_)[field] + u"\" is no " + String(what));
  }
  String NumberIn(StringView field) const {
    String number;
    for (const char16_t typed : (*draft_)[field]) {
      // Either key is the decimal separator, as on the numeric pad.
      auto key = static_cast<Int16>(typed);
      regional_.ConvertDecimalPoint(key);
      number += static_cast<char16_t>(key);
    }
    if (!IsNumber(number)) RefuseEntry(field, u"number");
    return number;
  }
  String DateIn(StringView field) const {
    if (!Dates::IsDateOrEmpty((*draft_)[field])) RefuseEntry(field, u"date");
    return (*draft_)[field];
  }
  Int16 StateIn(StringView field) const {
    static const std::map<String, Int16> kStates{{u"no", 0}, {u"yes", 1}, {u"", 2}};
    const auto state = kStates.find((*draft_)[field]);
    if (state == kStates.end()) RefuseEntry(field, u"answer: yes, no or nothing");
    return state->second;
  }

  static Variant ValueOf(const Object& record, StringView name) {
    const Int16 position = DbLib::FieldPos(name, record);
    if (position == 0) Refuse(u"No field " + String(name));
    std::array<Variant, 1> index{static_cast<Int16>(position - 1)};
    return RequireObject(record.Get({}, index)).Get(u"Value");
  }
  // What the desk shows of an order, read from its record.
  String TextOf(const Object& record) {
    const auto text = [&](StringView name) { return DbLib::StrFieldValue(ValueOf(record, name)); };
    const auto amount = [](const Variant& value) { return FormatNumber(value, u"#,##0.00"); };
    const Variant price = ValueOf(record, u"Price");
    const Variant quantity = DbLib::NumFieldValue(ValueOf(record, u"Quantity"));
    const Variant total = Math::StdRound(Multiply(price, quantity), 2);
    const String day = DbLib::StrDateFieldValue(ValueOf(record, u"Delivery"));
    const std::array<String, 3> paid{u"to be paid", u"paid", u"payment unknown"};
    const Int16 state = DbLib::TriStateFieldValue(ValueOf(record, u"Paid"));
    return u"order " + text(u"Reference") + u" of " + GUIDs::GetNumGUID(Customer()) + u": " +
           text(u"Article") + u"\n  " + text(u"Quantity") + u" x " + text(u"Price") + u" = " +
           amount(total) + u" EUR, in cash " + amount(Math::Round2019(total)) + u"\n  " +
           euros_.ToText(ToCurrency(total)) + u"\n  delivery " +
           (Strings::IsEmptyString(day) ? u"to be agreed" : day) + u", " +
           paid.at(static_cast<std::size_t>(state)) + u"\n  insert into orders values ('" +
           DbLib::DuplicateQuotte(text(u"Article")) + u"', " + DbLib::DotStrFieldValue(price) +
           u")";
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
  Regional regional_;
  Money euros_;
  std::optional<Draft> draft_;
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
    {u"accept", &OrderDesk::Accept},
    {u"correct", &OrderDesk::Correct},
    {u"drop", &OrderDesk::Drop},
    {u"back", &OrderDesk::Back},
    {u"forward", &OrderDesk::Forward},
};

// False when the script cannot be read to its end.
bool Play(std::istream& script) {
  OrderDesk desk;
  std::string line;
  for (int number = 1; std::getline(script, line); ++number) {
    if (line.ends_with('\r')) line.pop_back();
    if (line.empty() || line.front() == '#') continue;
    std::cout << "> " << line << '\n';
    try {
      desk.Do(Utf16(line));
    } catch (const RaisedError& error) {
      std::cout << "line " << number << ": " << error.what() << '\n';
    }
  }
  return !script.bad();
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::cerr << "usage: order_entry SCRIPT\n";
    return 2;
  }
  std::ifstream script(arguments[1]);
  if (!script || !Play(script)) {
    std::cerr << "order_entry: cannot read " << arguments[1] << '\n';
    return 1;
  }
  if (!std::cout.flush()) {
    std::cerr << "order_entry: standard output cannot be written\n";
    return 1;
  }
}
