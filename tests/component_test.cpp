// Calls of the component's members through its binary contract: libquorl.so is loaded by its path,
// the catalogue of the same sources is linked, and what both say has to agree.
#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/component.hpp"
#include "tests/support/store_content.hpp"

namespace quorl {
namespace {

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
  EXPECT_EQ(ask(&name, UINT32_MAX, &id), E_POINTER);
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
    EXPECT_EQ(code, named.code == S_OK
                        ? S_OK
                        : QUORL_CODE(0x800A0000 + static_cast<std::uint32_t>(named.number)));
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

  QuorlDispatch without_table{nullptr};
  EXPECT_EQ(add(Raw(VT_DISPATCH, &without_table)), 13);

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
  EXPECT_EQ(VariantCopy(&copy, &elements[0]), DISP_E_TYPEMISMATCH);
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

}  // namespace
}  // namespace quorl
