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
    kHeader,   ///< The file's header is damaged; nothing is lost by it.
    kValue,    ///< A change of a value is lost; the value is gone.
    kKey,      ///< What was done to a key is lost.
    kRecords,  ///< Changes are lost of which nothing is known but their number.
    kBytes,    ///< A stretch of the file that is no record; nothing is lost by it.
  };
  Kind kind = Kind::kBytes;
  std::uint64_t offset = 0;
  std::uint64_t bytes = 0;    ///< The length of the stretch.
  std::uint64_t records = 0;  ///< How many changes are lost.
  std::string key{};          ///< The key's path as far as it is known; of a very long one the end.
  std::string value{};        ///< The value's name as far as it is known.
};

/// What reading every record of a journal told.
struct JournalReport {
  Int32 status = kDone;   ///< kAbsent when there is no file; the code that kept it from being read.
  std::string path{};     ///< The file that was read.
  std::string kept_as{};  ///< Where a repair quarantined the damaged file; else empty.
  std::uint64_t bytes = 0;    ///< The file's length.
  std::uint64_t records = 0;  ///< Records that are intact.
  /// Bytes after the last committed change, of one that was cut off. That is no damage.
  std::uint64_t unfinished_bytes = 0;
  std::vector<JournalLoss> losses{};  ///< Empty for a journal without damage.
  /// Why the file, which is longer than its content needs, could not be written afresh: a code,
  /// kDone as long as it could. Until that is possible, it grows with every change.
  Int32 rewriting = kDone;

  bool Damaged() const noexcept { return !losses.empty(); }
};

}  // namespace quorl
