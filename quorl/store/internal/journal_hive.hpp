// A hive kept in a journal: a tree in memory that follows the file, and changes that are lasting
// before they are seen. For the file see journal_format.hpp, for the store persistent_store.hpp.
//
// Two locks. `writing_` is held by the one thread that changes the hive, the file's own lock keeps
// other processes out; neither is ever waited for with the other held. `state_` guards the members
// and is not held while data goes to the disk, so that readers go on meanwhile.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "quorl/store/internal/hive.hpp"
#include "quorl/store/internal/journal_file.hpp"
#include "quorl/store/internal/journal_place.hpp"

namespace quorl::internal {

class JournalHive final : public Hive {
 public:
  /// `files` is lent for the hive's life. Nothing is read or made before the first use.
  JournalHive(FileSystem& files, JournalPlace place);

  Int32 Read(Freshness freshness, Look look) override;
  Int32 Write(Plan plan) override;
  void HoldForFork() noexcept override;
  void ReleaseAfterFork() noexcept override;

  /// Reads every record of the file as it stands.
  JournalReport Verify();
  /// The reports of the damaged files that this object has come upon since the last call.
  std::vector<JournalReport> TakeReports();
  std::string Path() const { return place_.Path(); }

 private:
  Int32 CatchUp();
  Int32 Load();
  void Detach();
  void Adopt(OpenFile file, const FileInfo& info, LoadedJournal& loaded);

  bool LetsOthersGoFirst();
  LockResult LockForWriting(OpenFile& locked, Int32& status);
  LockResult Create(OpenFile& locked, Int32& status);
  Int32 WriteLocked(OpenFile& locked, Plan plan);
  Int32 MakeLasting(OpenFile& locked, std::unique_lock<std::mutex>& state, const Change& change);
  Int32 Repair(OpenFile& locked);
  void RewriteIfWorthwhile(OpenFile& locked, std::unique_lock<std::mutex>& state) noexcept;
  Int32 Rewrite(OpenFile& locked, std::unique_lock<std::mutex>& state);
  Int32 PutInPlace(const Key& content, const FileInfo& former, OpenFile& locked,
                   std::unique_lock<std::mutex>* state);
  Int32 SyncFolder();
  void AddReport(JournalReport report);

  FileSystem& files_;
  const JournalPlace place_;
  const std::string path_;
  const std::uint64_t boot_;

  std::mutex writing_;
  int turns_to_let_pass_ = 0;  // Guarded by `writing_`, as the making of changes is.
  std::mutex state_;
  HiveContent content_;
  OpenFile file_;                 // Open for reading, unless there is no journal.
  FileInfo identity_;             // Which file that is.
  JournalPosition position_;      // How far it has been read.
  std::uint64_t known_size_ = 0;  // The length at which there is nothing to be read on.
  bool damaged_ = false;          // The content was salvaged, and the file could not be replaced.
  bool folder_synced_ = false;    // The file's name is lasting.
  bool rewrite_first_ = false;    // A sync failed: what the file's pages hold is not to be trusted.
  std::uint64_t rewrite_from_ = 0;  // The length from which a rewriting that failed is tried again.
  std::vector<JournalReport> reports_;
};

}  // namespace quorl::internal
