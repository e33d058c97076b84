#include "quorl/registry/registry.hpp"

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <ostream>
#include <string>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/registry_model.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {

void PrintTo(const CallOutcome& outcome, std::ostream* out) {
  *out << '#' << outcome.number << ' ';
  PrintTo(outcome.value, out);
  const Array* array = outcome.value.If<Array>();
  if (array == nullptr || array->ElementType() == VariantType::kByte) return;
  for (const Variant& element : array->Elements()) PrintTo(element, &(*out << ", "));
}

namespace {

using namespace std::string_literals;

constexpr Int32 kTypeMismatch = 13;
constexpr Int32 kInvalidUseOfNull = 94;
constexpr Int32 kSubscript = 9;
constexpr Int32 kOverflow = 6;

Variant BytesOf(std::initializer_list<int> bytes) {
  std::vector<Byte> content;
  for (const int byte : bytes) content.push_back(static_cast<Byte>(byte));
  return Array::OfBytes(content);
}

// Every test leaves no key open.
class RegistryTest : public testing::Test {
 protected:
  RegistryTest() { registry_.InitAbsolute(HKEY_CURRENT_USER, u"Maison\\Caisse"); }
  void TearDown() override { EXPECT_EQ(store_.OpenKeyCount(), 0); }

  void SetRaw(std::string_view key, std::string_view name, Int32 type, std::string_view data) {
    KeyHandle handle = 0;
    ASSERT_EQ(store_.CreateKey(HKEY_CURRENT_USER, "Maison\\Caisse\\"s.append(key), kSetValues,
                               &handle, nullptr),
              kDone);
    EXPECT_EQ(store_.SetValue(handle, name, type, data), kDone);
    store_.CloseKey(handle);
  }

