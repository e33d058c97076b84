// The twelve operations over both stores, several changes as one, and what the persistent store
// does with damaged, foreign and oversized things. Breakage of machine and process:
// store_crash_test.cpp; several processes: store_shared_test.cpp.
#include "quorl/store/operations.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/store/internal/crc32c.hpp"
#include "quorl/store/internal/handle_table.hpp"
#include "quorl/store/internal/journal_format.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/random.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_simulated_files.hpp"
#include "tests/support/store_small_stack.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {
namespace {

namespace fs = std::filesystem;
using enum Action::Kind;

// The operations on either store, which the fixture puts in the current one's place.
class Operations : public testing::TestWithParam<bool> {
 protected:
  Operations() { Reopen(); }

  // Another object over the same files, as another process would have; the store in memory stays.
  void Reopen() {
    if (!GetParam() && store_ != nullptr) return;
    guard_.reset();
    store_ = GetParam() ? std::unique_ptr<Store>(new PersistentStore(folder_.Folders()))
                        : std::make_unique<MemoryStore>();
    guard_ = std::make_unique<ScopedStore>(*store_);
  }

  TemporaryFolder folder_;
  std::unique_ptr<Store> store_;
  std::unique_ptr<ScopedStore> guard_;
};

INSTANTIATE_TEST_SUITE_P(Stores, Operations, testing::Bool(),
                         [](const auto& each) { return each.param ? "Persistent" : "Memory"; });

TEST_P(Operations, GiveTheCodesOfTheirContract) {
  const auto opened = [](std::string_view path, Int32 access) {
    KeyHandle key = 0;
    EXPECT_EQ(RegCreateKeyExA(kCurrentUser, path, 0, "0", 0, access, nullptr, &key, nullptr),
              kDone);
    return key;
  };
  const KeyHandle all = opened("A\\B", kAllAccess);
  const KeyHandle reading = opened("A\\B", kReadValues);
  const KeyHandle writing = opened("A\\B", kSetValues);
  const KeyHandle closed = opened("A", kAllAccess);
  ASSERT_EQ(RegCloseKey(closed), kDone);

  KeyHandle out = 7;
  std::array<char, 16> bytes{};
  Int32 size = 0;
  Int32 type = 0;
  const std::string long_level(256, 'k');
  const std::string long_name(16384, 'n');
  const std::string_view zero_byte("A\0B", 3);
  const auto set = [](KeyHandle key, std::string_view name) {
    return RegSetValueExA(key, name, 0, 1, "12345", 5);
  };
  const auto open = [&](KeyHandle root, std::string_view path) {
    return RegOpenKeyExA(root, path, 0, kReadValues, &out);
  };
  const auto create = [&](KeyHandle root, std::string_view path) {
    return RegCreateKeyExA(root, path, 0, "0", 0, kSetValues, nullptr, &out, nullptr);
  };
  const auto query = [&](KeyHandle key, std::string_view name, Int32 capacity) {
    size = capacity;
    return RegQueryValueExA(key, name, nullptr, &type, bytes.data(), &size);
  };
  const auto list_value = [&](KeyHandle key, Int32 index, Int32 capacity, const Int32* reserved) {
    size = capacity;
    return RegEnumValueA(key, index, bytes.data(), &size, reserved, nullptr, nullptr, nullptr);
  };
  const auto list_key = [&](KeyHandle key, Int32 index, Int32 capacity) {
    size = capacity;
    return RegEnumKeyExA(key, index, bytes.data(), &size, nullptr, nullptr, nullptr, nullptr);
  };
  const auto info = [&](KeyHandle key, const Int32* reserved) {
    return RegQueryInfoKeyA(key, "0", nullptr, reserved, nullptr, nullptr, nullptr, nullptr,
                            nullptr, nullptr, nullptr, nullptr);
  };
  ASSERT_EQ(set(all, "v"), kDone);

  struct Row {
    const char* call;
    Int32 code;
    Int32 wanted;
  };
  const Row rows[] = {
      {"open absent", open(kCurrentUser, "A\\C"), kAbsent},
      {"open in another hive", open(kLocalMachine, "A"), kAbsent},
      {"open a level too long", open(kCurrentUser, long_level), kAbsent},
      {"open a zero byte", open(kCurrentUser, zero_byte), kWrongArgument},
      {"open root 0", open(0, "A"), kWrongHandle},
      {"open root after the last", open(kDynData + 1, "A"), kWrongHandle},
      {"open below a closed key", open(closed, "B"), kWrongHandle},
      {"open with options", RegOpenKeyExA(kCurrentUser, "A", 1, 1, &out), kWrongArgument},
      {"create a level too long", create(kCurrentUser, "A\\" + long_level), kWrongArgument},
      {"create a zero byte", create(kCurrentUser, zero_byte), kWrongArgument},
      {"create below a wrong root", create(12345, "A"), kWrongHandle},
      {"query absent", query(reading, "w", 16), kAbsent},
      {"query into 4 of 5", query(reading, "v", 4), kBufferTooSmall},
      {"query a negative capacity", query(reading, "v", -1), kWrongArgument},
      {"query without right", query(writing, "v", 16), kAccessDenied},
      {"query data without size",
       RegQueryValueExA(reading, "v", nullptr, nullptr, bytes.data(), nullptr), kWrongArgument},
      {"set without right", set(reading, "v"), kAccessDenied},
      {"set closed", set(closed, "v"), kWrongHandle},
      {"set a name too long", set(all, long_name), kWrongArgument},
      {"set the longest name", set(all, long_name.substr(1)), kDone},
      {"set a negative size", RegSetValueExA(all, "v", 0, 1, "x", -1), kWrongArgument},
      {"delete absent", RegDeleteValueA(writing, "w"), kAbsent},
      {"delete without right", RegDeleteValueA(reading, "v"), kAccessDenied},
      {"list value 0 into 1", list_value(reading, 0, 1, nullptr), kBufferTooSmall},
      {"list value 2", list_value(reading, 2, 16, nullptr), kEndOfList},
      {"list value -1", list_value(reading, -1, 16, nullptr), kWrongArgument},
      {"list values with a reserved argument", list_value(reading, 0, 16, &type), kWrongArgument},
      {"list key 0 into 1", list_key(kCurrentUser, 0, 1), kBufferTooSmall},
      {"list key 1", list_key(kCurrentUser, 1, 16), kEndOfList},
      {"list keys without right", list_key(reading, 0, 16), kAccessDenied},
      {"info without right", info(writing, nullptr), kAccessDenied},
      {"info with a reserved argument", info(reading, &type), kWrongArgument},
      {"copy absent", SHCopyKeyA(kCurrentUser, "C", all, 0), kAbsent},
      {"copy to a closed key", SHCopyKeyA(kCurrentUser, "A", closed, 0), kWrongHandle},
      {"copy without right", SHCopyKeyA(kCurrentUser, "A", writing, 0), kAccessDenied},
      {"delete absent tree", SHDeleteKeyA(kCurrentUser, "C"), kAbsent},
      {"close twice", RegCloseKey(closed), kWrongHandle},
      {"close a root", RegCloseKey(kCurrentUser), kDone},
  };
  for (const Row& row : rows) EXPECT_EQ(row.code, row.wanted) << row.call;
  EXPECT_EQ(out, 0);

  EXPECT_EQ(query(reading, "V", 3), kBufferTooSmall);
  EXPECT_EQ(size, 5);
  EXPECT_EQ(list_value(reading, 0, 1, nullptr), kBufferTooSmall);
  EXPECT_EQ(size, 2);

  // A key that was deleted stays deleted for its handles, even when another is made in its place.
  ASSERT_EQ(SHDeleteKeyA(kCurrentUser, "a"), kDone);
  EXPECT_EQ(create(writing, "x"), kKeyDeleted);
  const KeyHandle again = opened("A\\B", kAllAccess);
  EXPECT_EQ(query(reading, "v", 16), kKeyDeleted);
  EXPECT_EQ(set(writing, "v"), kKeyDeleted);
  EXPECT_EQ(open(reading, "x"), kKeyDeleted);
  EXPECT_EQ(SHCopyKeyA(kCurrentUser, "A", all, 0), kKeyDeleted);
  for (const KeyHandle key : {again, reading, writing, all}) EXPECT_EQ(RegCloseKey(key), kDone);
  EXPECT_EQ(store_->OpenKeyCount(), 0);
}

// A store as somebody would write it who had an hour: keys in a map, by their paths in lower case.
class Model {
 public:
  Int32 Apply(const Action& action) {
    const String path = Folded(action.path);
    if (action.kind == kCreateKey) return Create(action.path), kDone;
    if (action.kind == kReplaceValues) {
      Delete(path);
      Create(action.path + "\\New");
      return Put(path, {action.name, action.type, action.data}), kDone;
    }
    if (!keys_.contains(path)) return kAbsent;
    if (action.kind == kDeleteKey) return Delete(path), kDone;
    if (action.kind == kSetValue) return Put(path, {action.name, action.type, action.data}), kDone;
    if (action.kind == kDeleteValue) {
      const auto is_it = [&](const Value& value) { return SameName(value.name, action.name); };
      return std::erase_if(keys_[path].values, is_it) == 0 ? kAbsent : kDone;
    }
    const String to = Folded(action.name);
    if (!keys_.contains(to)) return kAbsent;
    const std::map<String, Key> before = keys_;
    for (const auto& [from, key] : before) {
      if (!IsIn(from, path)) continue;
      const std::string below = key.names.substr(before.at(path).names.size());
      Create(before.at(to).names + below);
      for (const Value& value : key.values) Put(to + from.substr(path.size()), value);
    }
    return kDone;
  }

