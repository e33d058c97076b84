#include "quorl/store/internal/journal_reader.hpp"

#include <algorithm>
#include <array>

#include "quorl/store/internal/crc32c.hpp"

namespace quorl::internal {
namespace {

constexpr std::uint64_t kSearchBytes = std::uint64_t{64} * 1024;
// The last transaction and what follows it are read in one call unless it is longer.
constexpr std::size_t kLookBytes = 4096;

bool IsZero(std::string_view bytes) noexcept { return bytes.find_first_not_of('\0') == bytes.npos; }

bool Confirms(std::string_view bytes, const JournalPosition& position) noexcept {
  const auto confirmation = DecodeConfirmation(bytes);
  return confirmation && confirmation->salt == position.salt && confirmation->last == position.last;
}

bool Follows(const TransactionHead& head, const JournalPosition& position) noexcept {
  return head.salt == position.salt && head.first == position.last + 1;
}

Following WhatFollows(std::string_view bytes, const JournalPosition& position) noexcept {
  if (IsZero(bytes)) return Following::kNothing;
  const auto head = DecodeTransactionHead(bytes);
  if (head && Follows(*head, position)) return Following::kTransaction;
  if (!Confirms(bytes, position)) return Following::kRest;
  const bool is_all = IsZero(bytes.substr(kConfirmationBytes));
  return is_all ? Following::kConfirmation : Following::kRest;
}

// The transaction that follows `position`, unless it is not whole or makes no sense.
std::optional<DecodedTransaction> NextTransaction(FileWindow& window, JournalPosition& position,
                                                  const KeyTree& tree) {
  const std::string_view bytes = window.At(position.end, kTransactionHeadBytes);
  const auto head = DecodeTransactionHead(bytes);
  if (!head || !Follows(*head, position)) return std::nullopt;
  JournalPosition after = position;
  after.SetAnchor(position.end, bytes);
  const std::uint64_t start = position.end + kTransactionHeadBytes;
  if (head->bytes > window.Size() - start) return std::nullopt;
  const std::string_view content = window.At(start, head->bytes);
  if (content.size() != head->bytes || Crc32c(content) != head->content_check) return std::nullopt;
  auto decoded = DecodeTransaction(*head, content, tree);
  if (decoded) {
    after.end = start + head->bytes;
    after.last = decoded->last;
    after.identity = decoded->identity;
    position = after;
  }
  return decoded;
}

}  // namespace

std::string_view FileWindow::At(std::uint64_t offset, std::uint64_t count) {
  if (offset >= size_) return {};
  count = std::min(count, size_ - offset);
  if (offset < start_ || offset + count > start_ + filled_) {
    const std::uint64_t wanted = std::min(std::max(count, step_), size_ - offset);
    if (bytes_.size() < wanted) bytes_.resize(static_cast<std::size_t>(wanted));
    start_ = offset;
    const StoreStatus status =
        file_.Read(bytes_.data(), static_cast<std::size_t>(wanted), offset, filled_);
    if (status_ == kDone) status_ = status;
  }
  return std::string_view(bytes_.data(), filled_)
      .substr(static_cast<std::size_t>(offset - start_), static_cast<std::size_t>(count));
}

StoreStatus LookAt(const OpenFile& file, const JournalPosition& position, Following& following) {
  std::array<char, kLookBytes + kTransactionHeadBytes> bytes{};
  const std::string_view anchor = position.Anchor();
  const std::uint64_t between = position.end - position.anchor;
  std::size_t got = 0;
  const bool at_once = between <= kLookBytes;
  const auto first =
      at_once ? static_cast<std::size_t>(between) + kTransactionHeadBytes : anchor.size();
  StoreStatus status = file.Read(bytes.data(), first, position.anchor, got);
  std::string_view read(bytes.data(), got);
  if (status != kDone) return status;
  if (!read.starts_with(anchor)) {
    following = Following::kOtherJournal;
    return kDone;
  }
  if (at_once) {
    read.remove_prefix(std::min<std::size_t>(got, static_cast<std::size_t>(between)));
  } else {
    status = file.Read(bytes.data(), kTransactionHeadBytes, position.end, got);
    read = std::string_view(bytes.data(), got);
  }
  following = WhatFollows(read, position);
  return status;
}

StoreStatus Replay(FileWindow& window, JournalPosition& position, KeyTree& tree) {
  // The position follows when the change is made: until then, memory may run out.
  for (JournalPosition next = position; auto decoded = NextTransaction(window, next, tree);) {
    tree.ReserveNumbers(decoded->change.MadeKeys().size());
    decoded->change.ReserveValues();
    decoded->change.Apply(tree);
    position = next;
  }
  return window.Status();
}

bool EndsCleanly(FileWindow& window, const JournalPosition& position) {
  std::uint64_t offset = position.end;
  if (Confirms(window.At(offset, kConfirmationBytes), position)) offset += kConfirmationBytes;
  while (offset < window.Size()) {
    const std::string_view bytes = window.At(offset, kSearchBytes);
    if (bytes.empty() || !IsZero(bytes)) return false;
    offset += bytes.size();
  }
  return true;
}

}  // namespace quorl::internal
