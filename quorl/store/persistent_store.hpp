// The store on the disk, and the one that a process uses unless its host chooses another.
//
// Each root key is a hive with a journal of its own, a file called after the root key:
// HKEY_CURRENT_USER.journal. The user's folder holds the hives of HKEY_CLASSES_ROOT and
// HKEY_CURRENT_USER, the machine's those of HKEY_LOCAL_MACHINE, HKEY_USERS and HKEY_CURRENT_CONFIG;
// HKEY_PERFORMANCE_DATA and HKEY_DYN_DATA are in memory only. Folder and file are made by the first
// change, the user's with modes 0700 and 0600, the machine's with 0755 and 0644. Nothing but the
// folders is configured; there is no background thread and no helper process.
//
// Promises. A change is synced to the disk before its operation returns 0: it is read after the
// kill of the process and after any loss of power or of the disk, and what was cut off midway is as
// if never begun. A change that failed is taken back, and does not come back; only where taking it
// back failed too, with the process ended before it could try again, it may. Processes and threads
// may read and write at once; a reader waits for nobody, a writer for another writer for at most 20
// seconds (then 33), and a writer that is killed holds nobody up. An opening of a key sees what any
// process had changed before; an open key is read as its hive was last seen. When somebody moves
// the store's folder or changes a link to it, that is noticed within some 10 ms. After a fork,
// parent and child both go on, and a host that closes descriptors which it did not open takes none
// of its own from the store later. A hive takes memory in proportion to what it holds, whatever the
// depth and the order of its names.
//
// Files. A file is at most twice as long as its content and 64 KiB. Before it grows beyond it is
// written afresh, a piece with each change, so that no change waits for all of it, under a name
// that nobody can guess; what a process that ends leaves of it goes the next time. The new file
// keeps the symbolic links, the mode, and the owner as far as the process may give it away (where
// the group cannot be kept, the group gets no more rights than all others). Where that is not
// possible, the file grows on, and `TakeReports` tells why. A file in the user's folder that
// belongs to another user is read but not written (5), unless the process may do everything. A few
// KiB at its end are kept for a full disk: what only deletes still works there, while anything else
// gives 112. Where a process has a limit of file size (RLIMIT_FSIZE), a write beyond it sends
// SIGXFSZ, which ends a process that does not handle or ignore it; with the signal ignored the
// operation gives 112.
//
// Damage. A damaged file is quarantined: it gets a second name, with ".damaged-" and a number, and
// a fresh file takes its place with everything whose records are intact. Whoever finds the damage
// does that; where it is not possible, what could be had is read, and writing gives the code of
// what stood in the way. What a lost change replaced or deleted does not come back where the
// journal tells what it was; where only the number of lost changes is known, older values may be
// there, and the report says so. `TakeReports` and `Verify` tell what was lost. A file of a newer
// format gives 1150 and is left alone; one that may not be read or written gives 5, and 1017 if the
// path does not name a regular file.
//
// No member throws but for want of memory.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "quorl/store/file_system.hpp"
#include "quorl/store/forwarding_store.hpp"
#include "quorl/store/hive_mark.hpp"
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

  /// `Verify` of any file with a hive's journal, such as a copied one.
  static JournalReport VerifyFile(const std::string& path, FileSystem& files = FileSystem::Posix());

  /// Does with a damaged file what the store does with one of its own at the next use: quarantines
  /// it and puts a fresh one with all that is intact in its place. Any file will do, a hive's in
  /// use as well as a copied one; one without a single intact record becomes an empty one, so look
  /// at `VerifyFile` first. The report tells what was lost and `kept_as`; its `status` is the code
  /// of what stood in the way, after which the file stands as it did. A file without damage, or of
  /// another kind, is left alone.
  static JournalReport RepairFile(const std::string& path, FileSystem& files = FileSystem::Posix());

  /// How far a hive's content goes at the moment, so that a program sees whether anybody has
  /// changed it: as long as the mark is the same, so is the content. Costs what the opening of a
  /// key costs. The codes of such an opening; always the same mark for a root key in memory.
  Int32 Mark(StoreRoot root, HiveMark& mark) const;

  /// What this object found since the last call: a report for each damaged file, with the name
  /// under which it was quarantined, which is empty as long as that was not possible, and one for
  /// each file that could not be written afresh (`rewriting`).
  std::vector<JournalReport> TakeReports();

  Int32 ReadShortValue(KeyHandle root, std::string_view path, std::string_view name,
                       ShortValue* value) noexcept override;

 private:
  struct Engine;

  Store& Next() const noexcept override;

  std::unique_ptr<Engine> engine_;
};

}  // namespace quorl