  // The stored type and bytes, "-" where there is no such value.
  std::string Raw(std::string_view key, std::string_view name) {
    KeyHandle handle = 0;
    if (store_.OpenKey(HKEY_CURRENT_USER, "Maison\\Caisse\\"s.append(key), kReadValues, &handle) !=
        kDone) {
      return "no key";
    }
    Int32 type = 0;
    std::string data(100, '\0');
    auto size = static_cast<Int32>(data.size());
    const Int32 code = store_.QueryValue(handle, name, &type, {data.data(), &size});
    store_.CloseKey(handle);
    if (code != kDone) return "-";
    return std::to_string(type) + ":" + data.substr(0, static_cast<std::size_t>(size));
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
  struct Case {
    Int32 mode;
    HKeyEnum root;
  };
  for (const Case& c : {Case{0, HKEY_CURRENT_USER}, Case{1, HKEY_LOCAL_MACHINE},
                        Case{5, HKEY_LOCAL_MACHINE}, Case{-1, HKEY_LOCAL_MACHINE}}) {
    fresh.InitApp(u"Maison", u"Été", static_cast<RegModeEnum>(c.mode));
    EXPECT_EQ(fresh.HKey(), c.root) << c.mode;
    EXPECT_EQ(fresh.RootKeyName(), u"Software\\Maison\\Été") << c.mode;
    EXPECT_FALSE(fresh.KeyExists(u"")) << c.mode;
  }
  fresh.HKey(static_cast<HKeyEnum>(12345));
  EXPECT_RAISES(fresh.KeyExists(u""), StoreFailure(kWrongHandle, u"KeyExists()"));
}

TEST_F(RegistryTest, KeyFullNameJoinsRootAndKey) {
  struct Case {
    StringView root;
    Variant key;
    StringView full;
  };
  const Case cases[] = {
      {u"R", u"", u"R"},           {u"R", Empty, u"R"},    {u"R", Null, u"R"},
      {u"R", u"A", u"R\\A"},       {u"", u"A", u"\\A"},    {u"", u"", u""},
      {u"R", 0, u"R\\0"},          {u"R", 2.5, u"R\\2.5"}, {u"R", true, u"R\\True"},
      {u"R", u"A\\B", u"R\\A\\B"}, {u"R", u" ", u"R\\ "},
  };
  for (const Case& c : cases) {
    registry_.RootKeyName(c.root);
    EXPECT_EQ(registry_.KeyFullName(c.key), c.full) << Shown(c.key);
  }
  const Variant texts = Array::OfStrings({});
  EXPECT_RAISES(registry_.KeyFullName(texts), RuntimeFailure(kTypeMismatch));
  EXPECT_RAISES(registry_.KeyExists(Missing), RuntimeFailure(kTypeMismatch));
}

TEST_F(RegistryTest, SaveValueWritesByTypeOrRaises) {
  struct Case {
    Variant value;
    Int32 type;
    std::string stored;  // "-": nothing written
    Int32 number = 0;
  };
  const Variant none = Array::OfBytes({});
  Array shifted(VariantType::kByte, {{5, 2}});
  shifted.Set({6}, Byte{7});
  const Case cases[] = {
      {u"ab", 0, "1:ab\0"s},
      {u"", 0, "1:\0"s},
      {u"a\0"s, 0, "1:a\0\0"s},
      {u"\u20AC\u4E2D", 0, "1:\x80?\0"s},
      {1, 0, "4:\1\0\0\0"s},
      {Int16{-2}, 0, "4:\xFE\xFF\xFF\xFF"s},
      {Byte{200}, 0, "4:\xC8\0\0\0"s},
      {true, 0, "4:\xFF\xFF\xFF\xFF"s},
      {BytesOf({0, 255}), 0, "3:\0\xFF"s},
      {shifted, 0, "3:\0\7"s},
      {2.5, 0, "-", kTypeMismatch},
      {Currency(1), 0, "-", kTypeMismatch},
      {Date(1), 0, "-", kTypeMismatch},
      {Single{1}, 0, "-", kTypeMismatch},
      {Empty, 0, "-", kTypeMismatch},
      {Null, 0, "-", kTypeMismatch},
      {none, 0, "-", kSubscript},
      {2.5, 1, "1:2.5\0"s},
      {Empty, 1, "1:\0"s},
      {Null, 1, "-", kInvalidUseOfNull},
      {BytesOf({65, 0}), 1, "-", kTypeMismatch},
      {2.5, 4, "4:\2\0\0\0"s},
      {3.5, 4, "4:\4\0\0\0"s},
      {u"-1", 4, "4:\xFF\xFF\xFF\xFF"s},
      {u"un", 4, "-", kTypeMismatch},
      {3e9, 4, "-", kOverflow},
      {Empty, 4, "4:\0\0\0\0"s},
      {Null, 4, "-", kInvalidUseOfNull},
      {u"é\u20AC", 3, "3:\xE9\0\xAC\x20"s},
      {u"", 3, "-", kSubscript},
      {1, 3, "-", kTypeMismatch},
      {Array(VariantType::kByte, {{0, 2}, {0, 2}}), 3, "-", kSubscript},
      {u"ab", 2, "-"},
      {u"ab", -1, "-"},
      {Null, 7, "-"},
  };
  int key = 0;
  for (const Case& c : cases) {
    const String name = FromAnsi(std::to_string(key++));
    EXPECT_RAISES(registry_.SaveValue(name, u"v", c.value, static_cast<RegTypeEnum>(c.type)),
                  c.number == 0 ? Failure{} : RuntimeFailure(c.number))
        << Shown(c.value) << " as " << c.type;
    EXPECT_EQ(Raw(ToAnsi(name), "v"), c.stored) << Shown(c.value) << " as " << c.type;
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
  const Case cases[] = {
      {1, "ab\0"s, {0, u"ab"}, {0, u"ab"}, 1},
      {1, "ab", {0, u"a"}, {0, u"ab"}, 1},
      {1, "\0"s, {0, u""}, {0, u""}, 1},
      {1, "", {0, u""}, {0, u""}, 1},
      {1, "a\0b\0"s, {0, u"a\0b"s}, {0, u"a"}, 1},
      {1, "\x80\xE9\0"s, {0, u"\u20ACé"}, {0, u"\u20ACé"}, 1},
      {3, "\0\xFF"s, {0, BytesOf({0, 255})}, {0, BytesOf({0, 255})}, 3},
      {3, "", {kSubscript, {}}, {0, BytesOf({})}, 3},
      {4, "\xFF\xFF\xFF\xFF", {0, -1}, {0, -1}, 4},
      {4, "\0\0\0\x80"s, {0, INT32_MIN}, {0, INT32_MIN}, 4},
      {4, "\1\2"s, {0, 0x201}, {kSubscript, {}}, 4},
      {4, "\1\0\0\0\0"s, {kBufferTooSmall, {}}, {0, 1}, 4},
      {2, "ab\0"s, {0, Null}, {0, BytesOf({97, 98, 0})}, 0},
      {7, "", {0, Null}, {0, BytesOf({})}, 0},
      {0, "x", {0, Null}, {0, BytesOf({120})}, 0},
      {-5, "x", {0, Null}, {0, BytesOf({120})}, 0},
  };
  int place = 0;
  for (const Case& c : cases) {
    const std::string key = std::to_string(place++);
    SetRaw(key, "Nom", c.type, c.data);
    const String name = FromAnsi(key);
    EXPECT_EQ(OutcomeOf([&] { return registry_.GetValue(name, u"nOM", u"otherwise"); }), c.one)
        << c.type << ' ' << c.data;
    const CallOutcome all = OutcomeOf([&] { return registry_.GetAllValues(name); });
    EXPECT_EQ(all.number, c.listed.number) << c.type << ' ' << c.data;
    if (all.number != 0) continue;
    const Array& table = *all.value.If<Array>();
    EXPECT_EQ(table.Bound(0), (ArrayBound{0, 1})) << key;
    EXPECT_EQ(table.Bound(1), (ArrayBound{0, 3})) << key;
    EXPECT_EQ(table.Get({0, 0}), Variant(u"Nom")) << key;
    EXPECT_EQ(table.Get({0, 1}), c.listed.value) << key;
    EXPECT_EQ(table.Get({0, 2}), Variant(c.listed_type)) << key;
  }
}

TEST_F(RegistryTest, AbsentValuesGiveTheDefault) {
  SetRaw("K", "there", 4, "\1\0\0\0"s);
  const Variant defaults[] = {Null, Empty, 5, u"x", BytesOf({1, 2})};
  for (const Variant& otherwise : defaults) {
    EXPECT_EQ(registry_.GetValue(u"K", u"v", otherwise), otherwise);
    EXPECT_EQ(registry_.GetValue(u"L", u"v", otherwise), otherwise);
  }
}

TEST_F(RegistryTest, LongTextsAreListedUpToTheLimit) {
  SetRaw("K", "v", 1, std::string(32767, 'x') + '\0');
  EXPECT_EQ(registry_.GetAllValues(u"K").If<Array>()->Get({0, 1}), Variant(String(32767, u'x')));
  SetRaw("K", "v", 1, std::string(32768, 'x') + '\0');
  EXPECT_RAISES(registry_.GetAllValues(u"K"), RuntimeFailure(kOverflow));
  EXPECT_EQ(registry_.GetValue(u"K", u"v", Null), Variant(String(32768, u'x')));
}

TEST_F(RegistryTest, SubKeysDownToALevel) {
  for (const char* key : {"A\\B\\C\\D", "A\\b2", "A\\_", "Z"}) SetRaw(key, "", 1, "");
  struct Case {
    StringView key;
    Int32 levels;
    std::vector<String> names;
  };
  const Case cases[] = {
      {u"A", 1, {u"A", u"A\\_", u"A\\B", u"A\\b2"}},
      {u"A", 2, {u"A", u"A\\_", u"A\\B", u"A\\B\\C", u"A\\b2"}},
      {u"A", 0, {u"A", u"A\\_", u"A\\B", u"A\\B\\C", u"A\\B\\C\\D", u"A\\b2"}},
      {u"A", -1, {u"A"}},
      {u"a\\b\\c\\d", 0, {u"a\\b\\c\\d"}},
      {u"", 1, {u"", u"\\A", u"\\Z"}},
      {u"", 3, {u"", u"\\A", u"\\A\\_", u"\\A\\B", u"\\A\\B\\C", u"\\A\\b2", u"\\Z"}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(registry_.GetSubKeys(c.key, c.levels), Variant(Array::OfStrings(c.names)))
        << Utf8(c.key) << ' ' << c.levels;
  }
  EXPECT_EQ(registry_.GetSubKeys(u"A"), registry_.GetSubKeys(u"A", 1));
}

TEST_F(RegistryTest, DeepTreeIsWalkedOnASmallStack) {
  constexpr int kDepth = 10000;
  std::string path = "A";
  for (int i = 1; i < kDepth; ++i) path += "\\A";
  SetRaw(path, "", 1, "");
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1 << 20), 0);
  pthread_t thread;
  std::size_t keys = 0;
  std::function<void()> walk = [&] { keys = registry_.GetSubKeys(u"A", 0).If<Array>()->Size(); };
  const auto run = [](void* work) -> void* {
    (*static_cast<std::function<void()>*>(work))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &walk), 0);
  pthread_join(thread, nullptr);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(keys, kDepth);
}

// For each member, the store's calls that it makes, the text of the call that a failure there
// names, and whether code 2 is no failure there.
struct FaultCase {
  struct Step {
    std::string call;
    StringView text;
    bool absent_is_fine = false;
  };
  std::function<void(Registry&)> work;
  std::vector<Step> steps;
};

const std::vector<FaultCase>& FaultCases() {
  static const std::vector<FaultCase> cases{
      {[](Registry& r) { EXPECT_FALSE(r.KeyExists(u"A\\no")); },
       {{"OpenKey", u"KeyExists(A\\no)", true}}},
      {[](Registry& r) { r.GetValue(u"A", u"v", 2.5); },
       {{"OpenKey", u"GetValue(A, v, 2,5)", true},
        {"QueryValue", u"GetValue(A, v, 2,5)", true},
        {"QueryValue", u"GetValue(A, v, 2,5)"}}},
      {[](Registry& r) { r.SaveValue(u"A", u"v", true); },
       {{"CreateKey", u"SaveValue(A, v, Vrai, 0)"}, {"SetValue", u"SaveValue(A, v, Vrai, 0)"}}},
      {[](Registry& r) {
         r.SaveValue(u"A", u"w", BytesOf({0xE9, 0, 0x41}), REG_BINARY);
       },
       {{"CreateKey", u"SaveValue(A, w, é, 3)"}, {"SetValue", u"SaveValue(A, w, é, 3)"}}},
      {[](Registry& r) { r.GetAllValues(u"A"); },
       {{"OpenKey", u"GetAllValues(A)"},
        {"QueryInfo", u"GetAllValues(A)"},
        {"EnumValue", u"GetAllValues(A)"},
        {"EnumValue", u"GetAllValues(A)"}}},
      {[](Registry& r) { r.GetSubKeys(u"A", 2); },
       {{"OpenKey", u"doGetSubKeys(A)"},
        {"QueryInfo", u"doGetSubKeys(A)"},
        {"EnumKey", u"doGetSubKeys(A)"},
        {"OpenKey", u"doGetSubKeys(A\\B)"},
        {"QueryInfo", u"doGetSubKeys(A\\B)"},
        {"EnumKey", u"doGetSubKeys(A\\B)"},
        {"OpenKey", u"doGetSubKeys(A\\B\\X)"},
        {"EnumKey", u"doGetSubKeys(A\\B\\X)"},
        {"OpenKey", u"doGetSubKeys(A\\C)"},
        {"QueryInfo", u"doGetSubKeys(A\\C)"}}},
      {[](Registry& r) { r.DeleteValue(u"A", u"v"); },
       {{"OpenKey", u"DeleteValue(A, v)"}, {"DeleteValue", u"DeleteValue(A, v)"}}},
      {[](Registry& r) { r.CopyKey(u"A", u"D"); },
       {{"CreateKey", u"CopyKey(A, D)"}, {"CopyTree", u"CopyKey(A, D)"}}},
      {[](Registry& r) { r.DeleteKey(u"A"); }, {{"DeleteTree", u"DeleteKey(A)", true}}},
  };
  return cases;
}

TEST_F(RegistryTest, EveryFailedStoreCallIsReportedWhole) {
  const LocaleScope french(*Locale::Named(u"fr-BE"));
  SetRaw("A", "v", 4, "\1\0\0\0"s);
  SetRaw("A", "w", 1, "");
  SetRaw("A\\B\\X", "", 1, "");
  SetRaw("A\\C", "", 1, "");
  RecordingStore faulty(store_);
  const ScopedStore guard(faulty);
  for (const FaultCase& c : FaultCases()) {
    for (std::size_t i = 0; i < c.steps.size(); ++i) {
      const FaultCase::Step& step = c.steps[i];
      for (const Int32 code : {Int32{kAbsent}, Int32{kAccessDenied}, Int32{kEndOfList}, 4711}) {
        faulty.FailAt(i, code);
        const bool is_fine = code == kAbsent && step.absent_is_fine;
        EXPECT_RAISES(c.work(registry_), is_fine ? Failure{} : StoreFailure(code, step.text));
        ASSERT_EQ(faulty.Calls().size(), i + 1) << Utf8(step.text);
        EXPECT_EQ(faulty.Calls()[i], step.call) << Utf8(step.text);
        EXPECT_EQ(store_.OpenKeyCount(), 0) << Utf8(step.text) << ' ' << code;
      }
    }
    faulty.FailNever();
    EXPECT_RAISES(c.work(registry_), Failure{});
    EXPECT_EQ(faulty.Calls().size(), c.steps.size()) << Utf8(c.steps[0].text);
  }
}

TEST_F(RegistryTest, ArgumentsWithoutTextChangeNothing) {
  const Variant texts = Array::OfStrings({});
  RecordingStore recording(store_);
  const ScopedStore guard(recording);
  EXPECT_RAISES(registry_.GetValue(u"K", u"v", texts), RuntimeFailure(kTypeMismatch));
  EXPECT_RAISES(registry_.SaveValue(u"K", u"v", texts), RuntimeFailure(kTypeMismatch));
  EXPECT_RAISES(registry_.KeyExists(texts), RuntimeFailure(kTypeMismatch));
  EXPECT_TRUE(recording.Calls().empty());
}

// A walk of random calls, each compared with the model.
class RandomWalk {
 public:
  RandomWalk(std::uint32_t seed, bool fixed_root) : random_(seed), model_(fixed_root) {
    registry_.InitAbsolute(HKEY_CURRENT_USER, fixed_root ? u"" : u"Maison\\Caisse");
  }

