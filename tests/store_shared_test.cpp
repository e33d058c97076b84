// The persistent store used by many at once: processes, threads, store objects, both sides of a
// fork, and a host that does what it likes with files and descriptors.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "quorl/store/persistent_store.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_simulated_files.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace {
std::atomic<int> data_syncs{0};
std::atomic<int> folder_syncs{0};
}  // namespace

// The library's calls pass through here and are counted.
extern "C" int fdatasync(int file) {
  ++data_syncs;
  return static_cast<int>(syscall(SYS_fdatasync, file));
}
extern "C" int fsync(int file) {
  ++folder_syncs;
  return static_cast<int>(syscall(SYS_fsync, file));
}

namespace quorl {
namespace {

namespace fs = std::filesystem;
using enum Action::Kind;

// Runs `work` in a process of its own, which ends with 0 when it returns true.
pid_t InChild(const std::function<bool()>& work) {
  const pid_t child = fork();
  if (child == 0) _exit(work() ? 0 : 3);
  return child;
}

void ExpectSuccess(pid_t child) {
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
}

// Makes `count` keys with a value each.
bool MakeKeys(Store& store, const std::string& prefix, int count) {
  for (int i = 0; i < count; ++i) {
    const std::string path = "Shared\\" + prefix + "-" + std::to_string(i);
    if (Save(store, kCurrentUser, path, "Name", path) != kDone) return false;
  }
  return true;
}

// How many of the keys are there with their value.
int KeysThere(Store& store) {
  int count = 0;
  const TestKey shared(store, kCurrentUser, "Shared");
  for (const auto& name : SubkeyNames(store, shared.Handle())) {
    const std::string path = "Shared\\" + name;
    if (Load(store, kCurrentUser, path, "Name") == path) ++count;
  }
  return count;
}

template <class Value>
Value* SharedValue() {
  return new (mmap(nullptr, sizeof(Value), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                   0)) Value{};
}

class Sharing : public testing::Test {
 protected:
  void ExpectWhole(int keys) const {
    PersistentStore store(folder_.Folders());
    EXPECT_EQ(KeysThere(store), keys);
    EXPECT_FALSE(store.Verify(kCurrentUser).Damaged());
    EXPECT_TRUE(store.TakeReports().empty());
  }

