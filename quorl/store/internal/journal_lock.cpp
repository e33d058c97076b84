#include "quorl/store/internal/journal_lock.hpp"

#include <algorithm>
#include <cerrno>
#include <utility>
#include <vector>

namespace quorl::internal {
namespace {

constexpr int kMostLinks = 40;
constexpr int kMostQuarantined = 10000;

}  // namespace

std::string FolderOf(const std::string& path) {
  const std::size_t end = path.rfind('/');
  return end == 0 ? "/" : path.substr(0, end);
}

StoreStatus FollowLinks(FileSystem& files, std::string path, std::string& target) {
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

bool Names(FileSystem& files, const std::string& path, const FileInfo& open) {
  FileInfo named;
  return files.Describe(path, named) == 0 && named.SameFile(open);
}

StoreStatus LockJournal(FileSystem& files, const std::string& path, OpenFile& file,
                        FileInfo& info) {
  // Looked at before it is opened, since the opening of some devices has effects.
  const int described = files.Describe(path, info);
  if (described == -ENOENT) return kAbsent;
  if (described != 0) return CodeOfResult(described);
  if (!info.regular) return kNotAHive;
  const int descriptor = files.Open(path, OpenFor::kWriting, 0);
  if (descriptor == -ENOENT) return kLocked;
  if (descriptor < 0) return CodeOfResult(descriptor);
  file = OpenFile(files, descriptor);
  const int result = files.TryLock(descriptor);
  if (result == -EAGAIN) return kLocked;
  if (result != 0) return CodeOfResult(result);
  // Whoever had the lock before may have put another file there.
  const StoreStatus status = file.Describe(info);
  if (status != kDone) return status;
  return Names(files, path, info) ? kDone : kLocked;
}

StoreStatus MakeFolders(FileSystem& files, const std::string& folder, unsigned mode) {
  std::vector<std::string> missing;
  std::string lowest = folder;
  FileInfo info;
  int found = files.Describe(lowest, info);
  for (; found == -ENOENT && lowest != "/"; found = files.Describe(lowest, info)) {
    missing.push_back(lowest);
    lowest = FolderOf(lowest);
  }
  if (found != 0) return CodeOfResult(found);
  std::reverse(missing.begin(), missing.end());
  for (const std::string& each : missing) {
    const int made = files.MakeFolder(each, mode);
    if (made != 0 && made != -EEXIST) return CodeOfResult(made);
  }
  // A folder that was there may have been made by a process that was killed before it got here. One
  // that may not be opened was not made by us.
  for (std::string each = folder;; each = FolderOf(each)) {
    const int synced = files.SyncFolder(each);
    const bool not_ours = synced == -EACCES || synced == -EPERM || synced == -EROFS;
    if (synced != 0 && !not_ours) return CodeOfResult(synced);
    if (each == "/") return kDone;
  }
}

std::string QuarantineName(const std::string& path, int number) {
  return path + ".damaged-" + std::to_string(number);
}

StoreStatus Quarantine(FileSystem& files, const std::string& path, std::string& kept_as) {
  FileInfo info;
  if (const int result = files.Describe(path, info); result != 0) return CodeOfResult(result);
  for (int number = 1; number <= kMostQuarantined; ++number) {
    kept_as = QuarantineName(path, number);
    const int result = Names(files, kept_as, info) ? 0 : files.Link(path, kept_as);
    if (result == -EEXIST) continue;
    return result == 0 ? CodeOfResult(files.SyncFolder(FolderOf(path))) : CodeOfResult(result);
  }
  return kDamaged;
}

}  // namespace quorl::internal