  // As `ContentOf` of a store.
  std::string Content() const {
    std::string text;
    for (const auto& [path, key] : keys_) {
      text += "[" + key.names.substr(key.names.empty() ? 0 : 1) + "]\n";
      for (const Value& value : key.values) {
        text += "  " + value.name + " = " + std::to_string(value.type) + ":" + value.data + "\n";
      }
    }
    return text;
  }

 private:
  struct Value {
    std::string name;
    Int32 type;
    std::string data;
  };
  struct Key {
    std::string names{};  // The path as it was made, a backslash before each level.
    std::vector<Value> values{};
  };

  // The lower-cased levels, before each a unit that sorts before all others.
  static String Folded(const std::string& path) {
    String folded;
    bool at_level = true;
    for (const char16_t unit : LowerCase(FromAnsi(path))) {
      if (unit != u'\\' && std::exchange(at_level, false)) folded += u'\1';
      unit == u'\\' ? at_level = true : (folded += unit, true);
    }
    return folded;
  }
  static bool SameName(const std::string& left, const std::string& right) {
    return LowerCase(FromAnsi(left)) == LowerCase(FromAnsi(right));
  }
  static bool IsIn(const String& path, const String& top) {
    return path == top || path.starts_with(top + u'\1');
  }
  void Create(const std::string& path) {
    std::string names;
    for (std::size_t end = 0; end < path.size();) {
      const std::size_t start = path.find_first_not_of('\\', end);
      if (start == path.npos) break;
      end = std::min(path.find('\\', start), path.size());
      const std::string next = names + '\\' + path.substr(start, end - start);
      names = keys_.try_emplace(Folded(next), Key{next, {}}).first->second.names;
    }
  }
  void Delete(const String& top) {
    std::erase_if(keys_, [&](const auto& each) { return IsIn(each.first, top); });
    keys_.try_emplace(String());
  }
  void Put(const String& path, const Value& given) {
    for (Value& value : keys_[path].values) {
      if (!SameName(value.name, given.name)) continue;
      value = {value.name, given.type, given.data};
      return;
    }
    keys_[path].values.push_back(given);
  }

