// A file system in memory that can lose power, fail, and be full. Of what was not synced, any part
// survives a loss of power; a call can be made to fail, once or from then on.
#pragma once

#include <algorithm>
#include <cerrno>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "quorl/store/file_system.hpp"
#include "quorl/store/store_folders.hpp"
#include "tests/support/random.hpp"

namespace quorl {

/// Folders of a store in the simulated file system.
inline StoreFolders SimulatedFolders() { return {"/home/u/registry", "/var/registry"}; }
inline const std::string kSimulatedHive = SimulatedFolders().user + "/HKEY_CURRENT_USER.journal";

class SimulatedFiles : public FileSystem {
 public:
  SimulatedFiles() = default;
  /// The same disk; nothing open, nothing failing.
  SimulatedFiles(const SimulatedFiles& other) : disk_(other.disk_) {}

  /// The `call`-th call from now on, counted from 0, gives `error`, and with `lasting` every one
  /// after it; 0 stands for a write that writes half of what it is given.
  void Fail(std::int64_t call, int error, bool lasting) {
    first_failing_ = calls_ + call;
    last_failing_ = lasting ? INT64_MAX : first_failing_;
    error_ = error == 0 ? kHalf : -error;
  }
  void FailNever() { last_failing_ = -1; }
  std::int64_t Calls() const { return calls_; }

  /// From the `change`-th change on nothing reaches the disk any more.
  void CutPowerAt(std::int64_t change) { cut_at_ = change; }
  std::int64_t Changes() const { return changes_; }

  /// From now on no file may be opened for writing, and no name made.
  void ForbidWriting() { read_only_ = true; }
  /// From now on all files belong to another user.
  void MakeForeign() { foreign_ = true; }
  /// From now on the disk has room for so many bytes more.
  void LimitRoom(std::uint64_t bytes) { room_ = UsedBytes() + bytes; }
  /// How long all pauses were together.
  std::chrono::microseconds Paused() const { return paused_; }

  /// How many changes are not synced: in each way to lose a part of them the disk is another.
  std::size_t Unsynced() const {
    std::size_t count = disk_.unsynced.size();
    for (const auto& [inode, file] : disk_.files) count += file.unsynced.size();
    return count;
  }

  /// The disk after a loss of power or of the disk itself. Of what was not synced, each change is
  /// there or not by the draws, and of a write any part: no byte stands or falls with another.
  SimulatedFiles AfterPowerLoss(Random& random) const {
    SimulatedFiles after(*this);
    Disk& disk = after.disk_;
    for (auto& [inode, file] : disk.files) {
      for (const Write& write : file.unsynced) ApplyPart(write, random, file.durable);
      file = {.content = file.durable, .durable = file.durable, .mode = file.mode};
    }
    for (const Naming& naming : disk.unsynced) {
      if (random.Bits() % 2 == 0) Apply(naming, disk.durable_names);
    }
    // What is in a folder that is lost is lost; a folder comes before what is in it.
    for (auto each = disk.durable_names.begin(); each != disk.durable_names.end();) {
      const bool there = disk.durable_names.contains(FolderOfPath(each->first));
      each = there ? std::next(each) : disk.durable_names.erase(each);
    }
    disk.names = disk.durable_names;
    disk.unsynced.clear();
    return after;
  }

  /// The bytes of a file, for a test to look at and to damage.
  std::string& Bytes(const std::string& path = kSimulatedHive) {
    return disk_.files.at(disk_.names.at(path)).content;
  }

  int Open(const std::string& path, OpenFor purpose, unsigned mode) override {
    if (const int error = Called()) return error;
    if (read_only_ && purpose != OpenFor::kReading) return -EACCES;
    if (disk_.names.contains(path)) {
      if (purpose == OpenFor::kCreating) return -EEXIST;
    } else {
      const bool makes = purpose == OpenFor::kCreating && disk_.names.contains(FolderOfPath(path));
      if (const int error = makes ? Changed() : -ENOENT) return error;
      disk_.files[++disk_.last_inode].mode = mode;
      Name({.to = path, .inode = disk_.last_inode});
    }
    open_[++next_descriptor_] = disk_.names.at(path);
    return next_descriptor_;
  }

  void Close(int file) noexcept override {
    for (auto& [inode, each] : disk_.files) {
      if (each.locked_by == file) each.locked_by = 0;
    }
    open_.erase(file);
  }

