// A fresh file beside a journal, which is to take its place: under a name that nobody can guess, so
// that nothing foreign stands there. Not for several threads at once.
#pragma once

#include <string>
#include <utility>

#include "quorl/store/file_system.hpp"
#include "quorl/store/internal/open_file.hpp"

namespace quorl::internal {

class FreshFile {
 public:
  /// `path` is the journal's, its links followed.
  FreshFile(FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;
  /// Removes the file unless it has taken its place.
  ~FreshFile();

  /// Makes the file, empty and locked, with this mode, and with the owner of `former`, unless null,
  /// as far as the process may. What killed processes left behind in the same way goes.
  StoreStatus Make(unsigned mode, const FileInfo* former);
  const OpenFile& File() const noexcept { return file_; }
  const std::string& Path() const noexcept { return fresh_path_; }
  /// Renames the file over the journal. The folder is still to be synced.
  StoreStatus TakePlace();
  /// The same where there is no journal; kLocked when there is one by now.
  StoreStatus TakeEmptyPlace();
  /// Leaves the descriptor alone from now on, because it is not ours any more.
  void Forget() noexcept { file_.Forget(); }
  /// The file, with its lock.
  OpenFile Release() noexcept { return std::move(file_); }

 private:
  StoreStatus Open(unsigned mode);
  StoreStatus SetOwnerAndMode(unsigned mode, const FileInfo* former);
  void RemoveAbandoned();

  FileSystem& files_;
  std::string path_;
  std::string fresh_path_;
  OpenFile file_;
  bool is_made_ = false;
};

}  // namespace quorl::internal
