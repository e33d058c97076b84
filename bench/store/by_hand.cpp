// The least that a durable change can cost on this disk: as many bytes as Quorl writes for one of
// these settings are written into a file that is long enough already, and synced.
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "bench/store/inputs.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr std::size_t kRecordBytes = 92;
constexpr std::size_t kBytesAValue = 51;

void Write(int file, const std::string& bytes, std::size_t offset) {
  const auto written = pwrite(file, bytes.data(), bytes.size(), static_cast<off_t>(offset));
  if (written != static_cast<ssize_t>(bytes.size())) std::abort();
}

// A file of so many bytes, all of them on the disk, that goes when it is closed.
int WrittenFile(const std::string& folder, std::size_t size) {
  const std::string path = folder + "/file";
  const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  if (file < 0) std::abort();
  Write(file, std::string(size, '\0'), 0);
  if (fsync(file) != 0 || unlink(path.c_str()) != 0) std::abort();
  return file;
}

// With `frees`, a file that is as long as a journal that is to be written afresh is freed by one of
// the calls, as it is where a fresh one takes its place.
void WriteAndSync(const char* who, std::size_t values, bool frees) {
  const auto run = [=](benchmark::State& state) {
    const TemporaryFolder folder;
    const int file = WrittenFile(folder.Path(), kSaves * kRecordBytes);
    const int former = WrittenFile(folder.Path(), 2 * values * kBytesAValue);
    const std::string record(kRecordBytes, 'x');
    std::size_t call = 0;
    TimeEachSave(state, {""}, [&](const std::string& /*name*/, const std::string& /*data*/) {
      Write(file, record, call * kRecordBytes);
      if (fdatasync(file) != 0) std::abort();
      if (++call == kSaves / 2 && frees) close(former);
    });
    close(file);
    if (!frees) close(former);
  };
  SaveRow(who, values, run);
}

const AtStart rows([] {
  for (const std::size_t values : kStoreSizes) {
    WriteAndSync("write and sync", values, false);
    WriteAndSync("the same, a file freed", values, true);
  }
});

}  // namespace