  std::int64_t ReadAt(int file, void* bytes, std::size_t size, std::uint64_t offset) override {
    if (const int error = Called()) return error;
    const std::string& content = FileOf(file).content;
    if (offset >= content.size()) return 0;
    return static_cast<std::int64_t>(
        content.copy(static_cast<char*>(bytes), size, static_cast<std::size_t>(offset)));
  }

  std::int64_t WriteAt(int file, const void* bytes, std::size_t size,
                       std::uint64_t offset) override {
    const int error = Called();
    if (error == kHalf) size = (size + 1) / 2;
    if (error < 0 && error != kHalf) return error;
    if (const int cut = Changed()) return cut;
    const std::uint64_t length = FileOf(file).content.size();
    if (UsedBytes() + std::max(offset + size, length) - length > room_) return -ENOSPC;
    Made(file, {offset, std::string(static_cast<const char*>(bytes), size)});
    return static_cast<std::int64_t>(size);
  }

  int Truncate(int file, std::uint64_t size) override {
    if (const int error = CalledToChange()) return error;
    return Made(file, {size, {}, true}), 0;
  }

  // After a sync that failed, what it was to write is not written by a later one either.
  int Sync(int file) override {
    File& synced = FileOf(file);
    const int error = Called();
    if (error == 0) {
      if (const int cut = Changed()) return cut;
      for (const Write& write : synced.unsynced) ApplyWhole(write, synced.durable);
    }
    synced.unsynced.clear();
    return error;
  }

  int Describe(const std::string& path, FileInfo& info) override {
    if (const int error = Called()) return error;
    const auto found = disk_.names.find(path);
    if (found == disk_.names.end()) return -ENOENT;
    info = InfoOf(found->second);
    return 0;
  }
  int DescribeOpen(int file, FileInfo& info) override {
    if (const int error = Called()) return error;
    info = InfoOf(open_.at(file));
    return 0;
  }

  int TryLock(int file) override {
    if (const int error = Called()) return error;
    int& holder = FileOf(file).locked_by;
    if (holder != 0 && holder != file) return -EAGAIN;
    holder = file;
    return 0;
  }

  int SetMode(int file, unsigned mode) override {
    if (const int error = Called()) return error;
    FileOf(file).mode = mode;
    return 0;
  }
  int SetOwner(int, unsigned, unsigned) override { return Called(); }
  bool IsForeign(const FileInfo&) override { return foreign_; }

  int Rename(const std::string& from, const std::string& to) override {
    if (const int error = CalledToChange()) return error;
    if (!disk_.names.contains(from)) return -ENOENT;
    return Name({.from = from, .to = to, .inode = disk_.names.at(from)});
  }
  int RenameToFree(const std::string& from, const std::string& to) override {
    return disk_.names.contains(to) ? -EEXIST : Rename(from, to);
  }
  int Link(const std::string& from, const std::string& to) override {
    if (const int error = CalledToChange()) return error;
    if (disk_.names.contains(to)) return -EEXIST;
    return Name({.to = to, .inode = disk_.names.at(from)});
  }
  int Remove(const std::string& path) override {
    if (const int error = CalledToChange()) return error;
    return Name({.from = path});
  }
  int MakeFolder(const std::string& path, unsigned) override {
    if (const int error = CalledToChange()) return error;
    return disk_.names.contains(path) ? -EEXIST : Name({.to = path});
  }

  int SyncFolder(const std::string& path) override {
    if (const int error = CalledToChange()) return error;
    std::erase_if(disk_.unsynced, [&](const Naming& naming) {
      const bool here = FolderOfPath(naming.to.empty() ? naming.from : naming.to) == path;
      if (here) Apply(naming, disk_.durable_names);
      return here;
    });
    return 0;
  }

  int ReadLink(const std::string& path, std::string&) override {
    if (const int error = Called()) return error;
    return disk_.names.contains(path) ? -EINVAL : -ENOENT;
  }

  int List(const std::string& path, std::vector<std::string>& names) override {
    if (const int error = Called()) return error;
    for (const auto& [each, inode] : disk_.names) {
      if (FolderOfPath(each) == path) names.push_back(each.substr(each.rfind('/') + 1));
    }
    return 0;
  }

  std::chrono::microseconds Pause(std::chrono::microseconds duration) override {
    paused_ += duration;
    return duration;
  }

