#include "quorl/store/internal/journal_file.hpp"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "quorl/store/internal/journal_salvage.hpp"

namespace quorl::internal {
namespace {

constexpr std::uint64_t kBlockBytes = 4096;
// Zeros that are always left for what only deletes, and those that are added to a growing file: an
// eighth of it within these bounds.
constexpr std::uint64_t kReserveBytes = 4096;
constexpr std::uint64_t kLeastGrowthBytes = std::uint64_t{8} * 1024;
constexpr std::uint64_t kMostGrowthBytes = std::uint64_t{16} * 1024;
// A file that is read while somebody writes may look damaged for a moment.
constexpr int kExaminations = 3;

constexpr std::uint64_t WholeBlocks(std::uint64_t bytes) noexcept {
  return (bytes + kBlockBytes - 1) / kBlockBytes * kBlockBytes;
}

void ReplayFrom(FileWindow& window, const JournalHeader& header, std::string_view header_bytes,
                LoadedJournal& loaded) {
  JournalPosition& position = loaded.position;
  position.salt = header.salt;
  position.SetAnchor(0, header_bytes);
  Replay(window, position, *loaded.tree);
  loaded.ends_cleanly = EndsCleanly(window, position);
  loaded.report.records = position.last;
}

}  // namespace

StoreStatus LoadJournal(const OpenFile& file, LoadedJournal& loaded) {
  FileInfo info;
  const StoreStatus described = file.Describe(info);
  if (described != kDone) return described;
  loaded.report.bytes = info.size;
  FileWindow window(file, info.size);
  const std::string header_bytes(window.At(0, kHeaderBytes));
  const auto header = DecodeHeader(header_bytes);
  if (header && header->version > kJournalVersion) return kNewerFormat;
  const bool is_ours = header && header->version == kJournalVersion;
  if (is_ours) {
    ReplayFrom(window, *header, header_bytes, loaded);
    if (window.Status() != kDone) return window.Status();
    if (loaded.ends_cleanly) return kDone;
    if (!ShowsDamage(window, loaded.position)) {
      loaded.report.unfinished_bytes = window.Size() - loaded.position.end;
      return window.Status();
    }
  }
  loaded.tree = std::make_shared<KeyTree>();
  loaded.report.records = 0;
  Salvage(window, is_ours ? std::optional(header->salt) : std::nullopt, *loaded.tree,
          loaded.report);
  // Every record is there, but moved or twice: what is written on from here would end them.
  if (!loaded.report.Damaged()) {
    loaded.report.losses.push_back({.offset = loaded.position.end, .bytes = kTransactionHeadBytes});
  }
  return static_cast<StoreStatus>(loaded.report.status);
}

JournalReport ExamineFile(FileSystem& files, const std::string& path) {
  JournalReport report{.path = path};
  FileInfo info;
  const int found = files.Describe(path, info);
  report.status = found == -ENOENT ? kAbsent : CodeOfResult(found);
  if (report.status == kDone && !info.regular) report.status = kNotAHive;
  if (report.status != kDone) return report;
  const int descriptor = files.Open(path, OpenFor::kReading, 0);
  report.status = CodeOfResult(descriptor);
  if (report.status != kDone) return report;
  const OpenFile file(files, descriptor);
  for (int attempt = 0; attempt < kExaminations; ++attempt) {
    LoadedJournal loaded;
    const StoreStatus status = LoadJournal(file, loaded);
    report = std::move(loaded.report);
    report.path = path;
    report.status = status;
    if (!report.Damaged()) break;
  }
  return report;
}

StoreStatus EndFreshJournal(const OpenFile& file, const JournalPosition& position) {
  const std::uint64_t size = WholeBlocks(position.end + kReserveBytes);
  const StoreStatus status = file.WriteZeros(size - position.end, position.end);
  // It takes its place only when it was synced, and counts as confirmed then.
  Confirm(file, position);
  return status == kDone ? file.Sync() : status;
}

StoreStatus ReserveRoom(const OpenFile& file, std::uint64_t size, std::uint64_t end,
                        std::uint64_t bytes, bool only_deletes) {
  if (end + bytes + kReserveBytes <= size) return kDone;
  const std::uint64_t growth = std::clamp(end / 8, kLeastGrowthBytes, kMostGrowthBytes);
  const std::uint64_t wanted = WholeBlocks(end + bytes + growth);
  const StoreStatus status = file.WriteZeros(wanted - size, size);
  if (status == kDone) return kDone;
  file.Truncate(size);
  return only_deletes && end + bytes <= size ? kDone : status;
}

StoreStatus Append(const OpenFile& file, std::string_view transaction, std::uint64_t end) {
  const StoreStatus status = file.Write(transaction, end);
  return status == kDone ? file.Sync() : status;
}

void Confirm(const OpenFile& file, const JournalPosition& position) noexcept {
  try {
    file.Write(Encoded(Confirmation{.salt = position.salt, .last = position.last}), position.end);
  } catch (const std::bad_alloc&) {
    // The journal is the same without it.
  }
}

StoreStatus Renew(const OpenFile& file, const JournalPosition& position) {
  std::string bytes(static_cast<std::size_t>(position.end - position.anchor), '\0');
  std::size_t got = 0;
  const StoreStatus status = file.Read(bytes.data(), bytes.size(), position.anchor, got);
  bytes.resize(got);
  return status == kDone ? file.Write(bytes, position.anchor) : status;
}

StoreStatus TakeBack(const OpenFile& file, std::uint64_t bytes, std::uint64_t end) {
  const StoreStatus status = file.WriteZeros(bytes, end);
  return status == kDone ? file.Sync() : status;
}

}  // namespace quorl::internal
