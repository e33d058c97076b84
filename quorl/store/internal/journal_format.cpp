#include "quorl/store/internal/journal_format.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include "quorl/store/internal/crc32c.hpp"

namespace quorl::internal {
namespace {

static_assert(std::endian::native == std::endian::little);

constexpr std::string_view kFileMagic = "QRLSTORE";
constexpr std::size_t kCheckBytes = 4;

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

std::string WithCheck(std::string bytes) {
  Put(bytes, Crc32c(bytes));
  return bytes;
}

// Whether `size` bytes are there and end with the check of those before.
bool IsIntact(std::string_view bytes, std::size_t size, std::string_view magic) noexcept {
  if (bytes.size() < size || !bytes.starts_with(magic)) return false;
  const std::size_t body = size - kCheckBytes;
  return Get<std::uint32_t>(bytes, body) == Crc32c(bytes.substr(0, body));
}

// The check of a record's head and name, which is another one in each journal.
std::uint32_t HeadCheck(std::uint32_t salt, std::string_view head, std::string_view name) noexcept {
  return Crc32c(name, Crc32c(head.substr(0, kRecordHeadBytes - kCheckBytes), salt));
}

bool IsKnown(RecordKind kind) noexcept {
  return kind >= RecordKind::kCreateKey && kind <= RecordKind::kDeleteKey;
}

}  // namespace

std::string Encoded(const JournalHeader& header) {
  std::string bytes(kFileMagic);
  Put(bytes, header.version);
  Put(bytes, header.salt);
  Put(bytes, std::uint32_t{0});
  return WithCheck(std::move(bytes));
}

std::string Encoded(const TransactionHead& head) {
  std::string bytes(kTransactionMagic);
  Put(bytes, head.salt);
  Put(bytes, head.first);
  Put(bytes, head.bytes);
  Put(bytes, head.content_check);
  Put(bytes, std::uint32_t{static_cast<std::uint8_t>(head.former.kind)});
  Put(bytes, head.former.key);
  Put(bytes, head.former.name_hash);
  return WithCheck(std::move(bytes));
}

std::string Encoded(const Confirmation& confirmation) {
  std::string bytes(kConfirmationMagic);
  Put(bytes, confirmation.salt);
  Put(bytes, confirmation.last);
  return WithCheck(std::move(bytes));
}

std::optional<JournalHeader> DecodeHeader(std::string_view bytes) noexcept {
  if (!IsIntact(bytes, kHeaderBytes, kFileMagic)) return std::nullopt;
  return JournalHeader{Get<std::uint32_t>(bytes, 8), Get<std::uint32_t>(bytes, 12)};
}

std::optional<TransactionHead> DecodeTransactionHead(std::string_view bytes) noexcept {
  if (!IsIntact(bytes, kTransactionHeadBytes, kTransactionMagic)) return std::nullopt;
  return TransactionHead{.salt = Get<std::uint32_t>(bytes, 4),
                         .first = Get<std::uint64_t>(bytes, 8),
                         .bytes = Get<std::uint64_t>(bytes, 16),
                         .content_check = Get<std::uint32_t>(bytes, 24),
                         .former = {static_cast<RecordKind>(Get<std::uint32_t>(bytes, 28)),
                                    Get<std::uint32_t>(bytes, 32), Get<std::uint64_t>(bytes, 36)}};
}

std::optional<Confirmation> DecodeConfirmation(std::string_view bytes) noexcept {
  if (!IsIntact(bytes, kConfirmationBytes, kConfirmationMagic)) return std::nullopt;
  return Confirmation{Get<std::uint32_t>(bytes, 4), Get<std::uint64_t>(bytes, 8)};
}

std::optional<RecordHead> DecodeCheckedRecordHead(std::string_view bytes) noexcept {
  if (bytes.size() < kRecordHeadBytes || bytes[0] != kRecordMagic) return std::nullopt;
  const RecordHead head{.kind = static_cast<RecordKind>(bytes[1]),
                        .data_bytes = Get<std::uint32_t>(bytes, 4),
                        .number = Get<std::uint32_t>(bytes, 8),
                        .key = Get<std::uint32_t>(bytes, 12),
                        .check = Get<std::uint32_t>(bytes, kRecordHeadBytes - kCheckBytes),
                        .name = bytes.substr(kRecordHeadBytes, Get<std::uint16_t>(bytes, 2))};
  const bool whole = head.name.size() == Get<std::uint16_t>(bytes, 2);
  return whole && IsKnown(head.kind) ? std::optional(head) : std::nullopt;
}

std::optional<RecordHead> DecodeRecordHead(std::string_view bytes, std::uint32_t salt) noexcept {
  const auto head = DecodeCheckedRecordHead(bytes);
  return head && head->check == HeadCheck(salt, bytes, head->name) ? head : std::nullopt;
}

RecordBody DecodeRecordBody(const RecordHead& head, std::string_view record) noexcept {
  const std::string_view body = record.substr(head.BodyStart());
  return {.word = Get<std::uint32_t>(body, kCheckBytes),
          .data = body.substr(kRecordOverhead - kRecordHeadBytes, head.data_bytes)};
}

std::optional<std::uint32_t> DecodeBodyCheck(const RecordHead& head,
                                             std::string_view body) noexcept {
  if (body.size() < kCheckBytes) return std::nullopt;
  return Get<std::uint32_t>(body, 0) ^ head.check;
}

TransactionWriter::TransactionWriter(std::uint32_t salt, std::uint64_t last,
                                     const RecordIdentity& former)
    : head_{.salt = salt, .first = last + 1, .former = former},
      number_(last),
      identity_(former),
      bytes_(kTransactionHeadBytes, '\0') {}

void TransactionWriter::Append(const Change& change, std::uint32_t next_key) {
  using enum ChangeStep::Kind;
  for (const ChangeStep& step : change.Steps()) {
    const std::uint32_t key = step.key->Number();
    if (step.kind == kInsertKey) {
      // The keys get their numbers in this order: those above are known by then.
      std::vector<std::pair<const Key*, std::uint32_t>> waiting{{step.made.get(), key}};
      while (!waiting.empty()) {
        const auto [made, parent] = waiting.back();
        waiting.pop_back();
        const std::uint32_t number = next_key++;
        AppendCreation(parent, made->Name(), number);
        made->ForEachValue([&](const Value& value) { AppendValue(number, value); });
        const std::size_t first = waiting.size();
        made->ForEachSubkey([&](const Key& subkey) { waiting.emplace_back(&subkey, number); });
        std::reverse(waiting.begin() + static_cast<std::ptrdiff_t>(first), waiting.end());
      }
    }
    for (const auto& value : step.values) {
      if (step.kind == kPutValues) AppendValue(key, *value);
      if (step.kind == kRemoveValues) AppendDeletion(key, value->name);
    }
    if (step.kind == kRemoveKey) AppendDeletion(key);
  }
}

void TransactionWriter::AppendCreation(std::uint32_t parent, std::string_view name,
                                       std::uint32_t number) {
  AppendRecord(RecordKind::kCreateKey, parent, name, number, {});
}

void TransactionWriter::AppendDeletion(std::uint32_t key, std::string_view value_name) {
  AppendRecord(RecordKind::kDeleteValue, key, value_name, 0, {});
}

void TransactionWriter::AppendDeletion(std::uint32_t key) {
  AppendRecord(RecordKind::kDeleteKey, key, {}, 0, {});
}

void TransactionWriter::AppendValue(std::uint32_t key, const Value& value) {
  AppendRecord(RecordKind::kSetValue, key, value.name, static_cast<std::uint32_t>(value.type),
               value.data);
}

void TransactionWriter::AppendRecord(RecordKind kind, std::uint32_t key, std::string_view name,
                                     std::uint32_t word, std::string_view data) {
  const std::size_t start = bytes_.size();
  bytes_ += kRecordMagic;
  Put(bytes_, static_cast<std::uint8_t>(kind));
  Put(bytes_, static_cast<std::uint16_t>(name.size()));
  Put(bytes_, static_cast<std::uint32_t>(data.size()));
  Put(bytes_, static_cast<std::uint32_t>(++number_));
  Put(bytes_, key);
  const std::uint32_t head_check =
      HeadCheck(head_.salt, std::string_view(bytes_).substr(start), name);
  Put(bytes_, head_check);
  bytes_ += name;
  const std::size_t body = bytes_.size();
  Put(bytes_, std::uint32_t{0});
  Put(bytes_, word);
  bytes_ += data;
  const std::uint32_t check =
      Crc32c(std::string_view(bytes_).substr(body + kCheckBytes)) ^ head_check;
  std::memcpy(bytes_.data() + body, &check, sizeof check);
  identity_ = {kind, key, HashOfName(name)};
}

std::string TransactionWriter::Finish() {
  const std::string_view content = std::string_view(bytes_).substr(kTransactionHeadBytes);
  head_.bytes = content.size();
  head_.content_check = Crc32c(content);
  bytes_.replace(0, kTransactionHeadBytes, Encoded(head_));
  return std::move(bytes_);
}

namespace {

// Makes a plan of records.
class RecordPlan {
 public:
  explicit RecordPlan(const KeyTree& tree) : tree_(tree), plan_(tree) {}

