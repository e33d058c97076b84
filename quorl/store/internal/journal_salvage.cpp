#include "quorl/store/internal/journal_salvage.hpp"

#include <algorithm>
#include <map>
#include <utility>

#include "quorl/store/internal/crc32c.hpp"

namespace quorl::internal {
namespace {

// Large enough to look for a record's magic in, small enough to keep in memory.
constexpr std::size_t kSearchBytes = std::size_t{64} * 1024;
constexpr char kMagicStart = 'Q';

// A record of which at least one end is intact.
struct Finding {
  RecordHead head;
  std::uint64_t names_offset = 0;
  bool names_intact = false;
  bool data_intact = false;
  bool ends_intact = false;

  bool IsWhole() const noexcept { return names_intact && data_intact; }
  std::uint64_t Offset() const noexcept { return names_offset - kHeadBytes; }
};

// Goes through the file once and collects all that is a record.
class Survey {
 public:
  explicit Survey(FileWindow& window) : window_(window) {}

  void Run() {
    offset_ = std::min<std::uint64_t>(kRecordsStart, window_.Size());
    accepted_ = offset_;
    while (offset_ < window_.Size() && window_.Status() == kDone) {
      if (!TakeHead() && !TakeTail()) SkipToMagic();
    }
  }

  // The records of the journal in their order, each once. One of another salt was inside a value,
  // one that does not follow those before it was moved or doubled: their places count as stray,
  // though the latter is of use where the number is missing. `salt` is none when the header does
  // not tell it.
  std::vector<Finding> Sorted(std::optional<std::uint32_t> salt) {
    const std::uint32_t wanted = salt ? *salt : CommonestSalt();
    std::map<std::uint64_t, Finding> by_number;
    std::uint64_t highest = 0;
    for (const Finding& finding : found_) {
      const bool ours = finding.head.salt == wanted;
      if (!ours || finding.head.sequence <= highest) {
        strays_.emplace_back(finding.Offset(), finding.head.Bytes());
      }
      if (!ours) continue;
      highest = std::max(highest, finding.head.sequence);
      const auto [place, fresh] = by_number.try_emplace(finding.head.sequence, finding);
      if (!fresh && finding.IsWhole() && !place->second.IsWhole()) place->second = finding;
    }
    std::vector<Finding> sorted;
    sorted.reserve(by_number.size());
    for (const auto& [number, finding] : by_number) sorted.push_back(finding);
    return sorted;
  }

  const std::vector<std::pair<std::uint64_t, std::uint64_t>>& Strays() const { return strays_; }

  // Notes the bytes from the last record to the file's end.
  void EndStray(std::uint64_t end) {
    if (accepted_ < end) strays_.emplace_back(accepted_, end - accepted_);
  }

 private:
  bool TakeHead() {
    const auto record = RecordAt(window_, offset_);
    if (!record) return false;
    EndStray(offset_);
    found_.push_back({record->head, offset_ + kHeadBytes, record->names_intact, record->data_intact,
                      record->tail_intact});
    // Without its tail, the record may be cut: what follows is to be looked at byte by byte.
    const std::uint64_t whole = record->head.Bytes();
    if (record->tail_intact) {
      offset_ += whole;
    } else {
      offset_ += record->names_intact && record->data_intact ? whole - kHeadBytes : kHeadBytes;
    }
    accepted_ = offset_;
    return true;
  }

  // A tail whose head is damaged: names and data lie before it.
  bool TakeTail() {
    const auto head = DecodeHead(window_.At(offset_, kHeadBytes), RecordEnd::Tail);
    if (!head) return false;
    const std::uint64_t content = std::uint64_t{head->names_bytes} + head->data_bytes;
    if (offset_ >= accepted_ + content) {
      const std::string_view bytes =
          window_.At(offset_ - content, static_cast<std::size_t>(content));
      const bool names = Crc32c(bytes.substr(0, head->names_bytes)) == head->names_checksum;
      const bool data = Crc32c(bytes.substr(head->names_bytes)) == head->data_checksum;
      found_.push_back({*head, offset_ - content, names, data, false});
      EndStray(offset_ - content);
    } else {
      EndStray(offset_);
    }
    offset_ += kHeadBytes;
    accepted_ = offset_;
    return true;
  }

