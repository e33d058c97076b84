// What the persistent store promises when something breaks: power, process, disk, memory.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <string>
#include <vector>

#include "quorl/store/memory_store.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/random.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_failing_allocation.hpp"
#include "tests/support/store_simulated_files.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace quorl {
namespace {

using Kind = Action::Kind;

// Every kind of change, a file that is made, grows, and is rewritten on the way.
std::vector<Action> Scenario() {
  const std::string bulk(30000, 'x');
  return {
      {Kind::Create, "App\\Windows\\Main"},
      {Kind::Set, "App", "Left", "100"},
      {Kind::Set, "App\\Windows", "", "unnamed"},
      {Kind::Set, "App", "LEFT", "200", 7},
      {Kind::Set, "App", "Long", std::string(900, 'l')},
      {Kind::Set, "App\\Windows\\Main", "Long", std::string(900, 'm')},
      {Kind::Create, "Backup"},
      {Kind::Copy, "App", "Backup"},
      {Kind::Unset, "App", "Left"},
      {Kind::Delete, "App\\Windows"},
      {Kind::Set, "App", "Bulk", bulk},
      {Kind::Set, "App", "Bulk", bulk + "1"},
      {Kind::Set, "App", "Bulk", bulk + "2"},
      {Kind::Set, "App", "Bulk", "small"},
      {Kind::Copy, "Backup", "App"},
      {Kind::Set, "Backup\\Windows", "Only", "here"},
      {Kind::Replace, "Backup", "App"},
      {Kind::Delete, "Backup"},
      {Kind::Set, "App", "Last", "1"},
  };
}

// The content before the first action and after each one, from the store in memory.
std::vector<std::string> ContentsOf(const std::vector<Action>& actions) {
  MemoryStore store;
  std::vector<std::string> contents{ContentOf(store)};
  for (const Action& action : actions) {
    EXPECT_EQ(Do(store, action), kDone) << action.path;
    contents.push_back(ContentOf(store));
  }
  return contents;
}

std::string ContentOn(SimulatedFiles& files) {
  PersistentStore store(SimulatedFolders(), files);
  return ContentOf(store);
}

// Runs the actions up to the first that fails; how many were done.
std::size_t DoAll(Store& store, const std::vector<Action>& actions) {
  std::size_t done = 0;
  while (done < actions.size() && Do(store, actions[done]) == kDone) ++done;
  return done;
}

class PowerLoss : public testing::Test {
 protected:
  // Loses power once more while the first change after a loss is made.
  void LoseAgain(const SimulatedFiles& disk, const std::string& content) {
    SimulatedFiles whole(disk);
    PersistentStore undisturbed(SimulatedFolders(), whole);
    const Action create{Kind::Create, "After"};
    const Action set{Kind::Set, "After", "Change", "1"};
    ASSERT_EQ(Do(undisturbed, create), kDone);
    const std::string half = ContentOf(undisturbed);
    ASSERT_EQ(Do(undisturbed, set), kDone);
    const std::string changed = ContentOf(undisturbed);
    const std::int64_t changes = static_cast<std::int64_t>(random_.Bits() % 12);
    SimulatedFiles cut(disk);
    cut.CutPowerAt(changes);
    bool done = false;
    {
      PersistentStore store(SimulatedFolders(), cut);
      done = DoAll(store, {create, set}) == 2;
    }
    SimulatedFiles after = cut.AfterPowerLoss(random_);
    const std::string seen = ContentOn(after);
    ++states_;
    ASSERT_TRUE(seen == changed || (!done && (seen == content || seen == half)))
        << "second cut at change " << changes << "\n"
        << seen << "instead of\n"
        << content;
  }

