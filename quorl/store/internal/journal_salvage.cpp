#include "quorl/store/internal/journal_salvage.hpp"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "quorl/store/internal/crc32c.hpp"

namespace quorl::internal {
namespace {

// Large enough to look for the beginning of a record in, small enough to keep in memory.
constexpr std::uint64_t kSearchBytes = std::uint64_t{64} * 1024;
constexpr std::uint64_t kCheckStep = 4096;
constexpr std::string_view kMagicStarts = "Q\xD1";
constexpr std::size_t kLongestToldPath = 4096;

// The checksum of any stretch of a file in the same short time, so that a file which pretends to
// hold many long records takes no longer than another one.
class StretchChecks {
 public:
  explicit StretchChecks(FileWindow& window)
      : window_(window.File(), window.Size(), 2 * kCheckStep) {
    for (std::uint64_t offset = 0; offset < window.Size(); offset += kCheckStep) {
      checks_.push_back(Crc32c(window.At(offset, kCheckStep), checks_.back()));
    }
  }

  // None when the file is shorter.
  std::optional<std::uint32_t> Of(std::uint64_t offset, std::uint64_t bytes) {
    if (offset > window_.Size() || bytes > window_.Size() - offset) return std::nullopt;
    return Crc32cOfEnd(Before(offset + bytes), Before(offset), bytes);
  }

 private:
  std::uint32_t Before(std::uint64_t offset) {
    const std::uint64_t step = offset / kCheckStep;
    const std::string_view rest = window_.At(step * kCheckStep, offset % kCheckStep);
    return Crc32c(rest, checks_[static_cast<std::size_t>(step)]);
  }

  FileWindow window_;
  std::vector<std::uint32_t> checks_{0};
};

// A record of which the head and the name are intact.
struct Finding {
  std::uint64_t number = 0;
  std::uint64_t offset = 0;
  std::uint64_t bytes = 0;
  bool is_whole = false;
};

struct Stretch {
  std::uint64_t offset = 0;
  std::uint64_t bytes = 0;
};

// Goes through a part of the file once and collects all that belongs to the journal.
class Survey {
 public:
  Survey(FileWindow& window, std::uint32_t salt, const JournalPosition& from)
      : window_(window),
        checks_(window),
        salt_(salt),
        offset_(std::min(from.end, window.Size())),
        accepted_(offset_),
        last_(from.last) {}

  void Run() {
    while (offset_ < window_.Size() && window_.Status() == kDone) {
      if (!TakeTransaction() && !TakeConfirmation() && !TakeRecord(false)) SkipToMagic();
    }
    EndStray(window_.Size());
  }

  // The number up to which all records are known to have been committed.
  std::uint64_t Committed() const noexcept { return committed_; }
  // What the record of a number is about, as the transaction after it repeats it.
  const std::map<std::uint64_t, RecordIdentity>& Formers() const noexcept { return formers_; }
  const std::vector<Stretch>& Strays() const noexcept { return strays_; }

  // The records in the order of their numbers, each once: a stretch of the file may have been
  // moved or doubled.
  std::vector<Finding> Sorted() {
    const auto is_less = [](const Finding& left, const Finding& right) {
      if (left.number != right.number) return left.number < right.number;
      return left.is_whole && !right.is_whole;
    };
    std::ranges::stable_sort(found_, is_less);
    const auto is_same = [](const Finding& left, const Finding& right) {
      return left.number == right.number;
    };
    found_.erase(std::unique(found_.begin(), found_.end(), is_same), found_.end());
    return std::move(found_);
  }

 private:
  bool TakeTransaction() {
    const auto head = DecodeTransactionHead(window_.At(offset_, kTransactionHeadBytes));
    if (!head || head->salt != salt_ || head->first == 0) return false;
    EndStray(offset_);
    formers_.try_emplace(head->first - 1, head->former);
    committed_ = std::max(committed_, head->first - 1);
    last_ = head->first - 1;
    Accept(kTransactionHeadBytes);
    if (checks_.Of(offset_, head->bytes) != head->content_check) return true;
    const std::uint64_t end = offset_ + head->bytes;
    while (offset_ < end && TakeRecord(true)) committed_ = std::max(committed_, last_);
    return true;
  }

  bool TakeConfirmation() {
    const auto confirmation = DecodeConfirmation(window_.At(offset_, kConfirmationBytes));
    if (!confirmation || confirmation->salt != salt_) return false;
    EndStray(offset_);
    committed_ = std::max(committed_, confirmation->last);
    Accept(kConfirmationBytes);
    return true;
  }

