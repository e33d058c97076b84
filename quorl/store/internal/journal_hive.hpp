// A hive kept in a journal: a tree in memory that follows the file, and changes that are durable
// before they are seen. For the file see journal_format.hpp, for the store persistent_store.hpp.
//
// Two locks. `writing_` is held by the one thread that changes the hive, the file's own lock keeps
// other processes out. `state_` guards the members and is not held while data goes to the disk, so
// that readers go on meanwhile.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "quorl/store/hive_mark.hpp"
#include "quorl/store/internal/hive.hpp"
#include "quorl/store/internal/journal_file.hpp"
#include "quorl/store/internal/journal_lock.hpp"

namespace quorl::internal {

class Rewriting;

class JournalHive final : public Hive {
 public:
  /// `files` is lent for the hive's life. Nothing is read or made before the first use.
  JournalHive(FileSystem& files, JournalPlace place);
  ~JournalHive() override;

  StoreStatus Read(Freshness freshness, Look look) override;
  StoreStatus Prepare(Plan plan, std::unique_ptr<PendingChange>& pending) override;
  void HoldForFork() noexcept override;
  void ReleaseAfterFork() noexcept override;

  /// Reads every record of the file as it stands.
  JournalReport Verify();
  /// Repairs the file if it is damaged. The report's status is what stood in the way.
  JournalReport RepairDamage();
  /// How far the content goes, read on first.
  StoreStatus Mark(HiveMark& mark);
  /// What this object found since the last call.
  std::vector<JournalReport> TakeReports();
  std::string Path() const { return place_.Path(); }

 private:
  class Pending;

  StoreStatus CatchUp();
  bool IsUnchanged() const;
  bool IsAsSeen(const FileInfo& info) const noexcept;
  bool IsTimeOfUse(std::chrono::nanoseconds look) const noexcept;
  void NoteUnchanged(const FileInfo& info, std::chrono::nanoseconds look) noexcept;
  StoreStatus ReadOn(const OpenFile& file, const FileInfo& info, Following& following);
  enum class Lock : std::uint8_t { kHeld, kNotHeld };
  StoreStatus Load(Lock lock);
  bool MayWrite(const FileInfo& info) const;
  void CloseFile() noexcept;
  void Detach();
  void Adopt(OpenFile file, const FileInfo& info, LoadedJournal& loaded);

  bool NeedsNoChange(Plan plan, StoreStatus& status);
  bool LetsOthersGoFirst();
  StoreStatus LockForWriting(OpenFile& locked, FileInfo& info);
  StoreStatus Create(OpenFile& locked);
  StoreStatus GetReady(OpenFile& locked, FileInfo& info, std::unique_lock<std::mutex>& state);
  StoreStatus PrepareLocked(std::unique_lock<std::mutex> writing, OpenFile locked, FileInfo info,
                            Plan plan, std::unique_ptr<PendingChange>& pending);
  StoreStatus Finish(const OpenFile& locked, std::string_view bytes, const JournalPosition& after);
  StoreStatus TakeBackFailed(const OpenFile& locked, bool& is_ours);
  StoreStatus Repair(OpenFile& locked, const FileInfo& info);
  StoreStatus LoadAndRepair(OpenFile& locked, const FileInfo& info, JournalReport& report);
  void RewriteIfWorthwhile(OpenFile& locked, std::size_t changed) noexcept;
  StoreStatus RewriteOn(OpenFile& locked, std::size_t wanted, std::unique_lock<std::mutex>& state);
  StoreStatus BeginRewriting(const FileInfo& former);
  StoreStatus EndRewriting(OpenFile& locked, std::unique_lock<std::mutex>& state);
  StoreStatus TakePlace(Rewriting& rewriting, OpenFile& locked);
  StoreStatus SyncFolder();
  void AddReport(JournalReport report);

  FileSystem& files_;
  const JournalPlace place_;
  const std::string path_;

  std::mutex writing_;
  int turns_to_let_pass_ = 0;  // Guarded by `writing_`, as the making of changes is.
  // A change is on its way to the file: what is there is not to be read yet.
  std::atomic<bool> is_appending_ = false;

  std::mutex state_;
  HiveContent content_ = std::make_shared<KeyTree>();
  OpenFile file_;             // Open for reading, unless there is no journal.
  FileInfo identity_;         // Which file that is.
  JournalPosition position_;  // How far it has been read.
  // What the file was like when it was last read to its end, with its last record and, if that was
  // asked for, its time of change; since when it has been like that, and when that look was.
  FileInfo seen_;
  std::uint64_t seen_last_ = 0;
  std::chrono::nanoseconds seen_since_{0};
  std::chrono::nanoseconds looked_at_{0};
  bool ends_cleanly_ = true;       // When it was loaded, nothing but zeros followed.
  bool is_folder_synced_ = false;  // The file's name is durable.
  // What salvage told of a file that could not be replaced. The content is what could be had.
  std::optional<JournalReport> damage_;
  // How far the file goes with a failed change that could not be overwritten. It is not read.
  std::optional<JournalPosition> failed_;
  std::shared_ptr<Rewriting> rewriting_;  // Of `content_`, if one is under way.
  std::uint64_t rewrite_from_ = 0;  // The length from which a rewriting that failed is tried again.
  std::vector<JournalReport> reports_;
};

}  // namespace quorl::internal