  std::map<String, Key> keys_{{String(), {}}};
};

Action RandomAction(Random& random) {
  // Few names, so that they meet; in both cases, with letters beyond ASCII and doubled backslashes.
  static const std::vector<std::string> kLevels{"a", "A", "b", "\xC9t\xE9", "\xE9T\xC9", "_", "Z"};
  const auto path = [&] {
    std::string text;
    for (auto depth = random.Whole(0, 4); depth > 0; --depth) {
      text += kLevels[random.Bits() % kLevels.size()] + (random.Bits() % 8 == 0 ? "\\\\" : "\\");
    }
    if (!text.empty() && random.Bits() % 8 != 0) text.erase(text.find_last_not_of('\\') + 1);
    return text;
  };
  const auto kind = random.Whole(0, 99);
  // Of values there are many now and then, so that a key's list of them has a search tree and
  // holes.
  const std::string number = random.Bits() % 2 == 0 ? "" : std::to_string(random.Whole(0, 40));
  const std::string name = kLevels[random.Bits() % kLevels.size()] + number;
  if (kind < 30) return {kCreateKey, path()};
  if (kind < 75) {
    std::string data(static_cast<std::size_t>(random.Whole(0, 40)), '\0');
    for (char& byte : data) byte = static_cast<char>(random.Bits());
    return {kSetValue, path(), name, data, static_cast<Int32>(random.Bits())};
  }
  if (kind < 88) return {kDeleteValue, path(), name};
  if (kind < 92) return {kDeleteKey, path()};
  if (kind < 97) return {kCopyKey, path(), path()};
  return {kReplaceValues, path(), name, "data", 3};
}

TEST_P(Operations, AgreeWithAPlainModel) {
  Random random(42);
  Model model;
  const int steps = LongSweeps() ? 60000 : 3000;
  for (int step = 0; step < steps; ++step) {
    const Action action = RandomAction(random);
    ASSERT_EQ(Do(*store_, action), model.Apply(action))
        << "step " << step << " kind " << static_cast<int>(action.kind) << " " << action.path;
    if (step % 16 != 0) continue;
    if (step % 64 == 0) Reopen();
    ASSERT_EQ(ContentOf(*store_), model.Content()) << "step " << step;
    // Copies of copies would grow beyond measure.
    if (model.Content().size() < 20000) continue;
    ASSERT_EQ(SHDeleteKeyA(kCurrentUser, ""), kDone);
    model = Model();
  }
}

TEST(Handles, AreFoundWhateverOthersEnd) {
  internal::HandleTable table;
  std::map<KeyHandle, std::shared_ptr<internal::OpenedKey>> open;
  Random random(7);
  for (int step = 0; step < 3000; ++step) {
    const auto one = open.lower_bound(static_cast<KeyHandle>(random.Whole(0, step)));
    if (one == open.end()) {
      const auto key = std::make_shared<internal::OpenedKey>();
      EXPECT_TRUE(open.try_emplace(table.Add(key), key).second);
    } else if (random.Bits() % 2 == 0) {
      EXPECT_TRUE(table.Remove(one->first) && !table.Remove(one->first));
      open.erase(one);
    }
    for (const auto& [handle, key] : open) ASSERT_EQ(table.Find(handle), key) << step;
  }
}

TEST(Values, OfALongListKeepTheirOrderWhileSomeGo) {
  MemoryStore store;
  const TestKey key(store, kCurrentUser, "");
  std::vector<std::string> names;
  Random random(11);
  for (int step = 0; step < 6000; ++step) {
    const std::string name = "value " + std::to_string(random.Whole(0, 399));
    const auto found = std::ranges::find(names, name);
    if (found == names.end()) {
      EXPECT_EQ(store.SetValue(key.Handle(), name, 1, name), kDone);
      names.push_back(name);
    } else if (random.Bits() % 2 == 0) {
      EXPECT_EQ(store.DeleteValue(key.Handle(), name), kDone);
      names.erase(found);
    }
    if (step % 20 != 0) continue;
    std::string expected;
    for (const std::string& each : names) expected += "  " + each + " = 1:" + each + '\n';
    ASSERT_EQ(ValuesText(store, key.Handle()), expected) << step;
  }
}

StoreChange Changed(StoreChange::Kind kind, const std::string& path, const std::string& name = "",
                    const std::string& data = "", KeyHandle root = kCurrentUser) {
  return {.kind = kind, .root = root, .path = path, .name = name, .type = 1, .data = data};
}

TEST_P(Operations, AreCommittedTogether) {
  using enum StoreChange::Kind;
  const StoreChange first[] = {
      Changed(kSetValue, "A\\B", "v", "1"),  Changed(kSetValue, "A\\B", "V", "2"),
      Changed(kCreateKey, "A\\C\\D"),        Changed(kDeleteKey, "A\\C"),
      Changed(kDeleteKey, "nowhere"),        Changed(kSetValue, "E", "gone", "1"),
      Changed(kDeleteValue, "E", "GONE"),    Changed(kDeleteEmptyKey, "E"),
      Changed(kDeleteEmptyKey, "A"),         Changed(kSetValue, "M", "v", "x", kLocalMachine),
      Changed(kDeleteValue, "nowhere", "v"), Changed(kCreateKey, "a\\b\\C"),
  };
  ASSERT_EQ(store_->Commit(first), kDone);
  Reopen();
  EXPECT_EQ(ContentOf(*store_), "[]\n[A]\n[A\\B]\n  v = 1:2\n[A\\B\\C]\n");
  EXPECT_EQ(Load(*store_, kLocalMachine, "M", "v"), "x");
  // Of what was there before, too.
  const StoreChange second[] = {
      Changed(kDeleteKey, "A\\B\\C"),
      Changed(kDeleteValue, "A\\B", "v"),
      Changed(kDeleteEmptyKey, "A\\B"),
      Changed(kSetValue, "A", "w", "3"),
      Changed(kDeleteKey, "", "", "", kLocalMachine),
      Changed(kSetValue, "", "r", "4", kLocalMachine),
  };
  ASSERT_EQ(store_->Commit(second), kDone);
  Reopen();
  EXPECT_EQ(ContentOf(*store_), "[]\n[A]\n  w = 1:3\n");
  EXPECT_EQ(ContentOf(*store_, kLocalMachine), "[]\n  r = 1:4\n");
  const std::pair<StoreChange, Int32> wrong[] = {
      {Changed(kCreateKey, "A", "", "", 12), kWrongHandle},
      {Changed(kCreateKey, std::string(256, 'k')), kWrongArgument},
      {Changed(kSetValue, "A", std::string(16384, 'n')), kWrongArgument},
  };
  for (const auto& [change, code] : wrong) {
    const StoreChange both[] = {Changed(kSetValue, "A", "w", "5"), change};
    EXPECT_EQ(store_->Commit(both), code);
  }
  EXPECT_EQ(Load(*store_, kCurrentUser, "A", "w"), "3");
}

// What keeps the later hive from being written keeps the earlier one as it was.
TEST(Commits, OfSeveralHivesFailBeforeTheFirst) {
  using enum StoreChange::Kind;
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  const auto commit = [&](std::size_t bytes) {
    const std::string data(bytes, 'x');
    const StoreChange both[] = {Changed(kSetValue, "A", "v", data, kClassesRoot),
                                Changed(kSetValue, "A", "v", data)};
    return store.Commit(both);
  };
  ASSERT_EQ(commit(3), kDone);
  const int file = files.Open(kSimulatedHive, OpenFor::kWriting, 0);
  ASSERT_EQ(files.TryLock(file), 0);
  EXPECT_EQ(commit(4), kLocked);
  files.Close(file);
  files.LimitRoom(50000);
  EXPECT_EQ(commit(40000), kDiskFull);
  for (const KeyHandle root : {kClassesRoot, kCurrentUser}) {
    EXPECT_EQ(Load(store, root, "A", "v"), "xxx") << root;
  }
  EXPECT_EQ(commit(5), kDone);
}

TEST(Messages, ExistForTheStoresCodesAlone) {
  std::size_t found = 0;
  std::array<char, 1000> buffer{};
  for (Int32 code = -70000; code <= 70000; ++code) {
    const Int32 length = FormatMessageA(4096, nullptr, code, 0, buffer.data(), 1000, nullptr);
    if (length == 0) continue;
    ++found;
    const std::string text(buffer.data());
    EXPECT_EQ(text.size(), static_cast<std::size_t>(length)) << code;
    EXPECT_TRUE(text.ends_with(".\r\n") && text.find('?') == text.npos) << code << text;
    EXPECT_TRUE(code != 5 || text == "L'acc\xE8s est refus\xE9.\r\n") << text;
    EXPECT_EQ(FormatMessageA(4096, nullptr, code, 0, buffer.data(), length, nullptr), 0) << code;
  }
  EXPECT_EQ(found, kStatusRows.size());
  EXPECT_EQ(FormatMessageA(0, nullptr, 2, 0, buffer.data(), 100, nullptr), 0);
}

// ---- Damage

TEST(Checksums, AreTheSameByEitherForm) {
  Random random(11);
  std::string bytes(100, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random.Bits());
  EXPECT_EQ(internal::Crc32cInPlain("123456789"), 0xE3069283U);
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    const std::string_view text = std::string_view(bytes).substr(100 - size);
    EXPECT_EQ(internal::Crc32c(text, 77), internal::Crc32cInPlain(text, 77)) << size;
  }
}

