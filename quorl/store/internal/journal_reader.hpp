// Reading a journal: a window onto the file, single records, and the making of changes from settled
// records in their order. For what is not intact see journal_salvage.hpp. Not for several threads.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "quorl/store/internal/journal_format.hpp"
#include "quorl/store/internal/key_tree.hpp"
#include "quorl/store/internal/open_file.hpp"

namespace quorl::internal {

/// What a journal begins with; none of what is not intact.
struct JournalPrefix {
  std::optional<JournalHeader> header;
  std::optional<JournalMark> mark;
};

/// Reads the beginning of a journal. What the mark calls settled is in the file when this returns.
Int32 ReadPrefix(const OpenFile& file, JournalPrefix& prefix);

/// A part of a file in memory, moved to where it is asked for.
class FileWindow {
 public:
  /// `file` is lent. Nothing at or behind `size` is read.
  FileWindow(const OpenFile& file, std::uint64_t size) noexcept : file_(file), size_(size) {}

  /// `count` bytes at `offset`, valid until the next call; fewer at the end and after a failure.
  std::string_view At(std::uint64_t offset, std::size_t count);
  std::uint64_t Size() const noexcept { return size_; }
  /// kDone, or the code of the first read that failed.
  Int32 Status() const noexcept { return status_; }

 private:
  const OpenFile& file_;
  std::uint64_t size_;
  std::string bytes_;
  std::uint64_t start_ = 0;
  std::size_t filled_ = 0;
  Int32 status_ = kDone;
};

/// A record as it stands in the file, with what of it is intact. The views are valid until the
/// window moves.
struct RecordView {
  RecordHead head;
  std::string_view names;
  std::string_view data;
  bool names_intact = false;
  bool data_intact = false;
  bool tail_intact = false;

  bool IsWhole() const noexcept { return names_intact && data_intact && tail_intact; }
};

/// The record whose head stands at `offset`; none when there is no intact head.
std::optional<RecordView> RecordAt(FileWindow& window, std::uint64_t offset);

/// How far a journal has been read.
struct JournalPosition {
  std::uint32_t salt = 0;
  std::uint64_t end = kRecordsStart;  ///< The offset behind the last record.
  std::uint64_t sequence = 0;         ///< The number of the last record.
};

/// Whether groups of more than one record are to be made or to be stopped at. A change of one
/// record is made whole or not at all even when memory runs out; a longer group is not.
enum class Groups : std::uint8_t { OfAnyLength, OfOneRecord };

/// Makes the changes of every whole group from `position` on, group by group, until one is not
/// intact or reaches beyond `limit`. `position` follows. Returns the code of a failed read.
Int32 Replay(FileWindow& window, std::uint64_t limit, Groups groups, JournalPosition& position,
             KeyTree& tree);

/// Whether a whole group of more than one record stands at `position`.
bool GroupFollows(FileWindow& window, std::uint64_t limit, const JournalPosition& position);

}  // namespace quorl::internal
