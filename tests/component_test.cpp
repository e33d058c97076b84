// The component through its binary contract: libquorl.so is loaded by its path, the catalogue of
// the same sources is linked, and what both say has to agree.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "quorl/frame/class_factory.hpp"
#include "quorl/frame/description.hpp"
#include "quorl/frame/listing.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/screen.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/component.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/store_content.hpp"

namespace quorl {
namespace {

using abi::operator==;

const MemberRow& Member(StringView class_name, StringView name,
                        MemberKind kind = MemberKind::kMethod) {
  for (const MemberRow& member : frame::FindClass(class_name)->members) {
    if (member.name == name && member.kind == kind) return member;
  }
  throw std::out_of_range(Utf8(name));
}

// What a program prints, standard error included; its end code behind it unless that is 0.
std::string OutputOf(const std::string& command) {
  std::string output;
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  char buffer[4096];
  while (const std::size_t size = std::fread(buffer, 1, sizeof(buffer), pipe)) {
    output.append(buffer, size);
  }
  const int code = pclose(pipe);
  return code == 0 ? output : output + "ended with " + std::to_string(code);
}

std::string ContentOfFile(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

// ------------------------------------------------------------------------------------ three ways

using Random = std::minstd_rand;

template <class Choices>
auto OneOf(Random& random, const Choices& choices) {
  return *(std::begin(choices) + random() % std::size(choices));
}

String RandomText(Random& random) {
  constexpr StringView kTexts[] = {u"",
                                   u" ",
                                   u"été",
                                   u"12",
                                   u"-3,5",
                                   u"1e9",
                                   u"deux trois  quatre",
                                   u"01/02/2020",
                                   u"FR",
                                   u"Key\\Sub",
                                   u"{7323691B-C1B8-4582-9D2F-2E8D4CC2ACEA}",
                                   u"\xD800x\0y"};
  if (random() % 16 == 0) return String(300, u'o');
  return String(OneOf(random, kTexts));
}

Int32 RandomWhole(Random& random) {
  constexpr Int32 kNumbers[] = {-1, 0, 1, 2, 3, 7, 40, 40000, -40000, INT32_MAX, INT32_MIN + 1};
  return OneOf(random, kNumbers);
}

Double RandomReal(Random& random) {
  constexpr Double kNumbers[] = {0, 1, -1, 2.5, -1.25, 1.005, 41234.5, 1e15, -1e300};
  return OneOf(random, kNumbers);
}

Variant RandomValue(Random& random) {
  switch (random() % 13) {
    case 0:
      return Null;
    case 1:
      return Missing;
    case 2:
      return static_cast<Int16>(random());
    case 3:
      return RandomWhole(random);
    case 4:
      return RandomReal(random);
    case 5:
      return Currency::FromTenThousandths(static_cast<std::int64_t>(random()) * 1000);
    case 6:
      return Date(static_cast<Double>(random() % 60000));
    case 7:
      return random() % 2 == 0;
    case 8:
      return static_cast<Byte>(random());
    case 9:
      return Array::OfStrings(std::vector<String>{RandomText(random), u"b"});
    case 10:
      return Empty;
    default:
      return RandomText(random);
  }
}

std::map<String, Variant> FormMembers() {
  return {{u"", u"default"},
          {u"BorderStyle", Int16{2}},
          {u"Count", 2},
          {u"Height", 300.5},
          {u"ItemData", Array::WithBounds(VariantType::kInt32, 0, 1)},
          {u"Left", 20},
          {u"List", Array::OfStrings(std::vector<String>{u"deux trois", u"12"})},
          {u"ListCount", Int16{2}},
          {u"ListIndex", Int16{1}},
          {u"MDIChild", false},
          {u"Move", Empty},
          {u"Name", u"Form"},
          {u"ScaleHeight", 4000},
          {u"ScaleWidth", 3000},
          {u"Top", 10},
          {u"Width", 400},
          {u"WindowState", 0}};
}

// One way of calling, with all that its calls can change.
struct Way {
  MemoryStore store;
  FakeHost host{FormMembers()};
  Reference<QuorlDispatch> object;
  Reference<QuorlDispatch> registry;

  // An argument of the type that a slot takes.
  Variant Argument(const frame::TypeRow& type, Random& random) const {
    const bool is_odd = random() % 8 == 0;
    if (type.name == u"Registry") return abi::ObjectOf(is_odd ? nullptr : registry.Get());
    switch (type.type) {
      case VariantType::kInt16:
        if (type.by_reference) return Int16(is_odd ? u'.' : u',');
        [[fallthrough]];
      case VariantType::kInt32:
        return is_odd ? RandomWhole(random) : static_cast<Int32>(random() % 5);
      case VariantType::kDouble:
        return RandomReal(random);
      case VariantType::kCurrency:
        return Currency::FromTenThousandths(static_cast<std::int64_t>(random()) * 1000);
      case VariantType::kString:
        return RandomText(random);
      case VariantType::kObject:
        return abi::ObjectOf(is_odd ? nullptr : const_cast<FakeHost*>(&host));
      default:
        return RandomValue(random);
    }
  }
};

CallResult CallInCpp(QuorlDispatch* object, const ClassRow& row, const MemberRow& member,
                     std::span<Variant> arguments) {
  try {
    auto* instance = row.instance(static_cast<frame::ComponentObject*>(object));
    return {member.call(instance, arguments), S_OK, 0, {}, {}};
  } catch (const RaisedError& error) {
    return CallResult::Of(error);
  }
}

using Call = CallResult (*)(QuorlDispatch*, const ClassRow&, const MemberRow&, std::span<Variant>);

class ThreeWays : public testing::TestWithParam<int> {
 protected:
  const ClassRow& row_ = frame::Catalogue()[static_cast<std::size_t>(GetParam())];
};

TEST_P(ThreeWays, GiveTheSameResultOrFailure) {
  constexpr int kSteps = 4600;
  constexpr Call kCalls[] = {&CallInCpp, &CallBySlot, &CallByName};
  const LocaleScope locale(*Locale::Named(u"fr-BE"));
  const Library library;
  {
    Way ways[3];
    for (Way& way : ways) {
      const ScopedStore store(way.store);
      const auto make = [&](StringView name) {
        const ClassRow& row = *frame::FindClass(name);
        return &way == &ways[0]
                   ? Reference<QuorlDispatch>::Adopt(row.make(row, frame::Holder::kHost))
                   : library.Make(name);
      };
      way.object = make(row_.name);
      way.registry = make(u"Registry");
    }
    Random random(static_cast<unsigned>(GetParam()));
    int failures = 0;
    for (int step = 0; step < kSteps && !row_.members.empty(); ++step) {
      const MemberRow& member = row_.members[random() % row_.members.size()];
      const auto seed = random();
      CallResult results[3];
      std::vector<Variant> arguments[3];
      for (int i = 0; i < 3; ++i) {
        const ScopedStore store(ways[i].store);
        Random own(seed);
        for (std::size_t k = 0; k < member.arguments.count; ++k) {
          arguments[i].push_back(ways[i].Argument(member.types.elements[k], own));
        }
        results[i] = kCalls[i](ways[i].object.Get(), row_, member, arguments[i]);
        if (member.name == u"CreateGUID") results[i].value = Empty;
      }
      failures += results[0].code != S_OK;
      for (int i = 1; i < 3; ++i) {
        ASSERT_EQ(results[i], results[0])
            << Utf8(member.name) << (i == 1 ? " by slot, step " : " by name, step ") << step
            << testing::PrintToString(arguments[i]);
        const bool is_written = member.types.elements[0].by_reference;
        ASSERT_TRUE(!is_written || arguments[i][0] == arguments[0][0]) << step;
        ASSERT_EQ(ways[i].host.journal, ways[0].host.journal) << Utf8(member.name);
        ways[i].host.journal.clear();
      }
      ways[0].host.journal.clear();
    }
    EXPECT_EQ(ContentOf(ways[1].store), ContentOf(ways[0].store));
    EXPECT_EQ(ContentOf(ways[2].store), ContentOf(ways[0].store));
    for (const Way& way : ways) EXPECT_EQ(way.host.references, 1u);
    EXPECT_TRUE(failures > kSteps / 100 || row_.members.size() < 5 || row_.name == u"Regional");
  }
  EXPECT_EQ(library.can_unload_now(), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Classes, ThreeWays, testing::Range(0, 12), [](const auto& class_place) {
  return Utf8(frame::Catalogue()[static_cast<std::size_t>(class_place.param)].name);
});

// ---------------------------------------------------------------------------------- calls by name

class Component : public testing::Test {
 protected:
  Component() { SetErrorInfo(0, nullptr); }

  MemoryStore store_;
  ScopedStore guard_{store_};
  LocaleScope locale_{*Locale::Named(u"fr-BE")};
  Library library_;
};

TEST_F(Component, ArgumentsByNameByPositionAndLeftOut) {
  const auto strings = library_.Make(u"Strings");
  const auto get = [&](std::vector<std::pair<std::int32_t, Variant>> named,
                       std::vector<Variant> positional) {
    return Shown(CallNamed(strings.Get(), u"GETtoken", DISPATCH_METHOD, named, positional).value);
  };
  EXPECT_EQ(get({}, {u"a b c"}), Shown(Variant(u"a")));
  EXPECT_EQ(get({}, {u"a b;c", u";", 2}), Shown(Variant(u"c")));
  EXPECT_EQ(get({{2, u"3"}}, {u"a b c"}), Shown(Variant(u"c")));
  EXPECT_EQ(get({{2, 2.4}, {0, u"a;b"}, {1, u";"}}, {}), Shown(Variant(u"b")));
  EXPECT_EQ(get({}, {u"a b", Missing, 2}), Shown(Variant(u"b")));
  EXPECT_EQ(get({{1, Missing}}, {u"a b"}), Shown(Variant(u"a")));
  const auto forms = library_.Make(u"Dates");
  EXPECT_EQ(CallNamed(forms.Get(), u"IsDateOrEmpty", 3, {}, {Empty}).value, Variant(true));
}

TEST_F(Component, ArgumentsByReferenceAreReadThroughAndWrittenBack) {
  const auto regional = library_.Make(u"Regional");
  const std::int32_t id =
      IdentifierOf(*frame::FindClass(u"Regional"), Member(u"Regional", u"ConvertDecimalPoint"));
  const auto call = [&](VARIANT argument) {
    return Invoke(regional.Get(), id, DISPATCH_METHOD, {&argument, nullptr, 1, 0}).code;
  };
  const auto reference = [](int vt, void* place) {
    VARIANT value{};
    value.vt = static_cast<std::uint16_t>(vt | VT_BYREF);
    value.value.reference = place;
    return value;
  };
  std::int16_t key = u'.';
  EXPECT_EQ(call(reference(VT_I2, &key)), S_OK);
  EXPECT_EQ(key, u',');
  std::int32_t wide_key = u'.';
  EXPECT_EQ(call(reference(VT_I4, &wide_key)), S_OK);
  EXPECT_EQ(wide_key, u',');
  OwnedVariant variant_key(Variant(u"46"));  // a text; what is written is the number
  EXPECT_EQ(call(reference(VT_VARIANT, variant_key.Address())), S_OK);
  EXPECT_EQ(abi::FromBinary(variant_key.Get()), Variant(Int16{u','}));
  key = u'.';
  VARIANT inner = reference(VT_I2, &key);
  EXPECT_EQ(call(reference(VT_VARIANT, &inner)), S_OK);
  EXPECT_EQ(key, u',');
  EXPECT_EQ(inner.vt, VT_I2 | VT_BYREF);
  EXPECT_EQ(call(abi::ToBinary(Variant(Int16{u'.'}))), S_OK);
  EXPECT_EQ(SlotArguments().Call(regional.Get(), 10), E_POINTER);

  // Every other argument is read through a reference too.
  const auto math = library_.Make(u"Math");
  double number = 2.5;
  std::int16_t digits = 0;
  VARIANT arguments[] = {reference(VT_I2, &digits), reference(VT_R8, &number)};
  EXPECT_EQ(Invoke(math.Get(), 1, DISPATCH_METHOD, {arguments, nullptr, 2, 0}).value, Variant(3.0));
}

TEST_F(Component, GetsAndPutsOfPropertiesShareAnIdentifier) {
  const auto buffer = library_.Make(u"RollBuffer");
  const auto put = [&](const char16_t* name, std::uint16_t flags, const Variant& value) {
    return CallNamed(buffer.Get(), name, flags, {{QUORL_PUT_VALUE, value}}).code;
  };
  const auto get = [&](const char16_t* name, std::vector<Variant> index = {}) {
    return CallNamed(buffer.Get(), name, DISPATCH_PROPERTYGET, {}, std::move(index));
  };
  EXPECT_EQ(put(u"BufferSize", DISPATCH_PROPERTYPUT, u"3"), S_OK);
  EXPECT_EQ(get(u"buffersize").value, Variant(3));
  EXPECT_EQ(put(u"BufferSize", DISPATCH_PROPERTYPUTREF, 4), S_OK);
  EXPECT_EQ(get(u"BufferSize").value, Variant(4));
  for (const Variant& item : {Variant(u"a"), Variant(Null), Variant(7)}) {
    EXPECT_EQ(CallNamed(buffer.Get(), u"AddItem", DISPATCH_METHOD, {}, {item}).code, S_OK);
  }
  EXPECT_EQ(get(u"Items", {0}).value, Variant(u"a"));
  EXPECT_EQ(get(u"Items", {1}).value, Variant(Null));
  EXPECT_EQ(get(u"Items", {9}).number, 5000);
  EXPECT_EQ(put(u"Items", DISPATCH_PROPERTYPUT, 1), DISP_E_MEMBERNOTFOUND);
  // An object is taken as a put's value by reference just as by value.
  FakeHost host;
  EXPECT_EQ(put(u"CurrentItem", DISPATCH_PROPERTYPUTREF, abi::ObjectOf(&host)), S_OK);
  EXPECT_EQ(abi::ForeignPointerOf(ToObject(get(u"CurrentItem").value)), &host);
  EXPECT_EQ(CallNamed(buffer.Get(), u"Clear", DISPATCH_METHOD, {}).value, Variant());
  EXPECT_EQ(put(u"BufferSize", DISPATCH_PROPERTYPUT, 1), S_OK);
  EXPECT_EQ(host.references, 1u);

  for (const ClassRow& row : frame::Catalogue()) {
    for (const MemberRow& member : row.members) {
      const auto id = IdentifierOf(row, member);
      EXPECT_GT(id, 0);
      for (const MemberRow& other : row.members) {
        EXPECT_EQ(id == IdentifierOf(row, other), member.name == other.name) << Utf8(member.name);
      }
    }
  }
}

TEST_F(Component, NamesOfMembersAndArgumentsHaveIdentifiers) {
  const auto strings = library_.Make(u"Strings");
  struct Question {
    std::vector<const char16_t*> names;
    HRESULT code;
    std::vector<std::int32_t> ids;
  };
  const std::int32_t padl =
      IdentifierOf(*frame::FindClass(u"Strings"), Member(u"Strings", u"Padl"));
  const Question questions[] = {
      {{u"PADL"}, S_OK, {padl}},
      {{u"padl", u"PadChar", u"TEXT", u"length"}, S_OK, {padl, 2, 0, 1}},
      {{u"padl", u"Text", u"nothing", u"Length"}, DISP_E_UNKNOWNNAME, {padl, 0, -1, 1}},
      {{u"Pad", u"Text"}, DISP_E_UNKNOWNNAME, {-1, -1}},
      {{u""}, DISP_E_UNKNOWNNAME, {-1}},
  };
  for (Question question : questions) {
    std::vector<std::int32_t> ids(question.names.size(), 99);
    EXPECT_EQ(
        strings.Get()->table->GetIDsOfNames(strings.Get(), nullptr, question.names.data(),
                                            static_cast<std::uint32_t>(ids.size()), 0, ids.data()),
        question.code);
    EXPECT_EQ(ids, question.ids) << Shown(StringView(question.names[0]));
  }
  std::int32_t id = 0;
  const char16_t* name = nullptr;
  const auto ask = [&](const char16_t** names, std::uint32_t count, std::int32_t* ids) {
    return strings.Get()->table->GetIDsOfNames(strings.Get(), nullptr, names, count, 0, ids);
  };
  EXPECT_EQ(ask(nullptr, 1, &id), E_POINTER);
  EXPECT_EQ(ask(&name, 1, &id), E_POINTER);
  EXPECT_EQ(ask(&name, 1, nullptr), E_POINTER);
  EXPECT_EQ(ask(&name, UINT32_MAX, &id), E_INVALIDARG);
}

// A VARIANT of any number with any content.
VARIANT Raw(int vt, std::int64_t content = 0) {
  VARIANT value{};
  value.vt = static_cast<std::uint16_t>(vt);
  value.value.cy = content;
  return value;
}

VARIANT Raw(int vt, const void* content) {
  return Raw(vt, reinterpret_cast<std::int64_t>(content));
}

TEST_F(Component, WrongCallsGetTheirCodes) {
  const auto strings = library_.Make(u"Strings");
  const ClassRow& row = *frame::FindClass(u"Strings");
  const std::int32_t padl = IdentifierOf(row, Member(u"Strings", u"Padl"));
  std::vector<OwnedVariant> owned;
  for (const Variant& value : {Variant(5), Variant(u"ab"), Variant(u"x"), Variant(1)}) {
    owned.emplace_back(value);
  }
  VARIANT two[] = {owned[0].Get(), owned[1].Get()};
  VARIANT four[] = {owned[3].Get(), owned[2].Get(), owned[0].Get(), owned[1].Get()};
  VARIANT missing[] = {Raw(VT_ERROR, DISP_E_PARAMNOTFOUND), owned[1].Get()};
  std::int32_t unknown[] = {3};
  std::int32_t negative[] = {-3};
  std::int32_t twice[] = {1, 1};
  std::int32_t same_place[] = {0};
  struct Case {
    const char* what;
    std::int32_t id;
    std::uint16_t flags;
    DISPPARAMS parameters;
    HRESULT code;
  };
  const Case cases[] = {
      {"good", padl, 1, {two, nullptr, 2, 0}, S_OK},
      {"good as any kind", padl, 15, {two, nullptr, 2, 0}, S_OK},
      {"no such identifier", 99, 1, {two, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND},
      {"identifier 0", 0, 3, {two, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND},
      {"negative identifier", INT32_MIN, 3, {two, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND},
      {"a get of a method", padl, 2, {two, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND},
      {"a put of a method", padl, 12, {two, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND},
      {"no kind", padl, 0, {two, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND},
      {"unknown named", padl, 1, {two, unknown, 2, 1}, DISP_E_PARAMNOTFOUND},
      {"put value named in a method", padl, 1, {two, negative, 2, 1}, DISP_E_PARAMNOTFOUND},
      {"named twice", padl, 1, {two, twice, 2, 2}, DISP_E_PARAMNOTFOUND},
      {"named and by position", padl, 1, {two, same_place, 2, 1}, DISP_E_PARAMNOTFOUND},
      {"too many", padl, 1, {four, nullptr, 4, 0}, DISP_E_BADPARAMCOUNT},
      {"absurdly many", padl, 1, {two, nullptr, UINT32_MAX, 0}, DISP_E_BADPARAMCOUNT},
      {"more names than arguments", padl, 1, {two, twice, 1, 2}, DISP_E_BADPARAMCOUNT},
      {"absurdly many names", padl, 1, {two, twice, 2, UINT32_MAX}, DISP_E_BADPARAMCOUNT},
      {"required absent", padl, 1, {two + 1, nullptr, 1, 0}, DISP_E_PARAMNOTOPTIONAL},
      {"none", padl, 1, {nullptr, nullptr, 0, 0}, DISP_E_PARAMNOTOPTIONAL},
      {"required Missing", padl, 1, {missing, nullptr, 2, 0}, DISP_E_PARAMNOTOPTIONAL},
      {"null arguments", padl, 1, {nullptr, nullptr, 2, 0}, E_POINTER},
      {"null names", padl, 1, {two, nullptr, 2, 1}, E_POINTER},
  };
  for (const Case& known : cases) {
    EXPECT_EQ(Invoke(strings.Get(), known.id, known.flags, known.parameters).code, known.code)
        << known.what;
    EXPECT_EQ(TakenErrorInfo(), CallResult()) << known.what;
  }
  auto* table = strings.Get()->table;
  std::uint32_t wrong = 9;
  DISPPARAMS parameters{two, unknown, 2, 1};
  EXPECT_EQ(table->Invoke(strings.Get(), padl, nullptr, 0, 1, nullptr, nullptr, nullptr, nullptr),
            E_POINTER);
  EXPECT_EQ(
      table->Invoke(strings.Get(), padl, nullptr, 0, 1, &parameters, nullptr, nullptr, &wrong),
      DISP_E_PARAMNOTFOUND);
  EXPECT_EQ(wrong, 0u);
  parameters = {two, nullptr, 2, 0};
  EXPECT_EQ(
      table->Invoke(strings.Get(), padl, nullptr, 0, 1, &parameters, nullptr, nullptr, nullptr),
      S_OK);
}

TEST_F(Component, DamagedArgumentsFailWith13) {
  const ClassRow& row = *frame::FindClass(u"RollBuffer");
  const MemberRow& add_item = Member(u"RollBuffer", u"AddItem");
  const auto buffer = library_.Make(u"RollBuffer");
  const auto add = [&](VARIANT argument) {
    SlotArguments arguments;
    arguments.AddVariant(argument);
    const HRESULT code = arguments.Call(buffer.Get(), 20);
    const CallResult named = Invoke(buffer.Get(), IdentifierOf(row, add_item), DISPATCH_METHOD,
                                    {&argument, nullptr, 1, 0});
    EXPECT_EQ(code, named.code == S_OK ? S_OK : QUORL_CODE(0x800A0000 + named.number));
    return named.number;
  };
  for (int vt = 0; vt <= UINT16_MAX; ++vt) {
    const int single = vt & ~(VT_BYREF | VT_ARRAY);
    const bool is_known = single <= VT_BOOL || single == VT_UI1;
    // A null text or object is one; a null reference or array is damage.
    const bool is_good = is_known && vt == single && vt != VT_ERROR;
    EXPECT_EQ(add(Raw(vt)), is_good ? 0 : 13) << vt;
  }
  VARIANT self{};
  self = Raw(VT_BYREF | VT_VARIANT, &self);
  EXPECT_EQ(add(self), 13);
  VARIANT ring[2] = {Raw(VT_BYREF | VT_VARIANT, &ring[1]), Raw(VT_BYREF | VT_VARIANT, &ring[0])};
  EXPECT_EQ(add(ring[0]), 13);

  // Arrays: one good, the same damaged in each of its fields, and two without an end.
  const QuorlBound bounds[] = {{2, 0}};
  struct Damage {
    const char* what;
    int vt;
    void (*work)(SAFEARRAY&);
    bool is_good;
  };
  const Damage damages[] = {
      {"none", VT_I4, [](SAFEARRAY&) {}, true},
      {"laid out by a host", VT_I4, [](SAFEARRAY& array) { array.features = 0x12; }, true},
      {"of other elements", VT_R4, [](SAFEARRAY&) {}, false},
      {"of texts it says", VT_BSTR, [](SAFEARRAY&) {}, false},
      {"no data", VT_I4, [](SAFEARRAY& array) { array.data = nullptr; }, false},
      {"other size", VT_I4, [](SAFEARRAY& array) { array.element_size = 8; }, false},
      {"no dimension", VT_I4, [](SAFEARRAY& array) { array.dimensions = 0; }, false},
      {"many dimensions", VT_I4, [](SAFEARRAY& array) { array.dimensions = 0xFFFF; }, false},
      {"absurd count", VT_I4, [](SAFEARRAY& array) { array.bounds[0].count = UINT32_MAX; }, false},
      {"absurd bound", VT_I4, [](SAFEARRAY& array) { array.bounds[0].lower = INT32_MAX; }, false},
  };
  for (const Damage& damage : damages) {
    SAFEARRAY* array = SafeArrayCreate(VT_I4, 1, bounds);
    const SAFEARRAY sound = *array;
    damage.work(*array);
    EXPECT_EQ(add(Raw(VT_ARRAY | damage.vt, array)), damage.is_good ? 0 : 13) << damage.what;
    EXPECT_EQ(add(Raw(VT_ARRAY | VT_BYREF | damage.vt, &array)), damage.is_good ? 0 : 13);
    VARIANT copy{};
    const VARIANT source = Raw(VT_ARRAY | damage.vt, array);
    EXPECT_EQ(VariantCopy(&copy, &source) == S_OK, damage.is_good) << damage.what;
    VariantClear(&copy);
    *array = sound;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  }
  // An array of itself twice has as many elements as there are paths.
  SAFEARRAY* endless = SafeArrayCreate(VT_VARIANT, 1, bounds);
  auto* elements = static_cast<VARIANT*>(endless->data);
  for (int i : {0, 1}) elements[i] = Raw(VT_ARRAY | VT_VARIANT, endless);
  EXPECT_EQ(add(elements[0]), 13);
  VARIANT copy{};
  EXPECT_EQ(VariantCopy(&copy, &elements[0]), E_OUTOFMEMORY);
  for (int i : {0, 1}) VariantInit(&elements[i]);
  EXPECT_EQ(SafeArrayDestroy(endless), S_OK);
}

// ---------------------------------------------------------------------------- calls through slots

TEST_F(Component, ASlotClearsItsResultAndSetsErrorInfo) {
  const auto strings = library_.Make(u"Strings");
  auto* object = reinterpret_cast<QuorlStrings*>(strings.Get());
  BSTR text = SysAllocString(u"abc");
  BSTR pad = SysAllocString(u"*");
  EXPECT_EQ(object->table->Padl(object, text, 5, pad, nullptr), E_POINTER);
  EXPECT_EQ(object->table->StrCount(object, text, pad, nullptr), E_POINTER);
  EXPECT_EQ(TakenErrorInfo(), CallResult());
  // The result's slot may be the place of an argument.
  EXPECT_EQ(object->table->Padl(object, text, 5, pad, &text), S_OK);
  EXPECT_EQ(abi::ViewOf(text), u"**abc");
  const CallResult overflow{
      {}, S_OK, 0, String(kRuntimeSource), String(DescriptionOf(FailureNumber::kOverflow))};
  EXPECT_EQ(object->table->Padl(object, text, 40000, pad, &text), QUORL_CODE(0x800A0006));
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(TakenErrorInfo(), overflow);
  EXPECT_EQ(TakenErrorInfo(), CallResult());
  // Another thread has its own; a success leaves what is there.
  EXPECT_EQ(object->table->Padl(object, nullptr, 40000, pad, &text), QUORL_CODE(0x800A0006));
  std::thread([] { EXPECT_EQ(TakenErrorInfo(), CallResult()); }).join();
  EXPECT_EQ(object->table->DigitsOf(object, nullptr, &text), S_OK);
  EXPECT_EQ(TakenErrorInfo(), overflow);
  SysFreeString(text);
  SysFreeString(pad);
  EXPECT_EQ(GetErrorInfo(0, nullptr), E_POINTER);
  EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
}

TEST_F(Component, ACallByNameLeavesErrorInfoAlone) {
  const auto math = library_.Make(u"Math");
  const CallResult failure = CallNamed(math.Get(), u"RoundSup", 1, {}, {1, -1});
  EXPECT_EQ(failure, (CallResult{{},
                                 DISP_E_EXCEPTION,
                                 5000,
                                 u"Quorl.Math",
                                 u"Le nombre de décimales doit être supérieur ou égal à 0."}));
  EXPECT_EQ(TakenErrorInfo(), CallResult());
  EXPECT_EQ(CallNamed(math.Get(), u"RoundSup", 1, {}, {Null}).number, 94);
  EXPECT_EQ(CallNamed(math.Get(), u"RoundSup", 1, {}, {u"?"}).number, 13);
  EXPECT_EQ(CallNamed(math.Get(), u"RoundSup", 1, {}, {1, 40000}).number, 6);
}

// ------------------------------------------------------------------------- objects and their life

TEST_F(Component, EveryIdentifierOfAClassGivesItsTable) {
  for (const ClassRow& row : frame::Catalogue()) {
    const auto object = library_.Make(row, IID_IUnknown);
    const auto& table = *object.Get()->table;
    for (const GUID& identifier : row.interfaces) {
      const auto again = library_.Make(row, identifier);
      EXPECT_EQ(again.Get()->table, &table) << Utf8(row.name);
      Reference<QuorlDispatch> same;
      EXPECT_EQ(table.QueryInterface(object.Get(), &identifier, same.Receive()), S_OK);
      EXPECT_EQ(same.Get(), object.Get());
      Reference<QuorlSupportErrorInfo> support;
      EXPECT_EQ(table.QueryInterface(object.Get(), &IID_ISupportErrorInfo, support.Receive()),
                S_OK);
      const auto& supports = *support.Get()->table;
      EXPECT_EQ(supports.InterfaceSupportsErrorInfo(support.Get(), &identifier), S_OK);
      EXPECT_EQ(supports.InterfaceSupportsErrorInfo(support.Get(), &row.identifier), S_FALSE);
      Reference<QuorlDispatch> back;
      EXPECT_EQ(supports.QueryInterface(support.Get(), &IID_IUnknown, back.Receive()), S_OK);
      EXPECT_EQ(back.Get(), object.Get());
    }
    void* out = &out;
    EXPECT_EQ(table.QueryInterface(object.Get(), &row.identifier, &out), E_NOINTERFACE);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(table.QueryInterface(object.Get(), nullptr, &out), E_POINTER);
    EXPECT_EQ(table.QueryInterface(object.Get(), &IID_IUnknown, nullptr), E_POINTER);
  }
}

TEST_F(Component, FactoriesRefuseWhatTheyDoNotMake) {
  const ClassRow& math = *frame::FindClass(u"Math");
  const GUID& interface = math.CurrentInterface();
  void* out = &out;
  const auto is_refused = [&](HRESULT given, HRESULT code) {
    const bool is_null = out == nullptr;
    out = &out;
    return given == code && is_null;
  };
  EXPECT_TRUE(is_refused(library_.get_class_object(&interface, &IID_IClassFactory, &out),
                         CLASS_E_CLASSNOTAVAILABLE));
  EXPECT_TRUE(
      is_refused(library_.get_class_object(&math.identifier, &interface, &out), E_NOINTERFACE));
  EXPECT_TRUE(is_refused(library_.get_class_object(nullptr, &interface, &out), E_POINTER));
  EXPECT_TRUE(is_refused(library_.get_class_object(&math.identifier, nullptr, &out), E_POINTER));
  EXPECT_EQ(library_.get_class_object(&math.identifier, &interface, nullptr), E_POINTER);
  const auto factory = library_.Factory(math);
  const auto& table = *factory.Get()->table;
  EXPECT_TRUE(is_refused(table.CreateInstance(factory.Get(), &out, &IID_IUnknown, &out),
                         CLASS_E_NOAGGREGATION));
  EXPECT_TRUE(is_refused(table.CreateInstance(factory.Get(), nullptr, &IID_IErrorInfo, &out),
                         E_NOINTERFACE));
  EXPECT_TRUE(is_refused(table.CreateInstance(factory.Get(), nullptr, nullptr, &out), E_POINTER));
  EXPECT_EQ(table.CreateInstance(factory.Get(), nullptr, &IID_IUnknown, nullptr), E_POINTER);

  // A failure while the instance is made is one of a call through a table.
  RecordingStore failing(store_);
  const ScopedStore guard(failing);
  const auto regional = library_.Factory(*frame::FindClass(u"Regional"));
  failing.FailAt(0, kAccessDenied);
  EXPECT_TRUE(is_refused(
      regional.Get()->table->CreateInstance(regional.Get(), nullptr, &IID_IUnknown, &out),
      QUORL_CODE(0x800A0005)));
  EXPECT_EQ(TakenErrorInfo().source, u"qlWinRegistry");
}

TEST_F(Component, StaysLoadedAsLongAsAHostUsesIt) {
  const auto can_unload = [&] { return library_.can_unload_now() == S_OK; };
  const ClassRow& row = *frame::FindClass(u"RollBuffer");
  EXPECT_TRUE(can_unload());
  {
    const auto factory = library_.Factory(row);
    EXPECT_FALSE(can_unload());
    EXPECT_EQ(factory.Get()->table->LockServer(factory.Get(), 0), E_UNEXPECTED);
    EXPECT_EQ(factory.Get()->table->LockServer(factory.Get(), 1), S_OK);
  }
  EXPECT_FALSE(can_unload());
  {
    const auto factory = library_.Factory(row);
    EXPECT_EQ(factory.Get()->table->LockServer(factory.Get(), 0), S_OK);
  }
  EXPECT_TRUE(can_unload());
  void* type_info = nullptr;
  {
    auto object = library_.Make(u"RollBuffer");
    EXPECT_EQ(object.Get()->table->GetTypeInfo(object.Get(), 0, 0, &type_info), S_OK);
    std::thread([&] { Reference<QuorlDispatch>::Adopt(object.Detach()); }).join();
  }
  EXPECT_FALSE(can_unload());
  static_cast<QuorlTypeInfo*>(type_info)->table->Release(static_cast<QuorlTypeInfo*>(type_info));
  EXPECT_TRUE(can_unload());
}

TEST_F(Component, CanBeUnloadedAndLoadedAgain) {
  for (int round = 0; round < 3; ++round) {
    const Library library;
    const auto factory = library.Factory<QuorlGlobalFactory>(*frame::FindClass(u"Regional"),
                                                             QUORL_IID_GLOBAL_FACTORY);
    Reference<QuorlDispatch> regional;
    EXPECT_EQ(factory.Get()->table->GetGlobalObject(factory.Get(), regional.Receive()), S_OK);
    // Long enough to have memory of its own, which has to go with the library.
    EXPECT_EQ(
        CallNamed(regional.Get(), u"SetRegional", DISPATCH_METHOD, {}, {0, String(99, u'x')}).code,
        S_OK);
    EXPECT_EQ(CallNamed(regional.Get(), u"NumDecimalChar", DISPATCH_PROPERTYGET, {}).value,
              Variant(String(99, u'x')));
  }
}

// In a process of its own, with no other library open.
TEST(ComponentProcess, LeavesTheProcessWhenItIsUnloaded) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto unload = [] {
    QuorlSetStore(nullptr, nullptr);
    {
      const Library library;
      const auto object = library.Make(u"Money");
      if (library.can_unload_now() != S_FALSE) std::exit(2);
    }
    std::exit(dlopen(kComponentPath, RTLD_NOLOAD | RTLD_NOW) == nullptr ? 0 : 3);
  };
  EXPECT_EXIT(unload(), testing::ExitedWithCode(0), "");
}

// ------------------------------------------------------------------------------------ host objects

TEST_F(Component, CallsAHostsObjectByTheRules) {
  FakeHost host(FormMembers());
  const auto combo = library_.Make(u"ComboBoxEx");
  const Variant object = abi::ObjectOf(&host);
  const auto call = [&](const char16_t* member, std::vector<Variant> arguments) {
    return CallNamed(combo.Get(), member, DISPATCH_METHOD, {}, std::move(arguments));
  };
  EXPECT_EQ(call(u"CmbSelectMatchString", {object, u"12"}).code, S_OK);
  EXPECT_EQ(host.journal, (std::vector<std::string>{"ListCount 2", "List 3 &Int16 0",
                                                    "List 3 &Int16 1", "ListIndex 4 -3:Int16 1"}));
  host.journal.clear();
  EXPECT_EQ(call(u"CmbCurrentItemData", {object, 5}).value, Variant(0));
  EXPECT_EQ(host.journal,
            (std::vector<std::string>{"ListIndex 2", "ListIndex 2", "ItemData 3 Int16 1"}));
  host.journal.clear();
  const auto forms = library_.Make(u"Forms");
  EXPECT_EQ(CallNamed(forms.Get(), u"InitFormSettings", 1, {}, {object, Missing, 10, 20}).code,
            S_OK);
  EXPECT_EQ(host.journal.back(), "Move 1 Double 20 Double 10 Double 100 Double 100");
  // The default member of a plain value's object.
  host.journal.clear();
  const auto strings = library_.Make(u"Strings");
  EXPECT_EQ(CallNamed(strings.Get(), u"Pluriel", 1, {}, {object}).value, Variant(u"defaults"));
  EXPECT_EQ(host.journal, std::vector<std::string>{" 2"});
}

TEST_F(Component, AHostsFailureReachesTheCallerAsItIs) {
  FakeHost host(FormMembers());
  const auto fill = [](EXCEPINFO* info, std::int32_t scode, std::uint16_t code) {
    info->source = SysAllocString(u"Host");
    info->description = SysAllocString(u"Rien à faire");
    info->help_file = SysAllocString(u"help");
    info->scode = scode;
    info->code = code;
  };
  static const auto fill_later = [](EXCEPINFO* info) -> HRESULT {
    info->description = SysAllocString(u"plus tard");
    info->scode = QUORL_CODE(0x800A0009);
    return S_OK;
  };
  struct Case {
    const char* what;
    FakeHost::Failure failure;
    Int32 number;
    String source;
    String description;
  };
  const auto record = [&](std::int32_t scode, std::uint16_t code) {
    return [=](VARIANT*, EXCEPINFO* info) { return fill(info, scode, code), DISP_E_EXCEPTION; };
  };
  const Case cases[] = {
      {"a number", record(QUORL_CODE(0x800A1388), 7), 5000, u"Host", u"Rien à faire"},
      {"a code", record(E_OUTOFMEMORY, 7), E_OUTOFMEMORY, u"Host", u"Rien à faire"},
      {"the other field", record(0, 1004), 1004, u"Host", u"Rien à faire"},
      {"filled later",
       [](VARIANT*, EXCEPINFO* info) { return info->fill_in = fill_later, DISP_E_EXCEPTION; }, 9,
       u"", u"plus tard"},
      {"no such member", [](VARIANT*, EXCEPINFO*) { return DISP_E_MEMBERNOTFOUND; }, 438,
       String(kRuntimeSource), String(DescriptionOf(FailureNumber::kNoSuchMember))},
      {"a result and texts behind another code",
       [&](VARIANT* result, EXCEPINFO* info) {
         *result = abi::ToBinary(Variant(u"left behind"));
         return fill(info, 0, 0), DISP_E_BADPARAMCOUNT;
       },
       DISP_E_BADPARAMCOUNT, String(kRuntimeSource), u"L'objet appelé a signalé un échec."},
      {"a damaged result", [](VARIANT* result, EXCEPINFO*) { return *result = Raw(99), S_OK; }, 13,
       String(kRuntimeSource), String(DescriptionOf(FailureNumber::kTypeMismatch))},
  };
  const auto combo = library_.Make(u"ComboBoxEx");
  const MemberRow& member = Member(u"ComboBoxEx", u"CmbSelectItemData");
  for (const Case& known : cases) {
    host.failure = known.failure;
    const CallResult expected{{}, DISP_E_EXCEPTION, known.number, known.source, known.description};
    for (const Call call : {&CallBySlot, &CallByName}) {
      std::vector<Variant> arguments{abi::ObjectOf(&host), 1};
      EXPECT_EQ(call(combo.Get(), *frame::FindClass(u"ComboBoxEx"), member, arguments), expected)
          << known.what;
    }
  }
  host.failure = nullptr;
  host.members.erase(u"ListCount");
  EXPECT_EQ(CallNamed(combo.Get(), u"CmbSelectItemData", 1, {}, {abi::ObjectOf(&host), 1}).number,
            438);
  EXPECT_EQ(host.references, 1u);
}

TEST_F(Component, FormsTakeARegistryOfTheLibrary) {
  FakeHost form(FormMembers());
  const auto forms = library_.Make(u"Forms");
  const auto registry = library_.Make(u"Registry");
  const auto math = library_.Make(u"Math");
  struct Hosted : LateBound {};
  struct Case {
    const char* what;
    Object registry;
    Int32 number;
  };
  const Case cases[] = {{"a Registry", abi::ObjectOf(registry.Get()), 0},
                        {"null", Object(), 91},
                        {"another class", abi::ObjectOf(math.Get()), 13},
                        {"a host's object", abi::ObjectOf(&form), 13},
                        {"a host's object in C++", MakeObject<Hosted>(), 13}};
  const ClassRow& row = *frame::FindClass(u"Forms");
  for (const Case& known : cases) {
    for (const Call call : {&CallBySlot, &CallByName}) {
      std::vector<Variant> arguments{known.registry, abi::ObjectOf(&form), u"F"};
      EXPECT_EQ(call(forms.Get(), row, Member(u"Forms", u"SaveFormSettings"), arguments).number,
                known.number)
          << known.what;
    }
  }
  EXPECT_EQ(
      CallNamed(forms.Get(), u"SaveFormSettings", 1, {}, {u"text", abi::ObjectOf(&form)}).number,
      13);
}

// ------------------------------------------------------------------------------------ registration

std::string ExpectedRegistration(const std::string& path) {
  MemoryStore expected;
  const auto save = [&](const std::string& key, const std::string& value,
                        const std::string& name = "") {
    EXPECT_EQ(Save(expected, kClassesRoot, key, name, value + '\0'), kDone);
  };
  const auto text = [](const GUID& guid) {
    char16_t buffer[39];
    EXPECT_EQ(StringFromGUID2(&guid, buffer, 39), 39);
    return Utf8(StringView(buffer, 38));
  };
  const std::string library = "{F9B439FC-91D9-4814-8FA0-62AB9D090FA0}";
  save("TypeLib\\" + library, "Quorl");
  for (const ClassRow& row : frame::Catalogue()) {
    const std::string name = "Quorl." + Utf8(row.name);
    const std::string key = "CLSID\\" + text(row.identifier);
    save(name, name);
    save(name + "\\Clsid", text(row.identifier));
    save(key, name);
    save(key + "\\InprocServer32", path);
    save(key + "\\InprocServer32", "Apartment", "ThreadingModel");
    save(key + "\\ProgID", name);
    save(key + "\\TypeLib", library);
    save(key + "\\VERSION", "1." + std::to_string(row.interfaces.size() - 1));
    if (row.kind == frame::ClassKind::kGlobal) save(key + "\\Global", "");
    for (std::size_t k = 0; k < row.interfaces.size(); ++k) {
      const bool is_current = k + 1 == row.interfaces.size();
      const std::string former = Utf8(row.name) + "___v" + std::to_string(k);
      save("Interface\\" + text(row.interfaces[k]), is_current ? "_" + Utf8(row.name) : former);
      save("Interface\\" + text(row.interfaces[k]) + "\\TypeLib", library);
    }
  }
  return ContentOf(expected, kClassesRoot);
}

TEST_F(Component, RegistersEveryClassAndUndoesItWhole) {
  const std::string empty = ContentOf(store_, kClassesRoot);
  EXPECT_EQ(library_.unregister_server(), S_OK);
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(library_.register_server(), S_OK);
    EXPECT_EQ(ContentOf(store_, kClassesRoot), ExpectedRegistration(kComponentPath));
  }
  EXPECT_EQ(library_.unregister_server(), S_OK);
  EXPECT_EQ(ContentOf(store_, kClassesRoot), empty);

  Save(store_, kClassesRoot, "CLSID\\{other}\\ProgID", "", "Other.Class");
  Save(store_, kClassesRoot, "Other.Class", "", "x");
  const std::string others = ContentOf(store_, kClassesRoot);
  EXPECT_EQ(library_.register_server(), S_OK);
  EXPECT_EQ(library_.unregister_server(), S_OK);
  EXPECT_EQ(ContentOf(store_, kClassesRoot), others);
  EXPECT_EQ(store_.OpenKeyCount(), 0);
  EXPECT_EQ(ContentOf(store_, kDynData), empty);
}

TEST_F(Component, AFailedRegistrationLeavesNothing) {
  RecordingStore failing(store_);
  const ScopedStore guard(failing);
  for (const bool is_registered : {false, true}) {
    ASSERT_TRUE(!is_registered || library_.register_server() == S_OK);
    const std::string before = ContentOf(store_, kClassesRoot);
    bool has_failed = true;
    for (std::size_t place = 0; has_failed; place += place < 12 ? 1 : 17) {
      failing.FailAt(place, kDiskFull);
      const HRESULT code = library_.register_server();
      has_failed = code != S_OK;
      if (has_failed) {
        EXPECT_EQ(code, QUORL_CODE(0x80070070)) << place;
        EXPECT_EQ(ContentOf(store_, kClassesRoot), before) << place;
      }
      // The clearing of the draft is the only call whose failure does not matter.
      if (place == 0 && !has_failed) has_failed = true;
      if (place == 0) failing.FailNever(), library_.unregister_server();
      if (place == 0 && is_registered) library_.register_server();
    }
  }
  failing.FailAt(0, kAccessDenied);
  EXPECT_EQ(library_.unregister_server(), QUORL_CODE(0x80070005));
}

TEST_F(Component, HostsFindRegisteredClasses) {
  const auto global = [](const char16_t* progid, Reference<QuorlDispatch>& object) {
    return QuorlGlobalObject(progid, object.Receive());
  };
  Reference<QuorlDispatch> object;
  EXPECT_EQ(global(u"Quorl.Math", object), CO_E_CLASSSTRING);
  void* out = &out;
  const ClassRow& money = *frame::FindClass(u"Money");
  EXPECT_EQ(CoCreateInstance(&money.identifier, nullptr, 0, &IID_IUnknown, &out),
            REGDB_E_CLASSNOTREG);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(QuorlRegister(u"/nowhere/libquorl.so"), QUORL_E_NOTLOADABLE);
  EXPECT_EQ(QuorlRegister(nullptr), E_POINTER);
  const String path = Utf16(kComponentPath);
  ASSERT_EQ(QuorlRegister(path.c_str()), S_OK);

  GUID identifier{};
  EXPECT_EQ(CLSIDFromProgID(u"quorl.MONEY", &identifier), S_OK);
  EXPECT_TRUE(identifier == money.identifier);
  EXPECT_EQ(CLSIDFromProgID(u"Quorl.Nothing", &identifier), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(u"Quorl.Money\\Clsid", &identifier), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(u"", &identifier), CO_E_CLASSSTRING);
  EXPECT_EQ(CLSIDFromProgID(nullptr, &identifier), E_POINTER);
  EXPECT_EQ(CLSIDFromProgID(u"Quorl.Money", nullptr), E_POINTER);
  {
    Reference<QuorlDispatch> made;
    EXPECT_EQ(
        CoCreateInstance(&money.identifier, nullptr, 0, &money.CurrentInterface(), made.Receive()),
        S_OK);
    EXPECT_EQ(CoCreateInstance(&money.identifier, &out, 0, &IID_IUnknown, &out),
              CLASS_E_NOAGGREGATION);
  }
  for (const ClassRow& row : frame::Catalogue()) {
    const String progid = u"Quorl." + String(row.name);
    Reference<QuorlDispatch> first;
    Reference<QuorlDispatch> second;
    const bool is_global = row.kind == frame::ClassKind::kGlobal;
    EXPECT_EQ(global(progid.c_str(), first), is_global ? S_OK : CLASS_E_CLASSNOTAVAILABLE);
    global(progid.c_str(), second);
    EXPECT_EQ(first.Get(), second.Get()) << Utf8(row.name);
    EXPECT_EQ(first.Get() != nullptr, is_global);
    EXPECT_EQ(library_.can_unload_now(), S_OK) << Utf8(row.name);
  }
  Save(store_, kClassesRoot, "CLSID\\{0553AA64-C47C-467D-B2DD-13C658FBCA74}\\InprocServer32", "",
       "/nowhere%20else");
  EXPECT_EQ(CoCreateInstance(&money.identifier, nullptr, 0, &IID_IUnknown, &out),
            QUORL_E_NOTLOADABLE);
  EXPECT_EQ(QuorlUnregister(path.c_str()), S_OK);
  EXPECT_EQ(global(u"Quorl.Math", object), CO_E_CLASSSTRING);
}

// The two libraries are copied to a folder whose name has to be escaped.
TEST(ComponentProcess, IsFoundWhereverItsTwoLibrariesAre) {
  const std::string folder = testing::TempDir() + "quorl été 100%";
  const std::string host = QUORL_BINARY_DIR "/examples/component_host";
  const std::string script = "rm -rf '" + folder + "' && mkdir -p '" + folder + "' && cp " +
                             QUORL_BINARY_DIR "/libquorl*.so '" + folder + "'";
  ASSERT_EQ(OutputOf(script), "");
  const auto run = [&] {
    const Library library(folder + "/libquorl.so");
    MemoryStore store;
    const ScopedStore guard(store);
    if (library.register_server() != S_OK) std::exit(2);
    std::string expected = folder;
    for (const auto& [bytes, text] :
         {std::pair("\xC3", "%C3"), {"\xA9", "%A9"}, {"100%", "100%25"}}) {
      for (std::size_t at = 0; (at = expected.find(bytes, at)) != std::string::npos;) {
        expected.replace(at, std::strlen(bytes), text);
        at += std::strlen(text);
      }
    }
    const std::string kept = Load(
        store, kClassesRoot, "CLSID\\{0553AA64-C47C-467D-B2DD-13C658FBCA74}\\InprocServer32", "");
    if (kept != expected + "/libquorl.so" + '\0') {
      std::fprintf(stderr, "%s", kept.c_str());
      std::exit(3);
    }
    Reference<QuorlDispatch> math;
    std::exit(QuorlGlobalObject(u"Quorl.Math", math.Receive()) == S_OK ? 0 : 4);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(
      OutputOf("cd '" + folder + "' && LD_LIBRARY_PATH=. " + host + " ./libquorl.so | tail -1"),
      "CmbCurrentItemData, which this combo lacks: 0x800A01B6\n");
  OutputOf("rm -rf '" + folder + "'");
}

TEST(ComponentProcess, TheStoreIsChosenBeforeItsFirstUse) {
  const auto choose = [] {
    if (QuorlSetStore(nullptr, nullptr) != S_OK) std::exit(2);
    if (Save(CurrentStore(), kCurrentUser, "A", "B", "c") != kDone) std::exit(3);
    std::exit(QuorlSetStore(nullptr, nullptr) == E_UNEXPECTED ? 0 : 4);
  };
  EXPECT_EXIT(choose(), testing::ExitedWithCode(0), "");
}

// --------------------------------------------------------------------------- values and their
// parts

TEST(BinaryValues, TextsKnowTheirLength) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  SysFreeString(nullptr);
  BSTR text = SysAllocStringLen(u"a\0b", 3);
  EXPECT_EQ(SysStringLen(text), 3u);
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<char*>(text) - 4, 4);
  EXPECT_EQ(bytes, 6u);
  EXPECT_EQ(text[3], 0);
  SysFreeString(text);
  text = SysAllocStringLen(nullptr, 2);
  EXPECT_TRUE(text[0] == 0 && text[2] == 0);
  SysFreeString(text);
  EXPECT_EQ(SysAllocStringLen(nullptr, UINT32_MAX), nullptr);
}

TEST(BinaryValues, ArraysRunLeftmostSubscriptFirst) {
  const QuorlBound bounds[] = {{2, 1}, {3, -1}};
  SAFEARRAY* array = SafeArrayCreate(VT_I4, 2, bounds);
  for (std::int32_t i = 1; i <= 2; ++i) {
    for (std::int32_t k = -1; k <= 1; ++k) {
      const std::int32_t at[] = {i, k};
      std::int32_t value = 10 * i + k;
      EXPECT_EQ(SafeArrayPutElement(array, at, &value), S_OK);
      std::int32_t got = 0;
      EXPECT_EQ(SafeArrayGetElement(array, at, &got), S_OK);
      EXPECT_EQ(got, value);
    }
  }
  void* data = nullptr;
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  const std::int32_t expected[] = {9, 19, 10, 20, 11, 21};
  EXPECT_EQ(std::memcmp(data, expected, sizeof(expected)), 0);
  // The layout that a host may read by itself.
  const auto at = [&](std::size_t offset) {
    std::uint32_t value = 0;
    std::memcpy(&value, reinterpret_cast<char*>(array) + offset, 4);
    return value;
  };
  EXPECT_EQ(at(0) & 0xFFFF, 2u);
  EXPECT_EQ(at(4), 4u);
  EXPECT_EQ(at(8), 1u);
  EXPECT_EQ((std::vector{at(24), at(28), at(32), at(36)}),
            (std::vector<std::uint32_t>{3, UINT32_MAX, 2, 1}));
  EXPECT_EQ(SafeArrayDestroy(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(array), E_UNEXPECTED);
  std::int32_t low = 0;
  std::int32_t high = 0;
  EXPECT_EQ(SafeArrayGetLBound(array, 2, &low), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, 2, &high), S_OK);
  EXPECT_TRUE(low == -1 && high == 1);
  EXPECT_EQ(SafeArrayGetLBound(array, 0, &low), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayGetUBound(array, 3, &high), DISP_E_BADINDEX);
  const std::int32_t outside[] = {3, 0};
  EXPECT_EQ(SafeArrayPutElement(array, outside, &low), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayGetElement(array, outside, &low), DISP_E_BADINDEX);
  // The same order through the runtime's array and back.
  const Variant value = abi::FromBinary(Raw(VT_ARRAY | VT_I4, array));
  EXPECT_EQ(value.If<Array>()->Get({2, -1}), Variant(19));
  const OwnedVariant back(value);
  EXPECT_EQ(abi::FromBinary(back.Get()), value);
  EXPECT_EQ(std::memcmp(back.Get().value.array->data, expected, sizeof(expected)), 0);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
  EXPECT_EQ(SafeArrayCreate(VT_I4, 0, bounds), nullptr);
  EXPECT_EQ(SafeArrayCreate(99, 1, bounds), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_I4, 1, nullptr), nullptr);
}

TEST(BinaryValues, ElementsOfArraysAreCopiedInAndOut) {
  FakeHost host;
  const QuorlBound bounds[] = {{2, 0}};
  const std::int32_t second[] = {1};
  const Variant values[] = {u"text", abi::ObjectOf(&host), Variant(2.5)};
  for (const Variant& value : values) {
    OwnedVariant binary(value);
    for (const std::uint16_t vt : {binary.Get().vt, std::uint16_t{VT_VARIANT}}) {
      SAFEARRAY* array = SafeArrayCreate(vt, 1, bounds);
      std::uint16_t told = 0;
      EXPECT_EQ(SafeArrayGetVartype(array, &told), S_OK);
      EXPECT_EQ(told, vt);
      const bool is_pointer = vt == VT_BSTR || vt == VT_DISPATCH;
      void* element = vt == VT_VARIANT ? binary.Address()
                      : is_pointer     ? binary.Get().value.reference
                                       : &binary.Address()->value;
      for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(SafeArrayPutElement(array, second, element), S_OK);
      }
      OwnedVariant got;
      if (vt != VT_VARIANT) got.Address()->vt = vt;
      EXPECT_EQ(SafeArrayGetElement(
                    array, second,
                    vt == VT_VARIANT ? static_cast<void*>(got.Address()) : &got.Address()->value),
                S_OK);
      const Variant content = abi::FromBinary(got.Get());
      EXPECT_TRUE(value.Holds<Object>() ? abi::ForeignPointerOf(ToObject(content)) == &host
                                        : content == value);
      EXPECT_TRUE(vt != VT_BSTR || got.Get().value.bstr != binary.Get().value.bstr);
      // A deep copy has elements of its own.
      OwnedVariant copy;
      const VARIANT whole = Raw(VT_ARRAY | vt, array);
      EXPECT_EQ(VariantCopy(copy.Address(), &whole), S_OK);
      EXPECT_NE(copy.Get().value.array, array);
      EXPECT_EQ(SafeArrayDestroy(array), S_OK);
      EXPECT_EQ(abi::FromBinary(copy.Get()).If<Array>()->Size(), 2u);
    }
  }
  EXPECT_EQ(host.references, 2u);  // ours and that of `values`
}

TEST(BinaryValues, VariantsAreCopiedDeepAndReferencesStay) {
  OwnedVariant text(Variant(u"text"));
  OwnedVariant copy(Variant(u"former"));
  EXPECT_EQ(VariantCopy(copy.Address(), &text.Get()), S_OK);
  EXPECT_NE(copy.Get().value.bstr, text.Get().value.bstr);
  EXPECT_EQ(VariantCopy(copy.Address(), copy.Address()), S_OK);
  EXPECT_EQ(abi::FromBinary(copy.Get()), Variant(u"text"));
  const VARIANT reference = Raw(VT_BYREF | VT_VARIANT, text.Address());
  EXPECT_EQ(VariantCopy(copy.Address(), &reference), S_OK);
  EXPECT_EQ(copy.Get().value.reference, text.Address());
  EXPECT_EQ(VariantClear(copy.Address()), S_OK);
  EXPECT_EQ(abi::FromBinary(text.Get()), Variant(u"text"));
  const VARIANT foreign = Raw(99);
  EXPECT_EQ(VariantCopy(copy.Address(), &foreign), DISP_E_TYPEMISMATCH);
  VARIANT damaged = Raw(99, 1);
  EXPECT_EQ(VariantClear(&damaged), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(damaged.vt, VT_EMPTY);
  EXPECT_EQ(VariantClear(nullptr), E_POINTER);
  EXPECT_EQ(VariantCopy(nullptr, &foreign), E_POINTER);
}

TEST(BinaryValues, IdentifiersAsText) {
  GUID guid{};
  EXPECT_EQ(CLSIDFromString(u"{1cf2B120-547D-101b-8E65-08002B2BD119}", &guid), S_OK);
  EXPECT_TRUE(guid == IID_IErrorInfo);
  char16_t text[40] = u"untouched";
  EXPECT_EQ(StringFromGUID2(&guid, text, 38), 0);
  EXPECT_EQ(StringView(text), u"untouched");
  EXPECT_EQ(StringFromGUID2(&guid, text, 40), 39);
  EXPECT_EQ(StringView(text), u"{1CF2B120-547D-101B-8E65-08002B2BD119}");
  for (const char16_t* bad :
       {u"", u"1CF2B120-547D-101B-8E65-08002B2BD119", u"{1CF2B120-547D-101B-8E65-08002B2BD11}",
        u"{1CF2B120-547D-101B-8E65-08002B2BD119} ", u"{1CF2B120-547D-101B-8E65-08002B2BD11G}",
        u"{1CF2B120 547D-101B-8E65-08002B2BD119}"}) {
    EXPECT_EQ(CLSIDFromString(bad, &guid), CO_E_CLASSSTRING) << Shown(StringView(bad));
  }
  EXPECT_EQ(CLSIDFromString(nullptr, &guid), E_POINTER);
}

TEST(BinaryValues, SurroundingsAreChecked) {
  EXPECT_EQ(QuorlSetLocale(u"xx-YY"), E_INVALIDARG);
  EXPECT_EQ(QuorlSetLocale(u"de-DE"), S_OK);
  EXPECT_EQ(ToString(Variant(2.5)), u"2,5");
  EXPECT_EQ(QuorlSetLocale(nullptr), S_OK);
  EXPECT_EQ(QuorlSetScreen(1e300, 1), E_INVALIDARG);
  EXPECT_EQ(QuorlSetScreen(800, 600), S_OK);
  EXPECT_EQ(Screen::Height(), 600);
}

// --------------------------------------------------------------------------- what hosts can look
// up

TEST_F(Component, TypeInfoTellsTheCatalogue) {
  for (const ClassRow& row : frame::Catalogue()) {
    const auto object = library_.Make(row, IID_IDispatch);
    std::uint32_t count = 0;
    EXPECT_EQ(object.Get()->table->GetTypeInfoCount(object.Get(), &count), S_OK);
    EXPECT_EQ(count, 1u);
    Reference<QuorlTypeInfo> info;
    EXPECT_EQ(object.Get()->table->GetTypeInfo(object.Get(), 1, 0, info.Receive()),
              DISP_E_BADINDEX);
    ASSERT_EQ(object.Get()->table->GetTypeInfo(object.Get(), 0, 0, info.Receive()), S_OK);
    const auto& table = *info.Get()->table;
    QuorlTypeAttributes attributes{};
    EXPECT_EQ(table.GetTypeAttributes(info.Get(), &attributes), S_OK);
    EXPECT_TRUE(attributes.class_identifier == row.identifier);
    EXPECT_TRUE(attributes.interface_identifier == row.interfaces.back());
    EXPECT_EQ(attributes.minor_version, row.interfaces.size() - 1);
    EXPECT_EQ(attributes.class_flags, row.kind == frame::ClassKind::kGlobal ? 0xB : 0x2);
    EXPECT_EQ(attributes.interface_flags, 0x11D0);
    ASSERT_EQ(attributes.functions, row.members.size());
    for (std::uint32_t i = 0; i < attributes.functions; ++i) {
      const MemberRow& member = row.members[i];
      QuorlFunction function{};
      EXPECT_EQ(table.GetFunction(info.Get(), i, &function), S_OK);
      EXPECT_EQ(function.id, IdentifierOf(row, member));
      EXPECT_EQ(function.invoke_kind, FlagOf(member.kind));
      EXPECT_EQ(function.table_slot, 7 + i);
      EXPECT_EQ(function.listing_place, ListingPlaceOf(row, member));
      EXPECT_EQ(function.argument_count, member.arguments.count);
      BSTR name = nullptr;
      BSTR help = nullptr;
      EXPECT_EQ(table.GetDocumentation(info.Get(), function.id, &name, &help), S_OK);
      EXPECT_EQ(Taken(name), member.name);
      EXPECT_EQ(Taken(help), member.help);
      for (std::uint32_t k = 0; k < function.argument_count; ++k) {
        QuorlArgument argument{};
        EXPECT_EQ(table.GetArgument(info.Get(), i, k, &argument), S_OK);
        EXPECT_EQ(Taken(argument.name), member.arguments.elements[k].name);
        EXPECT_EQ(argument.optional != 0, member.arguments.elements[k].IsOptional());
        VariantClear(&argument.default_value);
      }
      QuorlArgument none{};
      EXPECT_EQ(table.GetArgument(info.Get(), i, function.argument_count, &none), DISP_E_BADINDEX);
    }
    QuorlFunction none{};
    EXPECT_EQ(table.GetFunction(info.Get(), attributes.functions, &none), DISP_E_BADINDEX);
    EXPECT_EQ(table.GetDocumentation(info.Get(), 99, nullptr, nullptr), DISP_E_MEMBERNOTFOUND);
    BSTR name = nullptr;
    EXPECT_EQ(table.GetDocumentation(info.Get(), -1, &name, nullptr), S_OK);
    EXPECT_EQ(Taken(name), row.name);
  }
}

TEST(ComponentHosts, TheHostInCPrintsWhatIsExpected) {
  EXPECT_EQ(OutputOf(QUORL_BINARY_DIR "/examples/component_host " + std::string(kComponentPath)),
            ContentOfFile(QUORL_SOURCE_DIR "/examples/component_host.out"));
}

TEST(ComponentHosts, TheHostInPythonPrintsWhatIsExpected) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "python3 cannot load libraries that were built with a sanitizer";
#endif
  if (OutputOf("python3 --version").find("Python 3") != 0)
    GTEST_SKIP() << "there is no python3 here";
  const std::string folder = QUORL_SOURCE_DIR "/examples/python/";
  EXPECT_EQ(OutputOf("PYTHONIOENCODING=utf-8 python3 -B " + folder + "demo.py " QUORL_BINARY_DIR),
            ContentOfFile(folder + "demo.out"));
}

TEST(ComponentFiles, GeneratedTextsAreUpToDate) {
  const std::string root = QUORL_SOURCE_DIR;
  EXPECT_EQ(ContentOfFile(root + "/docs/quorl.idl"), frame::TypeDescription())
      << "run tools/update_generated.sh";
  const std::string header = ContentOfFile(root + "/quorl/abi/quorl.h");
  const std::string begin = "/* begin generated */\n";
  const std::size_t from = header.find(begin) + begin.size();
  EXPECT_EQ(header.substr(from, header.find("/* end generated */") - from), frame::HeaderTables())
      << "run tools/update_generated.sh";
}

TEST(ComponentFiles, TheHeaderCompilesAlone) {
  for (const char* compiler :
       {QUORL_C_COMPILER " -std=c11 -x c", QUORL_CXX_COMPILER " -std=c++20 -x c++"}) {
    EXPECT_EQ(OutputOf(std::string("echo '#include \"quorl/abi/quorl.h\"' | ") + compiler +
                       " -Wall -Wextra -pedantic -Werror -fsyntax-only -I " QUORL_SOURCE_DIR " -"),
              "");
  }
}

TEST(ComponentFiles, FourSymbolsAreExported) {
  if (OutputOf("command -v nm").empty()) GTEST_SKIP() << "there is no nm here";
  std::istringstream lines(OutputOf(std::string("nm -D --defined-only ") + kComponentPath));
  std::vector<std::string> names;
  for (std::string address, kind, name; lines >> address >> kind >> name;) names.push_back(name);
  EXPECT_EQ(names, (std::vector<std::string>{"DllCanUnloadNow", "DllGetClassObject",
                                             "DllRegisterServer", "DllUnregisterServer"}));
}

}  // namespace
}  // namespace quorl