  Random random_{20240229};
  std::int64_t states_ = 0;
};

TEST_F(PowerLoss, LeavesTheOldContentOrTheNew) {
  const auto actions = Scenario();
  const auto contents = ContentsOf(actions);
  const std::int64_t least = LongSweeps() ? 120000 : 6000;
  SimulatedFiles whole;
  whole.CutPowerAt(INT64_MAX);
  {
    PersistentStore store(SimulatedFolders(), whole);
    ASSERT_EQ(DoAll(store, actions), actions.size());
  }
  ASSERT_EQ(ContentOn(whole), contents.back());
  const std::int64_t cuts = whole.Changes();
  ASSERT_GT(cuts, 60);
  while (states_ < least) {
    for (std::int64_t cut = 0; cut <= cuts; ++cut) {
      SimulatedFiles files;
      files.CutPowerAt(cut);
      std::size_t done = 0;
      {
        PersistentStore store(SimulatedFolders(), files);
        done = DoAll(store, actions);
      }
      for (std::size_t i = 0; i < 4 + 4 * files.Unsynced(); ++i) {
        SimulatedFiles after = files.AfterPowerLoss(random_);
        const std::string content = ContentOn(after);
        ++states_;
        const bool next = done < actions.size() && content == contents[done + 1];
        ASSERT_TRUE(content == contents[done] || next)
            << "cut at change " << cut << " after action " << done << "\n"
            << content << "instead of\n"
            << contents[done];
        PersistentStore store(SimulatedFolders(), after);
        ASSERT_TRUE(store.Verify(kCurrentUser).losses.empty()) << "cut at change " << cut;
        if (i != 0) continue;
        ASSERT_NO_FATAL_FAILURE(LoseAgain(after, content));
      }
    }
  }
  RecordProperty("states", static_cast<int>(states_));
}

// Runs the scenario with failing calls. A change that gave a code has not been made, for this store
// and for another one, and is made when it is asked for again.
void RunWithFault(SimulatedFiles::Failing failing, std::int64_t call, int error,
                  const std::vector<Action>& actions, const std::vector<std::string>& contents) {
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  files.Fail(failing, call, error);
  for (std::size_t i = 0; i < actions.size(); ++i) {
    if (Do(store, actions[i]) == kDone) continue;
    files.Fail(SimulatedFiles::Failing::Never, 0, 0);
    ASSERT_EQ(ContentOf(store), contents[i]) << "after the failure of action " << i;
    ASSERT_EQ(ContentOn(files), contents[i]) << "in another store, action " << i;
    // One failure does not keep the change from being taken back for good.
    for (std::uint64_t seed = 0; seed < 4 && failing == SimulatedFiles::Failing::Once; ++seed) {
      Random random(seed);
      SimulatedFiles after = files.AfterPowerLoss(random);
      ASSERT_EQ(ContentOn(after), contents[i]) << "after a loss of power, action " << i;
    }
    ASSERT_EQ(Do(store, actions[i]), kDone) << "again, action " << i;
  }
  files.Fail(SimulatedFiles::Failing::Never, 0, 0);
  ASSERT_EQ(ContentOf(store), contents.back());
  ASSERT_EQ(ContentOn(files), contents.back()) << "in another store";
  ASSERT_TRUE(store.Verify(kCurrentUser).losses.empty());
  ASSERT_TRUE(store.TakeReports().empty());
}

TEST(Faults, OfAnyCallLeaveTheOldContent) {
  const auto actions = Scenario();
  const auto contents = ContentsOf(actions);
  SimulatedFiles whole;
  {
    PersistentStore store(SimulatedFolders(), whole);
    ASSERT_EQ(DoAll(store, actions), actions.size());
  }
  const std::int64_t calls = whole.Calls();
  for (const int error : {EIO, ENOSPC, EDQUOT, EMFILE, EINTR, 0}) {
    for (const auto failing :
         {SimulatedFiles::Failing::Once, SimulatedFiles::Failing::FromThenOn}) {
      // Calls that are interrupted for ever are repeated for ever.
      if (error == EINTR && failing == SimulatedFiles::Failing::FromThenOn) continue;
      for (std::int64_t call = 0; call < calls; ++call) {
        SCOPED_TRACE("error " + std::to_string(error) + " at call " + std::to_string(call) +
                     (failing == SimulatedFiles::Failing::Once ? " once" : " from then on"));
        ASSERT_NO_FATAL_FAILURE(RunWithFault(failing, call, error, actions, contents));
      }
    }
  }
}

TEST(Faults, GiveTheCodeOfTheirCause) {
  constexpr std::array kRows{std::pair{ENOSPC, kDiskFull},       std::pair{EDQUOT, kDiskFull},
                             std::pair{EIO, kInputOutputFailed}, std::pair{EACCES, kAccessDenied},
                             std::pair{EROFS, kAccessDenied},    std::pair{EMFILE, kTooManyFiles}};
  for (const auto& [error, code] : kRows) {
    SimulatedFiles files;
    PersistentStore store(SimulatedFolders(), files);
    ASSERT_EQ(Save(store, kCurrentUser, "A", "v", "1"), kDone);
    files.Fail(SimulatedFiles::Failing::FromThenOn, 0, error);
    EXPECT_EQ(Save(store, kCurrentUser, "A", "v", "2"), code) << "errno " << error;
    EXPECT_EQ(store.OpenKeyCount(), 0);
  }
}

// Runs each action with every one of its allocations failing in turn.
void RunWithoutMemory(Store& store, bool from_then_on, const std::vector<Action>& actions,
                      const std::vector<std::string>& contents) {
  for (std::size_t i = 0; i < actions.size(); ++i) {
    for (std::int64_t place = 0;; ++place) {
      Int32 code = kDone;
      bool met = false;
      {
        const FailingAllocation failing(place, from_then_on);
        code = Do(store, actions[i]);
        met = FailingAllocation::Met();
      }
      if (code == kDone) {
        ASSERT_EQ(ContentOf(store), contents[i + 1]) << "action " << i << " place " << place;
        break;
      }
      ASSERT_TRUE(met && code == kOutOfMemory) << "action " << i << " code " << code;
      ASSERT_EQ(ContentOf(store), contents[i]) << "action " << i << " place " << place;
    }
  }
  EXPECT_EQ(store.OpenKeyCount(), 0);
}

TEST(Faults, OfAnyAllocationLeaveTheOldContent) {
  const auto actions = Scenario();
  const auto contents = ContentsOf(actions);
  for (const bool from_then_on : {false, true}) {
    SCOPED_TRACE(from_then_on ? "from then on" : "once");
    MemoryStore memory;
    ASSERT_NO_FATAL_FAILURE(RunWithoutMemory(memory, from_then_on, actions, contents));
    const TemporaryFolder folder;
    PersistentStore persistent(folder.Folders());
    ASSERT_NO_FATAL_FAILURE(RunWithoutMemory(persistent, from_then_on, actions, contents));
    PersistentStore other(folder.Folders());
    EXPECT_EQ(ContentOf(other), contents.back());
  }
}

// Four processes write and are killed at any moment.
class Kill : public testing::Test {
 protected:
  static constexpr int kWriters = 4;
  struct Progress {
    std::array<std::atomic<Int32>, kWriters> saved;
    std::array<std::atomic<Int32>, kWriters> copied;
  };

