// The journal of a hive, byte by byte. Numbers are little-endian, checksums CRC-32C.
//
//   file        = header transaction* [confirmation] zero*
//   header      = "QRLSTORE" version:4 salt:4 zero:4 check:4        check of the 20 bytes before
//   transaction = "QTRN" salt:4 first:8 bytes:8 content check:4
//                 former kind:4 former key:4 former name:8 check:4  check of the 44 bytes before
//                 record*                                            `bytes` bytes
//   record      = 0xD1 kind:1 name size:2 data size:4 number:4 key:4 head check:4
//                 name body check:4 word:4 data
//   confirmation = "QCNF" salt:4 last:8 check:4                     check of the 16 bytes before
//
// The first 24 bytes are the same in every version, so that a newer journal is known for what it is
// and refused, while a damaged version number is known for damage. The salt is drawn anew for each
// file: a journal that some value happens to hold is not taken for a part of this one.
//
// Keys have numbers: the root is 0, and each new key gets the next number, so that a record is as
// long as its own content, however deep its key lies. The kinds of records are:
//
//   1 create key     the key's parent is `key`, its own number is `word`
//   2 set value      in `key`; its type is `word`
//   3 delete value   in `key`
//   4 delete key     `key` with all below it; of the root, everything but the root itself
//
// Transactions. Each is a change that is made as a whole or not at all: it counts when it follows
// the one before it without a gap, its header is intact, and `content check` is that of all its
// records. Nothing else has to be durable for that, neither before nor after, so that a change is
// one write and one sync, and whatever part of the write a loss of power leaves, the change is
// there or it is not. Records are numbered from 1 through the whole file; `first` is the number of
// a transaction's first one.
//
// What follows the last transaction never happened, whatever it is: the rest of one that was cut
// off, or zeros. A file is made longer in steps and its end filled with zeros, because a sync is
// cheaper when the length stays; and when the disk is full, what only deletes still has room there.
// A writer whose write or sync failed overwrites what it wrote with zeros before it tells so.
//
// For damage. `head check` is that of salt, head and name, so that a record whose data is damaged
// is known by its key and name. `body check` is that of word and data, exclusive-or `head check`,
// so that no other record's body passes for this one's. Each transaction repeats the identity of
// the record before its first one (`former`, by the name's hash, see name_hash.hpp): where that
// record is lost, the value that it replaced or deleted is known, and does not come back.
//
// A confirmation says that everything up to the record `last` was synced. It is written after the
// sync, where the next transaction will be, and is not synced itself. By it, damage to the last
// transaction is told from one that was cut off; and a last transaction without it, which a process
// may have read although its sync had failed, is written again before the next one follows. What no
// trace is left of, like transactions at the end of a file that was cut short, the journal cannot
// know.
//
// A fresh journal is written beside the old one under a name with ".new-" and a random number, a
// piece with each change (fresh_journal.hpp), synced, and renamed over it. Who writes holds a lock
// on the journal that the path names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "quorl/store/internal/change.hpp"

namespace quorl::internal {

inline constexpr std::uint32_t kJournalVersion = 2;
inline constexpr std::size_t kHeaderBytes = 24;
inline constexpr std::size_t kTransactionHeadBytes = 48;
inline constexpr std::size_t kConfirmationBytes = 20;
inline constexpr std::size_t kRecordHeadBytes = 20;
/// What a record takes beside its name and data.
inline constexpr std::size_t kRecordOverhead = kRecordHeadBytes + 8;
inline constexpr std::string_view kTransactionMagic = "QTRN";
inline constexpr std::string_view kConfirmationMagic = "QCNF";
inline constexpr char kRecordMagic = '\xD1';

struct JournalHeader {
  std::uint32_t version = kJournalVersion;
  std::uint32_t salt = 0;
};

enum class RecordKind : std::uint8_t {
  kNone = 0,
  kCreateKey = 1,
  kSetValue = 2,
  kDeleteValue = 3,
  kDeleteKey = 4,
};

/// What a record is about, as the transaction after it repeats it.
struct RecordIdentity {
  RecordKind kind = RecordKind::kNone;
  std::uint32_t key = 0;
  std::uint64_t name_hash = 0;
};

struct TransactionHead {
  std::uint32_t salt = 0;
  std::uint64_t first = 0;
  std::uint64_t bytes = 0;
  std::uint32_t content_check = 0;
  RecordIdentity former{};
};

struct Confirmation {
  std::uint32_t salt = 0;
  std::uint64_t last = 0;
};

struct RecordHead {
  RecordKind kind = RecordKind::kNone;
  std::uint32_t data_bytes = 0;
  std::uint32_t number = 0;  ///< The low bits of the record's number.
  std::uint32_t key = 0;
  std::uint32_t check = 0;  ///< That of salt, head and name.
  std::string_view name{};

