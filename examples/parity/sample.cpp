// Makes the log of this folder: seeded calls of every member of all twelve classes, with what the
// published tables say of them, recorded as a host by name makes them.
//
//   parity_sample FILE
#include <algorithm>
#include <array>
#include <iostream>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "examples/parity/by_name.hpp"
#include "examples/parity/host.hpp"
#include "examples/parity/host_object.hpp"
#include "examples/parity/log_text.hpp"
#include "examples/parity/read_log.hpp"
#include "examples/parity/recorder.h"
#include "examples/parity/slot_call.hpp"

namespace {

using namespace parity;

// The standard fixes this engine's numbers: the same log on every machine.
std::mt19937_64 engine(20261123);  // NOLINT(cert-msc32-c,cert-msc51-cpp)
std::size_t Pick(std::size_t count) { return engine() % count; }
bool OneIn(std::size_t chances) { return Pick(chances) == 0; }

using Pool = std::vector<std::string>;
const std::string& From(const Pool& pool) { return pool[Pick(pool.size())]; }

// ------------------------------------------------------------------------------ the host's objects

// A form, a combo box, a field: its members by name, several values for one with an index. What it
// lacks is unknown, and "=5" in place of a value, or none at the index, is the failure 5.
class SampleHost : public HostObject {
 public:
  using Members = std::map<Name, std::vector<Value>>;
  explicit SampleHost(Members members) : members_(std::move(members)) {
    for (const auto& [name, values] : members_) names_.push_back(name);
  }

 private:
  HRESULT Find(const std::vector<Name>& names, std::int32_t& id) override {
    const auto found = std::ranges::find(names_, names.front());
    if (found == names_.end()) return DISP_E_UNKNOWNNAME;
    id = static_cast<std::int32_t>(found - names_.begin()) + 1;
    return S_OK;
  }
  HRESULT Invoke(std::int32_t id, std::uint16_t flags, const DISPPARAMS& parameters,
                 VARIANT* result, EXCEPINFO* info, std::uint32_t*) override {
    const Name name = id > 0 ? names_[static_cast<std::size_t>(id) - 1] : Name();
    if (!members_.contains(name)) return DISP_E_MEMBERNOTFOUND;
    std::vector<Value>& values = members_[name];
    if (flags == DISPATCH_METHOD) return S_OK;
    if ((flags & DISPATCH_PROPERTYPUT) != 0) {
      values.assign(1, ValueOf(parameters.arguments[0]));
      return S_OK;
    }
    std::size_t at = 0;
    if (parameters.argument_count != 0) {
      const Value index = ValueOf(parameters.arguments[0]);
      at = static_cast<std::size_t>(*index.Target().If<std::int64_t>());
    }
    const auto* const text = at < values.size() ? values[at].If<std::u16string>() : nullptr;
    if (at >= values.size() || (text != nullptr && *text == u"=5")) {
      Fill(*info, 5, u"Hôte", u"L'hôte ne veut pas.");
      return DISP_E_EXCEPTION;
    }
    *result = Passed(values[at]).Detach();
    return S_OK;
  }

