// What can be had from a journal that is damaged: every record that is intact, wherever it stands
// and whatever is lost around it, and an account of what is not. The time is in proportion to the
// file, whatever it holds. For the bytes see journal_format.hpp.
//
// An intact record is lost with a damaged one only where it cannot be placed without it: below a
// key whose making is lost. Where it is known what a lost record replaced or deleted, that does not
// come back: the record's key and name are intact, or the transaction after it repeats them, or a
// key of the same name was made later. Of other lost records only the number is known, and what
// they replaced is still there; the report says how many.
#pragma once

#include <cstdint>
#include <optional>

#include "quorl/store/internal/journal_reader.hpp"
#include "quorl/store/internal/key_tree.hpp"
#include "quorl/store/journal_report.hpp"

namespace quorl::internal {

/// Whether something after `position` shows that more was committed there than can be read on.
bool ShowsDamage(FileWindow& window, const JournalPosition& position);

/// Reads a whole journal, damaged or not. `salt` is that of its header, none when that is damaged.
/// `tree` becomes what is to be had. `report.status` is that of a failed read.
void Salvage(FileWindow& window, std::optional<std::uint32_t> salt, KeyTree& tree,
             JournalReport& report);

}  // namespace quorl::internal
