// A journal as a whole: loading it, reading on in it, writing a fresh one, and appending to it in
// the order that journal_format.hpp gives. Whoever writes holds the file's lock
// (journal_place.hpp). Not for several threads at once.
#pragma once

#include <cstdint>
#include <string_view>

#include "quorl/store/internal/journal_reader.hpp"
#include "quorl/store/internal/journal_salvage.hpp"
#include "quorl/store/internal/key_tree.hpp"
#include "quorl/store/internal/open_file.hpp"

namespace quorl::internal {

/// The content of a journal.
struct LoadedJournal {
  KeyTree tree;
  JournalPosition position;
  /// Unless `report` says that the file is damaged, everything that is settled was read. If it is,
  /// `tree` is what could be had, and `position` means nothing.
  JournalReport report;
};

/// Reads all of `file`. kNewerFormat for a journal of a newer version.
Int32 LoadJournal(const OpenFile& file, std::uint64_t boot, LoadedJournal& loaded);

/// Reads every record of the file at `path`, damaged or not. The report's status is kAbsent when
/// there is none, else the code of what kept it from being read.
JournalReport ExamineFile(FileSystem& files, const std::string& path);

/// How reading on went.
enum class ReadOnResult : std::uint8_t { Done, LoadAnew };

/// Takes in what was settled behind `position`. `LoadAnew` when the file does not go on from there,
/// or a group of several records follows, which is to be taken in as a whole.
ReadOnResult ReadOn(const OpenFile& file, std::uint64_t boot, JournalPosition& position,
                    KeyTree& tree, Int32& status);

/// Writes a journal of `content` into the empty `file` and syncs it.
Int32 WriteFreshJournal(const OpenFile& file, const Key& content, std::uint64_t boot,
                        JournalPosition& position);

/// The length that a fresh journal of `tree` has.
std::uint64_t FreshJournalBytes(const KeyTree& tree) noexcept;

/// Makes ready for appending: cuts off what is not settled, and marks what is as settled since this
/// start of the machine.
Int32 SettleEnd(const OpenFile& file, std::uint64_t boot, const JournalPosition& position);

/// Appends `records` and syncs them. After a failure they are cut off again as far as that works.
Int32 AppendRecords(const OpenFile& file, std::string_view records,
                    const JournalPosition& position);

/// The mark that calls everything up to `position` settled.
std::string MarkOf(std::uint64_t boot, const JournalPosition& position);

/// Publishes what was appended by writing the mark `after`. After a failure the mark `before` is
/// written again and the file cut off at `end`, as far as that works. Allocates nothing.
Int32 Publish(const OpenFile& file, std::string_view before, std::string_view after,
              std::uint64_t end);

}  // namespace quorl::internal
