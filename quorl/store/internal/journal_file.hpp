// A journal as a whole: loading it, writing a fresh one, and appending to it in the order that
// journal_format.hpp gives. Whoever writes holds the file's lock (journal_lock.hpp). Not for
// several threads at once.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "quorl/store/internal/journal_reader.hpp"
#include "quorl/store/internal/key_tree.hpp"
#include "quorl/store/internal/open_file.hpp"
#include "quorl/store/journal_report.hpp"

namespace quorl::internal {

/// The content of a journal.
struct LoadedJournal {
  std::shared_ptr<KeyTree> tree = std::make_shared<KeyTree>();
  JournalPosition position{};
  bool ends_cleanly = false;  ///< Nothing but zeros follows what was read.
  /// Unless `report` says that the file is damaged, everything that was committed was read. If it
  /// is, `tree` is what could be had, and `position` means nothing.
  JournalReport report{};
};

/// Reads all of `file`. kNewerFormat for a journal of a newer version.
StoreStatus LoadJournal(const OpenFile& file, LoadedJournal& loaded);

/// Reads every record of the file at `path`, damaged or not. The report's status is kAbsent when
/// there is none, else the code of what kept it from being read.
JournalReport ExamineFile(FileSystem& files, const std::string& path);

/// Ends the file of a fresh journal of which all bytes were written, and syncs it.
StoreStatus EndFreshJournal(const OpenFile& file, const JournalPosition& position);

/// Makes sure that `bytes` can be appended at `end` to a file of this size, and something more that
/// only deletes after them. With `only_deletes`, what room there is may be used up.
StoreStatus ReserveRoom(const OpenFile& file, std::uint64_t size, std::uint64_t end,
                        std::uint64_t bytes, bool only_deletes);

/// Appends `transaction` at `end` and syncs it.
StoreStatus Append(const OpenFile& file, std::string_view transaction, std::uint64_t end);

/// Notes, after `Append`, that everything up to `position` is acknowledged. Never fails.
void Confirm(const OpenFile& file, const JournalPosition& position) noexcept;

/// Writes the last transaction again, as it is. One that is not confirmed may have been read from
/// memory only, since a sync of it failed: the next sync writes it with the one after it.
StoreStatus Renew(const OpenFile& file, const JournalPosition& position);

/// Overwrites what a failed `Append` of so many bytes may have left at `end`.
StoreStatus TakeBack(const OpenFile& file, std::uint64_t bytes, std::uint64_t end);

}  // namespace quorl::internal
