// A file system in memory that can lose power and fail. What was written and not synced survives a
// loss of power in parts; a call can be made to fail, once or from then on.
#pragma once

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "quorl/store/file_system.hpp"
#include "quorl/store/store_folders.hpp"
#include "tests/support/random.hpp"

namespace quorl {

/// Folders of a store in the simulated file system.
inline StoreFolders SimulatedFolders() { return {"/home/u/registry", "/var/registry"}; }

class SimulatedFiles final : public FileSystem {
 public:
  enum class Failing : std::uint8_t { Never, Once, FromThenOn };

  SimulatedFiles() : folders_{"/", "/home", "/home/u", "/var"}, lasting_folders_(folders_) {}
  /// The same disk; nothing open, nothing failing.
  SimulatedFiles(const SimulatedFiles& other)
      : files_(other.files_),
        names_(other.names_),
        lasting_names_(other.lasting_names_),
        folders_(other.folders_),
        lasting_folders_(other.lasting_folders_),
        unsynced_names_(other.unsynced_names_),
        next_inode_(other.next_inode_),
        boot_(other.boot_) {}

  /// The `call`-th call from now on, counted from 0, gives `error`; 0 stands for a write that
  /// writes half of what it is given.
  void Fail(Failing failing, std::int64_t call, int error) {
    failing_ = failing;
    fail_at_ = calls_ + call;
    error_ = error;
  }
  std::int64_t Calls() const { return calls_; }

  /// From the `call`-th change on nothing reaches the disk any more.
  void CutPowerAt(std::int64_t change) { cut_at_ = change; }
  std::int64_t Changes() const { return changes_; }

  /// From now on no file may be opened for writing, and no name made.
  void ForbidWriting() { read_only_ = true; }

  /// How many changes are not synced: in each way to lose a part of them the disk is another.
  std::size_t Unsynced() const {
    std::size_t count = unsynced_names_.size();
    for (const auto& [inode, file] : files_) count += file.unsynced.size();
    return count;
  }

  /// The disk after a loss of power, on another start of the machine. Of what was not synced, each
  /// change is there or not by the draws; a write may be there in some of its sectors alone.
  SimulatedFiles AfterPowerLoss(Random& random) const {
    SimulatedFiles after(*this);
    for (auto& [inode, file] : after.files_) {
      std::string content = file.lasting;
      for (const Write& write : file.unsynced) ApplyPart(write, random, content);
      file = {.content = content, .lasting = content, .unsynced = {}, .mode = file.mode};
    }
    after.names_ = after.lasting_names_;
    after.folders_ = after.lasting_folders_;
    for (const Naming& naming : after.unsynced_names_) {
      if (random.Bits() % 2 == 0) after.Apply(naming, after.names_, after.folders_);
    }
    after.lasting_names_ = after.names_;
    after.lasting_folders_ = after.folders_;
    after.unsynced_names_.clear();
    ++after.boot_;
    return after;
  }

  /// The bytes of a file, for a test to look at and to damage.
  std::string& Bytes(const std::string& path) { return files_.at(names_.at(path)).content; }
  bool Exists(const std::string& path) const { return names_.contains(path); }
  std::size_t OpenCount() const { return open_.size(); }

  int Open(const std::string& path, OpenFor purpose, unsigned mode) override {
    if (const int error = Called()) return error;
    if (read_only_ && purpose != OpenFor::Reading) return -EACCES;
    if (!names_.contains(path)) {
      if (purpose != OpenFor::Creating) return -ENOENT;
      if (!folders_.contains(FolderOfPath(path))) return -ENOENT;
      if (const int error = Changed()) return error;
      files_[++next_inode_].mode = mode;
      Rename({.to = path, .inode = next_inode_});
    }
    open_[++next_descriptor_] = names_.at(path);
    return next_descriptor_;
  }

