// The persistent store used by many at once: processes, threads, store objects, both sides of a
// fork.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "quorl/store/persistent_store.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {

namespace {

namespace fs = std::filesystem;

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

TEST_F(Sharing, EightProcessesLoseNoUpdate) {
  std::vector<pid_t> children;
  for (int number = 0; number < 8; ++number) {
    children.push_back(InChild([&] {
      PersistentStore store(folder_.Folders());
      return MakeKeys(store, std::to_string(number), 1000);
    }));
  }
  for (const pid_t child : children) ExpectSuccess(child);
  ExpectWhole(8000);
}

TEST_F(Sharing, ThreadsWithOneStoreAndWithStoresOfTheirOwn) {
  PersistentStore common(folder_.Folders());
  std::vector<std::thread> threads;
  for (int number = 0; number < 8; ++number) {
    threads.emplace_back([&, number] {
      PersistentStore own(folder_.Folders());
      EXPECT_TRUE(MakeKeys(number % 2 == 0 ? common : own, std::to_string(number), 100));
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(KeysThere(common), 800);
  ExpectWhole(800);
}

TEST_F(Sharing, TheFirstCreationIsRaced) {
  const int rounds = LongSweeps() ? 1000 : 60;
  for (int round = 0; round < rounds; ++round) {
    const TemporaryFolder folder;
    std::array<int, 2> gate{};
    ASSERT_EQ(pipe(gate.data()), 0);
    std::vector<pid_t> children;
    for (int number = 0; number < 4; ++number) {
      children.push_back(InChild([&] {
        PersistentStore store(folder.Folders());
        close(gate[1]);
        char nothing = 0;
        return read(gate[0], &nothing, 1) == 0 && MakeKeys(store, std::to_string(number), 2);
      }));
    }
    for (const int end : gate) close(end);
    for (const pid_t child : children) ExpectSuccess(child);
    PersistentStore store(folder.Folders());
    ASSERT_EQ(KeysThere(store), 8) << "round " << round;
    ASSERT_EQ(std::distance(fs::directory_iterator(folder.Folders().user), {}), 1);
  }
}

TEST_F(Sharing, ReadersSeeWholeStatesDuringRewriting) {
  const int steps = LongSweeps() ? 5000 : 300;
  auto* stop = new (mmap(nullptr, sizeof(std::atomic<bool>), PROT_READ | PROT_WRITE,
                         MAP_SHARED | MAP_ANONYMOUS, -1, 0)) std::atomic<bool>(false);
  PersistentStore store(folder_.Folders());
  const auto publish = [&](int step) {
    const std::string data = std::to_string(step) + std::string(8000, 'x');
    for (const char* name : {"a", "b", "c"}) Save(store, kCurrentUser, "Stage", name, data);
    return Do(store, {Action::Kind::kCreateKey, "Live"}) == kDone &&
           Do(store, {Action::Kind::kCopyKey, "Stage", "Live"}) == kDone;
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
    // Both change, some of it enough for a rewriting, and some in groups.
    const std::string data(static_cast<std::size_t>(i) * 2000, 'x');
    Store& writer = i % 2 == 0 ? first : second;
    Store& reader = i % 2 == 0 ? second : first;
    ASSERT_EQ(Save(writer, kCurrentUser, "A", "w", data), kDone);
    ASSERT_EQ(Load(reader, kCurrentUser, "A", "w"), data) << i;
    ASSERT_EQ(Do(writer, {Action::Kind::kCopyKey, "A", "A"}), kDone);
    ASSERT_EQ(Save(writer, kCurrentUser, "B", "v", data), kDone);
    ASSERT_EQ(Do(writer, {Action::Kind::kCopyKey, "A", "B"}), kDone);
    ASSERT_EQ(ContentOf(reader), ContentOf(writer)) << i;
    ASSERT_EQ(reader.DeleteTree(kCurrentUser, "B"), kDone);
  }
  ASSERT_EQ(first.DeleteTree(kCurrentUser, "A"), kDone);
  EXPECT_EQ(second.SetValue(open.Handle(), "v", 1, "2"), kKeyDeleted);
  // As is all when the file goes.
  ASSERT_EQ(Save(second, kCurrentUser, "C", "v", "1"), kDone);
  const TestKey left(second, kCurrentUser, "C");
  fs::remove(folder_.UserHive());
  EXPECT_EQ(ContentOf(second), "[]\n");
  EXPECT_EQ(second.SetValue(left.Handle(), "v", 1, "2"), kKeyDeleted);
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

// Locks the hive as a writer does and waits, in a process of its own.
pid_t HoldLock(const std::string& path) {
  std::array<int, 2> ready{};
  if (pipe(ready.data()) != 0) return -1;
  const pid_t child = InChild([&] {
    const int file = FileSystem::Posix().Open(path, OpenFor::kWriting, 0);
    if (file < 0 || FileSystem::Posix().TryLock(file) != 0) return false;
    // What a killed writer leaves behind: the beginning of a record.
    const bool written = FileSystem::Posix().WriteAt(file, "QREC0123", 8, fs::file_size(path)) == 8;
    if (!written || write(ready[1], "r", 1) != 1) return false;
    raise(SIGSTOP);
    return true;
  });
  char ready_sign = 0;
  EXPECT_EQ(read(ready[0], &ready_sign, 1), 1);
  close(ready[0]);
  close(ready[1]);
  return child;
}

TEST_F(Sharing, AStoppedWriterStopsNoReaderAndAKilledOneNobody) {
  PersistentStore store(folder_.Folders());
  ASSERT_TRUE(MakeKeys(store, "a", 3));
  for (int round = 0; round < 5; ++round) {
    const pid_t holder = HoldLock(folder_.UserHive());
    PersistentStore reader(folder_.Folders());
    EXPECT_EQ(KeysThere(reader), 3 + round);
    EXPECT_EQ(KeysThere(store), 3 + round);
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

}  // namespace
}  // namespace quorl