  /// The whole record's length, and where its body begins.
  std::uint64_t Bytes() const noexcept { return BodyStart() + 8 + std::uint64_t{data_bytes}; }
  std::uint64_t BodyStart() const noexcept { return kRecordHeadBytes + name.size(); }
};

struct RecordBody {
  std::uint32_t word = 0;
  std::string_view data{};
};

std::string Encoded(const JournalHeader& header);
std::string Encoded(const TransactionHead& head);
std::string Encoded(const Confirmation& confirmation);
/// None when the bytes are too few or not intact. What is decoded is lent by `bytes`.
std::optional<JournalHeader> DecodeHeader(std::string_view bytes) noexcept;
std::optional<TransactionHead> DecodeTransactionHead(std::string_view bytes) noexcept;
std::optional<Confirmation> DecodeConfirmation(std::string_view bytes) noexcept;
std::optional<RecordHead> DecodeRecordHead(std::string_view bytes, std::uint32_t salt) noexcept;
/// The same without a look at the head's check, for a transaction whose own check is right.
std::optional<RecordHead> DecodeCheckedRecordHead(std::string_view bytes) noexcept;
/// What the check of word and data must be by the record's body; none when the bytes are too few.
std::optional<std::uint32_t> DecodeBodyCheck(const RecordHead& head,
                                             std::string_view body) noexcept;
/// The body of a record of which all bytes are there.
RecordBody DecodeRecordBody(const RecordHead& head, std::string_view record) noexcept;

/// Writes one transaction.
class TransactionWriter {
 public:
  /// `last` is the number of the record before, `former` what it is about.
  TransactionWriter(std::uint32_t salt, std::uint64_t last, const RecordIdentity& former);

  /// A change, whose new keys get the numbers from `next_key` on.
  void Append(const Change& change, std::uint32_t next_key);
  // Single records. A key has the number that stands first.
  void AppendCreation(std::uint32_t parent, std::string_view name, std::uint32_t number);
  void AppendValue(std::uint32_t key, const Value& value);
  void AppendDeletion(std::uint32_t key, std::string_view value_name);
  void AppendDeletion(std::uint32_t key);

  std::uint32_t Salt() const noexcept { return head_.salt; }
  std::size_t Size() const noexcept { return bytes_.size(); }
  bool IsEmpty() const noexcept { return bytes_.size() == kTransactionHeadBytes; }
  std::uint64_t LastNumber() const noexcept { return number_; }
  const RecordIdentity& LastIdentity() const noexcept { return identity_; }
  /// The transaction, whole. The writer is used up.
  std::string Finish();

 private:
  void AppendRecord(RecordKind kind, std::uint32_t key, std::string_view name, std::uint32_t word,
                    std::string_view data);

  TransactionHead head_;
  std::uint64_t number_;
  RecordIdentity identity_;
  std::string bytes_;
};

/// The change of a whole transaction for `tree`; none when its records make no sense there. With
/// it, what the last record is about and its number.
struct DecodedTransaction {
  Change change{};
  std::uint64_t last = 0;
  RecordIdentity identity{};
};
std::optional<DecodedTransaction> DecodeTransaction(const TransactionHead& head,
                                                    std::string_view content, const KeyTree& tree);

/// The length of the transactions of a tree when they are written afresh.
std::uint64_t FreshBytes(Weight weight) noexcept;

}  // namespace quorl::internal
