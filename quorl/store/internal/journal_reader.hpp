// Reading a journal: a window onto the file, and the making of its transactions in their order. For
// what is damaged see journal_salvage.hpp. Not for several threads at once.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "quorl/store/internal/journal_format.hpp"
#include "quorl/store/internal/key_tree.hpp"
#include "quorl/store/internal/open_file.hpp"

namespace quorl::internal {

/// A part of a file in memory, moved to where it is asked for.
class FileWindow {
 public:
  /// `file` is lent. Nothing from `size` on is read; `step` bytes are read at a time, or more.
  FileWindow(const OpenFile& file, std::uint64_t size,
             std::uint64_t step = std::uint64_t{256} * 1024) noexcept
      : file_(file), size_(size), step_(step) {}

  /// `count` bytes at `offset`, valid until the next call; fewer at the end and after a failure.
  std::string_view At(std::uint64_t offset, std::uint64_t count);
  const OpenFile& File() const noexcept { return file_; }
  std::uint64_t Size() const noexcept { return size_; }
  /// kDone, or the code of the first read that failed.
  StoreStatus Status() const noexcept { return status_; }

 private:
  const OpenFile& file_;
  std::uint64_t size_;
  std::uint64_t step_;
  std::string bytes_;
  std::uint64_t start_ = 0;
  std::size_t filled_ = 0;
  StoreStatus status_ = kDone;
};

/// How far a journal has been read.
struct JournalPosition {
  std::uint32_t salt = 0;
  std::uint64_t end = kHeaderBytes;  ///< The offset after the last transaction.
  std::uint64_t last = 0;            ///< The number of the last record.
  RecordIdentity identity{};         ///< What that record is about.
  /// Where the head of the last transaction stands, and its bytes; the file's header before the
  /// first one. By these the journal is known again.
  std::uint64_t anchor = 0;
  std::size_t anchor_size = 0;
  std::array<char, kTransactionHeadBytes> anchor_bytes{};

  std::string_view Anchor() const noexcept { return {anchor_bytes.data(), anchor_size}; }
  void SetAnchor(std::uint64_t offset, std::string_view bytes) noexcept {
    anchor = offset;
    anchor_size = bytes.copy(anchor_bytes.data(), anchor_bytes.size());
  }
};

/// What follows a position in a file.
enum class Following : std::uint8_t {
  kConfirmation,  ///< The confirmation of what comes before, and zeros.
  kNothing,       ///< Zeros alone.
  kTransaction,   ///< The head of the next transaction.
  kRest,          ///< Bytes that never happened.
  kOtherJournal,  ///< This is not the journal any more of which the position is.
};

/// Looks at the file where `position` is. Of what is there only the beginning is looked at.
StoreStatus LookAt(const OpenFile& file, const JournalPosition& position, Following& following);

/// Makes every whole transaction from `position` on in `tree`; `position` follows. A transaction is
/// made whole or not at all even when memory runs out, which is thrown. Returns the code of a
/// failed read.
StoreStatus Replay(FileWindow& window, JournalPosition& position, KeyTree& tree);

/// Whether nothing but zeros follows, after a confirmation or without one.
bool EndsCleanly(FileWindow& window, const JournalPosition& position);

}  // namespace quorl::internal
