// Where a journal stands: finding it through symbolic links, and locking it for a writer. Not for
// several threads at once.
#pragma once

#include <string>

#include "quorl/store/file_system.hpp"
#include "quorl/store/internal/open_file.hpp"
#include "quorl/store/status.hpp"

namespace quorl::internal {

struct JournalPlace {
  std::string folder;
  std::string file_name;
  unsigned folder_mode = 0;
  unsigned file_mode = 0;
  bool is_private = false;     ///< A file of another user in this place is not written to.
  StoreStatus status = kDone;  ///< A code when the place is none at all; every use gives it.

  std::string Path() const { return folder + "/" + file_name; }
};

/// `path` with the symbolic links of its last level followed; what they name need not exist.
StoreStatus FollowLinks(FileSystem& files, std::string path, std::string& target);

/// The folder that holds `path`.
std::string FolderOf(const std::string& path);

/// Whether `path` names the file `open` at the moment.
bool Names(FileSystem& files, const std::string& path, const FileInfo& open);

/// Opens the journal that `path` names at the moment, and locks it; `info` is the file's then.
/// kLocked when somebody else has it locked or has just put another one there, kAbsent when there
/// is none.
StoreStatus LockJournal(FileSystem& files, const std::string& path, OpenFile& file, FileInfo& info);

/// Makes the folder and those above it that are missing, all with this mode (a shared folder below
/// a private one would be shared with nobody), and makes all their names durable.
StoreStatus MakeFolders(FileSystem& files, const std::string& folder, unsigned mode);

/// Gives the damaged file at `path`, its links followed, a durable second name; `kept_as` is that
/// name. A file that has one already keeps it.
StoreStatus Quarantine(FileSystem& files, const std::string& path, std::string& kept_as);

/// The name with which `Quarantine` keeps a file, by number from 1.
std::string QuarantineName(const std::string& path, int number);

}  // namespace quorl::internal