  Members members_;
  std::vector<Name> names_;
};

Value ObjectOf(QuorlDispatch* object) {
  return {VT_DISPATCH, ObjectValue{ObjectValue::kUnknown, object}};
}

// Objects that live until the call is over.
using Lent = std::vector<Counted<>>;

Value Lend(SampleHost::Members members, Lent& lent) {
  lent.push_back(Counted<>::Adopt(new SampleHost(std::move(members))));
  return ObjectOf(lent.back().Get());
}

std::vector<Value> Several(const Pool& pool, std::size_t count) {
  std::vector<Value> values;
  for (std::size_t i = 0; i < count; ++i) values.push_back(ReadValue(From(pool)));
  return values;
}

const Pool kEntries{R"("deux trois")", R"("12")", R"(" été ")", R"("DEUX")",
                    "Int32 12",        "Null",    R"("=5")"};
const Pool kLengths{"Int16 300", "Double 4000.5", "Single 20",
                    R"("1200")", "Int32 -50",     "Int32 70000"};

Value Combo(Lent& lent) {
  const std::size_t count = Pick(4);
  SampleHost::Members members;
  members[u"ListCount"] = {{VT_I2, static_cast<std::int64_t>(count)}};
  members[u"ListIndex"] = {{VT_I2, static_cast<std::int64_t>(Pick(count + 1)) - 1}};
  members[u"List"] = Several(kEntries, count);
  members[u"ItemData"] = Several({"Int32 0", "Int32 1", "Int32 12", "Int32 -7"}, count);
  if (OneIn(12)) members.erase(u"ListCount");
  return Lend(std::move(members), lent);
}

Value Form(Lent& lent) {
  SampleHost::Members members;
  for (const Name name : {u"Left", u"Top", u"Width", u"Height", u"ScaleWidth", u"ScaleHeight"}) {
    members[name] = Several(kLengths, 1);
  }
  members[u"Name"] = Several({R"("Commande")", R"("Client")"}, 1);
  members[u"WindowState"] = Several({"Int16 0", "Int16 1", "Int16 2"}, 1);
  members[u"BorderStyle"] = Several({"Int16 2", "Int16 5", "Int16 1"}, 1);
  members[u"MDIChild"] = Several({"True", "False"}, 1);
  members[u"Move"] = {};
  if (OneIn(5)) members.erase(OneIn(2) ? u"MDIChild" : u"BorderStyle");
  return Lend(std::move(members), lent);
}

Value Fields(Lent& lent) {
  SampleHost::Members members;
  for (const char* const name : {R"("Nom")", R"("été")", R"("Code")"}) {
    members[{}].push_back(Lend({{u"Name", {ReadValue(name)}}}, lent));
  }
  members[u"Count"] = {{VT_I4, static_cast<std::int64_t>(OneIn(6) ? 4 : 3)}};
  return Lend(std::move(members), lent);
}

// --------------------------------------------------------------------------------------- arguments

const Pool kTexts{R"("")",
                  R"(" ")",
                  R"("été")",
                  R"("ÉCOLE jean-paul o'neil")",
                  R"("12")",
                  R"("-3,5")",
                  R"("1e9")",
                  R"("deux trois  quatre")",
                  R"("01/02/2020")",
                  R"("29/02/2023")",
                  R"("2020-02-29")",
                  R"("31/12/1899 23:59:59")",
                  R"("a;b;;c")",
                  R"("Key\\Sub")",
                  R"("\uD800x\uDC00")",
                  R"("😀 œuf")",
                  R"("__ab__")",
                  R"("  blancs  ")",
                  R"("chacal")",
                  R"("bijou")",
                  R"("nez")",
                  R"("abcabcABC")",
                  R"("ab")",
                  R"("a")",
                  R"(";")",
                  R"("x\u0000y\u0009")",
                  R"("1.234,50")",
                  R"("1 234,5")",
                  R"("Vrai")",
                  R"("{7323691B-C1B8-4582-9D2F-2E8D4CC2ACEA}")",
                  R"("l'été d'\"Anne\"")",
                  R"("0012AB,.-x9")",
                  R"("une phrase assez longue pour être raccourcie au milieu")"};
const Pool kDoubles{"0",      "-0",  "1",          "-1",   "2.5",   "-1.25", "1.005",
                    "0.5",    "1.5", "2.675",      "1.23", "-1.23", "1e15",  "-1e300",
                    "5e-324", "0.1", "123456.785", "1e16", "inf",   "nan",   "41234.5"};
const Pool kWholes{"0", "1", "2", "3", "-1", "5", "9", "20", "40", "-5", "32767", "-32768"};
const Pool kAmounts{"0",
                    "0.01",
                    "1",
                    "-1.5",
                    "12345.6789",
                    "80.01",
                    "1000000.8",
                    "21",
                    "71.71",
                    "81",
                    "91",
                    "200",
                    "1001",
                    "999999.99",
                    "922337203685477.5807",
                    "-922337203685477.5808"};
const Pool kOthers{"Empty",
                   "Null",
                   "Missing",
                   "True",
                   "False",
                   "Byte 7",
                   "Single 1.5",
                   "Date 43862.5",
                   "Date -1.25",
                   "Nothing",
                   "Error 80020005",
                   R"(String[0..1] ("a" "b"))",
                   "Byte[0..3] (1 2 0 255)",
                   "Variant[1..2,0..1] (Empty \"x\" Int16 3 Null)",
                   "Int32[0..-1] ()",
                   "Unknown 0063",
                   "&\"par référence\"",
                   "&Variant &Int16 4",
                   "Date 2958465.75",
                   "Date 1e9",
                   "Int32 2147483647",
                   "Int32 40000"};

