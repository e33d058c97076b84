#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "quorl/store/file_system.hpp"

namespace quorl::internal {
namespace {

constexpr int kFirstOwnDescriptor = 3;
constexpr unsigned kPermissionBits = 07777;

template <class Result>
Result OrError(Result result) noexcept {
  return result < 0 ? static_cast<Result>(-errno) : result;
}

template <class Call>
auto Uninterrupted(Call call) noexcept {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return OrError(result);
}

// A host may have closed descriptors 0 to 2; what it prints must not land in a hive.
int AboveStandardStreams(int file) noexcept {
  if (file < 0 || file >= kFirstOwnDescriptor) return file;
  const int moved = OrError(fcntl(file, F_DUPFD_CLOEXEC, kFirstOwnDescriptor));
  close(file);
  return moved;
}

int OpenWith(const char* path, int flags, unsigned mode) noexcept {
  return AboveStandardStreams(Uninterrupted(
      [&] { return open(path, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode_t{mode}); }));
}

int FlagsOf(OpenFor purpose) noexcept {
  switch (purpose) {
    case OpenFor::kReading:
      return O_RDONLY;
    case OpenFor::kWriting:
      return O_RDWR;
    case OpenFor::kCreating:
      return O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW;
  }
  return O_RDONLY;
}

template <class Time>
std::chrono::nanoseconds DurationOf(const Time& time) noexcept {
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// All of a FileInfo but the time.
constexpr unsigned kAsked =
    STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_UID | STATX_GID | STATX_INO | STATX_SIZE;

int DescribeFrom(int folder, const char* path, int flags, unsigned asked, FileInfo& info) noexcept {
  struct statx status {};
  const int result = OrError(statx(folder, path, flags, asked, &status));
  if (result != 0) return result;
  info = {.device = makedev(status.stx_dev_major, status.stx_dev_minor),
          .inode = status.stx_ino,
          .size = status.stx_size,
          .mode = status.stx_mode & kPermissionBits,
          .owner = status.stx_uid,
          .group = status.stx_gid,
          .regular = S_ISREG(status.stx_mode),
          .links = status.stx_nlink};
  if ((asked & STATX_CTIME) != 0) info.changed = DurationOf(status.stx_ctime);
  return 0;
}

class PosixFileSystem final : public FileSystem {
 public:
  int Open(const std::string& path, OpenFor purpose, unsigned mode) override {
    return OpenWith(path.c_str(), FlagsOf(purpose), mode);
  }

  void Close(int file) noexcept override { close(file); }

  std::int64_t ReadAt(int file, void* bytes, std::size_t size, std::uint64_t offset) override {
    return Uninterrupted(
        [&] { return std::int64_t{pread(file, bytes, size, static_cast<off_t>(offset))}; });
  }

  std::int64_t WriteAt(int file, const void* bytes, std::size_t size,
                       std::uint64_t offset) override {
    return Uninterrupted(
        [&] { return std::int64_t{pwrite(file, bytes, size, static_cast<off_t>(offset))}; });
  }

  int Truncate(int file, std::uint64_t size) override {
    return Uninterrupted([&] { return ftruncate(file, static_cast<off_t>(size)); });
  }

  int Sync(int file) override {
    return Uninterrupted([&] { return fdatasync(file); });
  }

  void StartSync(int file, std::uint64_t offset, std::uint64_t size) noexcept override {
    sync_file_range(file, static_cast<off_t>(offset), static_cast<off_t>(size),
                    SYNC_FILE_RANGE_WRITE);
  }

  int Describe(const std::string& path, FileInfo& info) override {
    return DescribeFrom(AT_FDCWD, path.c_str(), 0, kAsked, info);
  }

  int DescribeOpen(int file, FileInfo& info) override {
    return DescribeFrom(file, "", AT_EMPTY_PATH, kAsked, info);
  }

  int DescribeWithTime(int file, FileInfo& info) override {
    return DescribeFrom(file, "", AT_EMPTY_PATH, kAsked | STATX_CTIME, info);
  }

  int TryLock(int file) override {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    const int result = Uninterrupted([&] { return fcntl(file, F_OFD_SETLK, &lock); });
    return result == -EACCES ? -EAGAIN : result;
  }

  int SetMode(int file, unsigned mode) override { return OrError(fchmod(file, mode_t{mode})); }

  int SetOwner(int file, unsigned owner, unsigned group) override {
    return OrError(fchown(file, uid_t{owner}, gid_t{group}));
  }

  bool IsForeign(const FileInfo& info) override {
    const uid_t user = geteuid();
    return user != 0 && user != info.owner;
  }

  int Rename(const std::string& from, const std::string& to) override {
    return OrError(rename(from.c_str(), to.c_str()));
  }

  int RenameToFree(const std::string& from, const std::string& to) override {
    const int result =
        OrError(renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE));
    if (result != -EINVAL && result != -ENOSYS) return result;
    // Where the file system cannot do it in one step.
    const int linked = Link(from, to);
    return linked == 0 ? Remove(from) : linked;
  }

  int Link(const std::string& from, const std::string& to) override {
    return OrError(link(from.c_str(), to.c_str()));
  }

  int Remove(const std::string& path) override { return OrError(unlink(path.c_str())); }

  int MakeFolder(const std::string& path, unsigned mode) override {
    const int result = OrError(mkdir(path.c_str(), mode_t{mode}));
    return result == 0 ? OrError(chmod(path.c_str(), mode_t{mode})) : result;
  }

  int SyncFolder(const std::string& path) override {
    const int folder = OpenWith(path.c_str(), O_RDONLY | O_DIRECTORY, 0);
    if (folder < 0) return folder;
    const int result = Uninterrupted([&] { return fsync(folder); });
    close(folder);
    return result == -EINVAL || result == -EOPNOTSUPP ? 0 : result;
  }

  int ReadLink(const std::string& path, std::string& target) override {
    std::array<char, 4096> buffer{};
    const auto length = OrError<std::int64_t>(readlink(path.c_str(), buffer.data(), buffer.size()));
    if (length < 0) return static_cast<int>(length);
    target.assign(buffer.data(), static_cast<std::size_t>(length));
    return 0;
  }

  int List(const std::string& path, std::vector<std::string>& names) override {
    const int folder = OpenWith(path.c_str(), O_RDONLY | O_DIRECTORY, 0);
    if (folder < 0) return folder;
    DIR* const list = fdopendir(folder);
    if (list == nullptr) {
      const int error = errno;
      close(folder);
      return -error;
    }
    const std::unique_ptr<DIR, int (*)(DIR*)> closing(list, closedir);
    while (const dirent* entry = readdir(list)) names.emplace_back(entry->d_name);
    return 0;
  }

  std::chrono::microseconds Pause(std::chrono::microseconds duration) override {
    const auto start = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(duration);
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() -
                                                                 start);
  }

  std::chrono::nanoseconds Clock() const noexcept override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return DurationOf(now);
  }
};

}  // namespace
}  // namespace quorl::internal

quorl::FileSystem& quorl::FileSystem::Posix() {
  static auto* const posix = new internal::PosixFileSystem;
  return *posix;
}
