// What can be had from a journal that is damaged: every record that is intact, wherever it stands
// and whatever is lost around it, and an account of what is not. For the bytes see
// journal_format.hpp.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "quorl/store/file_system.hpp"
#include "quorl/store/journal_reader.hpp"
#include "quorl/store/key_tree.hpp"

namespace quorl {

/// One damaged place, or one lost change.
struct JournalLoss {
  enum class Kind : std::uint8_t {
    Header,    ///< The file's header is damaged; nothing is lost by it.
    Mark,      ///< The mark of what is settled is damaged; nothing is lost by it.
    Repaired,  ///< A record is damaged that could be made out whole.
    Value,     ///< A value's data is lost; the value is gone.
    Key,       ///< What was done to a key is lost.
    Records,   ///< Changes are lost of which nothing is known but their number.
    Bytes,     ///< A stretch of the file that is no record.
  };
  Kind kind = Kind::Bytes;
  std::uint64_t offset = 0;
  std::uint64_t bytes = 0;    ///< The length of the stretch.
  std::uint64_t records = 0;  ///< How many changes are lost.
  std::string key{};          ///< The key's path as far as it is known.
  std::string value{};        ///< The value's name as far as it is known.
};

/// What reading every record of a journal told.
struct JournalReport {
  Int32 status = kDone;   ///< kAbsent when there is no file; the code that kept it from being read.
  std::string path{};     ///< The file that was read.
  std::string kept_as{};  ///< Where a repair kept the damaged file; else empty.
  std::uint64_t bytes = 0;    ///< The file's length.
  std::uint64_t records = 0;  ///< Records that are intact.
  /// Bytes behind the last settled change, of one that was cut off. That is no damage.
  std::uint64_t unfinished_bytes = 0;
  std::vector<JournalLoss> losses{};  ///< Empty for a journal without damage.

  bool Damaged() const noexcept { return !losses.empty(); }
};

/// Reads a whole journal, damaged or not, that begins with `prefix`. `tree` becomes what is to be
/// had from it. `boot` is the machine's present boot number. `report.status` is that of a failed
/// read.
void Salvage(FileWindow& window, const JournalPrefix& prefix, std::uint64_t boot, KeyTree& tree,
             JournalReport& report);

}  // namespace quorl
