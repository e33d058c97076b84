// What the persistent store promises when something breaks: power, process, disk, memory.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <filesystem>
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

namespace fs = std::filesystem;
using enum Action::Kind;

// Every kind of change, a file that is made, grows, and is rewritten on the way.
std::vector<Action> Scenario() {
  const std::string bulk(30000, 'x');
  return {
      {kCreateKey, "App\\Windows\\Main"},
      {kSetValue, "App", "Left", "100"},
      {kSetValue, "App\\Windows", "", "unnamed"},
      {kSetValue, "App", "LEFT", "200", 7},
      {kSetValue, "App", "Long", std::string(900, 'l')},
      {kSetValue, "App\\Windows\\Main", "Long", std::string(900, 'm')},
      {kCreateKey, "Backup"},
      {kCopyKey, "App", "Backup"},
      {kDeleteValue, "App", "Left"},
      {kDeleteKey, "App\\Windows"},
      {kSetValue, "App", "Bulk", bulk},
      {kSetValue, "App", "Bulk", bulk + "1"},
      {kSetValue, "App", "Bulk", bulk + "2"},
      // These come while the file is being rewritten.
      {kSetValue, "App", "LONG", "short"},
      {kCreateKey, "App\\New\\Newer"},
      {kDeleteValue, "App", "Long"},
      {kDeleteKey, "App\\New"},
      {kSetValue, "App", "Bulk", "small"},
      {kCopyKey, "Backup", "App"},
      {kSetValue, "Backup\\Windows", "Only", "here"},
      {kDeleteKey, "Backup"},
      {kSetValue, "App", "Last", "1"},
  };
}

// The content before the first action and after each one, which must all work.
std::vector<std::string> ContentsOf(Store& store, const std::vector<Action>& actions) {
  std::vector<std::string> contents{ContentOf(store)};
  for (const Action& action : actions) {
    EXPECT_EQ(Do(store, action), kDone) << action.path;
    contents.push_back(ContentOf(store));
  }
  return contents;
}
std::vector<std::string> ContentsOf(const std::vector<Action>& actions) {
  MemoryStore store;
  return ContentsOf(store, actions);
}

std::string ContentOn(SimulatedFiles& files) {
  PersistentStore store(SimulatedFolders(), files);
  return ContentOf(store);
}

// Runs the actions up to the first that fails; how many were done.
std::size_t DoAll(SimulatedFiles& files, const std::vector<Action>& actions) {
  PersistentStore store(SimulatedFolders(), files);
  std::size_t done = 0;
  while (done < actions.size() && Do(store, actions[done]) == kDone) ++done;
  return done;
}

class PowerLoss : public testing::Test {
 protected:
  // Makes the changes on `disk` with the power cut at `cut`, and looks at what is left: the content
  // after the last change that was reported, or after the one that followed.
  void Lose(const SimulatedFiles& disk, std::int64_t cut, const std::vector<Action>& actions,
            const std::vector<std::string>& contents, bool again) {
    SimulatedFiles files(disk);
    files.CutPowerAt(cut);
    const std::size_t done = DoAll(files, actions);
    const std::size_t ways = again ? 4 + 4 * files.Unsynced() : 4;
    for (std::size_t way = 0; way < ways; ++way, ++states_) {
      SimulatedFiles after = files.AfterPowerLoss(random_);
      PersistentStore store(SimulatedFolders(), after);
      const std::string content = ContentOf(store);
      ASSERT_TRUE(content == contents[done] ||
                  (done < actions.size() && content == contents[done + 1]))
          << "cut at change " << cut << " after action " << done << "\n"
          << content << "instead of\n"
          << contents[done];
      ASSERT_TRUE(store.Verify(kCurrentUser).losses.empty()) << "cut at change " << cut;
      if (!again || way != 0) continue;
      // Power is lost once more while the first changes after the loss are made.
      static const std::vector<Action> kNext{{kCreateKey, "After"}, {kSetValue, "After", "v", "1"}};
      SimulatedFiles whole(after);
      PersistentStore undisturbed(SimulatedFolders(), whole);
      const std::int64_t second = random_.Whole(0, 11);
      SCOPED_TRACE("second cut, the first at change " + std::to_string(cut));
      ASSERT_NO_FATAL_FAILURE(Lose(after, second, kNext, ContentsOf(undisturbed, kNext), false));
    }
  }

  Random random_{20240229};
  std::int64_t states_ = 0;
};