  void Step() {
    const String key = Key();
    const String name = Pick<String>({u"", u"v", u"V", u"Valeur", u"_"});
    switch (Below(9)) {
      case 0:
        return Same(model_.KeyExists(key), [&] { return Variant(registry_.KeyExists(key)); });
      case 1:
        return Same(model_.GetValue(key, name, 7),
                    [&] { return registry_.GetValue(key, name, 7); });
      case 2:
        return Same(model_.DeleteValue(key, name),
                    [&] { return registry_.DeleteValue(key, name), Variant(); });
      case 3:
        return Same(model_.GetAllValues(key), [&] { return registry_.GetAllValues(key); });
      case 4: {
        const auto levels = static_cast<Int32>(Below(5)) - 1;
        return Same(model_.GetSubKeys(key, levels),
                    [&] { return registry_.GetSubKeys(key, levels); });
      }
      case 5:
        if (Below(4) != 0) return Save(key, name);
        return Same(model_.DeleteKey(key), [&] { return registry_.DeleteKey(key), Variant(); });
      case 6: {
        if (Below(4) != 0) return Save(key, name);
        const String to = Key();
        return Same(model_.CopyKey(key, to), [&] { return registry_.CopyKey(key, to), Variant(); });
      }
      default:
        return Save(key, name);
    }
  }