// A store with a value in each of so many keys, one of them written twice, and where its records
// stand.
struct SmallStore {
  explicit SmallStore(int count) {
    PersistentStore store(SimulatedFolders(), files);
    EXPECT_EQ(Save(store, kCurrentUser, "Key0", "Name", "outdated"), kDone);
    for (int i = 0; i < count; ++i) {
      const std::string key = "Key" + std::to_string(i);
      values[key] = "data of " + key;
      EXPECT_EQ(Save(store, kCurrentUser, key, "Name", values[key]), kDone);
    }
  }
  std::string& Bytes() { return files.Bytes(); }

  // The offsets of the transactions, and behind the last one, that of its end.
  std::vector<std::size_t> Transactions() {
    std::vector<std::size_t> offsets{internal::kHeaderBytes};
    const std::string_view bytes = Bytes();
    while (const auto head = internal::DecodeTransactionHead(bytes.substr(offsets.back()))) {
      offsets.push_back(offsets.back() + internal::kTransactionHeadBytes + head->bytes);
    }
    return offsets;
  }

  SimulatedFiles files;
  std::map<std::string, std::string> values;
};

// Reads the store with its file damaged: how many values are lost. No value may be a wrong one, the
// file must be quarantined as it was, and a fresh store without damage stand in its place. Damage
// behind which there is nothing may be taken for the rest of a change that was cut off.
std::size_t LossesOf(const SmallStore& whole, const std::string& damaged, bool may_be_silent,
                     const std::function<bool(const std::string&)>& must_be_there) {
  SimulatedFiles files(whole.files);
  files.Bytes() = damaged;
  SimulatedFiles copied(files);
  const JournalReport repaired = PersistentStore::RepairFile(kSimulatedHive, copied);
  EXPECT_FALSE(PersistentStore::VerifyFile(kSimulatedHive, copied).Damaged());
  PersistentStore store(SimulatedFolders(), files);
  std::size_t lost = 0;
  for (const auto& [key, data] : whole.values) {
    const std::string found = Load(store, kCurrentUser, key, "Name");
    const bool absent = found == "code 2";
    lost += absent ? 1 : 0;
    const bool cut_off = may_be_silent && found == "outdated";
    EXPECT_TRUE(absent || cut_off || found == data) << key << " holds " << found;
    EXPECT_FALSE(absent && must_be_there(key)) << key;
  }
  const auto reports = store.TakeReports();
  EXPECT_TRUE(reports.size() == 1 || (reports.empty() && may_be_silent));
  EXPECT_FALSE(store.Verify(kCurrentUser).Damaged());
  if (reports.size() == 1) {
    EXPECT_TRUE(reports[0].Damaged());
    EXPECT_EQ(files.Bytes(reports[0].kept_as), damaged);
    EXPECT_EQ(copied.Bytes(repaired.kept_as), damaged);
    EXPECT_EQ(repaired.records, reports[0].records);
    const auto quarantined = store.VerifyQuarantined(kCurrentUser);
    EXPECT_TRUE(quarantined.size() == 1 && quarantined[0].Damaged());
    std::size_t told = 0;
    for (const JournalLoss& loss : reports[0].losses) {
      // Without the header nobody knows how many there were.
      told += loss.kind == JournalLoss::Kind::kHeader ? lost : loss.records;
    }
    EXPECT_TRUE(told >= lost || may_be_silent) << "less is told than was lost";
  }
  EXPECT_EQ(Save(store, kCurrentUser, "After", "v", "1"), kDone);
  PersistentStore other(SimulatedFolders(), files);
  EXPECT_EQ(Load(other, kCurrentUser, "After", "v"), "1");
  EXPECT_TRUE(other.TakeReports().empty());
  return lost;
}

