#include "quorl/store/internal/journal_reader.hpp"

#include <algorithm>
#include <array>

#include "quorl/store/internal/crc32c.hpp"

namespace quorl::internal {
namespace {

constexpr int kPrefixAttempts = 4;
constexpr std::size_t kWindowBytes = std::size_t{256} * 1024;

// The whole record that follows `position` in the journal.
std::optional<RecordView> NextRecord(FileWindow& window, std::uint64_t limit,
                                     const JournalPosition& position) {
  auto record = RecordAt(window, position.end);
  if (!record || !record->IsWhole() || record->head.salt != position.salt ||
      record->head.sequence != position.sequence + 1 ||
      position.end + record->head.Bytes() > limit) {
    return std::nullopt;
  }
  return record;
}

// Where the group that follows `position` ends; none when it is not whole.
std::optional<JournalPosition> EndOfGroup(FileWindow& window, std::uint64_t limit,
                                          JournalPosition position) {
  while (const auto record = NextRecord(window, limit, position)) {
    position.end += record->head.Bytes();
    position.sequence = record->head.sequence;
    if (!record->head.more) return position;
  }
  return std::nullopt;
}

}  // namespace

std::string_view FileWindow::At(std::uint64_t offset, std::size_t count) {
  if (offset >= size_) return {};
  count = static_cast<std::size_t>(std::min<std::uint64_t>(count, size_ - offset));
  if (offset < start_ || offset + count > start_ + filled_) {
    bytes_.resize(std::max({count, kWindowBytes, bytes_.size()}));
    start_ = offset;
    const auto wanted = std::min<std::uint64_t>(std::max(count, kWindowBytes), size_ - offset);
    const Int32 status =
        file_.Read(bytes_.data(), static_cast<std::size_t>(wanted), offset, filled_);
    if (status_ == kDone) status_ = status;
  }
  const auto from = static_cast<std::size_t>(offset - start_);
  return std::string_view(bytes_.data(), filled_).substr(from, count);
}

std::optional<RecordView> RecordAt(FileWindow& window, std::uint64_t offset) {
  const auto head = DecodeHead(window.At(offset, kHeadBytes), RecordEnd::Head);
  if (!head) return std::nullopt;
  RecordView record{.head = *head, .names = {}, .data = {}};
  if (head->Bytes() > window.Size() - offset) return record;
  std::string_view bytes = window.At(offset, static_cast<std::size_t>(head->Bytes()));
  if (bytes.size() < head->Bytes()) return record;
  bytes.remove_prefix(kHeadBytes);
  record.names = bytes.substr(0, head->names_bytes);
  record.data = bytes.substr(head->names_bytes, head->data_bytes);
  record.names_intact = Crc32c(record.names) == head->names_checksum;
  record.data_intact = Crc32c(record.data) == head->data_checksum;
  record.tail_intact =
      DecodeHead(bytes.substr(bytes.size() - kHeadBytes), RecordEnd::Tail) == *head;
  return record;
}

Int32 ReadPrefix(const OpenFile& file, JournalPrefix& prefix) {
  // A mark that is being written at this moment may be read half old and half new.
  for (int attempt = 0; attempt < kPrefixAttempts; ++attempt) {
    std::array<char, kRecordsStart> bytes{};
    std::size_t got = 0;
    const Int32 status = file.Read(bytes.data(), bytes.size(), 0, got);
    if (status != kDone) return status;
    const std::string_view read(bytes.data(), got);
    prefix.header = DecodeHeader(read);
    if (read.size() > kHeaderBytes) prefix.mark = DecodeMark(read.substr(kHeaderBytes));
    if (prefix.mark) break;
  }
  return kDone;
}

Int32 Replay(FileWindow& window, std::uint64_t limit, Groups groups, JournalPosition& position,
             KeyTree& tree) {
  std::uint64_t whole_until = position.sequence;
  while (const auto record = NextRecord(window, limit, position)) {
    // The first record of a group counts only when the last one is there.
    if (record->head.more && position.sequence >= whole_until) {
      const auto group_end = EndOfGroup(window, limit, position);
      if (!group_end || groups == Groups::OfOneRecord) break;
      whole_until = group_end->sequence;
      continue;
    }
    const auto change = ChangeOf(record->head, record->names, record->data);
    if (!change) break;
    Prepare(tree, *change).Apply(tree);
    position.end += record->head.Bytes();
    position.sequence = record->head.sequence;
  }
  return window.Status();
}

bool GroupFollows(FileWindow& window, std::uint64_t limit, const JournalPosition& position) {
  const auto record = NextRecord(window, limit, position);
  return record && record->head.more && EndOfGroup(window, limit, position);
}

}  // namespace quorl::internal