std::string Digits(std::size_t most) {
  std::string digits = OneIn(3) ? "-" : "";
  for (std::size_t count = Pick(most) + 1; count > 0; --count)
    digits += static_cast<char>('0' + Pick(10));
  return digits;
}

Value SomeDouble() {
  return ReadValue("Double " +
                   (OneIn(2) ? From(kDoubles) : Digits(7) + '.' + std::to_string(Pick(1000))));
}
Value SomeAmount() {
  return ReadValue("Currency " +
                   (OneIn(2) ? From(kAmounts) : Digits(12) + '.' + std::to_string(Pick(100))));
}
Value SomeWhole(std::uint16_t type) {
  return ReadValue((type == VT_I2 ? "Int16 " : "Int32 ") + From(kWholes));
}

Value SomeVariant() {
  switch (Pick(5)) {
    case 0:
      return ReadValue(From(kTexts));
    case 1:
      return SomeDouble();
    case 2:
      return SomeAmount();
    case 3:
      return SomeWhole(OneIn(2) ? VT_I2 : VT_I4);
    default:
      return ReadValue(From(kOthers));
  }
}

Value OfType(std::uint16_t type) {
  switch (type) {
    case VT_BSTR:
      return ReadValue(From(kTexts));
    case VT_R8:
      return SomeDouble();
    case VT_CY:
      return SomeAmount();
    case VT_I2:
    case VT_I4:
      return SomeWhole(OneIn(2) ? VT_I2 : VT_I4);
    default:
      return SomeVariant();
  }
}

// What a member takes is told by its name where a type is not enough. HKEY_CLASSES_ROOT is left
// alone: it has where the component lies.
const std::map<Name, Pool> kByName{
    {u"KeyName",
     {R"("")", R"("Clé")", R"("Clé\\Sous")", R"("Autre")", R"("Clé\\Sous\\Bas")", "Missing"}},
    {u"SourceKeyName", {R"("Clé")", R"("Autre")"}},
    {u"DestinationKeyName", {R"("Copie")", R"("Autre\\Copie")"}},
    {u"ValueName", {R"("")", R"("Nom")", R"("Top")", R"("nom")"}},
    {u"New_HKey", {"Int32 -2147483647", "Int32 -2147483647", "Int32 -2147483646", "Int32 5"}},
    {u"New_RootKeyName", {R"("Software\\Maison")", R"("Software\\Maison\\Appli")"}},
    {u"dataType", {"Int32 0", "Int32 1", "Int32 4", "Int32 3", "Int32 9"}},
    {u"Levels", {"Int32 1", "Int32 2", "Int32 -1"}},
    {u"New_Language", {R"("FR")", R"("UK")", R"("NL")", R"("DE")", R"("ES")"}},
    {u"New_SubUnitRow", {"Int16 2", "Int16 0", "Int16 3"}},
    {u"New_UnitKind", {"Int16 0", "Int16 1", "Int16 2"}},
    {u"New_SubUnitKind", {"Int16 0", "Int16 1", "Int16 2"}},
    {u"KeyAscii", {"&Int16 46", "&Int16 44", "Int16 46", "&Variant Int32 46", "&Int16 65"}},
    {u"regionalItem", {"Int32 0", "Int32 1", "Int32 2", "Int32 3", "Int32 4"}},
    {u"FieldName", {R"("nom")", R"("ÉTÉ")", R"("absent")"}},
    {u"PadChar", {R"("*")", R"("")", R"("ab")"}},
    {u"Length", {"Int16 0", "Int16 5", "Int32 20", "Int16 -1", "Int32 40000"}},
    {u"Separator", {R"(" ")", R"(";")", R"("")", R"(", ")"}}};

Value SomeArgument(const Slot::Parameter& parameter, QuorlDispatch* registry, Lent& lent) {
  if (parameter.name == u"Combo" && !OneIn(15)) return Combo(lent);
  if (parameter.name == u"Frm" || parameter.name == u"Container") return Form(lent);
  if (parameter.name == u"Reg" && !OneIn(10)) return ObjectOf(registry);
  if (parameter.name == u"Fields" && !OneIn(10)) return Fields(lent);
  if (parameter.name == u"Item" && OneIn(8)) return Form(lent);
  if (parameter.type == VT_DISPATCH) return ReadValue(OneIn(2) ? "Nothing" : "\"texte\"");
  if (OneIn(12)) return SomeVariant();  // something to convert
  const auto known = kByName.find(parameter.name);
  return known == kByName.end() ? OfType(parameter.type) : ReadValue(From(known->second));
}

