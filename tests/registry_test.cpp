#include "quorl/registry/registry.hpp"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "quorl/runtime/locale.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"
#include "tests/support/random.hpp"
#include "tests/support/recording_store.hpp"
#include "tests/support/store_model.hpp"
#include "tests/support/store_small_stack.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {

namespace {

using namespace std::string_literals;

constexpr Int32 kTypeMismatch = 13;
constexpr Int32 kInvalidUseOfNull = 94;
constexpr Int32 kSubscript = 9;
constexpr Int32 kOverflow = 6;

// What a call gave: a value, or the Number of a failure.
struct CallOutcome {
  Int32 number = 0;
  Variant value{};

  friend bool operator==(const CallOutcome&, const CallOutcome&) = default;
  friend void PrintTo(const CallOutcome& outcome, std::ostream* out) {
    *out << '#' << outcome.number << ' ' << Shown(outcome.value);
    const Array* array = outcome.value.If<Array>();
    if (array == nullptr || array->ElementType() == VariantType::kByte) return;
    for (const Variant& element : array->Elements()) *out << ", " << Shown(element);
  }
};

template <class Work>
CallOutcome OutcomeOf(Work work) {
  CallOutcome outcome;
  outcome.number = FailureOf([&] { outcome.value = work(); }).number;
  return outcome;
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
  struct Case {
    StringView root;
    std::vector<Variant> keys;
    StringView full;
  };
  for (const Case& c : {Case{u"R", {u"", Empty, Null}, u"R"},
                        {u"R", {u"A\\B"}, u"R\\A\\B"},
                        {u"R", {2.5}, u"R\\2.5"},
                        {u"R", {u" "}, u"R\\ "},
                        {u"", {u"A"}, u"\\A"},
                        {u"", {u""}, u""}}) {
    registry_.RootKeyName(c.root);
    for (const Variant& key : c.keys) EXPECT_EQ(registry_.KeyFullName(key), c.full) << Shown(key);
  }
  EXPECT_RAISES(registry_.KeyExists(Missing), RuntimeFailure(kTypeMismatch));
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
  const Case cases[] = {
      {0, {u"ab"}, "1:ab\0"s},
      {0, {u""}, "1:\0"s},
      {0, {u"a\0"s}, "1:a\0\0"s},
      {0, {u"\u20AC\u4E2D"}, "1:\x80?\0"s},
      {0, {Int16{-2}, -2}, "4:\xFE\xFF\xFF\xFF"s},
      {0, {Byte{200}, 200}, "4:\xC8\0\0\0"s},
      {0, {BytesOf("\0\xFF"s)}, "3:\0\xFF"s},
      {0, {shifted}, "3:\0\7"s},
      {0, {2.5, Currency(1), Date(1), Single{1}, Empty, Null}, "", kTypeMismatch},
      {0, {none}, "", kSubscript},
      {1, {2.5, u"2.5"}, "1:2.5\0"s},
      {1, {Empty}, "1:\0"s},
      {1, {Null}, "", kInvalidUseOfNull},
      {1, {BytesOf("A\0"s)}, "", kTypeMismatch},
      {4, {2.5, 2}, "4:\2\0\0\0"s},
      {4, {3.5}, "4:\4\0\0\0"s},
      {4, {u"-1", true}, "4:\xFF\xFF\xFF\xFF"s},
      {4, {Empty}, "4:\0\0\0\0"s},
      {4, {u"un"}, "", kTypeMismatch},
      {4, {3e9}, "", kOverflow},
      {4, {Null}, "", kInvalidUseOfNull},
      {3, {u"é\u20AC"}, "3:\xE9\0\xAC\x20"s},
      {3, {u"", none, flat}, "", kSubscript},
      {3, {1}, "", kTypeMismatch},
      {2, {u"ab", Null}, ""},
      {-1, {u"ab"}, ""},
  };
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
  const Case cases[] = {
      {1, "ab\0"s, {0, u"ab"}, {0, u"ab"}, 1},
      {1, "ab", {0, u"a"}, {0, u"ab"}, 1},
      {1, "\0"s, {0, u""}, {0, u""}, 1},
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
      {7, "", {0, Null}, {0, BytesOf(""s)}, 0},
      {0, "x", {0, Null}, {0, BytesOf("\170"s)}, 0},
      {-5, "x", {0, Null}, {0, BytesOf("\170"s)}, 0},
  };
  for (const Case& c : cases) {
    registry_.DeleteKey(u"K");
    SetRaw("K", "Nom", c.type, c.data);
    EXPECT_EQ(OutcomeOf([&] { return registry_.GetValue(u"K", u"nOM", u"otherwise"); }), c.one)
        << c.type << ' ' << c.data;
    CallOutcome listed = c.listed;
    if (listed.number == 0) {
      Array table(VariantType::kVariant, {{0, 1}, {0, 3}});
      table.Set({0, 0}, u"Nom");
      table.Set({0, 1}, c.listed.value);
      table.Set({0, 2}, c.listed_type);
      listed.value = table;
    }
    EXPECT_EQ(OutcomeOf([&] { return registry_.GetAllValues(u"K"); }), listed)
        << c.type << ' ' << c.data;
  }
}

TEST_F(RegistryTest, AbsentValuesGiveTheDefault) {
  SetRaw("K", "there", 4, "\1\0\0\0"s);
  for (const Variant& otherwise : std::vector<Variant>{Null, Empty, 5, BytesOf("ab")}) {
    EXPECT_EQ(registry_.GetValue(u"K", u"v", otherwise), otherwise);
    EXPECT_EQ(registry_.GetValue(u"L", u"v", otherwise), otherwise);
  }
}

TEST_F(RegistryTest, LongTextsAreListedUpToTheLimit) {
  for (const std::size_t length : {32767U, 32768U}) {
    SetRaw("K", "v", 1, std::string(length, 'x') + '\0');
    EXPECT_EQ(registry_.GetValue(u"K", u"v", Null), Variant(String(length, u'x')));
    EXPECT_EQ(OutcomeOf([&] { return registry_.GetAllValues(u"K"); }).number,
              length == 32767 ? 0 : kOverflow);
  }
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
  std::string path = "A";
  for (int i = 1; i < 10000; ++i) path += "\\A";
  SetRaw(path, "", 1, "");
  WithSmallStack([&] { EXPECT_EQ(registry_.GetSubKeys(u"A", 0).If<Array>()->Size(), 10000U); });
}

// Each member's calls of the store, and the text of the call that a failure there names: with "%"
// for what stands behind the operation's name. A "?" stands where code 2 is no failure.
struct FaultCase {
  std::function<void(Registry&)> work;
  StringView text;
  StringView steps;
};

const std::vector<FaultCase>& FaultCases() {
  static const std::vector<FaultCase> cases{
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
      {[](Registry& r) { r.DeleteKey(u"A"); }, u"DeleteKey(A)", u"DeleteTree?"},
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
    const std::vector<String> steps = Cells(c.steps);
    for (std::size_t i = 0; i < steps.size(); ++i) {
      const std::size_t call_end = steps[i].find_first_of(u" ?");
      const bool absent_is_fine = steps[i].ends_with(u'?');
      String text(c.text);
      if (const auto place = text.find(u'%'); place != String::npos) {
        text.replace(place, 1, steps[i].substr(call_end + 1));
      }
      for (const Int32 code : {Int32{kAbsent}, Int32{kAccessDenied}, Int32{kEndOfList}, 4711}) {
        faulty.FailAt(i, code);
        EXPECT_RAISES(c.work(registry_),
                      code == kAbsent && absent_is_fine ? Failure{} : StoreFailure(code, text));
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

TEST_F(RegistryTest, ArgumentsWithoutTextChangeNothing) {
  const Variant texts = Array::OfStrings({});
  RecordingStore recording(store_);
  const ScopedStore guard(recording);
  EXPECT_RAISES(registry_.GetValue(u"K", u"v", texts), RuntimeFailure(kTypeMismatch));
  EXPECT_RAISES(registry_.SaveValue(u"K", u"v", texts), RuntimeFailure(kTypeMismatch));
  EXPECT_RAISES(registry_.KeyFullName(texts), RuntimeFailure(kTypeMismatch));
  EXPECT_TRUE(recording.Calls().empty());
}

// A walk of random calls, each compared with the same on the model.
class RandomWalk {
 public:
  explicit RandomWalk(std::uint32_t seed)
      : random_(seed), root_(seed % 2 == 0 ? "" : "Maison\\Caisse") {
    registry_.InitAbsolute(HKEY_CURRENT_USER, FromAnsi(root_));
  }

  void Step() {
    const std::string key = RandomKey();
    const std::string path = root_ + '\\' + key;
    const std::string name = Pick<const char*>({"", "v", "V", "Valeur", "_"});
    const String wide = FromAnsi(key);
    const String wide_name = FromAnsi(name);
    const std::size_t call = Below(36);
    if (call < 4) {
      Same({0, model_.Find(path) != nullptr}, [&] { return registry_.KeyExists(wide); });
    } else if (call < 8) {
      const auto* value = model_.Find(path, name);
      Same({0, value == nullptr ? Variant(7) : Content(*value, value->data.find_last_of('\0'))},
           [&] { return registry_.GetValue(wide, wide_name, 7); });
    } else if (call < 12) {
      Same({model_.Apply({ChangeKind::DeleteValue, path, name})},
           [&] { return registry_.DeleteValue(wide, wide_name), Variant(); });
    } else if (call < 16) {
      Same(AllValues(path), [&] { return registry_.GetAllValues(wide); });
    } else if (call < 20) {
      const auto levels = static_cast<Int32>(Below(5)) - 1;
      Same(SubKeys(key, path, levels), [&] { return registry_.GetSubKeys(wide, levels); });
    } else if (call == 20) {
      model_.Apply({ChangeKind::DeleteKey, path});
      Same({}, [&] { return registry_.DeleteKey(wide), Variant(); });
    } else if (call == 21) {
      const std::string to = RandomKey();
      model_.Apply({ChangeKind::CreateKey, root_ + '\\' + to});
      Same({model_.Apply({ChangeKind::Merge, path, root_ + '\\' + to})},
           [&] { return registry_.CopyKey(wide, FromAnsi(to)), Variant(); });
    } else {
      SaveSomething(path, wide, name);
    }
  }

 private:
  std::size_t Below(std::size_t limit) { return random_.Bits() % limit; }
  template <class Item>
  Item Pick(std::initializer_list<Item> items) {
    return items.begin()[Below(items.size())];
  }

  std::string RandomKey() {
    std::string key;
    for (std::size_t levels = Below(4); levels > 0; --levels) {
      if (!key.empty() || Below(20) == 0) key += Below(20) == 0 ? "\\\\" : "\\";
      key += Pick<const char*>({"a", "A", "_", "Bc", "bc"});
    }
    return key;
  }

  // `end`: where a text ends.
  static Variant Content(const StoreModel::Value& value, std::size_t end) {
    if (value.type == 1) return FromAnsi(value.data.substr(0, end));
    if (value.type == 3) return BytesOf(value.data);
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<Byte>(value.data[i]);
    return static_cast<Int32>(number);
  }

  CallOutcome AllValues(const std::string& path) const {
    const StoreModel::Key* key = model_.Find(path);
    if (key == nullptr) return {kAbsent};
    if (key->values.empty()) return {};
    Array table(VariantType::kVariant,
                {{0, static_cast<std::uint32_t>(key->values.size())}, {0, 3}});
    for (Int32 row = 0; const StoreModel::Value& value : key->values) {
      table.Set({row, 0}, FromAnsi(value.name));
      table.Set({row, 1}, Content(value, value.data.find('\0')));
      table.Set({row++, 2}, value.type);
    }
    return {0, table};
  }

  CallOutcome SubKeys(const std::string& key, const std::string& path, Int32 levels) const {
    if (model_.Find(path) == nullptr) return {kAbsent};
    const std::size_t top = StoreModel::Levels(path).size();
    std::vector<String> names;
    for (const auto& [below, content] : model_.Below(path)) {
      const auto depth = static_cast<Int32>(below.size() - top);
      if (depth > 0 && levels != 0 && depth > levels) continue;
      names.push_back(FromAnsi(key + model_.NamesOf(below, top)));
    }
    return {0, Array::OfStrings(names)};
  }

  void SaveSomething(const std::string& path, const String& key, const std::string& name) {
    struct Content {
      Variant value;
      Int32 type;                       // that is asked for
      std::optional<std::string> data;  // that is stored
      Int32 stored_type = 0;
      Int32 number = 0;
    };
    const Content content = Pick<Content>({{u"texte", 0, "texte\0"s, 1},
                                           {u"a\0b"s, 1, "a\0b\0"s, 1},
                                           {u"", 0, "\0"s, 1},
                                           {-2, 0, "\xFE\xFF\xFF\xFF"s, 4},
                                           {-2, 1, "-2\0"s, 1},
                                           {2.5, 0, {}, 0, kTypeMismatch},
                                           {2.5, 4, "\2\0\0\0"s, 4},
                                           {u"é", 3, "\xE9\0"s, 3},
                                           {BytesOf("\1\0\2"s), 0, "\1\0\2"s, 3},
                                           {Null, 4, {}, 0, kInvalidUseOfNull},
                                           {u"", 3, {}, 0, kSubscript},
                                           {5, 2, {}}});
    model_.Apply({ChangeKind::CreateKey, path});
    if (content.data) {
      model_.Apply({ChangeKind::SetValue, path, name, *content.data, content.stored_type});
    }
    Same({content.number}, [&] {
      registry_.SaveValue(key, FromAnsi(name), content.value,
                          static_cast<RegTypeEnum>(content.type));
      return Variant();
    });
  }

  template <class Work>
  void Same(const CallOutcome& expected, Work work) {
    EXPECT_EQ(OutcomeOf(work), expected);
  }

  Random random_;
  std::string root_;
  StoreModel model_;
  Registry registry_;
};

// In memory, and on the disk with a reopening every now and then.
TEST(RegistryWalk, AgreesWithTheModel) {
  for (const std::uint32_t seed : {1U, 2U, 3U, 4U, 5U, 6U}) {
    const TemporaryFolder folder;
    const bool on_disk = seed > 4;
    RandomWalk walk(seed);
    std::unique_ptr<Store> store = std::make_unique<MemoryStore>();
    for (int step = 0; step < (on_disk ? 1000 : 2000) && !testing::Test::HasFailure(); ++step) {
      if (on_disk && step % 50 == 0) store = std::make_unique<PersistentStore>(folder.Folders());
      const ScopedStore guard(*store);
      SCOPED_TRACE("seed " + std::to_string(seed) + " step " + std::to_string(step));
      walk.Step();
      EXPECT_EQ(store->OpenKeyCount(), 0);
    }
  }
}

}  // namespace
}  // namespace quorl
