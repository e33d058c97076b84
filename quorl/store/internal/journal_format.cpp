#include "quorl/store/internal/journal_format.hpp"

#include <bit>
#include <cstring>
#include <type_traits>

#include "quorl/store/internal/crc32c.hpp"
#include "quorl/store/key_name.hpp"

namespace quorl::internal {
namespace {

static_assert(std::endian::native == std::endian::little);

constexpr std::string_view kFileMagic = "QRLSTORE";
constexpr std::string_view kHeadMagic = "QREC";
constexpr std::string_view kTailMagic = "QEND";
constexpr std::size_t kChecksumBytes = 4;
constexpr std::uint32_t kMoreBit = 0x100;
constexpr std::uint32_t kKindBits = 0xFF;
constexpr std::size_t kTypeBytes = 4;

template <class Number>
void Put(std::string& out, Number number) {
  std::array<char, sizeof(Number)> bytes{};
  std::memcpy(bytes.data(), &number, sizeof(Number));
  out.append(bytes.data(), bytes.size());
}

template <class Number>
Number Get(std::string_view bytes, std::size_t offset) noexcept {
  Number number{};
  std::memcpy(&number, bytes.data() + offset, sizeof(Number));
  return number;
}

void PutChecksum(std::string& out, std::size_t start) {
  Put(out, Crc32c(std::string_view(out).substr(start)));
}

// Whether `size` bytes are there and end with the checksum of those before.
bool IsIntact(std::string_view bytes, std::size_t size, std::string_view magic) noexcept {
  if (bytes.size() < size || !bytes.starts_with(magic)) return false;
  const std::size_t body = size - kChecksumBytes;
  return Get<std::uint32_t>(bytes, body) == Crc32c(bytes.substr(0, body));
}

constexpr std::string_view MagicOf(RecordEnd end) noexcept {
  return end == RecordEnd::Head ? kHeadMagic : kTailMagic;
}

void PutHead(std::string& out, const RecordHead& head, RecordEnd end) {
  const std::size_t start = out.size();
  out += MagicOf(end);
  Put(out, head.salt);
  Put(out, head.sequence);
  Put(out, std::uint32_t{static_cast<std::uint8_t>(head.kind)} | (head.more ? kMoreBit : 0));
  Put(out, head.names_bytes);
  Put(out, head.data_bytes);
  Put(out, head.names_checksum);
  Put(out, head.data_checksum);
  PutChecksum(out, start);
}

std::string Joined(std::string_view path, std::string_view below) {
  std::string joined(path);
  if (!path.empty() && !below.empty()) joined += kPathSeparator;
  return joined.append(below);
}

// The bytes of a value's data before the data itself.
std::array<char, kTypeBytes> TypeBytes(Int32 type) noexcept {
  return std::bit_cast<std::array<char, kTypeBytes>>(type);
}

}  // namespace

std::string Encoded(const JournalHeader& header) {
  std::string bytes(kFileMagic);
  Put(bytes, header.version);
  Put(bytes, header.salt);
  Put(bytes, std::uint32_t{0});
  PutChecksum(bytes, 0);
  return bytes;
}

std::string Encoded(const JournalMark& mark) {
  std::string bytes;
  Put(bytes, mark.boot);
  Put(bytes, mark.end);
  Put(bytes, mark.sequence);
  Put(bytes, mark.salt);
  PutChecksum(bytes, 0);
  return bytes;
}

std::optional<JournalHeader> DecodeHeader(std::string_view bytes) noexcept {
  if (!IsIntact(bytes, kHeaderBytes, kFileMagic)) return std::nullopt;
  return JournalHeader{Get<std::uint32_t>(bytes, 8), Get<std::uint32_t>(bytes, 12)};
}

std::optional<JournalMark> DecodeMark(std::string_view bytes) noexcept {
  if (!IsIntact(bytes, kMarkBytes, {})) return std::nullopt;
  return JournalMark{Get<std::uint64_t>(bytes, 0), Get<std::uint64_t>(bytes, 8),
                     Get<std::uint64_t>(bytes, 16), Get<std::uint32_t>(bytes, 24)};
}

std::optional<RecordHead> DecodeHead(std::string_view bytes, RecordEnd end) noexcept {
  if (!IsIntact(bytes, kHeadBytes, MagicOf(end))) return std::nullopt;
  const auto kind = Get<std::uint32_t>(bytes, 16);
  return RecordHead{.salt = Get<std::uint32_t>(bytes, 4),
                    .sequence = Get<std::uint64_t>(bytes, 8),
                    .kind = static_cast<ChangeKind>(kind & kKindBits),
                    .more = (kind & kMoreBit) != 0,
                    .names_bytes = Get<std::uint32_t>(bytes, 20),
                    .data_bytes = Get<std::uint32_t>(bytes, 24),
                    .names_checksum = Get<std::uint32_t>(bytes, 28),
                    .data_checksum = Get<std::uint32_t>(bytes, 32)};
}

std::string NamesOf(std::string_view path, std::string_view value_name) {
  std::string names(path);
  names += '\0';
  return names.append(value_name);
}

std::optional<Change> ChangeOf(const RecordHead& head, std::string_view names,
                               std::string_view data) {
  Change change;
  change.kind = head.kind;
  const std::size_t joiner = names.find('\0');
  const bool of_value = head.kind == ChangeKind::SetValue || head.kind == ChangeKind::DeleteValue;
  const bool of_key = head.kind == ChangeKind::CreateKey || head.kind == ChangeKind::DeleteKey;
  if (of_value == of_key || of_value != (joiner != names.npos)) return std::nullopt;
  change.path = names.substr(0, joiner);
  if (of_value) change.name = names.substr(joiner + 1);
  if (head.kind == ChangeKind::SetValue) {
    if (data.size() < kTypeBytes) return std::nullopt;
    change.type = Get<Int32>(data, 0);
    change.data = data.substr(kTypeBytes);
  }
  return change;
}

void RecordWriter::Append(const Change& change) {
  switch (change.kind) {
    case ChangeKind::CreateKey:
    case ChangeKind::DeleteKey:
      AppendRecord(change.kind, change.path, {}, {}, false);
      break;
    case ChangeKind::SetValue:
      AppendValue(change.path, change.name, change.type, change.data, false);
      break;
    case ChangeKind::DeleteValue:
      AppendRecord(change.kind, NamesOf(change.path, change.name), {}, {}, false);
      break;
    case ChangeKind::Merge:
      AppendContent(change.path, *change.content);
      break;
    case ChangeKind::Replace:
      AppendReplacement(change);
      break;
    case ChangeKind::None:
      break;
  }
}

void RecordWriter::AppendKey(std::string_view path, const Key& key, bool more) {
  if (key.IsBare()) AppendRecord(ChangeKind::CreateKey, path, {}, {}, more);
  for (const Value* value : key.Values()) {
    AppendValue(path, value->name, value->type, value->data, more);
  }
}

void RecordWriter::AppendValue(std::string_view path, std::string_view name, Int32 type,
                               std::string_view data, bool more) {
  const auto type_bytes = TypeBytes(type);
  AppendRecord(ChangeKind::SetValue, NamesOf(path, name),
               std::string_view(type_bytes.data(), type_bytes.size()), data, more);
}

void RecordWriter::AppendContent(std::string_view path, const Key& content) {
  std::size_t last_head = out_.size();
  ForEachKey(content, [&](const Key& key) {
    const std::string full_path = key.Path();
    std::string_view below = std::string_view(full_path).substr(content.PathBytes());
    if (below.starts_with(kPathSeparator)) below.remove_prefix(1);
    AppendKey(Joined(path, below), key, true);
  });
  EndGroup(last_head);
}

void RecordWriter::AppendReplacement(const Change& change) {
  const std::size_t first_head = out_.size();
  AppendRecord(ChangeKind::DeleteKey, change.path, {}, {}, true);
  if (!change.path.empty()) AppendRecord(ChangeKind::CreateKey, change.path, {}, {}, true);
  AppendContent(change.path, *change.content);
  EndGroup(first_head);
}

// Walks to the group's last record and takes the bit `more` away from it.
void RecordWriter::EndGroup(std::size_t last_head) {
  const auto head_at = [&](std::size_t offset) {
    return DecodeHead(std::string_view(out_).substr(offset), RecordEnd::Head);
  };
  auto head = head_at(last_head);
  while (head && last_head + head->Bytes() < out_.size()) {
    last_head += static_cast<std::size_t>(head->Bytes());
    head = head_at(last_head);
  }
  if (!head) return;
  head->more = false;
  std::string encoded;
  PutHead(encoded, *head, RecordEnd::Head);
  out_.replace(last_head, kHeadBytes, encoded);
  encoded.clear();
  PutHead(encoded, *head, RecordEnd::Tail);
  out_.replace(out_.size() - kHeadBytes, kHeadBytes, encoded);
}

void RecordWriter::AppendRecord(ChangeKind kind, std::string_view names, std::string_view type,
                                std::string_view data, bool more) {
  RecordHead head{.salt = salt_,
                  .sequence = ++sequence_,
                  .kind = kind,
                  .more = more,
                  .names_bytes = static_cast<std::uint32_t>(names.size()),
                  .data_bytes = static_cast<std::uint32_t>(type.size() + data.size()),
                  .names_checksum = Crc32c(names),
                  .data_checksum = 0};
  const std::size_t start = out_.size();
  out_.append(kHeadBytes, '\0').append(names);
  const std::size_t data_start = out_.size();
  out_.append(type).append(data);
  head.data_checksum = Crc32c(std::string_view(out_).substr(data_start));
  PutHead(out_, head, RecordEnd::Tail);
  std::string encoded;
  PutHead(encoded, head, RecordEnd::Head);
  out_.replace(start, kHeadBytes, encoded);
}

}  // namespace quorl::internal