// ------------------------------------------------------------------------------------------- calls

// A call with all arguments or without the last ones, by position or by name, and now and then
// wrong.
Entry SomeCall(const Slot& slot, QuorlDispatch* registry, Lent& lent) {
  Entry call;
  call.name = slot.name;
  call.flags = slot.function.invoke_kind;
  call.outcome.result = Value{};
  std::size_t count = slot.parameters.size();
  const std::size_t required = count - slot.function.optional_count;
  while (count > required && OneIn(3)) --count;
  if (OneIn(60)) count = Pick(count + 1);
  const bool is_put = slot.function.invoke_kind == DISPATCH_PROPERTYPUT;
  const std::size_t named = !is_put && OneIn(8) ? Pick(count + 1) : count;
  for (std::size_t i = 0; i < count; ++i) {
    const Slot::Parameter& parameter = slot.parameters[i];
    Argument argument{std::nullopt, SomeArgument(parameter, registry, lent)};
    if (i >= named) argument.name = parameter.name;
    if (is_put && i + 1 == count) argument.name = kPutValue;
    call.arguments.push_back(std::move(argument));
  }
  if (OneIn(100))
    call.arguments.insert(call.arguments.begin(), {std::nullopt, ReadValue("Int32 1")});
  if (is_put) call.outcome.result.reset();
  return call;
}

void Call(QuorlDispatch* object, const Entry& call) {
  CallByName(object, IdentifiersOf(object, call), call);
}

struct Share {
  Name class_name;
  std::size_t calls;
};
const std::array<Share, 12> kShares{{{u"Math", 700},
                                     {u"Dates", 60},
                                     {u"Strings", 1000},
                                     {u"DbLib", 500},
                                     {u"RollBuffer", 450},
                                     {u"ComboBoxEx", 120},
                                     {u"Forms", 60},
                                     {u"Global", 3},
                                     {u"Regional", 120},
                                     {u"GUIDs", 50},
                                     {u"Registry", 450},
                                     {u"Money", 500}}};

constexpr const char* kHeader = "locale fr-BE\nscreen 15360 11520\ndiffers GUIDs.CreateGUID\n";

Counted<> Recorded(ParityRecorder* recorder, const Name& class_name) {
  const Counted<> object = NewObject(class_name);
  QuorlDispatch* recorded = nullptr;
  if (object) ParityRecord(recorder, class_name.c_str(), object.Get(), &recorded);
  return Counted<>::Adopt(recorded);
}

bool Exercise(ParityRecorder* recorder, const Share& share, QuorlDispatch* registry) {
  const bool is_registry = share.class_name == u"Registry";
  const Counted<> object =
      is_registry ? Counted<>::Share(registry) : Recorded(recorder, share.class_name);
  if (!object) return false;
  const std::vector<Slot> slots = SlotsOf(object.Get());
  for (std::size_t i = 0; i < share.calls; ++i) {
    Entry find;
    find.name = slots.empty() || OneIn(150) ? u"Inconnu" : slots[0].name;
    if (find.name == u"Inconnu") {
      FindByName(object.Get(), find);
      continue;
    }
    Lent lent;
    // Every member once, then any.
    const Slot& slot = i < slots.size() ? slots[i] : slots[Pick(slots.size())];
    Call(object.Get(), SomeCall(slot, registry, lent));
  }
  return true;
}

}  // namespace

int main(int count, char** values) {
  if (count != 2 || values[1][0] == '-') {
    std::cerr << "usage: parity_sample FILE\n";
    return 2;
  }
  const Header header = ReadLog(std::string(kFirstLine) + '\n' + kHeader).header;
  std::string refused;
  ParityRecorder* recorder = nullptr;
  if (!SetUp(header, QUORL_COMPONENT, "", refused) ||
      ParityOpen(values[1], kHeader, &recorder) < 0) {
    return 1;
  }
  bool is_whole = true;
  {
    const Counted<> registry = Recorded(recorder, u"Registry");
    for (const Share& share : kShares) {
      is_whole = registry && Exercise(recorder, share, registry.Get()) && is_whole;
    }
  }
  ParityClose(recorder);
  return is_whole ? 0 : 1;
}
