// The store on the disk, and the one that a process uses unless its host chooses another.
//
// Each root key is a hive with a journal of its own (journal_format.hpp), a file called after the
// root key: HKEY_CURRENT_USER.journal. The user's folder holds the hives of HKEY_CLASSES_ROOT and
// HKEY_CURRENT_USER, the machine's those of HKEY_LOCAL_MACHINE, HKEY_USERS and HKEY_CURRENT_CONFIG;
// HKEY_PERFORMANCE_DATA and HKEY_DYN_DATA are in memory only. Folder and file are made by the first
// change, the user's with modes 0700 and 0600, the machine's with 0755 and 0644. Nothing but the
// folders is configured, and no thread or other process is at work.
//
// Promises. A change is synced to the disk before its operation returns 0: it outlives the kill of
// the process and the loss of power, and what was cut off midway is as if never begun. Processes
// and threads may read and write at once; a reader waits for nobody, a writer for another writer
// for at most 20 seconds (then 33), and a writer that is killed holds nobody up. An opening of a
// key sees what any process had changed before; an open key is read as its hive was last seen.
// After a fork, parent and child both go on. A hive takes memory in proportion to what it holds,
// and its file at most twice as much as its content and 64 KiB; it is rewritten when it grows
// beyond, keeping the symbolic links, owner and mode of the file.
//
// Damage. A file that is damaged is given a second name, with ".damaged-" and a number, and a fresh
// one takes its place with everything whose records are intact; whoever comes upon the damage does
// that, and where it is not possible, what could be had is read, and writing gives the code of what
// stood in the way. `TakeReports` and `Verify` tell what was lost. A file of a newer format gives
// 1150 and is left alone; one that may not be read or written gives 5, what is no file 1017.
//
// No member throws but for want of memory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "quorl/store/file_system.hpp"
#include "quorl/store/forwarding_store.hpp"
#include "quorl/store/journal_report.hpp"
#include "quorl/store/store_folders.hpp"

namespace quorl {

class QUORL_API PersistentStore final : public ForwardingStore {
 public:
  /// `files` is lent for the store's life. Nothing is read or made before the first use.
  explicit PersistentStore(const StoreFolders& folders, FileSystem& files = FileSystem::Posix());
  ~PersistentStore() override;

  /// The path of a hive's file; empty for a root key that is in memory only.
  std::string HivePath(StoreRoot root) const;

  /// Reads every record of a hive's file as it stands, without changing anything, and tells what is
  /// damaged and how many records are intact. `status` is kAbsent where there is no file.
  ///     for (const JournalLoss& loss : store.Verify(kCurrentUser).losses) ...
  JournalReport Verify(StoreRoot root) const;

  /// The same of the damaged files that were quarantined beside a hive's, the oldest first.
  std::vector<JournalReport> VerifyQuarantined(StoreRoot root) const;

  /// What this object came upon since the last call: a report for each damaged file, with the name
  /// under which it was kept, which is empty as long as that was not possible.
  std::vector<JournalReport> TakeReports();

 private:
  struct Engine;

  Store& Next() const noexcept override;

  std::unique_ptr<Engine> engine_;
};

}  // namespace quorl
