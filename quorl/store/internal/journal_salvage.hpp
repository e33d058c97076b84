// What can be had from a journal that is damaged: every record that is intact, wherever it stands
// and whatever is lost around it, and an account of what is not. For the bytes see
// journal_format.hpp.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "quorl/store/file_system.hpp"
#include "quorl/store/internal/journal_reader.hpp"
#include "quorl/store/internal/key_tree.hpp"
#include "quorl/store/journal_report.hpp"

namespace quorl::internal {

/// Reads a whole journal, damaged or not, that begins with `prefix`. `tree` becomes what is to be
/// had from it. `boot` is the machine's present boot number. `report.status` is that of a failed
/// read.
void Salvage(FileWindow& window, const JournalPrefix& prefix, std::uint64_t boot, KeyTree& tree,
             JournalReport& report);

}  // namespace quorl::internal