  TemporaryFolder folder_;
};

TEST_F(Sharing, ProcessesAndThreadsLoseNoUpdate) {
  // On a slow disk the many must be done before the patience of any one ends.
  const int keys = LongSweeps() ? 1000 : 100;
  std::vector<pid_t> children;
  for (int number = 0; number < 8; ++number) {
    children.push_back(InChild([&] {
      PersistentStore store(folder_.Folders());
      return MakeKeys(store, std::to_string(number), keys);
    }));
  }
  for (const pid_t child : children) ExpectSuccess(child);
  PersistentStore common(folder_.Folders());
  std::vector<std::thread> threads;
  for (int number = 8; number < 16; ++number) {
    threads.emplace_back([&, number] {
      PersistentStore own(folder_.Folders());
      EXPECT_TRUE(MakeKeys(number % 2 == 0 ? common : own, std::to_string(number), 40));
    });
  }
  for (auto& thread : threads) thread.join();
  ExpectWhole(8 * keys + 8 * 40);
}

TEST_F(Sharing, TheFirstCreationIsRaced) {
  const int rounds = LongSweeps() ? 1000 : 60;
  for (int round = 0; round < rounds; ++round) {
    const TemporaryFolder folder;
    auto* ready = SharedValue<std::atomic<int>>();
    std::vector<pid_t> children;
    for (int number = 0; number < 4; ++number) {
      children.push_back(InChild([&] {
        PersistentStore store(folder.Folders());
        for (++*ready; *ready < 4;) usleep(1);
        return MakeKeys(store, std::to_string(number), 2);
      }));
    }
    for (const pid_t child : children) ExpectSuccess(child);
    PersistentStore store(folder.Folders());
    ASSERT_EQ(KeysThere(store), 8) << "round " << round;
    ASSERT_EQ(std::distance(fs::directory_iterator(folder.Folders().user), {}), 1);
  }
}

TEST_F(Sharing, ReadersSeeWholeStatesDuringRewriting) {
  const int steps = LongSweeps() ? 5000 : 300;
  auto* stop = SharedValue<std::atomic<bool>>();
  PersistentStore store(folder_.Folders());
  const auto publish = [&](int step) {
    const std::string data = std::to_string(step) + std::string(8000, 'x');
    for (const char* name : {"a", "b", "c"}) Save(store, kCurrentUser, "Stage", name, data);
    return Do(store, {kCreateKey, "Live"}) == kDone &&
           Do(store, {kCopyKey, "Stage", "Live"}) == kDone;
  };
  ASSERT_TRUE(publish(0));
  std::vector<pid_t> readers;
  for (int i = 0; i < 8; ++i) {
    readers.push_back(InChild([&] {
      PersistentStore reader(folder_.Folders());
      for (int last = 0; !*stop;) {
        const TestKey live(reader, kCurrentUser, "Live", kReadValues);
        const std::string seen = ValuesText(reader, live.Handle());
        const int step = std::atoi(seen.c_str() + std::strlen("  a = 1:"));
        std::string whole;
        for (const char name : {'a', 'b', 'c'}) {
          whole += std::string("  ") + name + " = 1:" + std::to_string(step) +
                   std::string(8000, 'x') + '\n';
        }
        if (seen != whole || step < last) return false;
        last = step;
      }
      return reader.TakeReports().empty();
    }));
  }
  for (int step = 1; step <= steps; ++step) EXPECT_TRUE(publish(step));
  *stop = true;
  for (const pid_t reader : readers) ExpectSuccess(reader);
}

TEST_F(Sharing, AChangeIsSeenAtTheNextOpening) {
  PersistentStore first(folder_.Folders());
  PersistentStore second(folder_.Folders());
  ASSERT_EQ(Save(first, kCurrentUser, "A", "v", "1"), kDone);
  const TestKey open(second, kCurrentUser, "A");
  for (int i = 0; i < 20; ++i) {
    // Both change, some of it enough for a rewriting, and some of it many values at once.
    const std::string data(static_cast<std::size_t>(i) * 2000, 'x');
    Store& writer = i % 2 == 0 ? first : second;
    Store& reader = i % 2 == 0 ? second : first;
    ASSERT_EQ(Save(writer, kCurrentUser, "A", "w", data), kDone);
    ASSERT_EQ(Load(reader, kCurrentUser, "A", "w"), data) << i;
    ASSERT_EQ(Save(writer, kCurrentUser, "B", "v", data), kDone);
    ASSERT_EQ(Do(writer, {kCopyKey, "A", "B"}), kDone);
    ASSERT_EQ(ContentOf(reader), ContentOf(writer)) << i;
    ASSERT_EQ(reader.DeleteTree(kCurrentUser, "B"), kDone);
  }
  // A key that another one deleted is not made again by way of its handle.
  KeyHandle made = 0;
  ASSERT_EQ(first.DeleteTree(kCurrentUser, "A"), kDone);
  EXPECT_EQ(second.CreateKey(open.Handle(), "new", kAllAccess, &made, nullptr), kKeyDeleted);
  EXPECT_EQ(second.SetValue(open.Handle(), "v", 1, "2"), kKeyDeleted);
  EXPECT_EQ(ContentOf(first), "[]\n");
  // All is deleted when the file goes.
  ASSERT_EQ(Save(second, kCurrentUser, "C", "v", "1"), kDone);
  const TestKey left(second, kCurrentUser, "C");
  fs::remove(folder_.UserHive());
  EXPECT_EQ(ContentOf(second), "[]\n");
  EXPECT_EQ(second.SetValue(left.Handle(), "v", 1, "2"), kKeyDeleted);
}

// A reader looks at the time of change alone when that has been the same for long enough.
TEST_F(Sharing, AChangeIsSeenAfterAnyQuiet) {
  PersistentStore writer(folder_.Folders());
  PersistentStore reader(folder_.Folders());
  for (int i = 0; i < 18; ++i) {
    // Some changes leave the file's size as it is, and some have it written afresh.
    const std::string data = std::to_string(i) + std::string(i % 3 == 0 ? 30000 : 0, 'x');
    ASSERT_EQ(Save(writer, kCurrentUser, "A", "v", data), kDone);
    for (int look = 0; look <= i; ++look, usleep(4000)) {
      ASSERT_EQ(Load(reader, kCurrentUser, "A", "v"), data) << i << " look " << look;
    }
  }
  fs::rename(folder_.Folders().user, folder_.Path() + "/elsewhere");
  usleep(30000);
  EXPECT_EQ(Load(reader, kCurrentUser, "A", "v"), "code 2");
}

// Another journal of the same length, or an older state of this one, is copied over the open file.
TEST_F(Sharing, WhatIsCopiedOverTheFileIsReadBeforeItIsWrittenOn) {
  for (const bool of_another : {true, false}) {
    const TemporaryFolder folder;
    const TemporaryFolder other;
    PersistentStore store(folder.Folders());
    PersistentStore elsewhere(of_another ? other.Folders() : folder.Folders());
    ASSERT_EQ(Save(elsewhere, kCurrentUser, "A", "v", "copied"), kDone);
    const std::string source = of_another ? other.UserHive() : folder.Path() + "/older";
    if (!of_another) fs::copy_file(folder.UserHive(), source);
    ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "hidden"), kDone);
    fs::copy_file(source, folder.UserHive(), fs::copy_options::overwrite_existing);
    ASSERT_EQ(Save(store, kCurrentUser, "A", "w", "new"), kDone);
    PersistentStore reader(folder.Folders());
    EXPECT_EQ(ContentOf(reader), "[]\n[A]\n  v = 1:copied\n  w = 1:new\n") << of_another;
    EXPECT_TRUE(reader.TakeReports().empty());
  }
}