TEST_F(PowerLoss, LeavesTheOldContentOrTheNew) {
  const auto actions = Scenario();
  const auto contents = ContentsOf(actions);
  SimulatedFiles whole;
  whole.CutPowerAt(INT64_MAX);
  ASSERT_EQ(DoAll(whole, actions), actions.size());
  ASSERT_GT(whole.Changes(), 60);
  for (const std::int64_t least = LongSweeps() ? 120000 : 6000; states_ < least;) {
    for (std::int64_t cut = 0; cut <= whole.Changes(); ++cut) {
      ASSERT_NO_FATAL_FAILURE(Lose(SimulatedFiles(), cut, actions, contents, true));
    }
  }
}

// Runs the scenario with failing calls. A change that gave a code has not been made, for this store
// and for another one, and is made when it is asked for again.
void RunWithFault(std::int64_t call, int error, Int32 code, bool lasting,
                  const std::vector<Action>& actions, const std::vector<std::string>& contents) {
  SimulatedFiles files;
  PersistentStore store(SimulatedFolders(), files);
  files.Fail(call, error, lasting);
  for (std::size_t i = 0; i < actions.size(); ++i) {
    SCOPED_TRACE("action " + std::to_string(i));
    const Int32 given = Do(store, actions[i]);
    if (given == kDone) continue;
    ASSERT_TRUE(given == code || code == kDone) << given;
    files.FailNever();
    // What another process makes durable then is durable, whatever it took for committed.
    SimulatedFiles others(files);
    PersistentStore other(SimulatedFolders(), others);
    ASSERT_EQ(Save(other, kCurrentUser, "Next", "v", "1"), kDone);
    Random draws(static_cast<std::uint64_t>(call));
    SimulatedFiles lost = others.AfterPowerLoss(draws);
    PersistentStore next(SimulatedFolders(), lost);
    ASSERT_EQ(Load(next, kCurrentUser, "Next", "v"), "1");
    ASSERT_TRUE(next.TakeReports().empty());
    ASSERT_EQ(ContentOf(store), contents[i]);
    ASSERT_EQ(ContentOn(files), contents[i]) << "in another store";
    // One failure does not keep the change from being taken back for good.
    for (std::uint64_t seed = 0; seed < 4 && !lasting; ++seed) {
      Random random(seed);
      SimulatedFiles after = files.AfterPowerLoss(random);
      ASSERT_EQ(ContentOn(after), contents[i]) << "after a loss of power";
    }
    ASSERT_EQ(Do(store, actions[i]), kDone) << "again";
  }
  files.FailNever();
  ASSERT_EQ(ContentOf(store), contents.back());
  ASSERT_EQ(ContentOn(files), contents.back()) << "in another store";
  ASSERT_TRUE(store.Verify(kCurrentUser).losses.empty());
  // A rewriting that failed is told, and nothing else.
  for (const JournalReport& report : store.TakeReports()) {
    ASSERT_FALSE(report.Damaged());
    ASSERT_TRUE(report.rewriting == code || code == kDone) << report.rewriting;
  }
}

TEST(Faults, OfAnyCallLeaveTheOldContentAndGiveTheCodeOfTheirCause) {
  const auto actions = Scenario();
  const auto contents = ContentsOf(actions);
  SimulatedFiles whole;
  ASSERT_EQ(DoAll(whole, actions), actions.size());
  constexpr std::array kErrors{
      std::pair{EIO, kInputOutputFailed},
      std::pair{ENOSPC, kDiskFull},
      std::pair{EDQUOT, kDiskFull},
      std::pair{EMFILE, kTooManyFiles},
      std::pair{EROFS, kAccessDenied},
      std::pair{EACCES, kAccessDenied},
      std::pair{EINTR, kDone},
      std::pair{0, kDone},  // these two give whatever they do
  };
  for (const auto& [error, code] : kErrors) {
    for (const bool lasting : {false, true}) {
      // Calls that are interrupted for ever are repeated for ever.
      if (error == EINTR && lasting) continue;
      for (std::int64_t call = 0; call < whole.Calls(); ++call) {
        SCOPED_TRACE("error " + std::to_string(error) + " at call " + std::to_string(call) +
                     (lasting ? " from then on" : " once"));
        ASSERT_NO_FATAL_FAILURE(RunWithFault(call, error, code, lasting, actions, contents));
      }
    }
  }
}

