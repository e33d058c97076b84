#include "quorl/store/internal/fresh_file.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <string_view>
#include <vector>

#include "quorl/store/internal/journal_lock.hpp"
#include "quorl/store/internal/random_number.hpp"

namespace quorl::internal {
namespace {

constexpr std::string_view kMark = ".new-";
constexpr std::size_t kDigits = 16;
constexpr int kAttempts = 3;
constexpr unsigned kGroupBits = 070;

std::string RandomDigits() {
  std::array<char, kDigits> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + kDigits, RandomNumber(), 16).ptr;
  const std::string_view text(digits.data(), static_cast<std::size_t>(end - digits.data()));
  return std::string(kDigits - text.size(), '0').append(text);
}

bool IsFreshName(std::string_view name, std::string_view journal) {
  if (!name.starts_with(journal)) return false;
  name.remove_prefix(journal.size());
  return name.starts_with(kMark) && name.size() == kMark.size() + kDigits &&
         name.find_first_not_of("0123456789abcdef", kMark.size()) == name.npos;
}

}  // namespace

FreshFile::~FreshFile() {
  if (is_made_) files_.Remove(fresh_path_);
}

StoreStatus FreshFile::Make(unsigned mode, const FileInfo* former) {
  RemoveAbandoned();
  StoreStatus status = Open(mode);
  if (status == kDone) status = SetOwnerAndMode(mode, former);
  return status;
}

StoreStatus FreshFile::Open(unsigned mode) {
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    fresh_path_ = path_ + std::string(kMark) + RandomDigits();
    const int descriptor = files_.Open(fresh_path_, OpenFor::kCreating, mode);
    if (descriptor == -EEXIST) continue;
    if (descriptor < 0) return CodeOfResult(descriptor);
    is_made_ = true;
    file_ = OpenFile(files_, descriptor);
    const int result = files_.TryLock(descriptor);
    if (result != -EAGAIN) return CodeOfResult(result);
    // Another process takes it for an abandoned one, and removes it.
  }
  return kLocked;
}

// A group that the file cannot be given must not be replaced by another one with the same rights.
StoreStatus FreshFile::SetOwnerAndMode(unsigned mode, const FileInfo* former) {
  FileInfo info;
  StoreStatus status = file_.Describe(info);
  if (status != kDone) return status;
  if (former != nullptr && (former->owner != info.owner || former->group != info.group)) {
    const int file = file_.Descriptor();
    const bool given = files_.SetOwner(file, former->owner, former->group) == 0 ||
                       files_.SetOwner(file, info.owner, former->group) == 0;
    if (!given && former->group != info.group) {
      mode = (mode & ~kGroupBits) | ((mode << 3) & mode & kGroupBits);
    }
  }
  return CodeOfResult(files_.SetMode(file_.Descriptor(), mode));
}

// A fresh file that nobody has locked was left behind by a process that was killed.
void FreshFile::RemoveAbandoned() {
  const std::string folder = FolderOf(path_);
  const std::string journal = path_.substr(path_.rfind('/') + 1);
  std::vector<std::string> names;
  if (files_.List(folder, names) != 0) return;
  for (const std::string& name : names) {
    if (!IsFreshName(name, journal)) continue;
    std::string path = folder == "/" ? folder : folder + '/';
    path += name;
    std::string link;
    FileInfo info;
    if (files_.ReadLink(path, link) != -EINVAL || files_.Describe(path, info) != 0) continue;
    if (!info.regular) continue;
    const int descriptor = files_.Open(path, OpenFor::kWriting, 0);
    if (descriptor < 0) continue;
    const OpenFile abandoned(files_, descriptor);
    if (files_.TryLock(descriptor) == 0) files_.Remove(path);
  }
}

StoreStatus FreshFile::TakePlace() {
  const StoreStatus status = CodeOfResult(files_.Rename(fresh_path_, path_));
  if (status == kDone) is_made_ = false;
  return status;
}

StoreStatus FreshFile::TakeEmptyPlace() {
  const int result = files_.RenameToFree(fresh_path_, path_);
  // Somebody else may have made the journal, or removed the fresh file before it was locked.
  if (result == -EEXIST || result == -ENOENT) return kLocked;
  if (result == 0) is_made_ = false;
  return CodeOfResult(result);
}

}  // namespace quorl::internal