TEST(Damage, OfAnySingleBitLosesAtMostThatValue) {
  SmallStore whole(4);
  const std::size_t end = whole.Transactions().back();
  std::size_t lost = 0;
  for (std::size_t bit = 0; bit < 8 * (end + 30) && !HasFailure(); ++bit) {
    SCOPED_TRACE("bit " + std::to_string(bit % 8) + " of byte " + std::to_string(bit / 8));
    std::string bytes = whole.Bytes();
    bytes[bit / 8] ^= static_cast<char>(1 << bit % 8);
    const std::size_t now =
        LossesOf(whole, bytes, bit / 8 >= end, [](const auto&) { return false; });
    ASSERT_LE(now, bit / 8 >= end ? 0U : 1U);
    lost += now;
  }
  // What is lost are the bits of the records: of each key one, and of its value one.
  EXPECT_LT(lost, 8 * whole.values.size() * 80);
}

TEST(Damage, IsToldByTheNameOfWhatWasLost) {
  SmallStore small(3);
  small.Bytes()[small.Bytes().rfind("data of Key1")] = 'X';
  PersistentStore store(SimulatedFolders(), small.files);
  EXPECT_EQ(Load(store, kCurrentUser, "Key1", "Name"), "code 2");
  const auto reports = store.TakeReports();
  ASSERT_TRUE(reports.size() == 1 && reports[0].losses.size() == 1);
  const JournalLoss& loss = reports[0].losses[0];
  EXPECT_EQ(loss.kind, JournalLoss::Kind::kValue);
  EXPECT_EQ(loss.key + '|' + loss.value + '|' + reports[0].kept_as,
            "Key1|Name|" + kSimulatedHive + ".damaged-1");
  // Everything but that: two keys with a value each, one of them set twice, and the third key.
  EXPECT_EQ(reports[0].records, 6U);
}

// What the last change but one replaced or deleted does not come back when that change is lost.
TEST(Damage, BringsNothingBack) {
  const Action lost[] = {{kSetValue, "A", "v", "new"}, {kDeleteValue, "A", "v"}, {kDeleteKey, "A"}};
  for (const Action& action : lost) {
    for (const std::size_t from : {std::size_t{0}, internal::kTransactionHeadBytes}) {
      SmallStore small(0);
      PersistentStore writer(SimulatedFolders(), small.files);
      ASSERT_EQ(Save(writer, kCurrentUser, "A", "v", "former"), kDone);
      const std::size_t start = small.Transactions().back();
      ASSERT_EQ(Do(writer, action), kDone);
      const std::size_t end = small.Transactions().back();
      ASSERT_EQ(Save(writer, kCurrentUser, "B", "v", "last"), kDone);
      std::fill(small.Bytes().begin() + static_cast<std::ptrdiff_t>(start + from),
                small.Bytes().begin() + static_cast<std::ptrdiff_t>(end), '\0');
      SimulatedFiles files(small.files);
      PersistentStore store(SimulatedFolders(), files);
      EXPECT_EQ(Load(store, kCurrentUser, "A", "v"), "code 2") << static_cast<int>(action.kind);
      EXPECT_EQ(Load(store, kCurrentUser, "B", "v"), "last");
      EXPECT_EQ(store.TakeReports().size(), 1U);
    }
  }
}

TEST(Damage, ByCutsAndSplicesKeepsEveryIntactRecord) {
  SmallStore small(12);
  const std::string whole = small.Bytes();
  const auto offsets = small.Transactions();
  const std::size_t end = offsets.back() + internal::kConfirmationBytes;
  // A key is made in one transaction and gets its value in the next; the first key's second one is
  // lost with whichever is.
  ASSERT_EQ(offsets.size(), 2U * 12 + 2);
  std::map<std::string, std::pair<std::size_t, std::size_t>> places;
  for (std::size_t i = 1; i < 12; ++i) {
    places["Key" + std::to_string(i)] = {offsets[2 * i + 1], offsets[2 * i + 3]};
  }
  small.values.erase("Key0");
  Random random(3);
  const int rounds = LongSweeps() ? 50000 : 3000;
  for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
    const auto from = static_cast<std::size_t>(random.Bits() % end);
    const auto length =
        1 + static_cast<std::size_t>(random.Bits() % std::min<std::size_t>(400, end - from));
    const auto kind = random.Bits() % 5;
    const auto at = kind == 4 ? from + length : static_cast<std::size_t>(random.Bits() % end);
    std::string bytes = whole;
    std::size_t hurt_from = from;
    std::size_t hurt_to = from + length;
    if (kind == 0) {
      bytes.erase(from, length);
    } else if (kind == 1) {
      bytes.resize(from);
      hurt_to = whole.size();
    } else if (kind == 2) {
      std::generate_n(bytes.begin() + static_cast<std::ptrdiff_t>(from), length,
                      [&] { return static_cast<char>(random.Bits()); });
    } else {
      bytes.insert(at, whole.substr(from, length));
      const auto differs = std::ranges::mismatch(bytes, whole).in1;
      hurt_from = hurt_to = static_cast<std::size_t>(differs - bytes.begin());
    }
    if (bytes == whole) continue;
    SCOPED_TRACE("round " + std::to_string(round) + " kind " + std::to_string(kind) + " from " +
                 std::to_string(from) + " length " + std::to_string(length) + " at " +
                 std::to_string(at));
    const bool may_be_silent = hurt_to > offsets.back() || hurt_from == offsets.back();
    LossesOf(small, bytes, may_be_silent, [&](const std::string& key) {
      const auto& [start, stop] = places.at(key);
      return stop <= hurt_from || start >= hurt_to;
    });
  }
}

