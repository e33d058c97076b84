#include "quorl/registry/registry.hpp"

#include <algorithm>
#include <set>

#include "quorl/runtime/ansi.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_small_stack.hpp"
#include "tests/support/values.hpp"

namespace quorl {
namespace {

using namespace std::string_literals;

enum : Int32 { kOverflow = 6, kSubscript = 9, kTypeMismatch = 13, kInvalidUseOfNull = 94 };

// The Number of a call's failure, and the value that it gave.
using CallOutcome = std::pair<Int32, Variant>;

CallOutcome OutcomeOf(const std::function<Variant()>& work) {
  Variant value;
  const Int32 number = FailureOf([&] { value = work(); }).number;
  return {number, value};
}

Variant BytesOf(const std::string& bytes) { return Array::OfBytes({bytes.begin(), bytes.end()}); }

// Every test leaves no key open.
class RegistryTest : public testing::Test {
 protected:
  RegistryTest() { registry_.InitAbsolute(HKEY_CURRENT_USER, u"Maison\\Caisse"); }
  void TearDown() override { EXPECT_EQ(store_.OpenKeyCount(), 0); }

  void SetRaw(const std::string& key, std::string_view name, Int32 type, std::string_view data) {
    EXPECT_EQ(Save(store_, kCurrentUser, "Maison\\Caisse\\" + key, name, data, type), kDone);
  }
  // The values of a key, one a line.
  std::string Raw(const std::string& key) {
    return ValuesText(store_, TestKey(store_, kCurrentUser, "Maison\\Caisse\\" + key).Handle());
  }