TEST_F(Sharing, GoesOnOnBothSidesOfAFork) {
  PersistentStore store(folder_.Folders());
  ASSERT_TRUE(MakeKeys(store, "before", 10));
  std::atomic<bool> stop = false;
  std::atomic<int> made = 0;
  // Another thread is at work whenever the process forks.
  std::thread busy([&] {
    while (!stop) made += MakeKeys(store, "busy" + std::to_string(made), 1) ? 1 : 0;
  });
  const int forks = LongSweeps() ? 500 : 40;
  for (int number = 0; number < forks; ++number) {
    const pid_t child = InChild([&] {
      return MakeKeys(store, "child" + std::to_string(number), 3) &&
             Load(store, kCurrentUser, "Shared\\before-0", "Name") == "Shared\\before-0";
    });
    EXPECT_TRUE(MakeKeys(store, "parent" + std::to_string(number), 3));
    ExpectSuccess(child);
  }
  stop = true;
  busy.join();
  ExpectWhole(10 + 6 * forks + made);
}

// Locks the hive as a writer does, leaves behind what a killed one does, and waits.
pid_t HoldLock(const std::string& path, std::uint64_t end) {
  auto* is_ready = SharedValue<std::atomic<bool>>();
  const pid_t child = InChild([&] {
    FileSystem& files = FileSystem::Posix();
    const int file = files.Open(path, OpenFor::kWriting, 0);
    if (file < 0 || files.TryLock(file) != 0 || files.WriteAt(file, "QTRN0123", 8, end) != 8) {
      return false;
    }
    *is_ready = true;
    return raise(SIGSTOP) == 0;
  });
  while (!*is_ready && waitpid(child, nullptr, WNOHANG) == 0) usleep(100);
  return child;
}