TEST(Damage, OfTheWholeFileIsNoFirstRun) {
  for (const std::string& bytes : {std::string(), std::string("not a journal"),
                                   std::string(5000, 'Q'), std::string(100, '\0')}) {
    EXPECT_EQ(LossesOf(SmallStore(1), bytes, false, [](const auto&) { return false; }), 1U)
        << bytes;
  }
}

TEST(Damage, IsQuarantinedForGoodBeforeTheFileIsReplaced) {
  SmallStore small(2);
  const int file = small.files.Open(kSimulatedHive, OpenFor::kWriting, 0);
  ASSERT_EQ(small.files.WriteAt(file, "X", 1, 3), 1);
  ASSERT_EQ(small.files.Sync(file), 0);
  Random random(5);
  for (std::int64_t cut = 0; cut < 24; ++cut) {
    SimulatedFiles files(small.files);
    files.CutPowerAt(cut);
    PersistentStore store(SimulatedFolders(), files);
    Load(store, kCurrentUser, "Key0", "Name");
    for (int way = 0; way < 8; ++way) {
      SimulatedFiles after = files.AfterPowerLoss(random);
      if (after.Bytes() == small.Bytes()) continue;
      std::vector<std::string> names;
      ASSERT_EQ(after.List(SimulatedFolders().user, names), 0);
      ASSERT_EQ(std::ranges::count(names, "HKEY_CURRENT_USER.journal.damaged-1"), 1) << cut;
      EXPECT_EQ(after.Bytes(kSimulatedHive + ".damaged-1"), small.Bytes());
    }
  }
}

TEST(Damage, InANewerFormatIsNone) {
  SmallStore small(1);
  small.Bytes().replace(0, internal::kHeaderBytes,
                        Encoded(internal::JournalHeader{internal::kJournalVersion + 1, 5}));
  const std::string bytes = small.Bytes();
  PersistentStore store(SimulatedFolders(), small.files);
  EXPECT_EQ(Load(store, kCurrentUser, "Key0", "Name"), "code 1150");
  EXPECT_EQ(Save(store, kCurrentUser, "Key0", "Name", "x"), kNewerFormat);
  EXPECT_EQ(store.DeleteTree(kCurrentUser, "Key0"), kNewerFormat);
  EXPECT_EQ(store.Verify(kCurrentUser).status, kNewerFormat);
  EXPECT_EQ(small.Bytes(), bytes);
}

// ---- Sizes

TEST(Sizes, FiftyThousandLevels) {
  WithSmallStack([] {
    const TemporaryFolder folder;
    PersistentStore store(folder.Folders());
    std::string path = "Deep";
    for (int level = 1; level < 50000; ++level)
      path.append("\\").append(1, static_cast<char>('0' + level % 10));
    ASSERT_EQ(Save(store, kCurrentUser, path, "v", "bottom"), kDone);
    ASSERT_EQ(Save(store, kCurrentUser, "Copy", "v", "top"), kDone);
    {
      const TestKey copy(store, kCurrentUser, "Copy");
      ASSERT_EQ(store.CopyTree(kCurrentUser, "Deep", copy.Handle()), kDone);
      const TestKey bottom(store, kCurrentUser, path);
      ASSERT_EQ(store.CopyTree(kCurrentUser, "Deep", bottom.Handle()), kDone);
    }
    PersistentStore other(folder.Folders());
    EXPECT_EQ(Load(other, kCurrentUser, "Copy" + path.substr(4), "v"), "bottom");
    EXPECT_EQ(Load(other, kCurrentUser, path + path.substr(4), "v"), "bottom");
    EXPECT_EQ(other.DeleteTree(kCurrentUser, "Deep"), kDone);
    EXPECT_EQ(Load(store, kCurrentUser, path, "v"), "code 2");
    EXPECT_EQ(store.DeleteTree(kCurrentUser, ""), kDone);
    EXPECT_EQ(ContentOf(other), "[]\n");
  });
}

TEST(Sizes, AHundredThousandSubkeysAndLargeValues) {
  const TemporaryFolder folder;
  PersistentStore store(folder.Folders());
  for (int i = 0; i < 100000; ++i) {
    KeyHandle key = 0;
    const std::string path = "Many\\" + std::to_string(i * 7919 % 100000);
    ASSERT_EQ(store.CreateKey(kDynData, path, kAllAccess, &key, nullptr), kDone);
    store.CloseKey(key);
  }
  const std::string large(std::size_t{64} << 20, '\xA5');
  ASSERT_EQ(Save(store, kDynData, "Many\\5", "Large", large), kDone);
  {
    // From one hive to another in one change.
    const TestKey root(store, kCurrentUser, "");
    ASSERT_EQ(store.CopyTree(kDynData, "", root.Handle()), kDone);
  }
  ASSERT_EQ(Save(store, kCurrentUser, "Large", "Other", large), kDone);
  PersistentStore other(folder.Folders());
  const TestKey many(other, kCurrentUser, "Many");
  const auto names = SubkeyNames(other, many.Handle());
  ASSERT_EQ(names.size(), 100000U);
  EXPECT_TRUE(std::ranges::is_sorted(names));
  EXPECT_EQ(Load(other, kCurrentUser, "Many\\5", "large"), large);
  EXPECT_EQ(Load(other, kCurrentUser, "Large", "Other"), large);
}

TEST(Sizes, OfTheFileFollowTheContent) {
  const TemporaryFolder folder;
  PersistentStore store(folder.Folders());
  const auto content = [&] { return ContentOf(store).size(); };
  for (int i = 0; i < 400; ++i) {
    const std::string path = "Key" + std::to_string(i % 7);
    const auto size = static_cast<std::size_t>(i % 13) * 1000;
    ASSERT_EQ(Save(store, kCurrentUser, path, "v", std::string(size, 'x')), kDone);
    if (i % 5 == 0) {
      ASSERT_EQ(store.DeleteTree(kCurrentUser, path), kDone);
    }
    ASSERT_LE(fs::file_size(folder.UserHive()), 2 * content() + 65536) << i;
  }
  EXPECT_FALSE(store.Verify(kCurrentUser).Damaged());
}