 private:
  struct Content {
    Variant value;
    Int32 type;
    std::optional<std::string> data;
    Int32 number = 0;
  };

  std::size_t Below(std::size_t limit) { return random_.Bits() % limit; }
  template <class Item>
  Item Pick(std::initializer_list<Item> items) {
    return items.begin()[Below(items.size())];
  }

  String Key() {
    String key;
    for (std::size_t levels = Below(4); levels > 0; --levels) {
      if (!key.empty() || Below(20) == 0) key += Below(20) == 0 ? u"\\\\" : u"\\";
      key += Pick<String>({u"a", u"A", u"_", u"Bc", u"bc"});
    }
    return key;
  }

  void Save(const String& key, const String& name) {
    const Content content = Pick<Content>({{u"texte", 0, "texte\0"s},
                                           {u"a\0b"s, 1, "a\0b\0"s},
                                           {u"", 0, "\0"s},
                                           {-2, 0, "\xFE\xFF\xFF\xFF"s},
                                           {-2, 1, "-2\0"s},
                                           {2.5, 0, {}, kTypeMismatch},
                                           {2.5, 4, "\2\0\0\0"s},
                                           {u"é", 3, "\xE9\0"s},
                                           {BytesOf({1, 0, 2}), 0, "\1\0\2"s},
                                           {Null, 4, {}, kInvalidUseOfNull},
                                           {u"", 3, {}, kSubscript},
                                           {5, 2, {}}});
    const Int32 type = content.type != 0               ? content.type
                       : content.value.Holds<String>() ? 1
                       : content.value.Holds<Int32>()  ? 4
                                                       : 3;
    Same(model_.SaveValue(key, name, type, content.data, content.number), [&] {
      registry_.SaveValue(key, name, content.value, static_cast<RegTypeEnum>(content.type));
      return Variant();
    });
  }