TEST_F(Sharing, AStoppedWriterStopsNoReaderAndAKilledOneNobody) {
  PersistentStore store(folder_.Folders());
  ASSERT_TRUE(MakeKeys(store, "a", 3));
  for (int round = 0; round < 5; ++round) {
    const std::uint64_t unused = store.Verify(kCurrentUser).unfinished_bytes;
    EXPECT_EQ(unused, 0U);
    std::string bytes(fs::file_size(folder_.UserHive()), '\0');
    FileSystem& files = FileSystem::Posix();
    const int file = files.Open(folder_.UserHive(), OpenFor::kReading, 0);
    ASSERT_EQ(files.ReadAt(file, bytes.data(), bytes.size(), 0),
              static_cast<std::int64_t>(bytes.size()));
    files.Close(file);
    const pid_t holder = HoldLock(folder_.UserHive(), bytes.rfind("QCNF"));
    PersistentStore reader(folder_.Folders());
    EXPECT_EQ(KeysThere(reader), 3 + round);
    EXPECT_NE(store.Verify(kCurrentUser).unfinished_bytes, 0U);
    // A writer that waits meanwhile does not keep its own process from reading and forking.
    std::thread waiting([&] { EXPECT_TRUE(MakeKeys(store, std::to_string(round), 1)); });
    EXPECT_EQ(KeysThere(store), 3 + round);
    ExpectSuccess(InChild([&] { return KeysThere(store) == 3 + round; }));
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    waiting.join();
    EXPECT_EQ(KeysThere(reader), 4 + round);
  }
  ExpectWhole(8);
}

TEST_F(Sharing, AWriterWaitsTwentySeconds) {
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "1"), kDone);
  const int file = files.Open(kSimulatedHive, OpenFor::kWriting, 0);
  ASSERT_EQ(files.TryLock(file), 0);
  EXPECT_EQ(Save(store, kCurrentUser, "A", "v", "2"), kLocked);
  EXPECT_TRUE(files.Paused() >= std::chrono::seconds(20) &&
              files.Paused() < std::chrono::seconds(21));
  files.Close(file);
  EXPECT_EQ(Save(store, kCurrentUser, "A", "v", "2"), kDone);
}

TEST_F(Sharing, EachChangeIsOneSyncAndANewFileOneOfItsFolder) {
  PersistentStore store(folder_.Folders());
  ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "1"), kDone);
  EXPECT_GT(folder_syncs, 1);
  const TestKey key(store, kCurrentUser, "A");
  const int syncs = data_syncs;
  const int of_folders = folder_syncs;
  for (int i = 0; i < 200; ++i) {
    ASSERT_EQ(store.SetValue(key.Handle(), "v", 1, std::to_string(i + 10)), kDone);
  }
  EXPECT_EQ(data_syncs - syncs, 200);
  EXPECT_EQ(folder_syncs, of_folders);
}

std::vector<int> OpenDescriptors() {
  std::vector<int> found;
  for (int file = 0; file < 256; ++file) {
    if (fcntl(file, F_GETFD) != -1) found.push_back(file);
  }
  return found;
}

TEST_F(Sharing, DescriptorsAreFewAboveTwoAndClosedByExec) {
  const auto work = [&](bool without_standard_ones) {
    for (int file = 0; without_standard_ones && file <= 2; ++file) close(file);
    const auto before = OpenDescriptors();
    {
      PersistentStore store(folder_.Folders());
      if (!MakeKeys(store, "a", 50) || KeysThere(store) != 50) return false;
      std::vector<int> ours = OpenDescriptors();
      std::erase_if(ours, [&](int file) { return std::ranges::count(before, file) != 0; });
      if (ours.size() > 1) return false;
      for (const int file : ours) {
        if (file <= 2 || (fcntl(file, F_GETFD) & FD_CLOEXEC) == 0) return false;
      }
    }
    return OpenDescriptors() == before;
  };
  for (const bool without : {false, true}) ExpectSuccess(InChild([&] { return work(without); }));
  ExpectWhole(50);
}

// A host that closes all descriptors and opens its own keeps them.
TEST_F(Sharing, DescriptorsOfTheHostAreLeftAlone) {
  const auto work = [&] {
    const auto before = OpenDescriptors();
    {
      PersistentStore store(folder_.Folders());
      if (!MakeKeys(store, "a", 1)) return false;
      for (int file = 3; file < 64; ++file) close(file);
      for (int file = 3; file < 64; ++file) open("/dev/null", O_RDONLY);
      if (KeysThere(store) != 1 || !MakeKeys(store, "b", 1)) return false;
      fs::remove(folder_.UserHive());
      if (KeysThere(store) != 0) return false;
    }
    return OpenDescriptors().size() >= 64;
  };
  ExpectSuccess(InChild(work));
}

}  // namespace
}  // namespace quorl
