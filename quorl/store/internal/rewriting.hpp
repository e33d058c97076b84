// The rewriting of a journal on its way: a fresh file with a fresh journal in it, which is to take
// the former one's place. Used with the lock of the content held (`state`), which is let go while
// data goes to the disk: others may change the tree meanwhile. That lock need not be given where
// there are no others.
#pragma once

#include <cstddef>
#include <limits>
#include <mutex>
#include <optional>
#include <string>

#include "quorl/store/internal/fresh_file.hpp"
#include "quorl/store/internal/fresh_journal.hpp"
#include "quorl/store/internal/hive.hpp"

namespace quorl::internal {

class Rewriting {
 public:
  /// Little, so that the change which writes it does not take much longer than others.
  static constexpr std::size_t kPieceBytes = std::size_t{32} * 1024;
  static constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

  /// `target` is the journal's path, its links followed.
  Rewriting(FileSystem& files, std::string target, HiveContent content);
  Rewriting(const Rewriting&) = delete;
  Rewriting& operator=(const Rewriting&) = delete;
  ~Rewriting();

  /// Makes the file; see `FreshFile::Make`.
  StoreStatus Make(unsigned mode, const FileInfo* former);
  /// Whether the descriptor is still that of the file that was made; the host may have closed it.
  bool IsStillOpen() const noexcept;
  bool IsWalked() const noexcept { return journal_.IsWalked(); }
  /// Writes what comes next.
  StoreStatus Write(std::size_t wanted, std::unique_lock<std::mutex>& state);
  /// Writes all that is left and syncs it.
  StoreStatus WriteRest(std::unique_lock<std::mutex>& state);

  FreshFile& File() noexcept { return file_; }
  const FreshJournal& Journal() const noexcept { return journal_; }

 private:
  FreshFile file_;
  std::optional<FileInfo> identity_;  // Once it is made.
  FreshJournal journal_;
};

}  // namespace quorl::internal