  MemoryStore store_;
  ScopedStore guard_{store_};
  Registry registry_;
};

Failure StoreFailure(Int32 code, StringView call) {
  const StringView sentence = SentenceOf(code);
  return {code, u"qlWinRegistry",
          u"Erreur d'accès au registre windows dans la fonction " + String(call) + u"\n\n" +
              String(sentence.empty() ? u"Erreur inconnue" : sentence)};
}

TEST_F(RegistryTest, RootsAreSetAndNotTouched) {
  Registry fresh;
  EXPECT_EQ(fresh.HKey(), HKEY_CURRENT_USER);
  EXPECT_EQ(fresh.RootKeyName(), u"");
  for (const Int32 mode : {0, 1, 5, -1}) {
    fresh.InitApp(u"Maison", u"Été", static_cast<RegModeEnum>(mode));
    EXPECT_EQ(fresh.HKey(), mode == 0 ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE) << mode;
    EXPECT_EQ(fresh.RootKeyName(), u"Software\\Maison\\Été") << mode;
    EXPECT_FALSE(fresh.KeyExists(u"")) << mode;
  }
  fresh.HKey(static_cast<HKeyEnum>(12345));
  EXPECT_RAISES(fresh.KeyExists(u""), StoreFailure(kWrongHandle, u"KeyExists()"));
}

TEST_F(RegistryTest, KeyFullNameJoinsRootAndKey) {
  for (const StringView root : {u"R", u""}) {
    registry_.RootKeyName(root);
    const String name(root);
    for (const Variant& none : {Variant(u""), Variant(), Variant(Null)})
      EXPECT_EQ(registry_.KeyFullName(none), name) << Shown(none);
    EXPECT_EQ(registry_.KeyFullName(u"A\\B"), name + u"\\A\\B");
    EXPECT_EQ(registry_.KeyFullName(2.5), name + u"\\2.5");
    EXPECT_EQ(registry_.KeyFullName(u" "), name + u"\\ ");
  }
}

TEST_F(RegistryTest, SaveValueWritesByTypeOrRaises) {
  struct Case {
    Int32 type;
    std::vector<Variant> values;
    std::string stored;  // "" is nothing
    Int32 number = 0;
  };
  const Variant none = Array::OfBytes({});
  const Array flat(VariantType::kByte, {{0, 2}, {0, 2}});
  Array shifted(VariantType::kByte, {{5, 2}});
  shifted.Set({6}, Byte{7});
  const Case cases[] = {// clang-format off
      {0, {u"ab"}, "1:ab\0"s}, {0, {u""}, "1:\0"s}, {0, {u"a\0"s}, "1:a\0\0"s},
      {0, {u"\u20AC\u4E2D"}, "1:\x80?\0"s}, {0, {Int16{-2}, -2}, "4:\xFE\xFF\xFF\xFF"s},
      {0, {Byte{200}, 200}, "4:\xC8\0\0\0"s}, {0, {BytesOf("\0\xFF"s)}, "3:\0\xFF"s},
      {0, {shifted}, "3:\0\7"s},
      {0, {2.5, Currency(1), Date(1), Single{1}, Empty, Null}, "", kTypeMismatch},
      {0, {none}, "", kSubscript}, {1, {2.5, u"2.5"}, "1:2.5\0"s}, {1, {Empty}, "1:\0"s},
      {1, {Null}, "", kInvalidUseOfNull}, {1, {BytesOf("A\0"s)}, "", kTypeMismatch},
      {4, {2.5, 2}, "4:\2\0\0\0"s}, {4, {3.5}, "4:\4\0\0\0"s},
      {4, {u"-1", true}, "4:\xFF\xFF\xFF\xFF"s}, {4, {Empty}, "4:\0\0\0\0"s},
      {4, {u"un"}, "", kTypeMismatch}, {4, {3e9}, "", kOverflow},
      {4, {Null}, "", kInvalidUseOfNull}, {3, {u"é\u20AC"}, "3:\xE9\0\xAC\x20"s},
      {3, {u"", none, flat}, "", kSubscript}, {3, {1}, "", kTypeMismatch}, {2, {u"ab", Null}, ""},
      {-1, {u"ab"}, ""}};
  // clang-format on
  for (const Case& c : cases) {
    for (const Variant& value : c.values) {
      SCOPED_TRACE(Shown(value) + " as " + std::to_string(c.type));
      registry_.DeleteKey(u"K");
      EXPECT_RAISES(registry_.SaveValue(u"K", u"v", value, static_cast<RegTypeEnum>(c.type)),
                    c.number == 0 ? Failure{} : RuntimeFailure(c.number));
      EXPECT_TRUE(registry_.KeyExists(u"K"));
      EXPECT_EQ(Raw("K"), c.stored.empty() ? "" : "  v = " + c.stored + '\n');
    }
  }
}

TEST_F(RegistryTest, ValuesReadByStoredType) {
  struct Case {
    Int32 type;
    std::string data;
    CallOutcome one;
    CallOutcome listed;  // column 1 of GetAllValues
    Int32 listed_type;
  };
  const Case cases[] = {// clang-format off
      {1, "ab\0"s, {0, u"ab"}, {0, u"ab"}, 1}, {1, "ab", {0, u"a"}, {0, u"ab"}, 1},
      {1, "", {0, u""}, {0, u""}, 1},
      {1, "a\0b\0"s, {0, u"a\0b"s}, {0, u"a"}, 1},
      {1, "\x80\xE9\0"s, {0, u"\u20ACé"}, {0, u"\u20ACé"}, 1},
      {3, "\0\xFF"s, {0, BytesOf("\0\377"s)}, {0, BytesOf("\0\377"s)}, 3},
      {3, "", {kSubscript, {}}, {0, BytesOf(""s)}, 3},
      {4, "\xFF\xFF\xFF\xFF", {0, -1}, {0, -1}, 4},
      {4, "\0\0\0\x80"s, {0, INT32_MIN}, {0, INT32_MIN}, 4},
      {4, "\1\2"s, {0, 0x201}, {kSubscript, {}}, 4},
      {4, "\1\0\0\0\0"s, {kBufferTooSmall, {}}, {0, 1}, 4},
      {2, "ab\0"s, {0, Null}, {0, BytesOf("\141\142\0"s)}, 0},
      {7, "", {0, Null}, {0, BytesOf(""s)}, 0}, {0, "x", {0, Null}, {0, BytesOf("\170"s)}, 0},
      {-5, "x", {0, Null}, {0, BytesOf("\170"s)}, 0}};
  // clang-format on
  for (const Case& c : cases) {
    registry_.DeleteKey(u"K");
    SetRaw("K", "Nom", c.type, c.data);
    RecordingStore in_steps(store_);
    for (Store* store : {static_cast<Store*>(&store_), static_cast<Store*>(&in_steps)}) {
      const ScopedStore guard(*store);
      EXPECT_EQ(OutcomeOf([&] { return registry_.GetValue(u"K", u"nOM", u"otherwise"); }), c.one)
          << c.type << ' ' << c.data;
    }
    Array table(VariantType::kVariant, {{0, 1}, {0, 3}});
    table.Set({0, 0}, u"Nom");
    table.Set({0, 1}, c.listed.second);
    table.Set({0, 2}, c.listed_type);
    const auto listed = c.listed.first != 0 ? c.listed : CallOutcome(0, table);
    EXPECT_EQ(OutcomeOf([&] { return registry_.GetAllValues(u"K"); }), listed)
        << c.type << ' ' << c.data;
  }
}

TEST_F(RegistryTest, AbsentValuesGiveTheDefaultAndLongTextsHaveALimit) {
  for (const std::size_t length : {32767U, 32768U}) {
    SetRaw("K", "there", 1, std::string(length, 'x') + '\0');
    EXPECT_EQ(registry_.GetValue(u"K", u"there", Null), Variant(String(length, u'x')));
    const CallOutcome all = OutcomeOf([&] { return registry_.GetAllValues(u"K"); });
    EXPECT_EQ(all.first, length == 32767 ? 0 : kOverflow);
  }
  Array table(VariantType::kVariant, {{0, 2}, {0, 3}});
  for (const Int32 row : {0, 1}) {
    table.Set({row, 0}, row == 0 ? u"b" : u"A");
    table.Set({row, 1}, row + 5);
    table.Set({row, 2}, Int32{REG_DWORD});
    SetRaw("T", row == 0 ? "b" : "A", 4, std::string(1, static_cast<char>(row + 5)) + "\0\0\0"s);
  }
  EXPECT_EQ(registry_.GetAllValues(u"T"), Variant(table));
  EXPECT_EQ(registry_.GetAllValues(u""), Variant());
  for (const Variant& otherwise : std::vector<Variant>{Null, Empty, 5, BytesOf("ab")}) {
    EXPECT_EQ(registry_.GetValue(u"K", u"v", otherwise), otherwise);
    EXPECT_EQ(registry_.GetValue(u"L", u"v", otherwise), otherwise);
  }
}

// Against a plain filter of all paths, in an order that puts a key before those below it.
TEST_F(RegistryTest, SubKeysDownToALevel) {
  Random random(11);
  std::set<std::string> paths{"A"};  // with a low byte for the backslash
  for (int i = 0; i < 60; ++i) {
    const auto parent = std::next(paths.begin(), random.Whole(0, Int32(paths.size()) - 1));
    paths.insert(*parent + '\1' + "_bcd"[random.Whole(0, 3)]);
  }
  const auto path = [](std::string key) { return std::ranges::replace(key, '\1', '\\'), key; };
  for (const std::string& key : paths) SetRaw(path(key), "", 1, "");
  for (const std::string& key : paths) {
    for (Int32 levels = -1; levels < 4; ++levels) {
      std::vector<String> names;
      for (const std::string& below : paths) {
        if (!(below + '\1').starts_with(key + '\1')) continue;
        const auto depth = std::ranges::count(below.substr(key.size()), '\1');
        if (depth == 0 || levels == 0 || depth <= levels) names.push_back(FromAnsi(path(below)));
      }
      EXPECT_EQ(registry_.GetSubKeys(FromAnsi(path(key)), levels), Variant(Array::OfStrings(names)))
          << path(key) << ' ' << levels;
    }
  }
  EXPECT_EQ(registry_.GetSubKeys(u""), Variant(Array::OfStrings(std::vector<String>{u"", u"\\A"})));
}

TEST_F(RegistryTest, DeepTreeIsWalkedOnASmallStack) {
  std::string path = "A";
  for (int i = 1; i < 10000; ++i) path += "\\A";
  SetRaw(path, "", 1, "");
  WithSmallStack([&] { EXPECT_EQ(registry_.GetSubKeys(u"A", 0).If<Array>()->Size(), 10000U); });
}

TEST_F(RegistryTest, EveryFailedStoreCallIsReportedWhole) {
  const LocaleScope french(*Locale::Named(u"fr-BE"));
  SetRaw("A", "v", 4, "\1\0\0\0"s);
  SetRaw("A", "w", 1, "");
  SetRaw("A\\B\\X", "", 1, "");
  SetRaw("A\\C", "", 1, "");
  RecordingStore faulty(store_);
  const ScopedStore guard(faulty);
  // The member's calls of the store, and the text of the call that a failure there names: with "%"
  // for what stands after the operation's name. A "?" stands where code 2 is no failure.
  const struct {
    std::function<void(Registry&)> work;
    StringView text, steps;
  } cases[] = {
      {[](Registry& r) { EXPECT_FALSE(r.KeyExists(u"A\\no")); }, u"KeyExists(A\\no)", u"OpenKey?"},
      {[](Registry& r) { r.GetValue(u"A", u"v", 2.5); }, u"GetValue(A, v, 2,5)",
       u"OpenKey?|QueryValue?|QueryValue"},
      {[](Registry& r) { r.SaveValue(u"A", u"v", true); }, u"SaveValue(A, v, Vrai, 0)",
       u"CreateKey|SetValue"},
      {[](Registry& r) { r.SaveValue(u"A", u"w", BytesOf("\xE9\0A"s), REG_BINARY); },
       u"SaveValue(A, w, é, 3)", u"CreateKey|SetValue"},
      {[](Registry& r) { r.GetAllValues(u"A"); }, u"GetAllValues(A)",
       u"OpenKey|QueryInfo|EnumValue|EnumValue"},
      {[](Registry& r) { r.GetSubKeys(u"A", 2); }, u"doGetSubKeys(%)",
       u"OpenKey A|QueryInfo A|EnumKey A|OpenKey A\\B|QueryInfo A\\B|EnumKey A\\B|"
       u"OpenKey A\\B\\X|EnumKey A\\B\\X|OpenKey A\\C|QueryInfo A\\C"},
      {[](Registry& r) { r.DeleteValue(u"A", u"v"); }, u"DeleteValue(A, v)",
       u"OpenKey|DeleteValue"},
      {[](Registry& r) { r.CopyKey(u"A", u"D"); }, u"CopyKey(A, D)", u"CreateKey|CopyTree"},
      {[](Registry& r) { r.DeleteKey(u"A"); }, u"DeleteKey(A)", u"DeleteTree?"}};
  for (const auto& c : cases) {
    const std::vector<String> steps = Cells(c.steps);
    for (std::size_t i = 0; i < steps.size(); ++i) {
      const std::size_t call_end = steps[i].find_first_of(u" ?");
      String text(c.text);
      if (const auto place = text.find(u'%'); place != String::npos) {
        text.replace(place, 1, steps[i].substr(call_end + 1));
      }
      for (const Int32 code : {Int32{kAbsent}, Int32{kAccessDenied}, Int32{kEndOfList}, 4711}) {
        faulty.FailAt(i, code);
        EXPECT_RAISES(c.work(registry_), code == kAbsent && steps[i].ends_with(u'?')
                                             ? Failure{}
                                             : StoreFailure(code, text));
        ASSERT_EQ(faulty.Calls().size(), i + 1) << Utf8(text);
        EXPECT_EQ(FromAnsi(faulty.Calls()[i]), steps[i].substr(0, call_end)) << Utf8(text);
        EXPECT_EQ(store_.OpenKeyCount(), 0) << Utf8(text) << ' ' << code;
      }
    }
    faulty.FailNever();
    EXPECT_RAISES(c.work(registry_), Failure{});
    EXPECT_EQ(faulty.Calls().size(), steps.size()) << Utf8(c.text);
  }
}

// Their failure comes before anything happens in the store, and a text is asked for once.
TEST_F(RegistryTest, TextsOfArgumentsComeFirst) {
  struct Counted : LateBound {
    Variant Get(StringView, std::span<Variant>) override { return ++reads; }
    Int32 reads = 0;
  };
  const auto counted = std::make_shared<Counted>();
  RecordingStore recording(store_);
  const ScopedStore guard(recording);
  for (const Variant& textless : {Variant(Array::OfStrings({})), Variant(Missing)}) {
    EXPECT_RAISES(registry_.KeyExists(textless), RuntimeFailure(kTypeMismatch));
    EXPECT_RAISES(registry_.SaveValue(u"K", u"v", textless), RuntimeFailure(kTypeMismatch));
  }
  EXPECT_RAISES(registry_.GetValue(u"K", u"v", Date(1e9)), RuntimeFailure(kOverflow));
  EXPECT_TRUE(recording.Calls().empty());
  recording.FailAt(0, kAccessDenied);
  EXPECT_RAISES(registry_.GetValue(u"K", u"v", Object(counted)),
                StoreFailure(kAccessDenied, u"GetValue(K, v, 1)"));
}

}  // namespace
}  // namespace quorl
