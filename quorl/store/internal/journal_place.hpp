// Where a journal stands: finding it through symbolic links, making it with its folders, locking it
// for a writer, and putting a fresh one in its place. Not for several threads at once.
#pragma once

#include <string>
#include <utility>

#include "quorl/store/file_system.hpp"
#include "quorl/store/internal/open_file.hpp"
#include "quorl/store/status.hpp"

namespace quorl::internal {

struct JournalPlace {
  std::string folder;
  std::string file_name;
  unsigned folder_mode = 0;
  unsigned file_mode = 0;
  Int32 status = kDone;  ///< A code when the place is none at all; every use gives it.

  std::string Path() const { return folder + "/" + file_name; }
};

/// `path` with the symbolic links of its last level followed; what they name need not exist.
Int32 FollowLinks(FileSystem& files, std::string path, std::string& target);

/// The folder that holds `path`.
std::string FolderOf(const std::string& path);

/// How taking the writer's lock went.
enum class LockResult : std::uint8_t { Locked, Busy, Failed };

/// Opens the journal that `path` names at the moment, and locks it. kAbsent in `status` when there
/// is none.
LockResult LockJournal(FileSystem& files, const std::string& path, OpenFile& file, Int32& status);

/// A fresh file beside the journal, empty and locked, which is to take its place.
class FreshFile {
 public:
  /// `path` is the journal's, its links followed.
  FreshFile(FileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;
  /// Removes the file unless it has taken its place.
  ~FreshFile();

  /// Makes the file with this mode and, unless null, with the owner of `former`.
  LockResult Make(unsigned mode, const FileInfo* former, Int32& status);
  const OpenFile& File() const noexcept { return file_; }
  const std::string& Path() const noexcept { return fresh_path_; }
  /// Renames the file over the journal. The folder is still to be synced.
  Int32 TakePlace();
  /// The file, with its lock.
  OpenFile Release() noexcept { return std::move(file_); }

 private:
  FileSystem& files_;
  std::string path_;
  std::string fresh_path_ = path_ + ".new";
  OpenFile file_;
  bool made_ = false;
};

/// Makes the folder and those above it that are missing, all with this mode (a shared folder behind
/// a private one would be shared with nobody), and makes all their names lasting.
Int32 MakeFolders(FileSystem& files, const std::string& folder, unsigned mode);

/// Gives the file at `path`, its links followed, a second name that says that it is damaged, with a
/// number; `kept_as` is that name. A file that has one already keeps it.
Int32 KeepAside(FileSystem& files, const std::string& path, std::string& kept_as);

/// The name with which `KeepAside` keeps a file, by number from 1.
std::string AsideName(const std::string& path, int number);

}  // namespace quorl::internal
