// What reading every record of a hive's journal told. Plain values.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "quorl/store/status.hpp"

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

}  // namespace quorl