  void SkipToMagic() {
    const std::string_view bytes = window_.At(offset_ + 1, kSearchBytes);
    const std::size_t found = bytes.find(kMagicStart);
    offset_ += 1 + std::min(found, bytes.size());
  }

  std::uint32_t CommonestSalt() const {
    std::map<std::uint32_t, std::size_t> counts;
    for (const Finding& finding : found_) ++counts[finding.head.salt];
    const auto most = std::ranges::max_element(counts, {}, [](const auto& e) { return e.second; });
    return most == counts.end() ? 0 : most->first;
  }

  FileWindow& window_;
  std::uint64_t offset_ = 0;
  std::uint64_t accepted_ = 0;  // Up to here everything belongs to a record or is noted as stray.
  std::vector<Finding> found_;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> strays_;
};

// Makes the changes of the findings, and for those of which only a part is intact what can be made
// for certain: an older state must not pass for the present one.
class Rebuilding {
 public:
  Rebuilding(FileWindow& window, KeyTree& tree, JournalReport& report)
      : window_(window), tree_(tree), report_(report) {}

  void Take(const Finding& finding) {
    const std::string names = Content(finding.names_offset, finding.head.names_bytes);
    const std::string data =
        Content(finding.names_offset + finding.head.names_bytes, finding.head.data_bytes);
    const auto known_names =
        finding.names_intact ? std::optional(names) : NamesByChecksum(finding.head);
    const auto change = known_names ? ChangeOf(finding.head, *known_names, data) : std::nullopt;
    if (change && finding.data_intact) {
      Make(*change);
      ++report_.records;
      if (!finding.ends_intact || !finding.names_intact) {
        Note(JournalLoss::Kind::Repaired, finding, *change);
      }
      return;
    }
    TakeDamaged(finding, known_names);
  }

 private:
  std::string Content(std::uint64_t offset, std::uint32_t count) {
    return std::string(window_.At(offset, count));
  }

  void Make(const Change& change) { Prepare(tree_, change).Apply(tree_); }

  // What is lost is the data, the names, or both. A deletion of what is not there loses nothing.
  void TakeDamaged(const Finding& finding, const std::optional<std::string>& names) {
    Change change;
    change.kind = finding.head.kind;
    if (names) {
      const std::size_t joiner = names->find('\0');
      change.path = names->substr(0, joiner);
      if (joiner != names->npos) change.name = names->substr(joiner + 1);
    }
    const bool of_value = change.kind == ChangeKind::SetValue;
    if (of_value && names) {
      Change removal = change;
      removal.kind = ChangeKind::DeleteValue;
      Make(removal);
    }
    Note(of_value ? JournalLoss::Kind::Value : JournalLoss::Kind::Key, finding, change);
  }

  void Note(JournalLoss::Kind kind, const Finding& finding, const Change& change) {
    const bool lost = kind != JournalLoss::Kind::Repaired;
    report_.losses.push_back({.kind = kind,
                              .offset = finding.Offset(),
                              .bytes = finding.head.Bytes(),
                              .records = lost ? std::uint64_t{1} : 0,
                              .key = change.path,
                              .value = change.name});
  }

  // Damaged names are still known when their checksum is that of a key or value that exists.
  std::optional<std::string> NamesByChecksum(const RecordHead& head) {
    const bool of_value = head.kind == ChangeKind::SetValue || head.kind == ChangeKind::DeleteValue;
    std::optional<std::string> known;
    const auto compare = [&](std::string names) {
      if (Crc32c(names) == head.names_checksum) known = std::move(names);
    };
    ForEachKey(*tree_.Root(), [&](const Key& key) {
      if (!of_value) return compare(key.Path());
      for (const Value* value : key.Values()) compare(NamesOf(key.Path(), value->name));
    });
    return known;
  }

