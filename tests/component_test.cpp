// Calls of the component's members through its binary contract: libquorl.so is loaded by its path,
// the catalogue of the same sources is linked, and what both say has to agree.
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "quorl/fields/db_lib.hpp"
#include "quorl/forms/combo_box_ex.hpp"
#include "quorl/forms/forms.hpp"
#include "quorl/numeric/math.hpp"
#include "quorl/text/strings.hpp"
#include "tests/support/invoke_fuzz.hpp"
#include "tests/support/store_content.hpp"

namespace quorl {
namespace {

constexpr Way kWays[] = {&CallInCpp, &CallBySlot, &CallByName};

// ------------------------------------------------------------------------------------ three ways

// One way of calling, with all that its calls can change.
struct World {
  MemoryStore store;
  FakeHost host;
  Reference<QuorlDispatch> object;
  Reference<QuorlDispatch> registry;

  World(const ClassRow& row, const Library* library) {
    const ScopedStore guard(store);
    const auto make = [&](const ClassRow& made) {
      return library != nullptr
                 ? library->Make(made, made.CurrentInterface())
                 : Reference<QuorlDispatch>::Adopt(made.make(made, frame::Holder::kHost));
    };
    object = make(row);
    registry = make(*frame::FindClass(u"Registry"));
  }
};

void CompareTheWays(const ClassRow& row) {
  constexpr int kSteps = 4600;
  const LocaleScope locale(*Locale::Named(u"fr-BE"));
  const Library library;
  {
    World worlds[] = {{row, nullptr}, {row, &library}, {row, &library}};
    Random random(row.members.size());
    int failures = 0;
    for (int step = 0; step < kSteps && !row.members.empty(); ++step) {
      const MemberRow& member = row.members[random.Bits() % row.members.size()];
      const std::uint64_t seed = random.Bits();
      CallResult results[3];
      std::vector<Variant> arguments[3];
      for (int i = 0; i < 3; ++i) {
        const ScopedStore store(worlds[i].store);
        Random own(seed);
        const Pick pick = [&](std::size_t count) { return own.Bits() % count; };
        for (const frame::TypeRow& type : member.types.Span()) {
          arguments[i].push_back(
              SomeArgument(type, pick, worlds[i].host, worlds[i].registry.Get()));
        }
        results[i] = kWays[i](worlds[i].object.Get(), row, member, arguments[i]);
        if (member.name == u"CreateGUID") results[i].value = Empty;
        ASSERT_EQ(results[i], results[0])
            << Utf8(member.name) << " way " << i << testing::PrintToString(arguments[i]);
        const bool is_written = member.types.elements[0].by_reference;
        ASSERT_TRUE(!is_written || arguments[i][0] == arguments[0][0]) << step;
        ASSERT_EQ(worlds[i].host.journal, worlds[0].host.journal) << Utf8(member.name);
      }
      for (World& world : worlds) world.host.journal.clear();
      failures += results[0].code != S_OK;
    }
    for (World& world : worlds) {
      EXPECT_EQ(ContentOf(world.store), ContentOf(worlds[0].store));
      EXPECT_EQ(world.host.references, 1u);
    }
    EXPECT_TRUE(failures > kSteps / 100 || row.members.size() < 5 || row.name == u"Regional");
  }
  EXPECT_EQ(library.can_unload_now(), S_OK);
}

TEST(ThreeWays, GiveTheSameResultOrFailure) {
  for (const ClassRow& row : frame::Catalogue()) CompareTheWays(row);
}

// ---------------------------------------------------------------------------------- calls by name

TEST_F(Component, WhatIsLeftOutIsTheSameInCppAndByName) {
  FakeHost host;
  const Object form = abi::ObjectOf(&host);
  Registry in_cpp;
  const auto of_library = library_.Make(u"Registry");
  const Variant by_name = abi::ObjectOf(of_library.Get());
  MemoryStore of_cpp;
  const auto compare = [&](StringView class_name, StringView name, const auto& call,
                           std::vector<Variant> arguments) {
    const MemberRow& member = Member(class_name, name);
    const auto made = library_.Make(class_name);
    QuorlDispatch* object = class_name == u"Registry" ? of_library.Get() : made.Get();
    const CallResult result = CallNamed(object, name.data(), 1, {}, arguments);
    const std::vector<std::string> journal = std::exchange(host.journal, {});
    const ScopedStore guard(of_cpp);
    const auto as_variant = [&] {
      if constexpr (std::is_void_v<decltype(call())>) {
        call();
      } else {
        return Variant(call());
      }
    };
    EXPECT_EQ(result.value.IsEmpty() ? "" : Shown(result.value), ResultOf(as_variant))
        << Utf8(name);
    EXPECT_EQ(std::exchange(host.journal, {}), journal) << Utf8(name);
    EXPECT_TRUE(member.arguments.elements[arguments.size()].IsOptional());
  };
// A call with every argument that has to be given and no other, and these arguments.
#define QUORL_LEAST(Class, Member, call, ...) \
  compare(u## #Class, u## #Member, [&] { return call; }, {__VA_ARGS__})
#define QUORL_STATIC(Class, Member, ...) \
  QUORL_LEAST(Class, Member, Class::Member(__VA_ARGS__), __VA_ARGS__)
  QUORL_STATIC(Math, StdRound, 1.25);
  QUORL_STATIC(Math, FixRound, 1.25);
  QUORL_STATIC(Math, RoundSup, 1.25);
  QUORL_STATIC(Math, RoundInf, 1.25);
  QUORL_STATIC(Math, StdTruncate, 1.25);
  QUORL_STATIC(Strings, Padl, u"ab", Int16{5});
  QUORL_STATIC(Strings, Padr, u"ab", Int16{5});
  QUORL_STATIC(Strings, GetToken, u"a;b c");
  QUORL_STATIC(Strings, RTrimEx, u"_a_  ");
  QUORL_STATIC(Strings, LTrimEx, u"  _a_");
  QUORL_STATIC(Strings, IndexOf, u"aba", u"a");
  QUORL_STATIC(Strings, Contains, u"ab", u"a");
  QUORL_STATIC(Strings, IndexOfAny, u"aba", u"xa");
  QUORL_STATIC(Strings, ContainsAny, u"ab", u"xa");
  QUORL_STATIC(Strings, TruncateMiddle, u"abcdefghijklmnopqrstuvwxyz", Int16{20});
  QUORL_STATIC(ComboBoxEx, CmbSelectMatchString, form, u"deux");
  QUORL_STATIC(ComboBoxEx, CmbSelectMatchToken, form, u"deux");
  QUORL_STATIC(ComboBoxEx, CmbSelectMatchSubString, form, u"12");
  QUORL_LEAST(Registry, InitApp, in_cpp.InitApp(u"C", u"A"), u"C", u"A");
  QUORL_LEAST(Registry, SaveValue, in_cpp.SaveValue(u"K\\L", u"V", 1), u"K\\L", u"V", 1);
  QUORL_LEAST(Registry, GetSubKeys, in_cpp.GetSubKeys(u""), u"");
  QUORL_STATIC(Forms, InitFormSettings, form);
  QUORL_LEAST(Forms, SaveFormSettings, Forms::SaveFormSettings(in_cpp, form), by_name, form);
  QUORL_LEAST(Forms, GetFormSettings, Forms::GetFormSettings(in_cpp, form), by_name, form);
  for (const KeyHandle root : {kCurrentUser, kLocalMachine}) {
    EXPECT_EQ(ContentOf(store_, root), ContentOf(of_cpp, root));
  }
}

TEST_F(Component, ArgumentsByNameByPositionAndLeftOut) {
  const auto strings = library_.Make(u"Strings");
  const auto token = [&](const Named& named, std::vector<Variant> positional) {
    return CallNamed(strings.Get(), u"GETtoken", 1, named, std::move(positional)).value;
  };
  EXPECT_EQ(token({}, {u"a b;c", u";", 2}), Variant(u"c"));
  EXPECT_EQ(token({{2, u"3"}}, {u"a b c"}), Variant(u"c"));
  EXPECT_EQ(token({{2, 2.4}, {0, u"a;b"}, {1, u";"}}, {}), Variant(u"b"));
  EXPECT_EQ(token({}, {u"a b", Missing, 2}), Variant(u"b"));
  EXPECT_EQ(token({{1, Missing}}, {u"a b"}), Variant(u"a"));
}

TEST_F(Component, ArgumentsByReferenceAreReadThroughAndWrittenBack) {
  const auto regional = library_.Make(u"Regional");
  const std::int32_t id = IdOf(u"Regional", u"ConvertDecimalPoint");
  std::int16_t key = u'.';
  std::int32_t wide_key = u'.';
  OwnedVariant variant_key(Variant(u"46"));  // a text; what is written is the number
  std::int16_t inner_key = u'.';
  VARIANT inner = Raw(VT_BYREF | VT_I2, &inner_key);
  for (VARIANT argument :
       {Raw(VT_I2, u'.'), Raw(VT_BYREF | VT_I2, &key), Raw(VT_BYREF | VT_I4, &wide_key),
        Raw(VT_BYREF | VT_VARIANT, variant_key.Address()), Raw(VT_BYREF | VT_VARIANT, &inner)}) {
    EXPECT_EQ(Invoke(regional.Get(), id, DISPATCH_METHOD, {&argument, nullptr, 1, 0}).code, S_OK);
  }
  EXPECT_EQ((std::vector<int>{key, wide_key, inner_key}), std::vector<int>(3, u','));
  EXPECT_EQ(abi::FromBinary(variant_key.Get()), Variant(Int16{u','}));
  EXPECT_EQ(inner.vt, VT_I2 | VT_BYREF);
  EXPECT_EQ(SlotArguments().Call(regional.Get(), 10), E_POINTER);
  // Every other argument is read through a reference too.
  double number = 2.5;
  std::int16_t digits = 0;
  VARIANT arguments[] = {Raw(VT_BYREF | VT_I2, &digits), Raw(VT_BYREF | VT_R8, &number)};
  EXPECT_EQ(Invoke(library_.Make(u"Math").Get(), 1, DISPATCH_METHOD, {arguments, nullptr, 2, 0}),
            (CallResult{3.0, S_OK, {}}));
}

TEST_F(Component, GetsAndPutsOfPropertiesShareAnIdentifier) {
  constexpr std::uint16_t kGetOrPut = DISPATCH_PROPERTYGET | DISPATCH_PROPERTYPUT;
  const auto buffer = library_.Make(u"RollBuffer");
  const auto put = [&](const char16_t* name, std::uint16_t flags, const Variant& value) {
    return CallNamed(buffer.Get(), name, flags, {{QUORL_PUT_VALUE, value}}).code;
  };
  const std::pair<std::uint16_t, Variant> sizes[] = {
      {DISPATCH_PROPERTYPUT, u"3"}, {DISPATCH_PROPERTYPUTREF, 5}, {kGetOrPut, 4}};
  for (const auto& [flags, size] : sizes) {
    EXPECT_EQ(put(u"BufferSize", flags, size), S_OK);
    EXPECT_EQ(CallNamed(buffer.Get(), u"buffersize", kGetOrPut, {}).value, ToInt32(size));
  }
  const auto registry = library_.Make(u"Registry");  // its puts stand before its gets
  EXPECT_EQ(CallNamed(registry.Get(), u"RootKeyName", kGetOrPut, {}).value, Variant(u""));
  EXPECT_EQ(put(u"Items", DISPATCH_PROPERTYPUT, 1), DISP_E_MEMBERNOTFOUND);
  // An object is taken as a put's value by reference just as by value.
  FakeHost host;
  EXPECT_EQ(CallNamed(buffer.Get(), u"AddItem", 1, {}, {7}).value, Variant());
  EXPECT_EQ(put(u"CurrentItem", DISPATCH_PROPERTYPUTREF, abi::ObjectOf(&host)), S_OK);
  const Variant current = CallNamed(buffer.Get(), u"CurrentItem", kGetOrPut, {}).value;
  EXPECT_EQ(abi::ForeignPointerOf(ToObject(current)), &host);
  EXPECT_EQ(put(u"BufferSize", DISPATCH_PROPERTYPUT, 1), S_OK);
}

TEST_F(Component, NamesOfMembersAndArgumentsHaveIdentifiers) {
  const auto strings = library_.Make(u"Strings");
  const auto* table = strings.Get()->table;
  const std::int32_t padl = IdOf(u"Strings", u"Padl");
  using Names = std::vector<const char16_t*>;
  const std::tuple<Names, HRESULT, std::vector<std::int32_t>> cases[] = {
      {{u"PADL"}, S_OK, {padl}},
      {{u"GETTO\u212AEN"}, S_OK, {IdOf(u"Strings", u"GetToken")}},  // the Kelvin sign is a K
      {{u"padl", u"PadChar", u"TEXT", u"length"}, S_OK, {padl, 2, 0, 1}},
      {{u"padl", u"Text", u"nStart", u"Length"}, DISP_E_UNKNOWNNAME, {padl, 0, -1, 1}},
      {{u"Pad", u"Text"}, DISP_E_UNKNOWNNAME, {-1, -1}},
      {{u""}, DISP_E_UNKNOWNNAME, {-1}},
      {Names(4, u"Padl"), DISP_E_UNKNOWNNAME, {padl, -1, -1, -1}},
      {{nullptr}, E_POINTER, {99}},
  };
  for (auto [names, code, expected] : cases) {
    const auto count = static_cast<std::uint32_t>(names.size());
    std::vector<std::int32_t> ids(count, 99);
    EXPECT_EQ(table->GetIDsOfNames(strings.Get(), nullptr, names.data(), count, 0, ids.data()),
              code);
    EXPECT_EQ(ids, expected);
    EXPECT_EQ(table->GetIDsOfNames(strings.Get(), nullptr, nullptr, 1, 0, ids.data()), E_POINTER);
    EXPECT_EQ(table->GetIDsOfNames(strings.Get(), nullptr, names.data(), 1, 0, nullptr), E_POINTER);
  }
}

TEST_F(Component, WrongCallsGetTheirCodes) {
  const auto strings = library_.Make(u"Strings");
  const std::int32_t padl = IdOf(u"Strings", u"Padl");
  const OwnedVariant text(Variant(u"ab"));
  const VARIANT five = Raw(VT_I4, 5);
  VARIANT given[] = {five, text.Get(), five, text.Get()};
  VARIANT missing[] = {Raw(VT_ERROR, DISP_E_PARAMNOTFOUND), text.Get()};
  std::int32_t unknown[] = {1, 3}, negative[] = {-3}, twice[] = {1, 1}, same_place[] = {0};
  constexpr std::uint32_t kMany = UINT32_MAX;
  // Identifier, flags, parameters; the code and the wrong argument, 99 as it was.
  const std::tuple<std::int32_t, std::uint16_t, DISPPARAMS, HRESULT, std::uint32_t> cases[] = {
      {padl, 15, {given, nullptr, 2, 0}, S_OK, 99},
      {99, 1, {given, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND, 99},
      {0, 3, {given, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND, 99},
      {INT32_MIN, 3, {given, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND, 99},
      {padl, 14, {given, nullptr, 2, 0}, DISP_E_MEMBERNOTFOUND, 99},
      {padl, 1, {given, unknown, 2, 2}, DISP_E_PARAMNOTFOUND, 1},
      {padl, 1, {given, negative, 2, 1}, DISP_E_PARAMNOTFOUND, 0},
      {padl, 1, {given, twice, 2, 2}, DISP_E_PARAMNOTFOUND, 1},
      {padl, 1, {given, same_place, 2, 1}, DISP_E_PARAMNOTFOUND, 1},
      {padl, 1, {given, nullptr, 4, 0}, DISP_E_BADPARAMCOUNT, 0},
      {padl, 1, {given, nullptr, kMany, 0}, DISP_E_BADPARAMCOUNT, 0},
      {padl, 1, {given, twice, 1, 2}, DISP_E_BADPARAMCOUNT, 0},
      {padl, 1, {given, twice, 2, kMany}, DISP_E_BADPARAMCOUNT, 0},
      {padl, 1, {given + 1, nullptr, 1, 0}, DISP_E_PARAMNOTOPTIONAL, 0},
      {padl, 1, {missing, nullptr, 2, 0}, DISP_E_PARAMNOTOPTIONAL, 99},
      {padl, 1, {nullptr, nullptr, 2, 0}, E_POINTER, 99},
      {padl, 1, {given, nullptr, 2, 1}, E_POINTER, 99},
  };
  for (auto [id, flags, parameters, code, expected] : cases) {
    std::uint32_t wrong = 99;
    const auto invoke =
        std::bind_front(strings.Get()->table->Invoke, strings.Get(), id, nullptr, 0, flags);
    EXPECT_EQ(invoke(&parameters, nullptr, nullptr, &wrong), code) << id << ' ' << flags;
    EXPECT_EQ(wrong, expected);
    EXPECT_NE(invoke(nullptr, nullptr, nullptr, nullptr), S_OK);
  }
  // A failure of the member is in the record, and nowhere else.
  EXPECT_EQ(CallNamed(strings.Get(), u"Padl", 1, {}, {1, 40000}).failure, RuntimeFailure(6));
  EXPECT_EQ(TakenErrorInfo(), Failure());
}

TEST_F(Component, DamagedArgumentsFailWith13) {
  const std::int32_t add_item = IdOf(u"RollBuffer", u"AddItem");
  const auto buffer = library_.Make(u"RollBuffer");
  const auto add = [&](VARIANT argument) {
    SlotArguments arguments;
    arguments.Add(VariantType::kVariant, argument);
    const HRESULT code = arguments.Call(buffer.Get(), 20);
    const CallResult named =
        Invoke(buffer.Get(), add_item, DISPATCH_METHOD, {&argument, nullptr, 1, 0});
    EXPECT_EQ(NumberIn(code), named.failure.number);
    return named.failure.number;
  };
  for (int vt = 0; vt <= UINT16_MAX; ++vt) {
    const int single = vt & ~(VT_BYREF | VT_ARRAY);
    const bool is_known = single <= VT_BOOL || single == VT_UI1;
    // A null text or object is one; a null reference or array is damage.
    const bool is_good = is_known && vt == single && vt != VT_ERROR;
    EXPECT_EQ(add(Raw(vt)), is_good ? 0 : 13) << vt;
  }
  VARIANT ring[2] = {Raw(VT_BYREF | VT_VARIANT, &ring[1]), Raw(VT_BYREF | VT_VARIANT, &ring[0])};
  EXPECT_EQ(add(ring[0]), 13);
  QuorlDispatch without_table{nullptr};
  EXPECT_EQ(add(Raw(VT_DISPATCH, &without_table)), 13);

  const QuorlBound bounds[] = {{2, 0}};
  for (const Damage& damage : kDamages) {
    SAFEARRAY* array = SafeArrayCreate(VT_I4, 1, bounds);
    const SAFEARRAY sound = *array;
    damage.work(*array);
    const VARIANT source = Raw(VT_ARRAY | damage.vt, array);
    EXPECT_EQ(add(source), damage.is_good ? 0 : 13) << damage.what;
    EXPECT_EQ(add(Raw(VT_ARRAY | VT_BYREF | damage.vt, &array)), damage.is_good ? 0 : 13);
    OwnedVariant copy;
    EXPECT_EQ(VariantCopy(copy.Address(), &source) == S_OK, damage.is_good) << damage.what;
    *array = sound;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  }
}

// An array that holds the next one twice has as many elements as there are paths.
TEST_F(Component, ArraysWithoutAnEndAreRefused) {
  const auto buffer = library_.Make(u"RollBuffer");
  const QuorlBound two[] = {{2, 0}};
  const QuorlBound bytes[] = {{1 << 24, 0}};
  SAFEARRAY* arrays[6];
  for (SAFEARRAY*& array : arrays) array = SafeArrayCreate(VT_VARIANT, 1, two);
  SAFEARRAY* large = SafeArrayCreate(VT_UI1, 1, bytes);
  for (const bool is_ring : {false, true}) {
    const VARIANT last =
        is_ring ? Raw(VT_ARRAY | VT_VARIANT, arrays[0]) : Raw(VT_ARRAY | VT_UI1, large);
    for (std::size_t i = 0; i < 6; ++i) {
      std::fill_n(static_cast<VARIANT*>(arrays[i]->data), 2,
                  i == 5 ? last : Raw(VT_ARRAY | VT_VARIANT, arrays[i + 1]));
    }
    const VARIANT whole = Raw(VT_ARRAY | VT_VARIANT, arrays[0]);
    SlotArguments arguments;
    arguments.Add(VariantType::kVariant, whole);
    EXPECT_EQ(NumberIn(arguments.Call(buffer.Get(), 20)), 13) << is_ring;
    VARIANT copy{};
    EXPECT_EQ(VariantCopy(&copy, &whole), is_ring ? DISP_E_TYPEMISMATCH : E_OUTOFMEMORY);
  }
  for (SAFEARRAY* array : arrays) std::memset(array->data, 0, 2 * sizeof(VARIANT));
  for (SAFEARRAY* array : arrays) EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  EXPECT_EQ(SafeArrayDestroy(large), S_OK);
  // The same on the way out: what could not be read back is not written.
  Variant nested = 1;
  for (int depth = 0; depth < 65; ++depth) {
    EXPECT_EQ(FailureOf([&] { OwnedVariant binary(nested); }), Failure()) << depth;
    Array around = Array::WithBounds(VariantType::kVariant, 0, 0);
    around.Set({0}, nested);
    nested = around;
  }
  EXPECT_RAISES(OwnedVariant(nested), RuntimeFailure(13));
}

// ---------------------------------------------------------------------------- calls through slots

TEST_F(Component, ASlotClearsItsResultAndSetsErrorInfo) {
  const auto strings = library_.Make(u"Strings");
  auto* object = reinterpret_cast<QuorlStrings*>(strings.Get());
  BSTR text = SysAllocString(u"abc");
  BSTR pad = SysAllocString(u"*");
  EXPECT_EQ(object->table->Padl(object, text, 5, pad, nullptr), E_POINTER);
  EXPECT_EQ(object->table->StrCount(object, text, pad, nullptr), E_POINTER);
  EXPECT_EQ(TakenErrorInfo(), Failure());
  // The result's slot may be the place of an argument.
  EXPECT_EQ(object->table->Padl(object, text, 5, pad, &text), S_OK);
  EXPECT_EQ(abi::ViewOf(text), u"**abc");
  const HRESULT overflow = QUORL_CODE(0x800A0006);
  EXPECT_EQ(object->table->Padl(object, text, 40000, pad, &text), overflow);
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(TakenErrorInfo(overflow), RuntimeFailure(6));
  EXPECT_EQ(TakenErrorInfo(), Failure());
  // Another thread has its own; a success leaves what is there.
  EXPECT_EQ(object->table->Padl(object, nullptr, 40000, pad, &text), overflow);
  std::thread([] { EXPECT_EQ(TakenErrorInfo(), Failure()); }).join();
  EXPECT_EQ(object->table->DigitsOf(object, nullptr, &text), S_OK);
  EXPECT_EQ(TakenErrorInfo(overflow), RuntimeFailure(6));
  SysFreeString(text);
  SysFreeString(pad);
  EXPECT_EQ(GetErrorInfo(0, nullptr), E_POINTER);
  EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
}

// ------------------------------------------------------------------------------------ host objects

TEST_F(Component, CallsAHostsObjectByTheRules) {
  FakeHost host;
  const Variant object = abi::ObjectOf(&host);
  const auto journal = [&](StringView class_name, const char16_t* member,
                           std::vector<Variant> arguments) {
    const auto result = CallNamed(library_.Make(class_name).Get(), member, 1, {}, arguments);
    std::string lines;
    for (const std::string& line : std::exchange(host.journal, {})) lines += line + "; ";
    return lines + Shown(result.value);
  };
  EXPECT_EQ(journal(u"ComboBoxEx", u"CmbSelectMatchString", {object, u"12"}),
            "ListCount 2; List 3 &Int16 0; List 3 &Int16 1; ListIndex 4 -3:Int16 1; Empty");
  EXPECT_EQ(journal(u"ComboBoxEx", u"CmbCurrentItemData", {object, 5}),
            "ListIndex 2; ListIndex 2; ItemData 3 Int16 1; Int32 0");
  EXPECT_EQ(journal(u"Forms", u"InitFormSettings", {object, Missing, 10, 20}),
            "MDIChild 2; Move 1 Double 20 Double 10 Double 100 Double 100; Empty");
  // The default member of a plain value's object.
  EXPECT_EQ(journal(u"Strings", u"Pluriel", {object}), " 2; String \"defaults\"");
}

TEST_F(Component, AHostsFailureReachesTheCallerAsItIs) {
  FakeHost host;
  const auto combo = library_.Make(u"ComboBoxEx");
  const auto call = [&] {
    const Variant object = abi::ObjectOf(&host);
    return CallNamed(combo.Get(), u"CmbSelectItemData", 1, {}, {object, 1}).failure;
  };
  // A result that is damaged or must not be left behind, and texts whatever the code.
  const auto failure = [&](HRESULT returned, std::int32_t scode = 0, std::uint16_t code = 0,
                           HRESULT(*fill_in)(EXCEPINFO*) = nullptr) {
    host.failure = [=](VARIANT* result, EXCEPINFO* info) {
      *result = returned == S_OK ? Raw(99) : OwnedVariant(Variant(u"left behind")).Detach();
      info->code = code;
      info->scode = scode;
      info->fill_in = fill_in;
      if (fill_in != nullptr) return returned;
      info->source = SysAllocString(u"Host");
      info->description = SysAllocString(u"Rien à faire");
      info->help_file = SysAllocString(u"help");
      return returned;
    };
    return call();
  };
  const auto with = [&](Int32 number) { return Failure{number, u"Host", u"Rien à faire"}; };
  EXPECT_EQ(failure(DISP_E_EXCEPTION, QUORL_CODE(0x800A1388), 7), with(5000));
  EXPECT_EQ(failure(DISP_E_EXCEPTION, E_OUTOFMEMORY, 7), with(E_OUTOFMEMORY));
  EXPECT_EQ(failure(DISP_E_EXCEPTION, 0, 1004), with(1004));
  const auto later = [](EXCEPINFO* info) -> HRESULT {
    return info->description = SysAllocString(u"plus tard"), S_OK;
  };
  EXPECT_EQ(failure(DISP_E_EXCEPTION, 0, 9, later), (Failure{9, u"", u"plus tard"}));
  EXPECT_EQ(failure(DISP_E_MEMBERNOTFOUND), RuntimeFailure(438));
  EXPECT_EQ(failure(DISP_E_BADPARAMCOUNT).description, u"L'objet appelé a signalé un échec.");
  EXPECT_EQ(failure(DISP_E_BADPARAMCOUNT).number, DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(failure(S_OK), RuntimeFailure(13));
  // As the object in C++ itself fails.
  host.failure = nullptr;
  host.target->WithFailure(u"ListCount", 438);
  EXPECT_EQ(call(), (Failure{438, u"Host", u"No"}));
  host.target->Remove(u"ListCount");
  EXPECT_EQ(call(), RuntimeFailure(438));
}

TEST_F(Component, LivesUntilItsCallEndsWhateverTheHostReleases) {
  const std::pair<StringView, StringView> members[] = {{u"Math", u"Max"},
                                                       {u"ComboBoxEx", u"CmbCurrentItemData"}};
  FakeHost host;
  for (const Way call : {&CallBySlot, &CallByName}) {
    for (const auto& [class_name, member] : members) {
      auto object = library_.Make(class_name);
      host.failure = [&](VARIANT*, EXCEPINFO*) {
        object = {};
        EXPECT_EQ(library_.can_unload_now(), S_FALSE);
        return E_UNEXPECTED;
      };
      std::vector<Variant> arguments{abi::ObjectOf(&host), 1};
      const auto& row = *frame::FindClass(class_name);
      EXPECT_NE(call(object.Get(), row, Member(class_name, member), arguments).code, S_OK);
      EXPECT_EQ(library_.can_unload_now(), S_OK);
    }
  }
}

TEST_F(Component, FormsTakeARegistryOfTheLibrary) {
  FakeHost form;
  const auto forms = library_.Make(u"Forms");
  const auto registry = library_.Make(u"Registry");
  const auto math = library_.Make(u"Math");
  const MemberRow& save = Member(u"Forms", u"SaveFormSettings");
  const std::pair<Variant, Int32> cases[] = {
      {abi::ObjectOf(registry.Get()), 0}, {Object(), 91},
      {abi::ObjectOf(math.Get()), 13},    {abi::ObjectOf(&form), 13},
      {Object(form.target), 13},          {u"text", 13}};
  for (const auto& [given, number] : cases) {
    for (const Way call : {&CallBySlot, &CallByName}) {
      if (call == &CallBySlot && !given.Holds<Object>()) continue;
      std::vector<Variant> arguments{given, abi::ObjectOf(&form), u"F"};
      EXPECT_EQ(call(forms.Get(), *frame::FindClass(u"Forms"), save, arguments).failure.number,
                number);
    }
  }
}

// The same driver serves libFuzzer: see tests/fuzz/invoke_fuzzer.cpp.
TEST(InvokeFuzz, RandomCallsNeitherCrashNorLeak) {
  const unsigned rounds = LongSweeps() ? 400000 : 15000;
  for (unsigned seed = 0; seed < rounds; ++seed) {
    Random random(seed);
    std::vector<std::uint8_t> bytes(800);
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random.Bits()); });
    FuzzInvoke(bytes);
    ASSERT_FALSE(HasFailure()) << "seed " << seed;
  }
}

}  // namespace
}  // namespace quorl