  // False when the record makes no sense.
  bool Take(const RecordHead& head, const RecordBody& body) {
    Key* key = KeyOf(head.key);
    if (key == nullptr) return false;
    switch (head.kind) {
      case RecordKind::kCreateKey:
        return Create(*key, head, body);
      case RecordKind::kSetValue:
        plan_.PutValue(*key, head.name, static_cast<Int32>(body.word), body.data);
        return true;
      case RecordKind::kDeleteValue:
        plan_.RemoveValue(*key, head.name);
        return true;
      case RecordKind::kDeleteKey:
        if (head.key >= tree_.NextNumber()) return false;
        plan_.RemoveKey(*key);
        return true;
      case RecordKind::kNone:
        break;
    }
    return false;
  }

  Change Finish() {
    Change change = plan_.Finish();
    change.NumberKeys(std::move(made_));
    return change;
  }

 private:
  Key* KeyOf(std::uint32_t number) const noexcept {
    const std::uint32_t next = tree_.NextNumber();
    if (number < next) return tree_.Numbered(number);
    return number - next < made_.size() ? made_[number - next] : nullptr;
  }

  bool Create(Key& parent, const RecordHead& head, const RecordBody& body) {
    const bool is_next = body.word == tree_.NextNumber() + made_.size();
    if (!is_next || head.name.empty() || plan_.FindSubkey(parent, head.name) != nullptr) {
      return false;
    }
    made_.push_back(&plan_.Create(parent, head.name));
    return true;
  }

  const KeyTree& tree_;
  ChangePlan plan_;
  std::vector<Key*> made_;
};

}  // namespace

std::optional<DecodedTransaction> DecodeTransaction(const TransactionHead& head,
                                                    std::string_view content, const KeyTree& tree) {
  RecordPlan plan(tree);
  DecodedTransaction decoded{.last = head.first - 1};
  RecordHead last;
  while (!content.empty()) {
    const auto record = DecodeCheckedRecordHead(content);
    if (!record || record->Bytes() > content.size()) return std::nullopt;
    if (record->number != static_cast<std::uint32_t>(++decoded.last)) return std::nullopt;
    if (!plan.Take(*record, DecodeRecordBody(*record, content))) return std::nullopt;
    last = *record;
    content.remove_prefix(record->Bytes());
  }
  decoded.identity = {last.kind, last.key, HashOfName(last.name)};
  decoded.change = plan.Finish();
  return decoded;
}

std::uint64_t FreshBytes(Weight weight) noexcept {
  return weight.records * kRecordOverhead + weight.bytes;
}

}  // namespace quorl::internal
