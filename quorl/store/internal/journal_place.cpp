#include "quorl/store/internal/journal_place.hpp"

#include <cerrno>
#include <utility>

namespace quorl::internal {
namespace {

constexpr int kMostLinks = 40;
constexpr int kMostKeptAside = 10000;

int Opened(FileSystem& files, const std::string& path, OpenFor purpose, unsigned mode) {
  int file = files.Open(path, purpose, mode);
  while (file == -EINTR) file = files.Open(path, purpose, mode);
  return file;
}

// Whether `path` still names the open file.
bool Names(FileSystem& files, const std::string& path, const FileInfo& open) {
  FileInfo named;
  return files.Describe(path, named) == 0 && named.SameFile(open);
}

// Locks an open file and makes sure that `path` still names it then.
LockResult LockOpen(FileSystem& files, const std::string& path, const OpenFile& file,
                    Int32& status) {
  FileInfo info;
  status = file.Describe(info);
  if (status == kDone && !info.regular) status = kNotAHive;
  if (status != kDone) return LockResult::Failed;
  int result = files.TryLock(file.Descriptor());
  while (result == -EINTR) result = files.TryLock(file.Descriptor());
  if (result == -EAGAIN || (result == 0 && !Names(files, path, info))) return LockResult::Busy;
  status = CodeOfResult(result);
  return status == kDone ? LockResult::Locked : LockResult::Failed;
}

}  // namespace

std::string FolderOf(const std::string& path) {
  const std::size_t end = path.rfind('/');
  return end == 0 ? "/" : path.substr(0, end);
}

Int32 FollowLinks(FileSystem& files, std::string path, std::string& target) {
  for (int links = 0; links < kMostLinks; ++links) {
    std::string next;
    const int result = files.ReadLink(path, next);
    if (result == -EINVAL || result == -ENOENT) {
      target = std::move(path);
      return kDone;
    }
    if (result != 0) return CodeOfResult(result);
    path = next.starts_with('/') ? next : FolderOf(path).append("/").append(next);
  }
  return kWrongFolder;
}

LockResult LockJournal(FileSystem& files, const std::string& path, OpenFile& file, Int32& status) {
  // Looked at before it is opened, since the opening of some devices has effects.
  FileInfo info;
  const int described = files.Describe(path, info);
  status = described == -ENOENT ? static_cast<Int32>(kAbsent) : CodeOfResult(described);
  if (status == kDone && !info.regular) status = kNotAHive;
  if (status != kDone) return LockResult::Failed;
  const int descriptor = Opened(files, path, OpenFor::Writing, 0);
  if (descriptor == -ENOENT) return LockResult::Busy;
  status = CodeOfResult(descriptor);
  if (status != kDone) return LockResult::Failed;
  file = OpenFile(files, descriptor);
  return LockOpen(files, path, file, status);
}

FreshFile::~FreshFile() {
  if (made_) files_.Remove(fresh_path_);
}

LockResult FreshFile::Make(unsigned mode, const FileInfo* former, Int32& status) {
  const int descriptor = Opened(files_, fresh_path_, OpenFor::Creating, mode);
  status = CodeOfResult(descriptor);
  if (status != kDone) return LockResult::Failed;
  file_ = OpenFile(files_, descriptor);
  const LockResult locked = LockOpen(files_, fresh_path_, file_, status);
  if (locked != LockResult::Locked) return locked;
  made_ = true;
  FileInfo info;
  status = file_.Describe(info);
  if (status == kDone && info.size != 0) status = file_.Truncate(0);
  const bool foreign =
      former != nullptr && (former->owner != info.owner || former->group != info.group);
  if (status == kDone && foreign) {
    status = CodeOfResult(files_.SetOwner(descriptor, former->owner, former->group));
  }
  if (status == kDone) status = CodeOfResult(files_.SetMode(descriptor, mode));
  return status == kDone ? LockResult::Locked : LockResult::Failed;
}

Int32 FreshFile::TakePlace() {
  const Int32 status = CodeOfResult(files_.Rename(fresh_path_, path_));
  if (status == kDone) made_ = false;
  return status;
}

Int32 MakeFolders(FileSystem& files, const std::string& folder, unsigned mode) {
  FileInfo info;
  const int found = files.Describe(folder, info);
  if (found != 0 && found != -ENOENT) return CodeOfResult(found);
  const std::string above = FolderOf(folder);
  if (found == -ENOENT) {
    if (above == folder) return kFolderNotFound;
    if (const Int32 status = MakeFolders(files, above, mode); status != kDone) return status;
    const int made = files.MakeFolder(folder, mode);
    if (made != 0 && made != -EEXIST) return CodeOfResult(made);
  }
  // A folder that was there may have been made by a process that was killed before it got here. One
  // that may not be opened was not made by us.
  for (std::string each = above;; each = FolderOf(each)) {
    const int synced = files.SyncFolder(each);
    const bool not_ours = synced == -EACCES || synced == -EPERM || synced == -EROFS;
    if (synced != 0 && !not_ours) return CodeOfResult(synced);
    if (each == "/" || found == -ENOENT) return kDone;
  }
}

std::string AsideName(const std::string& path, int number) {
  return path + ".damaged-" + std::to_string(number);
}

Int32 KeepAside(FileSystem& files, const std::string& path, std::string& kept_as) {
  FileInfo info;
  if (const int result = files.Describe(path, info); result != 0) return CodeOfResult(result);
  for (int number = 1; number <= kMostKeptAside; ++number) {
    kept_as = AsideName(path, number);
    if (Names(files, kept_as, info)) return kDone;
    const int result = files.Link(path, kept_as);
    if (result != -EEXIST) return CodeOfResult(result);
  }
  return kDamaged;
}

}  // namespace quorl::internal