 private:
  static constexpr int kHalf = -100000;  // No errno.

  struct Write {
    std::uint64_t offset = 0;  // Of a truncation, the size.
    std::string bytes;
    bool truncates = false;
  };
  struct File {
    std::string content{};
    std::string durable{};
    std::vector<Write> unsynced{};
    unsigned mode = 0;
    int locked_by = 0;
  };
  // A name that comes, goes, or moves, in one step.
  struct Naming {
    std::string from{};
    std::string to{};
    std::uint64_t inode = 0;  // 0 is any folder.
  };
  using Names = std::map<std::string, std::uint64_t>;
  struct Disk {
    std::map<std::uint64_t, File> files;
    Names names{{"/", 0}, {"/home", 0}, {"/home/u", 0}, {"/var", 0}};
    Names durable_names = names;
    std::vector<Naming> unsynced;
    std::uint64_t last_inode = 0;
  };

  static std::string FolderOfPath(const std::string& path) {
    const std::size_t end = path.rfind('/');
    return end == 0 ? "/" : path.substr(0, end);
  }

  static void ApplyWhole(const Write& write, std::string& content) {
    const auto offset = static_cast<std::size_t>(write.offset);
    if (write.truncates) return content.resize(offset);
    content.resize(std::max(content.size(), offset + write.bytes.size()));
    content.replace(offset, write.bytes.size(), write.bytes);
  }

  // Nothing, everything, a beginning, an end, or any bytes.
  static void ApplyPart(const Write& write, Random& random, std::string& content) {
    const auto fate = random.Bits() % 5;
    if (fate == 0) return;
    if (fate == 1 || write.truncates) return ApplyWhole(write, content);
    const std::string former = content;
    ApplyWhole(write, content);
    const std::size_t cut = random.Bits() % (write.bytes.size() + 1);
    const std::uint64_t step = 1 + random.Bits() % 64;
    for (std::size_t i = 0; i < write.bytes.size(); ++i) {
      const bool any = (i / step * 2654435761U + cut) % 7 < 3;
      const bool stays = fate == 2 ? i < cut : fate == 3 ? i >= cut : any;
      const auto at = static_cast<std::size_t>(write.offset) + i;
      if (!stays) content[at] = at < former.size() ? former[at] : '\0';
    }
  }

  static void Apply(const Naming& naming, Names& names) {
    names.erase(naming.from);
    if (!naming.to.empty()) names[naming.to] = naming.inode;
  }
  int Name(const Naming& naming) {
    Apply(naming, disk_.names);
    disk_.unsynced.push_back(naming);
    return 0;
  }
  void Made(int file, const Write& write) {
    ApplyWhole(write, FileOf(file).content);
    FileOf(file).unsynced.push_back(write);
  }
  std::uint64_t UsedBytes() const {
    std::uint64_t used = 0;
    for (const auto& [path, inode] : disk_.names) {
      if (inode != 0) used += disk_.files.at(inode).content.size();
    }
    return used;
  }

  // Counts a call: 0, or the error that it is to give.
  int Called() {
    const std::int64_t call = calls_++;
    return call >= first_failing_ && call <= last_failing_ ? error_ : 0;
  }
  int Changed() { return cut_at_ >= 0 && changes_++ >= cut_at_ ? -EIO : 0; }
  int CalledToChange() {
    const int error = Called();
    return error != 0 ? error : Changed();
  }

  File& FileOf(int file) { return disk_.files.at(open_.at(file)); }
  FileInfo InfoOf(std::uint64_t inode) const {
    FileInfo info{.device = 1, .inode = inode, .regular = inode != 0};
    if (info.regular) info.size = disk_.files.at(inode).content.size();
    if (info.regular) info.mode = disk_.files.at(inode).mode;
    return info;
  }

  Disk disk_;
  std::map<int, std::uint64_t> open_;
  int next_descriptor_ = 2;

  std::int64_t calls_ = 0;
  std::int64_t first_failing_ = 0;
  std::int64_t last_failing_ = -1;
  int error_ = 0;
  std::int64_t cut_at_ = -1;
  std::int64_t changes_ = 0;
  bool read_only_ = false;
  bool foreign_ = false;
  std::uint64_t room_ = UINT64_MAX;
  std::chrono::microseconds paused_{0};
};

}  // namespace quorl