  void Close(int file) noexcept override {
    for (auto& [inode, each] : files_) {
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
    const Write write{offset, std::string(static_cast<const char*>(bytes), size), false};
    FileOf(file).unsynced.push_back(write);
    ApplyWhole(write, FileOf(file).content);
    return static_cast<std::int64_t>(size);
  }

  int Truncate(int file, std::uint64_t size) override {
    if (const int error = CalledToChange()) return error;
    FileOf(file).unsynced.push_back({size, {}, true});
    FileOf(file).content.resize(static_cast<std::size_t>(size));
    return 0;
  }

  int Sync(int file) override {
    if (const int error = CalledToChange()) return error;
    FileOf(file).lasting = FileOf(file).content;
    FileOf(file).unsynced.clear();
    return 0;
  }

  int Describe(const std::string& path, FileInfo& info) override {
    if (const int error = Called()) return error;
    if (folders_.contains(path)) {
      info = {.device = 1, .inode = 0, .regular = false};
      return 0;
    }
    const auto found = names_.find(path);
    if (found == names_.end()) return -ENOENT;
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

  int Rename(const std::string& from, const std::string& to) override {
    if (const int error = CalledToChange()) return error;
    if (!names_.contains(from)) return -ENOENT;
    Rename({.from = from, .to = to, .inode = names_.at(from)});
    return 0;
  }

  int Link(const std::string& from, const std::string& to) override {
    if (const int error = CalledToChange()) return error;
    if (names_.contains(to)) return -EEXIST;
    Rename({.to = to, .inode = names_.at(from)});
    return 0;
  }

  int Remove(const std::string& path) override {
    if (const int error = CalledToChange()) return error;
    Rename({.from = path});
    return 0;
  }

  int MakeFolder(const std::string& path, unsigned) override {
    if (const int error = CalledToChange()) return error;
    if (folders_.contains(path)) return -EEXIST;
    Rename({.to = path, .folder = true});
    return 0;
  }

  int SyncFolder(const std::string& path) override {
    if (const int error = CalledToChange()) return error;
    std::erase_if(unsynced_names_, [&](const Naming& naming) {
      const bool here = FolderOfPath(naming.to.empty() ? naming.from : naming.to) == path;
      if (here) Apply(naming, lasting_names_, lasting_folders_);
      return here;
    });
    return 0;
  }

  int ReadLink(const std::string& path, std::string&) override {
    if (const int error = Called()) return error;
    return names_.contains(path) ? -EINVAL : -ENOENT;
  }

  std::uint64_t BootNumber() override { return boot_; }

 private:
  static constexpr int kHalf = INT32_MIN;
  static constexpr std::size_t kSector = 512;

  struct Write {
    std::uint64_t offset = 0;  // Of a truncation, the size.
    std::string bytes;
    bool truncates = false;
  };
  struct File {
    std::string content{};
    std::string lasting{};
    std::vector<Write> unsynced{};
    unsigned mode = 0;
    int locked_by = 0;
  };
  // A name that comes, goes, or moves, in one step.
  struct Naming {
    std::string from{};
    std::string to{};
    std::uint64_t inode = 0;
    bool folder = false;
  };

  static std::string FolderOfPath(const std::string& path) {
    const std::size_t end = path.rfind('/');
    return end == 0 ? "/" : path.substr(0, end);
  }

  static void ApplyWhole(const Write& write, std::string& content) {
    const auto offset = static_cast<std::size_t>(write.offset);
    if (write.truncates) {
      content.resize(offset);
      return;
    }
    if (content.size() < offset + write.bytes.size()) content.resize(offset + write.bytes.size());
    content.replace(offset, write.bytes.size(), write.bytes);
  }

  static void ApplyPart(const Write& write, Random& random, std::string& content) {
    const auto fate = random.Bits() % 4;
    if (fate == 0) return;
    if (fate != 1 || write.truncates) return ApplyWhole(write, content);
    for (std::size_t done = 0; done < write.bytes.size();) {
      const std::size_t start = static_cast<std::size_t>(write.offset) + done;
      const std::size_t step = std::min(kSector - start % kSector, write.bytes.size() - done);
      if (random.Bits() % 2 == 0) ApplyWhole({start, write.bytes.substr(done, step)}, content);
      done += step;
    }
  }

  static void Apply(const Naming& naming, std::map<std::string, std::uint64_t>& names,
                    std::set<std::string>& folders) {
    names.erase(naming.from);
    if (naming.folder) {
      folders.insert(naming.to);
    } else if (!naming.to.empty()) {
      names[naming.to] = naming.inode;
    }
  }

  void Rename(const Naming& naming) {
    Apply(naming, names_, folders_);
    unsynced_names_.push_back(naming);
  }

  // Counts a call: 0, or the error that it is to give.
  int Called() {
    const std::int64_t call = calls_++;
    const bool fails = (failing_ == Failing::Once && call == fail_at_) ||
                       (failing_ == Failing::FromThenOn && call >= fail_at_);
    if (!fails) return 0;
    return error_ == 0 ? kHalf : -error_;
  }
  int Changed() { return cut_at_ >= 0 && changes_++ >= cut_at_ ? -EIO : 0; }
  int CalledToChange() {
    const int error = Called();
    return error == kHalf ? -EIO : error != 0 ? error : Changed();
  }

  File& FileOf(int file) { return files_.at(open_.at(file)); }
  FileInfo InfoOf(std::uint64_t inode) const {
    const File& file = files_.at(inode);
    return {.device = 1,
            .inode = inode,
            .size = file.content.size(),
            .mode = file.mode,
            .regular = true};
  }

  std::map<std::uint64_t, File> files_;
  std::map<std::string, std::uint64_t> names_;
  std::map<std::string, std::uint64_t> lasting_names_;
  std::set<std::string> folders_;
  std::set<std::string> lasting_folders_;
  std::vector<Naming> unsynced_names_;
  std::map<int, std::uint64_t> open_;
  std::uint64_t next_inode_ = 0;
  std::uint64_t boot_ = 1;
  int next_descriptor_ = 2;

  Failing failing_ = Failing::Never;
  std::int64_t fail_at_ = 0;
  int error_ = 0;
  std::int64_t calls_ = 0;
  std::int64_t cut_at_ = -1;
  std::int64_t changes_ = 0;
  bool read_only_ = false;
};

}  // namespace quorl