  FileWindow& window_;
  KeyTree& tree_;
  JournalReport& report_;
};

// How many of the findings count. Behind the mark, what was not published since the machine started
// never happened, nor did a group that is not whole.
std::size_t CountSettled(const std::vector<Finding>& findings,
                         const std::optional<JournalMark>& mark, std::uint64_t boot) {
  std::size_t settled = findings.size();
  if (mark) {
    const auto behind = std::ranges::find_if(
        findings, [&](const Finding& each) { return each.head.sequence > mark->sequence; });
    settled = static_cast<std::size_t>(behind - findings.begin());
    if (boot != 0 && mark->boot == boot) return settled;
    std::uint64_t expected = mark->sequence + 1;
    for (std::size_t i = settled; i < findings.size(); ++i) {
      const Finding& each = findings[i];
      if (!each.IsWhole() || !each.ends_intact || each.head.sequence != expected++) break;
      if (!each.head.more) settled = i + 1;
    }
    return settled;
  }
  while (settled != 0 && findings[settled - 1].head.more) --settled;
  return settled;
}

void NoteMissing(std::uint64_t first, std::uint64_t behind, std::uint64_t offset,
                 JournalReport& report) {
  if (first >= behind) return;
  report.losses.push_back({.kind = JournalLoss::Kind::Records,
                           .offset = offset,
                           .records = behind - first,
                           .key = {},
                           .value = {}});
}

void NotePlace(JournalLoss::Kind kind, std::uint64_t offset, std::uint64_t bytes,
               JournalReport& report) {
  report.losses.push_back({.kind = kind, .offset = offset, .bytes = bytes, .key = {}, .value = {}});
}

}  // namespace

void Salvage(FileWindow& window, const JournalPrefix& prefix, std::uint64_t boot, KeyTree& tree,
             JournalReport& report) {
  const auto& header = prefix.header;
  auto mark = prefix.mark;
  if (mark && header && mark->salt != header->salt) mark.reset();
  if (!header) NotePlace(JournalLoss::Kind::Header, 0, kHeaderBytes, report);
  if (!mark) NotePlace(JournalLoss::Kind::Mark, kHeaderBytes, kMarkBytes, report);

  Survey survey(window);
  survey.Run();
  std::optional<std::uint32_t> salt;
  if (mark) salt = mark->salt;
  if (header) salt = header->salt;
  auto findings = survey.Sorted(salt);
  for (const std::size_t settled_count = CountSettled(findings, mark, boot);
       findings.size() > settled_count; findings.pop_back()) {
    report.unfinished_bytes += findings.back().head.Bytes();
  }

  // What is settled and lost is told; a stretch without records behind the last of them was being
  // written.
  const std::uint64_t settled = mark ? mark->sequence : 0;
  const std::uint64_t last = findings.empty() ? 0 : findings.back().head.sequence;
  survey.EndStray(window.Size());
  for (const auto& [offset, bytes] : survey.Strays()) {
    const bool behind_mark = mark && offset >= mark->end && last >= settled;
    if (behind_mark) {
      report.unfinished_bytes += bytes;
    } else {
      NotePlace(JournalLoss::Kind::Bytes, offset, bytes, report);
    }
  }

  Rebuilding rebuilding(window, tree, report);
  std::uint64_t expected = 1;
  for (const Finding& finding : findings) {
    NoteMissing(expected, finding.head.sequence, finding.Offset(), report);
    rebuilding.Take(finding);
    expected = finding.head.sequence + 1;
  }
  NoteMissing(expected, settled + 1, window.Size(), report);
  report.status = window.Status();
}

}  // namespace quorl::internal