// What changes in the key that is being written afresh, in front of the place reached and behind
// it.
TEST(Rewriting, OfALongKeyTakesItsChangesAlong) {
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  MemoryStore model;
  for (Store* each : {static_cast<Store*>(&store), static_cast<Store*>(&model)}) {
    ASSERT_EQ(Do(*each, {kCreateKey, "A"}) + Do(*each, {kCreateKey, "B"}), kDone);
  }
  Random random(23);
  int rewritings = 0;
  std::size_t former_size = 0;
  for (int step = 0; step < 10000; ++step) {
    const std::string path = random.Whole(0, 9) == 0 ? "B" : "A";
    const std::string name = "value " + std::to_string(random.Whole(0, 199));
    const bool goes = random.Whole(0, 3) == 0;
    const std::string data(static_cast<std::size_t>(random.Whole(0, 6000)), 'x');
    const auto kind = goes ? kDeleteValue : kSetValue;
    const Action action{kind, path, name, std::to_string(step) + data};
    ASSERT_EQ(Do(store, action), Do(model, action)) << step;
    const std::size_t size = files.Bytes().size();
    if (size >= std::exchange(former_size, size)) continue;
    ++rewritings;
    PersistentStore reopened(SimulatedFolders(), files);
    ASSERT_EQ(ContentOf(reopened), ContentOf(model)) << step;
  }
  EXPECT_GT(rewritings, 10);
}

// ---- Places

TEST(Places, ComeFromTheEnvironment) {
  struct Row {
    const char* data;
    const char* home;
    const char* folder;
    Int32 code;
  };
  const Row rows[] = {
      {"/data", "/home/u", "/data/quorl/registry", kDone},
      {"", "/home/u", "/home/u/.local/share/quorl/registry", kDone},
      {nullptr, "/home/u", "/home/u/.local/share/quorl/registry", kDone},
      {"/data", nullptr, "/data/quorl/registry", kDone},
      {"data", "/home/u", "/home/u/.local/share/quorl/registry", kDone},
      {"data", nullptr, "data/quorl/registry", kWrongFolder},
      {nullptr, "home", "home/.local/share/quorl/registry", kWrongFolder},
      {nullptr, nullptr, "", kFolderNotFound},
      {nullptr, "", "", kFolderNotFound},
  };
  const auto put = [](const char* name, const char* value) {
    value == nullptr ? unsetenv(name) : setenv(name, value, 1);
  };
  for (const Row& row : rows) {
    put("XDG_DATA_HOME", row.data);
    put("HOME", row.home);
    const StoreFolders folders = StoreFolders::Usual();
    EXPECT_EQ(folders.user, row.folder);
    EXPECT_EQ(folders.machine, "/var/lib/quorl/registry");
    SimulatedFiles files;
    PersistentStore store(folders, files);
    EXPECT_EQ(TestKey(store, kCurrentUser, "").Code(), row.code) << row.folder;
    EXPECT_EQ(Save(store, kClassesRoot, "A", "v", "1"), row.code) << row.folder;
    EXPECT_EQ(Save(store, kPerformanceData, "A", "v", "1"), kDone);
  }
}

TEST(Places, ThatAreNoFileGiveACode) {
  const std::function<void(const char*)> makers[] = {
      [](const char* path) { mkfifo(path, 0600); },
      [](const char* path) { fs::create_directory(path); },
      [](const char* path) { fs::create_symlink("/dev/zero", path); },
  };
  for (const auto& make : makers) {
    const TemporaryFolder folder;
    fs::create_directory(folder.Folders().user);
    make(folder.UserHive().c_str());
    PersistentStore store(folder.Folders());
    const auto kind = fs::symlink_status(folder.UserHive()).type();
    EXPECT_EQ(TestKey(store, kCurrentUser, "").Code(), kNotAHive) << static_cast<int>(kind);
    EXPECT_EQ(Save(store, kCurrentUser, "A", "v", "1"), kNotAHive) << static_cast<int>(kind);
    EXPECT_EQ(store.DeleteTree(kCurrentUser, "A"), kNotAHive) << static_cast<int>(kind);
    EXPECT_EQ(store.Verify(kCurrentUser).status, kNotAHive) << static_cast<int>(kind);
  }
}

TEST(Places, AreMadeByTheFirstChangeWithTheirModes) {
  const TemporaryFolder folder;
  const std::string user = folder.Path() + "/home/share";
  const std::string machine = folder.Path() + "/lib/quorl";
  PersistentStore store({user + "/registry", machine + "/registry"});
  EXPECT_EQ(ContentOf(store), "[]\n");
  EXPECT_EQ(Load(store, kLocalMachine, "A", "v"), "code 2");
  EXPECT_EQ(store.DeleteTree(kCurrentUser, "A"), kAbsent);
  EXPECT_TRUE(fs::is_empty(folder.Path()));
  const mode_t former = umask(077);
  ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "1"), kDone);
  ASSERT_EQ(Save(store, kLocalMachine, "A", "v", "1"), kDone);
  umask(former);
  const std::map<std::string, fs::perms> wanted{
      {folder.Path() + "/home", fs::perms{0700}},
      {user, fs::perms{0700}},
      {user + "/registry", fs::perms{0700}},
      {user + "/registry/HKEY_CURRENT_USER.journal", fs::perms{0600}},
      {folder.Path() + "/lib", fs::perms{0755}},
      {machine, fs::perms{0755}},
      {machine + "/registry", fs::perms{0755}},
      {machine + "/registry/HKEY_LOCAL_MACHINE.journal", fs::perms{0644}},
  };
  std::map<std::string, fs::perms> made;
  for (const auto& entry : fs::recursive_directory_iterator(folder.Path())) {
    made[entry.path().string()] = entry.status().permissions();
  }
  EXPECT_EQ(made, wanted);
}