  static std::string KeyOf(int writer) { return "Writer" + std::to_string(writer); }

  // Counts up a value, and copies its key every few steps; what was done is noted where it outlives
  // the process.
  [[noreturn]] void Write(int writer) {
    PersistentStore store(folder_.Folders());
    const std::string bulk(static_cast<std::size_t>(50 * writer), 'x');
    for (Int32 step = progress_->saved[static_cast<std::size_t>(writer)] + 1;; ++step) {
      const std::string data = std::to_string(step) + " " + bulk;
      if (Save(store, kCurrentUser, KeyOf(writer) + "\\From", "Count", data) != kDone) _exit(1);
      progress_->saved[static_cast<std::size_t>(writer)] = step;
      if (step % 8 != 0) continue;
      KeyHandle copy = 0;
      if (store.CreateKey(kCurrentUser, KeyOf(writer) + "\\To", kAllAccess, &copy, nullptr) !=
              kDone ||
          store.CopyTree(kCurrentUser, KeyOf(writer) + "\\From", copy) != kDone) {
        _exit(1);
      }
      store.CloseKey(copy);
      progress_->copied[static_cast<std::size_t>(writer)] = step;
    }
  }

  pid_t Start(int writer) {
    const pid_t child = fork();
    if (child == 0) Write(writer);
    return child;
  }

  static Int32 CountAt(Store& store, const std::string& path) {
    return std::atoi(Load(store, kCurrentUser, path, "Count").c_str());
  }

  TemporaryFolder folder_;
  Progress* progress_ = new (mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE,
                                  MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Progress{};
};

TEST_F(Kill, LosesNoChangeThatWasReported) {
  const int kills = LongSweeps() ? 10000 : 240;
  Random random(7);
  std::array<pid_t, kWriters> writers{};
  for (int i = 0; i < kWriters; ++i) writers[static_cast<std::size_t>(i)] = Start(i);
  PersistentStore store(folder_.Folders());
  for (int kill_number = 0; kill_number < kills; ++kill_number) {
    usleep(static_cast<useconds_t>(random.Whole(500, 20000)));
    const auto writer = static_cast<std::size_t>(random.Bits() % kWriters);
    kill(writers[writer], SIGKILL);
    int status = 0;
    waitpid(writers[writer], &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "writer " << writer << " failed by itself";
    // The step after the last one that was noted may have been made or not.
    const Int32 saved = progress_->saved[writer];
    const std::string key = KeyOf(static_cast<int>(writer));
    const Int32 seen = CountAt(store, key + "\\From");
    ASSERT_TRUE(seen == saved || seen == saved + 1) << "seen " << seen << ", reported " << saved;
    ASSERT_GE(CountAt(store, key + "\\To"), progress_->copied[writer]) << key;
    progress_->saved[writer] = seen;
    writers[writer] = Start(static_cast<int>(writer));
  }
  for (const pid_t writer : writers) {
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
  }
  const JournalReport report = store.Verify(kCurrentUser);
  EXPECT_EQ(report.status, kDone);
  EXPECT_TRUE(report.losses.empty());
  EXPECT_TRUE(store.TakeReports().empty());
}

}  // namespace
}  // namespace quorl
