#include "examples/settings/text_file.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "examples/command/system_error.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/messages.hpp"
#include "quorl/runtime/utf.hpp"

namespace settings {

using namespace quorl;
namespace {

// 0 or an errno value, as below.
int WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) return errno;
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return fsync(file) == 0 ? 0 : errno;
}

// Settings may be secrets: a new file is for its owner alone, a former one keeps its mode.
int KeepMode(int file, const std::string& path) {
  struct stat former {};
  if (lstat(path.c_str(), &former) != 0 || S_ISLNK(former.st_mode)) return 0;
  if (S_ISDIR(former.st_mode)) return EISDIR;
  if (!S_ISREG(former.st_mode)) return EEXIST;
  return fchmod(file, former.st_mode & 0777) == 0 ? 0 : errno;
}

[[noreturn]] void RefuseReading(const std::string& path) {
  throw Refusal(messages::kNotRead(path, command::SystemErrorText(errno)));
}

[[noreturn]] void RefuseWriting(const std::string& path, int error) {
  throw Refusal(messages::kNotWritten(path, command::SystemErrorText(error)));
}

std::string ReadAll(std::FILE* file, const std::string& path) {
  std::string bytes;
  std::array<char, 65536> buffer;
  while (const std::size_t read = std::fread(buffer.data(), 1, buffer.size(), file)) {
    bytes.append(buffer.data(), read);
  }
  if (std::ferror(file) != 0) RefuseReading(path);
  return bytes;
}

std::string ReadFile(const std::string& path) {
  if (path == "-") return ReadAll(stdin, path);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rbe"),
                                                             std::fclose);
  if (file == nullptr) RefuseReading(path);
  return ReadAll(file.get(), path);
}

}  // namespace

RegistryText ReadSettingsFile(const std::string& path, ForeignCharacters foreign) {
  try {
    return ReadRegistryText(ReadFile(path), Utf16(path), foreign);
  } catch (const RegistryTextError& error) {
    throw Refusal(path + ":" + std::to_string(error.Line()) + ": " +
                  SentenceOfFault(error.Fault()));
  } catch (const RaisedError& error) {
    RefuseAbout(path, error);
  }
}

// Written beside the file and renamed. The name beside it is new and nobody can guess it: no link
// that stands there is followed.
void WriteFile(const std::string& path, const std::string& bytes) {
  std::string fresh = path + ".XXXXXX";
  const int file = mkostemp(fresh.data(), O_CLOEXEC | O_NOFOLLOW);
  if (file < 0) RefuseWriting(path, errno);
  int error = KeepMode(file, path);
  if (error == 0) error = WriteAll(file, bytes);
  if (close(file) != 0 && error == 0) error = errno;
  if (error == 0 && rename(fresh.c_str(), path.c_str()) != 0) error = errno;
  if (error == 0) return;
  unlink(fresh.c_str());
  RefuseWriting(path, error);
}

}  // namespace settings