  bool TakeRecord(bool is_whole) {
    const auto head =
        DecodeRecordHead(window_.At(offset_, kRecordHeadBytes + kLongestValueName), salt_);
    if (!head) return false;
    EndStray(offset_);
    // Only the low bits are there; the number is near the last one.
    const auto ahead = static_cast<std::int32_t>(head->number - static_cast<std::uint32_t>(last_));
    last_ += static_cast<std::uint64_t>(std::int64_t{ahead});
    const std::uint64_t body = head->BodyStart();
    const std::uint64_t bytes = head->Bytes();
    is_whole = is_whole || BodyIsIntact(*head, offset_ + body, bytes - body);
    found_.push_back({.number = last_, .offset = offset_, .bytes = bytes, .is_whole = is_whole});
    // What follows the name of a damaged record may be another record.
    told_ = std::max(told_, offset_ + bytes);
    Accept(is_whole ? bytes : body);
    return true;
  }

  bool BodyIsIntact(const RecordHead& head, std::uint64_t offset, std::uint64_t bytes) {
    constexpr std::uint64_t kCheckBytes = sizeof(std::uint32_t);
    const auto check = DecodeBodyCheck(head, window_.At(offset, kCheckBytes));
    return check && checks_.Of(offset + kCheckBytes, bytes - kCheckBytes) == check;
  }

  void Accept(std::uint64_t bytes) {
    offset_ += bytes;
    accepted_ = offset_;
  }

  // Notes the bytes from the last thing that was accepted to `end`.
  void EndStray(std::uint64_t end) {
    const std::uint64_t start = std::max(accepted_, told_);
    if (start < end) strays_.push_back({start, end - start});
    accepted_ = end;
  }

  void SkipToMagic() {
    const std::string_view bytes = window_.At(offset_ + 1, kSearchBytes);
    offset_ += 1 + std::min(bytes.find_first_of(kMagicStarts), bytes.size());
  }

  FileWindow& window_;
  StretchChecks checks_;
  std::uint32_t salt_;
  std::uint64_t offset_;
  std::uint64_t accepted_;  // Up to here everything is accepted or noted as stray.
  std::uint64_t told_ = 0;  // Up to here it belongs to a record, be it a damaged one.
  std::uint64_t last_;      // The number of the last record that was found.
  std::uint64_t committed_ = 0;
  std::map<std::uint64_t, RecordIdentity> formers_;
  std::vector<Finding> found_;
  std::vector<Stretch> strays_;
};

// Makes the changes of the records in their order, and for those that are lost what is known of
// them for certain.
class Rebuilding {
 public:
  Rebuilding(FileWindow& window, std::uint32_t salt, KeyTree& tree, JournalReport& report)
      : window_(window), salt_(salt), tree_(tree), report_(report), keys_{{0, tree.Root()}} {}

  void Take(const Finding& finding) {
    const std::uint64_t least = kRecordHeadBytes + kLongestValueName;
    const std::string_view record =
        window_.At(finding.offset, finding.is_whole ? finding.bytes : least);
    const auto head = DecodeRecordHead(record, salt_);
    if (!head) return;
    const std::shared_ptr<Key> key = KeyOf(head->key);
    // Of a deletion, head and name tell everything.
    const bool is_deletion =
        head->kind == RecordKind::kDeleteValue || head->kind == RecordKind::kDeleteKey;
    if ((finding.is_whole || is_deletion) && key != nullptr && Make(*key, *head, record)) {
      ++report_.records;
      return;
    }
    const std::string name(head->name);
    if (key != nullptr && head->kind == RecordKind::kSetValue) tree_.RemoveValue(*key, name);
    Note(head->kind, key.get(), name, finding.offset, finding.bytes);
  }

  // The records from `first` to before `end` are lost; `identity` is what the last of them is
  // about, if that is known.
  void TakeMissing(std::uint64_t first, std::uint64_t end, std::uint64_t offset,
                   const RecordIdentity* identity) {
    if (first >= end) return;
    const std::shared_ptr<Key> key = identity == nullptr ? nullptr : KeyOf(identity->key);
    std::uint64_t unknown = end - first;
    if (key != nullptr) {
      const Value* value = key->FindValueByHash(identity->name_hash);
      const bool of_value =
          identity->kind == RecordKind::kSetValue || identity->kind == RecordKind::kDeleteValue;
      Note(identity->kind, key.get(), of_value && value != nullptr ? value->name : std::string(),
           offset, 0);
      if (of_value && value != nullptr) tree_.RemoveValue(*key, std::string(value->name));
      if (identity->kind == RecordKind::kDeleteKey) tree_.Remove(*key);
      --unknown;
    }
    if (unknown == 0) return;
    report_.losses.push_back(
        {.kind = JournalLoss::Kind::kRecords, .offset = offset, .records = unknown});
  }

 private:
  std::shared_ptr<Key> KeyOf(std::uint32_t number) const {
    const auto found = keys_.find(number);
    return found == keys_.end() || found->second->Deleted() ? nullptr : found->second;
  }

  bool Make(Key& key, const RecordHead& head, std::string_view record) {
    if (head.kind == RecordKind::kDeleteValue) tree_.RemoveValue(key, head.name);
    if (head.kind == RecordKind::kDeleteKey) tree_.Remove(key);
    if (head.kind == RecordKind::kCreateKey) {
      return Create(key, head.name, DecodeRecordBody(head, record).word);
    }
    if (head.kind == RecordKind::kSetValue) {
      const RecordBody body = DecodeRecordBody(head, record);
      key.ReserveValues(1);
      tree_.Put(key, std::make_unique<Value>(head.name, static_cast<Int32>(body.word), body.data));
    }
    return true;
  }

