// The journal of a hive, byte by byte. Numbers are little-endian, checksums CRC-32C.
//
//   file    = header mark record*
//   header  = "QRLSTORE" version:4 salt:4 zero:4 checksum:4       checksum of the 20 bytes before
//   mark    = boot:8 end:8 sequence:8 salt:4 checksum:4           checksum of the 28 bytes before
//   record  = head names data tail
//   head    = "QREC" salt:4 sequence:8 kind:4 names size:4 data size:4
//             names checksum:4 data checksum:4 checksum:4         checksum of the 36 bytes before
//   tail    = as the head, with "QEND"
//   names   = path                                                 keys
//           | path zero:1 name                                     values
//   data    = type:4 bytes                                         a value that is set, else
//   nothing
//
// The first 24 bytes are the same in every version, so that a newer journal is known for what it is
// and refused, while a damaged version number is known for damage.
//
// Records. Each is a change to the tree as key_change.hpp has it, paths whole, so that a record
// that is intact is of use whatever is lost around it. They are numbered from 1 without gaps. The
// salt is drawn anew for each file: a journal that some value happens to hold is not taken for
// records of this one. Head and tail say the same, so that one of them may be damaged without loss;
// names and data are checked apart, so that the loss of a value's data is known by the value's
// name.
//
// Groups. A record whose kind has the bit `more` set belongs together with the next one. A group is
// made as a whole or not at all; it ends with the first record without that bit.
//
// The mark. A change is appended, synced, and then published: the mark gets the file's end and the
// last number. Up to `end` the file is settled: what is not intact there is damage. What lies
// behind it was being written when its writer failed or was killed, and never happened, as long as
// the machine runs on from the start that `boot` names. After another start, the mark itself may
// have been lost with the power although the change was not: then every whole group behind it
// counts, and the first that is not whole was cut off and never happened.
//
// A fresh journal is written beside the old one under the name with ".new", synced, and renamed
// over it. Who writes holds a lock on the journal and, while renaming, on the fresh one too.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "quorl/store/internal/key_change.hpp"

namespace quorl::internal {

inline constexpr std::uint32_t kJournalVersion = 1;
inline constexpr std::size_t kHeaderBytes = 24;
inline constexpr std::size_t kMarkBytes = 32;
inline constexpr std::size_t kRecordsStart = kHeaderBytes + kMarkBytes;
inline constexpr std::size_t kHeadBytes = 40;
inline constexpr std::size_t kRecordOverhead = 2 * kHeadBytes;

struct JournalHeader {
  std::uint32_t version = kJournalVersion;
  std::uint32_t salt = 0;
};

struct JournalMark {
  std::uint64_t boot = 0;  ///< FileSystem::BootNumber, 0 for unknown.
  std::uint64_t end = 0;   ///< The offset behind the last settled record.
  std::uint64_t sequence = 0;
  std::uint32_t salt = 0;

  bool operator==(const JournalMark&) const = default;
};

struct RecordHead {
  std::uint32_t salt = 0;
  std::uint64_t sequence = 0;
  ChangeKind kind = ChangeKind::None;
  bool more = false;
  std::uint32_t names_bytes = 0;
  std::uint32_t data_bytes = 0;
  std::uint32_t names_checksum = 0;
  std::uint32_t data_checksum = 0;

  bool operator==(const RecordHead&) const = default;
  /// The whole record's length.
  std::uint64_t Bytes() const noexcept {
    return kRecordOverhead + std::uint64_t{names_bytes} + data_bytes;
  }
};

/// Which of the two ends of a record.
enum class RecordEnd : std::uint8_t { Head, Tail };

std::string Encoded(const JournalHeader& header);
std::string Encoded(const JournalMark& mark);
/// None when the bytes are too few or not intact.
std::optional<JournalHeader> DecodeHeader(std::string_view bytes) noexcept;
std::optional<JournalMark> DecodeMark(std::string_view bytes) noexcept;
std::optional<RecordHead> DecodeHead(std::string_view bytes, RecordEnd end) noexcept;

/// The names of a key, and of a value, as records hold them.
std::string NamesOf(std::string_view path, std::string_view value_name);

/// The change that an intact record holds, never one that takes a group; `data` stays lent. None
/// when names and kind do not go together, which no intact record of ours has.
std::optional<Change> ChangeOf(const RecordHead& head, std::string_view names,
                               std::string_view data);

/// Appends records to a text.
class RecordWriter {
 public:
  RecordWriter(std::string& out, std::uint32_t salt, std::uint64_t last_sequence) noexcept
      : out_(out), salt_(salt), sequence_(last_sequence) {}

  /// `change` as one group of records.
  void Append(const Change& change);
  /// `key`, without its subkeys, as if it stood at `path`. `more` belongs to each record.
  void AppendKey(std::string_view path, const Key& key, bool more);
  std::uint64_t LastSequence() const noexcept { return sequence_; }

 private:
  void AppendRecord(ChangeKind kind, std::string_view names, std::string_view type,
                    std::string_view data, bool more);
  void AppendValue(std::string_view path, std::string_view name, Int32 type, std::string_view data,
                   bool more);
  void AppendContent(std::string_view path, const Key& content);
  void AppendReplacement(const Change& change);
  void EndGroup(std::size_t last_head);

  std::string& out_;
  std::uint32_t salt_;
  std::uint64_t sequence_;
};

}  // namespace quorl::internal
