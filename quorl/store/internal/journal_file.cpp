#include "quorl/store/internal/journal_file.hpp"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

namespace quorl::internal {
namespace {

constexpr std::size_t kWriteBytes = std::size_t{1} << 20;

std::uint32_t DrawSalt() noexcept {
  std::uint32_t salt = 0;
  if (getentropy(&salt, sizeof salt) == 0) return salt;
  return static_cast<std::uint32_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

bool IsOfThisStart(const JournalMark& mark, std::uint64_t boot) noexcept {
  return boot != 0 && mark.boot == boot;
}

// Replays what is settled: to the mark, and behind it what counts after another start.
bool ReplaySettled(FileWindow& window, const JournalMark& mark, std::uint64_t boot,
                   LoadedJournal& loaded) {
  Replay(window, mark.end, Groups::OfAnyLength, loaded.position, loaded.tree);
  if (loaded.position.end != mark.end || loaded.position.sequence != mark.sequence) return false;
  if (!IsOfThisStart(mark, boot)) {
    Replay(window, window.Size(), Groups::OfAnyLength, loaded.position, loaded.tree);
  }
  return true;
}

// Whether `mark` still stands in the file. What was read behind a mark of another start may have
// been written after the mark was read, and is then not settled.
bool StillHas(const OpenFile& file, const JournalMark& mark) {
  JournalPrefix prefix;
  return ReadPrefix(file, prefix) == kDone && prefix.mark == mark;
}

// The beginning and then the length, in this order: what the mark calls settled is within it.
Int32 BeginReading(const OpenFile& file, JournalPrefix& prefix, std::uint64_t& size) {
  if (const Int32 status = ReadPrefix(file, prefix); status != kDone) return status;
  if (prefix.header && prefix.header->version > kJournalVersion) return kNewerFormat;
  FileInfo info;
  const Int32 status = file.Describe(info);
  size = info.size;
  return status;
}

}  // namespace

Int32 LoadJournal(const OpenFile& file, std::uint64_t boot, LoadedJournal& loaded) {
  JournalPrefix prefix;
  if (const Int32 status = BeginReading(file, prefix, loaded.report.bytes); status != kDone) {
    return status;
  }
  FileWindow window(file, loaded.report.bytes);
  if (prefix.header && prefix.mark && prefix.mark->salt == prefix.header->salt) {
    loaded.position.salt = prefix.header->salt;
    const bool settled = ReplaySettled(window, *prefix.mark, boot, loaded);
    if (window.Status() != kDone) return window.Status();
    if (settled && !IsOfThisStart(*prefix.mark, boot) && !StillHas(file, *prefix.mark)) {
      loaded = LoadedJournal();
      return LoadJournal(file, boot, loaded);
    }
    if (settled) {
      loaded.report.records = loaded.position.sequence;
      loaded.report.unfinished_bytes = window.Size() - loaded.position.end;
      return kDone;
    }
  }
  const std::uint64_t read_until = loaded.position.end;
  loaded.tree = KeyTree();
  Salvage(window, prefix, boot, loaded.tree, loaded.report);
  if (!loaded.report.Damaged()) loaded.report.losses.push_back({.offset = read_until});
  return loaded.report.status;
}

JournalReport ExamineFile(FileSystem& files, const std::string& path) {
  JournalReport report{.path = path};
  FileInfo info;
  const int found = files.Describe(path, info);
  report.status = found == -ENOENT ? static_cast<Int32>(kAbsent) : CodeOfResult(found);
  if (report.status == kDone && !info.regular) report.status = kNotAHive;
  if (report.status != kDone) return report;
  const int descriptor = files.Open(path, OpenFor::Reading, 0);
  report.status = CodeOfResult(descriptor);
  if (report.status != kDone) return report;
  const OpenFile file(files, descriptor);
  JournalPrefix prefix;
  report.status = BeginReading(file, prefix, report.bytes);
  if (report.status != kDone) return report;
  FileWindow window(file, report.bytes);
  KeyTree tree;
  Salvage(window, prefix, files.BootNumber(), tree, report);
  return report;
}

ReadOnResult ReadOn(const OpenFile& file, std::uint64_t boot, JournalPosition& position,
                    KeyTree& tree, Int32& status) {
  JournalPrefix prefix;
  std::uint64_t size = 0;
  status = BeginReading(file, prefix, size);
  if (status != kDone) return ReadOnResult::Done;
  const auto& mark = prefix.mark;
  if (!mark || mark->salt != position.salt || mark->end < position.end) {
    return ReadOnResult::LoadAnew;
  }
  const bool this_start = IsOfThisStart(*mark, boot);
  const std::uint64_t limit = this_start ? mark->end : size;
  FileWindow window(file, limit);
  status = Replay(window, limit, Groups::OfOneRecord, position, tree);
  if (status != kDone) return ReadOnResult::Done;
  const bool complete = position.end >= mark->end && !GroupFollows(window, limit, position);
  return complete && (this_start || StillHas(file, *mark)) ? ReadOnResult::Done
                                                           : ReadOnResult::LoadAnew;
}

Int32 WriteFreshJournal(const OpenFile& file, const Key& content, std::uint64_t boot,
                        JournalPosition& position) {
  position = {.salt = DrawSalt()};
  std::string records;
  RecordWriter writer(records, position.salt, 0);
  Int32 status = file.Write(Encoded(JournalHeader{.salt = position.salt}), 0);
  const auto flush = [&](std::size_t least) {
    if (status != kDone || records.size() < least) return;
    status = file.Write(records, position.end);
    position.end += records.size();
    records.clear();
  };
  ForEachKey(content, [&](const Key& key) {
    if (status != kDone) return;
    writer.AppendKey(key.Path(), key, false);
    flush(kWriteBytes);
  });
  flush(0);
  position.sequence = writer.LastSequence();
  if (status == kDone) status = file.Write(MarkOf(boot, position), kHeaderBytes);
  return status == kDone ? file.Sync() : status;
}

std::uint64_t FreshJournalBytes(const KeyTree& tree) noexcept {
  const Weight weight = tree.TotalWeight();
  return kRecordsStart +
         static_cast<std::uint64_t>(weight.records * static_cast<std::int64_t>(kRecordOverhead) +
                                    weight.bytes);
}

Int32 SettleEnd(const OpenFile& file, std::uint64_t boot, const JournalPosition& position) {
  JournalPrefix prefix;
  FileInfo info;
  Int32 status = ReadPrefix(file, prefix);
  if (status == kDone) status = file.Describe(info);
  if (status != kDone) return status;
  const auto& mark = prefix.mark;
  const bool marked = mark && IsOfThisStart(*mark, boot) && mark->end == position.end;
  const bool exact = info.size == position.end;
  if (marked && exact) return kDone;
  // Synced before anything is written there: rests of what was cut off must not come to lie behind
  // a new record, nor a mark name what is not lasting.
  if (!exact) status = file.Truncate(position.end);
  if (status == kDone) status = file.Sync();
  if (status == kDone && !marked) status = file.Write(MarkOf(boot, position), kHeaderBytes);
  return status;
}

Int32 AppendRecords(const OpenFile& file, std::string_view records,
                    const JournalPosition& position) {
  Int32 status = file.Write(records, position.end);
  if (status == kDone) status = file.Sync();
  if (status == kDone) return kDone;
  if (file.Truncate(position.end) == kDone) file.Sync();
  return status;
}

std::string MarkOf(std::uint64_t boot, const JournalPosition& position) {
  return Encoded(JournalMark{
      .boot = boot, .end = position.end, .sequence = position.sequence, .salt = position.salt});
}

Int32 Publish(const OpenFile& file, std::string_view before, std::string_view after,
              std::uint64_t end) {
  const Int32 status = file.Write(after, kHeaderBytes);
  if (status == kDone) return kDone;
  if (file.Write(before, kHeaderBytes) == kDone && file.Truncate(end) == kDone) file.Sync();
  return status;
}

}  // namespace quorl::internal