// Runs each action with every one of its allocations failing in turn.
void RunWithoutMemory(Store& store, bool from_then_on, const std::vector<Action>& actions,
                      const std::vector<std::string>& contents) {
  SCOPED_TRACE(from_then_on ? "from then on" : "once");
  for (std::size_t i = 0; i < actions.size(); ++i) {
    Int32 code = kOutOfMemory;
    for (std::int64_t place = 0; code != kDone; ++place) {
      bool met = false;
      {
        const FailingAllocation failing(place, from_then_on);
        code = Do(store, actions[i]);
        met = FailingAllocation::Met();
      }
      ASSERT_TRUE(code == kDone || (met && code == kOutOfMemory)) << i << " code " << code;
      ASSERT_EQ(ContentOf(store), contents[code == kDone ? i + 1 : i]) << i << " place " << place;
    }
  }
  EXPECT_EQ(store.OpenKeyCount(), 0);
}

TEST(Faults, OfAnyAllocationLeaveTheOldContent) {
  const auto actions = Scenario();
  const auto contents = ContentsOf(actions);
  for (const bool from_then_on : {false, true}) {
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
  static constexpr std::size_t kWriters = 4;
  struct Progress {
    std::atomic<Int32> saved;
    std::atomic<Int32> copied;
  };

  Kill() {
    for (std::size_t i = 0; i < kWriters; ++i) Start(i);
  }
  ~Kill() override {
    for (const pid_t writer : writers_) {
      if (writer != 0) End(writer);
    }
  }

  static std::string KeyOf(std::size_t writer) { return "Writer" + std::to_string(writer); }

  // Counts up a value, and copies its key every few steps; what was done is noted where it outlives
  // the process.
  [[noreturn]] void Write(std::size_t writer) {
    PersistentStore store(folder_.Folders());
    const std::string key = KeyOf(writer);
    const std::string bulk(50 * writer, 'x');
    for (Int32 step = progress_[writer].saved + 1;; ++step) {
      const std::string data = std::to_string(step) + " " + bulk;
      if (Save(store, kCurrentUser, key + "\\From", "Count", data) != kDone) _exit(1);
      progress_[writer].saved = step;
      if (step % 8 != 0) continue;
      if (Do(store, {kCreateKey, key + "\\To"}) != kDone) _exit(1);
      if (Do(store, {kCopyKey, key + "\\From", key + "\\To"}) != kDone) _exit(1);
      progress_[writer].copied = step;
    }
  }

  void Start(std::size_t writer) {
    writers_[writer] = fork();
    if (writers_[writer] == 0) Write(writer);
  }
  // Whether it was the signal that ended the process.
  static bool End(pid_t writer) {
    kill(writer, SIGKILL);
    int status = 0;
    waitpid(writer, &status, 0);
    return WIFSIGNALED(status);
  }

  static Int32 CountAt(Store& store, const std::string& path) {
    return std::atoi(Load(store, kCurrentUser, path, "Count").c_str());
  }

  TemporaryFolder folder_;
  Progress* progress_ = new (mmap(nullptr, kWriters * sizeof(Progress), PROT_READ | PROT_WRITE,
                                  MAP_SHARED | MAP_ANONYMOUS, -1, 0)) Progress[kWriters]{};
  std::array<pid_t, kWriters> writers_{};
};

TEST_F(Kill, LosesNoChangeThatWasReported) {
  const int kills = LongSweeps() ? 10000 : 240;
  Random random(7);
  PersistentStore store(folder_.Folders());
  for (int kill_number = 0; kill_number < kills; ++kill_number) {
    usleep(static_cast<useconds_t>(random.Whole(500, 20000)));
    const auto writer = static_cast<std::size_t>(random.Whole(0, kWriters - 1));
    ASSERT_TRUE(End(writers_[writer])) << "writer " << writer << " failed by itself";
    // The step after the last one that was noted may have been made or not.
    const Int32 saved = progress_[writer].saved;
    const Int32 seen = CountAt(store, KeyOf(writer) + "\\From");
    ASSERT_TRUE(seen == saved || seen == saved + 1) << "seen " << seen << ", reported " << saved;
    ASSERT_GE(CountAt(store, KeyOf(writer) + "\\To"), progress_[writer].copied) << writer;
    progress_[writer].saved = seen;
    Start(writer);
  }
  for (pid_t& writer : writers_) End(std::exchange(writer, 0));
  const JournalReport report = store.Verify(kCurrentUser);
  EXPECT_TRUE(report.status == kDone && report.losses.empty());
  EXPECT_TRUE(store.TakeReports().empty());
  // Nothing but the journal is left when it is written afresh the next time.
  while (std::distance(fs::directory_iterator(folder_.Folders().user), {}) > 1) {
    ASSERT_LT(fs::file_size(folder_.UserHive()), 200000U) << "abandoned files stay";
    ASSERT_EQ(Save(store, kCurrentUser, "Bulk", "v",
                   std::string(30000, 'x') + std::to_string(random.Bits())),
              kDone);
  }
}

}  // namespace
}  // namespace quorl