// Changes that make the file grow until it is written afresh.
void Outgrow(Store& store) {
  for (const char unit : {'a', 'b', 'c', 'd', 'e'}) {
    ASSERT_EQ(Save(store, kCurrentUser, "A", "v", std::string(40000, unit)), kDone);
  }
}

TEST(Places, KeepLinkOwnerAndModeWhenTheFileIsWrittenAfresh) {
  const TemporaryFolder folder;
  const std::string target = folder.Path() + "/elsewhere.journal";
  fs::create_directory(folder.Folders().user);
  fs::create_symlink("../elsewhere.journal", folder.UserHive());
  // What stands at a name like the fresh file's is left alone, but for what a killed writer left.
  const std::string abandoned = target + ".new-0123456789abcdef";
  std::ofstream(abandoned) << "QRLSTORE";
  mkfifo((target + ".new").c_str(), 0600);
  PersistentStore store(folder.Folders());
  // Made through a link that leads nowhere yet.
  ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "0"), kDone);
  ASSERT_EQ(chmod(target.c_str(), 0640), 0);
  if (geteuid() == 0) {
    ASSERT_EQ(chown(target.c_str(), 1234, 4321), 0);
  }
  struct stat former {};
  ASSERT_EQ(stat(target.c_str(), &former), 0);
  Outgrow(store);
  struct stat now {};
  ASSERT_EQ(stat(target.c_str(), &now), 0);
  EXPECT_NE(now.st_ino, former.st_ino) << "the file was not written afresh";
  EXPECT_EQ(std::tie(now.st_mode, now.st_uid, now.st_gid),
            std::tie(former.st_mode, former.st_uid, former.st_gid));
  EXPECT_TRUE(fs::is_symlink(folder.UserHive()));
  EXPECT_FALSE(fs::exists(abandoned));
  EXPECT_TRUE(fs::is_fifo(target + ".new"));
}

TEST(Places, ThatMayNotBeWrittenAreStillRead) {
  // A user who may do everything cannot be kept from writing but by a read-only descriptor.
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  ASSERT_EQ(Save(store, kLocalMachine, "A", "v", "1"), kDone);
  for (const bool damaged : {false, true}) {
    SimulatedFiles read_only(files);
    const std::string path = SimulatedFolders().machine + "/HKEY_LOCAL_MACHINE.journal";
    if (damaged) read_only.Bytes(path)[3] = 'X';
    const std::string bytes = read_only.Bytes(path);
    read_only.ForbidWriting();
    PersistentStore other(SimulatedFolders(), read_only);
    EXPECT_EQ(Load(other, kLocalMachine, "A", "v"), "1");
    EXPECT_EQ(Save(other, kLocalMachine, "A", "v", "2"), kAccessDenied);
    EXPECT_EQ(Load(other, kLocalMachine, "A", "v"), "1");
    EXPECT_EQ(read_only.Bytes(path), bytes);
    EXPECT_EQ(other.TakeReports().size(), damaged ? 1U : 0U);
  }
}

// The owner cannot be given away where it matters: the group gets no more rights than all others.
TEST(Places, AreWrittenAfreshWhereverTheyCanBeWritten) {
  struct Files : SimulatedFiles {
    int SetOwner(int, unsigned, unsigned) override { return -EPERM; }
    int DescribeOpen(int file, FileInfo& info) override {
      const int result = SimulatedFiles::DescribeOpen(file, info);
      info.group = info.inode == first ? 7 : 8;
      return result;
    }
    std::uint64_t first = 0;
  } files;
  PersistentStore store(SimulatedFolders(), files);
  ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "0"), kDone);
  FileInfo info;
  const int file = files.Open(kSimulatedHive, OpenFor::kWriting, 0);
  ASSERT_EQ(files.SetMode(file, 0664), 0);
  ASSERT_EQ(files.Describe(kSimulatedHive, info), 0);
  files.Close(file);
  files.first = info.inode;
  Outgrow(store);
  EXPECT_LT(files.Bytes().size(), 150000U);
  ASSERT_EQ(files.Describe(kSimulatedHive, info), 0);
  EXPECT_EQ(info.mode, 0644U);
}

TEST(Places, OfAnotherUserAreReadAndNotWritten) {
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "1"), kDone);
  ASSERT_EQ(Save(store, kLocalMachine, "A", "v", "1"), kDone);
  files.MakeForeign();
  EXPECT_EQ(Save(store, kCurrentUser, "A", "v", "2"), kAccessDenied);
  EXPECT_EQ(Load(store, kCurrentUser, "A", "v"), "1");
  EXPECT_EQ(Save(store, kLocalMachine, "A", "v", "2"), kDone) << "shared on purpose";
}

TEST(Places, ThatAreFullStillTakeDeletions) {
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  ASSERT_EQ(Save(store, kCurrentUser, "A", "large", std::string(100000, 'x')), kDone);
  for (int i = 0; i < 30; ++i) {
    ASSERT_EQ(Save(store, kCurrentUser, "A", std::to_string(i), "1"), kDone);
  }
  files.LimitRoom(0);
  Int32 code = kDone;
  for (int i = 0; code == kDone && i < 1000; ++i) {
    code = Save(store, kCurrentUser, "A", "more" + std::to_string(i), "1");
  }
  EXPECT_EQ(code, kDiskFull);
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(Do(store, {kDeleteValue, "A", std::to_string(i)}), kDone) << i;
  }
  EXPECT_EQ(Save(store, kCurrentUser, "A", "v", "1"), kDiskFull);
  EXPECT_EQ(store.DeleteTree(kCurrentUser, "A"), kDone);
  // It is told that the file could not be written afresh, and once there is room, it is.
  const auto reports = store.TakeReports();
  ASSERT_EQ(reports.size(), 1U);
  EXPECT_TRUE(reports[0].rewriting == kDiskFull && !reports[0].Damaged());
  files.LimitRoom(1000000);
  Outgrow(store);
  EXPECT_LT(files.Bytes().size(), 150000U);
  EXPECT_FALSE(store.Verify(kCurrentUser).Damaged());
}

}  // namespace
}  // namespace quorl
