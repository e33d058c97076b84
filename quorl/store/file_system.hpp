// All that the persistent store asks of files, in one small interface, so that a test can put a
// file system in its place that loses power or fails. `FileSystem::Posix()` is the real one.
//
// Members return 0 or a positive result, or a failure as a negative errno value, never -EINTR; none
// throws but for want of memory. They may be called from several threads at once. A path is
// followed through symbolic links unless a member says otherwise.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "quorl/runtime/export.h"

namespace quorl {

struct FileInfo {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::uint64_t size = 0;
  unsigned mode = 0;  ///< Permission bits alone.
  unsigned owner = 0;
  unsigned group = 0;
  bool regular = false;     ///< Neither folder nor pipe nor device.
  std::uint64_t links = 0;  ///< How many names the file has; 0 where the file system does not tell.
  /// When its bytes, names or rights were changed last, by whatever clock and as exactly as that
  /// tells. 0 where the file system does not tell, and where it is not asked.
  std::chrono::nanoseconds changed{0};

  bool SameFile(const FileInfo& other) const noexcept {
    return device == other.device && inode == other.inode;
  }
};

enum class OpenFor : std::uint8_t {
  kReading,
  kWriting,   ///< Reading and writing a file that exists.
  kCreating,  ///< Reading and writing a new file; -EEXIST when there is anything of that name.
};

class QUORL_API FileSystem {
 public:
  FileSystem() = default;
  FileSystem(const FileSystem&) = delete;
  FileSystem& operator=(const FileSystem&) = delete;
  virtual ~FileSystem() = default;

  /// A descriptor that is never 0, 1 or 2 and does not outlive an exec. Never waits, whatever the
  /// path names. `mode` is for a file that is made.
  virtual int Open(const std::string& path, OpenFor purpose, unsigned mode) = 0;
  virtual void Close(int file) noexcept = 0;
  /// The number of bytes read, 0 at the end.
  virtual std::int64_t ReadAt(int file, void* bytes, std::size_t size, std::uint64_t offset) = 0;
  /// The number of bytes written, which may be fewer than `size`.
  virtual std::int64_t WriteAt(int file, const void* bytes, std::size_t size,
                               std::uint64_t offset) = 0;
  virtual int Truncate(int file, std::uint64_t size) = 0;
  /// Makes content and size durable.
  virtual int Sync(int file) = 0;
  /// Begins to write out what was written to a part of a file, without waiting for it. Makes a
  /// later `Sync` shorter, and promises nothing.
  virtual void StartSync(int /*file*/, std::uint64_t /*offset*/, std::uint64_t /*size*/) noexcept {}
  virtual int Describe(const std::string& path, FileInfo& info) = 0;
  virtual int DescribeOpen(int file, FileInfo& info) = 0;
  /// The same with the time of change, which the others need not give: a file whose time somebody
  /// has seen must bear another one after the next write, and on some systems that makes the sync
  /// of the write longer.
  virtual int DescribeWithTime(int file, FileInfo& info) { return DescribeOpen(file, info); }
  /// Locks the whole file for the open file, against every other open file of any process and of
  /// this one; -EAGAIN when it is locked. The lock ends when `file` is closed.
  virtual int TryLock(int file) = 0;
  virtual int SetMode(int file, unsigned mode) = 0;
  virtual int SetOwner(int file, unsigned owner, unsigned group) = 0;
  /// Whether a file belongs to another user than the process's, unless that may do everything.
  virtual bool IsForeign(const FileInfo& info) = 0;
  /// Replaces what `to` names in one step.
  virtual int Rename(const std::string& from, const std::string& to) = 0;
  /// Renames a file; -EEXIST when `to` is taken.
  virtual int RenameToFree(const std::string& from, const std::string& to) = 0;
  /// A second name for a file; -EEXIST when `to` is taken.
  virtual int Link(const std::string& from, const std::string& to) = 0;
  virtual int Remove(const std::string& path) = 0;
  /// Makes one folder with exactly this mode; -EEXIST when there is something of that name.
  virtual int MakeFolder(const std::string& path, unsigned mode) = 0;
  /// Makes the names in a folder durable; 0 too where the file system has no such call.
  virtual int SyncFolder(const std::string& path) = 0;
  /// What a symbolic link holds; -EINVAL when `path` is none.
  virtual int ReadLink(const std::string& path, std::string& target) = 0;
  /// The names in a folder.
  virtual int List(const std::string& path, std::vector<std::string>& names) = 0;
  /// Waits for about so long; how long it was.
  virtual std::chrono::microseconds Pause(std::chrono::microseconds duration) = 0;
  /// A clock that only goes forward, right to some milliseconds and quickly read; where there is
  /// none it stands still.
  virtual std::chrono::nanoseconds Clock() const noexcept { return {}; }

  /// The file system of the machine. It lives until the process ends.
  static FileSystem& Posix();
};

}  // namespace quorl