  // A key of the same name must have been deleted before, by a record that is lost.
  bool Create(Key& parent, std::string_view name, std::uint32_t number) {
    if (name.empty() || keys_.contains(number)) return false;
    if (Key* former = parent.FindSubkey(name)) tree_.Remove(*former);
    auto made = std::make_shared<Key>(name);
    keys_.emplace(number, made);
    tree_.ReserveNumbers(1);
    tree_.Adopt(*made);
    const Weight weight = made->OwnWeight();
    tree_.Insert(parent, std::move(made), weight);
    return true;
  }

  void Note(RecordKind kind, const Key* key, const std::string& name, std::uint64_t offset,
            std::uint64_t bytes) {
    const bool of_key = kind == RecordKind::kCreateKey || kind == RecordKind::kDeleteKey;
    JournalLoss loss{.kind = of_key ? JournalLoss::Kind::kKey : JournalLoss::Kind::kValue,
                     .offset = offset,
                     .bytes = bytes,
                     .records = 1};
    if (key != nullptr) loss.key = key->Path(kLongestToldPath);
    if (!of_key) loss.value = name;
    if (kind == RecordKind::kCreateKey) {
      loss.key.append(loss.key.empty() ? 0 : 1, kPathSeparator).append(name);
    }
    report_.losses.push_back(std::move(loss));
  }

  FileWindow& window_;
  std::uint32_t salt_;
  KeyTree& tree_;
  JournalReport& report_;
  std::map<std::uint32_t, std::shared_ptr<Key>> keys_;
};

// The salt that most transactions of the file have.
std::uint32_t CommonestSalt(FileWindow& window) {
  std::map<std::uint32_t, std::size_t> counts;
  for (std::uint64_t offset = 0; offset < window.Size() && window.Status() == kDone;) {
    const auto head = DecodeTransactionHead(window.At(offset, kTransactionHeadBytes));
    if (head) ++counts[head->salt];
    const std::string_view bytes = window.At(offset + 1, kSearchBytes);
    offset += 1 + std::min(bytes.find(kTransactionMagic.front()), bytes.size());
  }
  const auto most = std::ranges::max_element(counts, {}, [](const auto& e) { return e.second; });
  return most == counts.end() ? 0 : most->first;
}

bool IsZero(FileWindow& window, const Stretch& stretch) {
  for (std::uint64_t done = 0; done < stretch.bytes;) {
    const std::string_view bytes =
        window.At(stretch.offset + done, std::min(kSearchBytes, stretch.bytes - done));
    if (bytes.empty() || bytes.find_first_not_of('\0') != bytes.npos) return false;
    done += bytes.size();
  }
  return true;
}

// Stretches that belong to no record are damage, except for zeros and for the rest of what was cut
// off after the last record that counts.
void TellStrays(FileWindow& window, const std::vector<Stretch>& strays, std::uint64_t end,
                JournalReport& report) {
  for (const Stretch& stray : strays) {
    if (stray.offset < end) {
      report.losses.push_back({.offset = stray.offset, .bytes = stray.bytes});
    } else if (!IsZero(window, stray)) {
      report.unfinished_bytes += stray.bytes;
    }
  }
}

}  // namespace

bool ShowsDamage(FileWindow& window, const JournalPosition& position) {
  Survey survey(window, position.salt, position);
  survey.Run();
  return survey.Committed() > position.last;
}

void Salvage(FileWindow& window, std::optional<std::uint32_t> salt, KeyTree& tree,
             JournalReport& report) {
  if (!salt) report.losses.push_back({.kind = JournalLoss::Kind::kHeader, .bytes = kHeaderBytes});
  const std::uint32_t wanted = salt ? *salt : CommonestSalt(window);
  Survey survey(window, wanted, JournalPosition());
  survey.Run();
  Rebuilding rebuilding(window, wanted, tree, report);
  std::uint64_t expected = 1;
  std::uint64_t end = 0;
  const auto take_missing = [&](std::uint64_t before, std::uint64_t offset) {
    const auto former = survey.Formers().find(before - 1);
    rebuilding.TakeMissing(expected, before, offset,
                           former == survey.Formers().end() ? nullptr : &former->second);
    expected = before + 1;
  };
  for (const Finding& finding : survey.Sorted()) {
    if (finding.number > survey.Committed()) {
      report.unfinished_bytes += finding.bytes;
      continue;
    }
    take_missing(finding.number, finding.offset);
    rebuilding.Take(finding);
    end = std::max(end, finding.offset + finding.bytes);
  }
  take_missing(survey.Committed() + 1, window.Size());
  TellStrays(window, survey.Strays(), end, report);
  report.status = window.Status();
}

}  // namespace quorl::internal