  template <class Work>
  void Same(const CallOutcome& expected, Work work) {
    EXPECT_EQ(OutcomeOf(work), expected);
  }

  Random random_;
  RegistryModel model_;
  Registry registry_;
};

TEST(RegistryWalk, AgreesWithTheModelInMemory) {
  for (const std::uint32_t seed : {1U, 2U, 3U, 4U}) {
    MemoryStore store;
    const ScopedStore guard(store);
    RandomWalk walk(seed, seed % 2 == 0);
    for (int step = 0; step < 2000 && !testing::Test::HasFailure(); ++step) {
      SCOPED_TRACE("seed " + std::to_string(seed) + " step " + std::to_string(step));
      walk.Step();
      EXPECT_EQ(store.OpenKeyCount(), 0);
    }
  }
}

TEST(RegistryWalk, AgreesWithTheModelOnTheDisk) {
  for (const std::uint32_t seed : {5U, 6U}) {
    const TemporaryFolder folder;
    RandomWalk walk(seed, seed % 2 == 0);
    for (int opening = 0; opening < 20; ++opening) {
      PersistentStore store(folder.Folders());
      const ScopedStore guard(store);
      for (int step = 0; step < 50 && !testing::Test::HasFailure(); ++step) {
        SCOPED_TRACE("seed " + std::to_string(seed) + " opening " + std::to_string(opening) +
                     " step " + std::to_string(step));
        walk.Step();
        EXPECT_EQ(store.OpenKeyCount(), 0);
      }
    }
  }
}

}  // namespace
}  // namespace quorl
