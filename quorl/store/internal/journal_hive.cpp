#include "quorl/store/internal/journal_hive.hpp"

#include <cerrno>
#include <chrono>
#include <new>
#include <thread>
#include <utility>

namespace quorl::internal {
namespace {

using std::chrono::microseconds;
using Clock = std::chrono::steady_clock;

// How long a writer waits for another one that does not let go.
constexpr std::chrono::seconds kPatience{20};
// The pauses between looks at the lock, short ones to begin with.
constexpr microseconds kShortPause{50};
constexpr microseconds kLongPause{1000};
constexpr std::chrono::milliseconds kEagerness{50};
// For how many changes a writer is polite after it found the lock taken.
constexpr int kPoliteTurns = 16;
// A journal may be so much longer than twice a fresh one, lest a small one be rewritten all the
// time.
constexpr std::uint64_t kSlackBytes = std::uint64_t{64} * 1024;

int Described(FileSystem& files, const std::string& path, FileInfo& info) {
  int result = files.Describe(path, info);
  while (result == -EINTR) result = files.Describe(path, info);
  return result;
}

int OpenedForReading(FileSystem& files, const std::string& path) {
  int result = files.Open(path, OpenFor::Reading, 0);
  while (result == -EINTR) result = files.Open(path, OpenFor::Reading, 0);
  return result;
}

}  // namespace

JournalHive::JournalHive(FileSystem& files, JournalPlace place)
    : files_(files), place_(std::move(place)), path_(place_.Path()), boot_(files.BootNumber()) {}

Int32 JournalHive::Read(Freshness freshness, Look look) {
  const std::lock_guard state(state_);
  if (freshness == Freshness::UpToDate) {
    if (const Int32 status = CatchUp(); status != kDone) return status;
  }
  return look(content_);
}

Int32 JournalHive::Write(Plan plan) {
  {
    // What needs no change needs no lock, and makes no file.
    const std::lock_guard state(state_);
    if (const Int32 status = CatchUp(); status != kDone) return status;
    Change change;
    const Int32 status = plan(content_, change);
    if (status != kDone || change.kind == ChangeKind::None) return status;
  }
  const auto start = Clock::now();
  for (bool first = true;; first = false) {
    {
      const std::lock_guard writing(writing_);
      OpenFile locked;
      Int32 status = kDone;
      const bool polite = first && LetsOthersGoFirst();
      const auto result = polite ? LockResult::Busy : LockForWriting(locked, status);
      if (result == LockResult::Locked) return WriteLocked(locked, plan);
      if (result == LockResult::Failed) return status;
      if (!polite) turns_to_let_pass_ = kPoliteTurns;
    }
    const auto waited = Clock::now() - start;
    if (waited >= kPatience) return kLocked;
    std::this_thread::sleep_for(waited < kEagerness ? kShortPause : kLongPause);
  }
}

// Whoever has just written would find the lock free before those that wait for it wake up. When
// there were others lately, it waits for a moment too.
bool JournalHive::LetsOthersGoFirst() {
  if (turns_to_let_pass_ == 0) return false;
  --turns_to_let_pass_;
  return true;
}

void JournalHive::HoldForFork() noexcept {
  writing_.lock();
  state_.lock();
}

void JournalHive::ReleaseAfterFork() noexcept {
  state_.unlock();
  writing_.unlock();
}

JournalReport JournalHive::Verify() {
  if (place_.status != kDone) return {.status = place_.status, .path = path_};
  return ExamineFile(files_, path_);
}

std::vector<JournalReport> JournalHive::TakeReports() {
  const std::lock_guard state(state_);
  return std::exchange(reports_, {});
}

// Brings the content to where the file is. An unchanged file costs one look at its description.
Int32 JournalHive::CatchUp() {
  if (place_.status != kDone) return place_.status;
  FileInfo info;
  const int found = Described(files_, path_, info);
  if (found == -ENOENT) {
    Detach();
    return kDone;
  }
  if (found != 0) return CodeOfResult(found);
  if (!info.regular) return kNotAHive;
  if (file_.IsOpen() && info.SameFile(identity_)) {
    if (info.size == known_size_) return kDone;
    if (!damaged_) {
      Int32 status = kDone;
      const ReadOnResult result = ReadOn(file_, boot_, position_, content_.tree, status);
      known_size_ = position_.end;
      if (result == ReadOnResult::Done) return status;
    }
  }
  return Load();
}

void JournalHive::Detach() {
  if (!file_.IsOpen()) return;
  content_.tree = KeyTree();
  ++content_.generation;
  file_ = OpenFile();
  damaged_ = false;
}

Int32 JournalHive::Load() {
  const int descriptor = OpenedForReading(files_, path_);
  if (descriptor < 0) return CodeOfResult(descriptor);
  OpenFile file(files_, descriptor);
  FileInfo info;
  LoadedJournal loaded;
  Int32 status = file.Describe(info);
  if (status == kDone) status = LoadJournal(file, boot_, loaded);
  if (status != kDone) return status;
  Adopt(std::move(file), info, loaded);
  if (!damaged_) return kDone;
  // Whoever comes upon damage repairs it. Where that is not possible, because the file is locked or
  // may not be written, what could be had from it serves until somebody can.
  OpenFile locked;
  if (LockJournal(files_, path_, locked, status) == LockResult::Locked) Repair(locked);
  return kDone;
}

void JournalHive::Adopt(OpenFile file, const FileInfo& info, LoadedJournal& loaded) {
  damaged_ = loaded.report.Damaged();
  if (damaged_) AddReport(loaded.report);
  folder_synced_ = folder_synced_ && file_.IsOpen() && info.SameFile(identity_);
  content_.tree = std::move(loaded.tree);
  ++content_.generation;
  file_ = std::move(file);
  identity_ = info;
  position_ = loaded.position;
  known_size_ = damaged_ ? loaded.report.bytes : position_.end;
  rewrite_from_ = 0;
}

LockResult JournalHive::LockForWriting(OpenFile& locked, Int32& status) {
  const LockResult result = LockJournal(files_, path_, locked, status);
  return result == LockResult::Failed && status == kAbsent ? Create(locked, status) : result;
}

// Makes an empty journal where there is none.
LockResult JournalHive::Create(OpenFile& locked, Int32& status) {
  std::unique_lock state(state_);
  status = MakeFolders(files_, place_.folder, place_.folder_mode);
  std::string target;
  if (status == kDone) status = FollowLinks(files_, path_, target);
  if (status != kDone) return LockResult::Failed;
  FreshFile fresh(files_, target);
  const LockResult made = fresh.Make(place_.file_mode, nullptr, status);
  if (made != LockResult::Locked) return made;
  // Somebody else may have made the journal before the fresh file was locked.
  FileInfo info;
  const int found = Described(files_, path_, info);
  if (found == 0) return LockResult::Busy;
  JournalPosition position;
  status = found == -ENOENT ? WriteFreshJournal(fresh.File(), *KeyTree().Root(), boot_, position)
                            : CodeOfResult(found);
  if (status == kDone) status = fresh.TakePlace();
  if (status != kDone) return LockResult::Failed;
  locked = fresh.Release();
  return LockResult::Locked;
}

// Makes the change with the file locked and `writing_` held.
Int32 JournalHive::WriteLocked(OpenFile& locked, Plan plan) {
  std::unique_lock state(state_);
  Int32 status = CatchUp();
  if (status == kDone && damaged_) status = Repair(locked);
  if (status == kDone && !file_.IsOpen()) status = kInputOutputFailed;
  if (status != kDone) return status;
  if (rewrite_first_) Rewrite(locked, state);
  Change change;
  status = plan(content_, change);
  if (status != kDone || change.kind == ChangeKind::None) return status;
  status = MakeLasting(locked, state, change);
  if (status == kDone) RewriteIfWorthwhile(locked, state);
  return status;
}

Int32 JournalHive::MakeLasting(OpenFile& locked, std::unique_lock<std::mutex>& state,
                               const Change& change) {
  if (const Int32 status = SyncFolder(); status != kDone) return status;
  if (const Int32 status = SettleEnd(locked, boot_, position_); status != kDone) return status;
  // All that needs memory comes before anything is written.
  PreparedChange prepared = Prepare(content_.tree, change);
  const JournalPosition before = position_;
  std::string records;
  RecordWriter writer(records, before.salt, before.sequence);
  writer.Append(change);
  const JournalPosition after{before.salt, before.end + records.size(), writer.LastSequence()};
  const std::string mark_before = MarkOf(boot_, before);
  const std::string mark_after = MarkOf(boot_, after);
  const auto generation = content_.generation;

  state.unlock();
  Int32 status = AppendRecords(locked, records, before);
  state.lock();
  if (status == kDone) status = Publish(locked, mark_before, mark_after, before.end);
  if (status != kDone) {
    rewrite_first_ = true;
    return status;
  }
  // Unless the file was exchanged from outside meanwhile, nobody else can have moved on.
  if (content_.generation == generation && position_.end == before.end) {
    prepared.Apply(content_.tree);
    position_ = after;
    known_size_ = after.end;
  }
  return kDone;
}

// Exchanges the locked, damaged file for a fresh one of what could be had, and keeps it aside.
Int32 JournalHive::Repair(OpenFile& locked) {
  FileInfo info;
  LoadedJournal loaded;
  Int32 status = locked.Describe(info);
  if (status == kDone) status = LoadJournal(locked, boot_, loaded);
  if (status != kDone) return status;
  if (!loaded.report.Damaged()) {
    const int descriptor = OpenedForReading(files_, path_);
    if (descriptor < 0) return CodeOfResult(descriptor);
    Adopt(OpenFile(files_, descriptor), info, loaded);
    return kDone;
  }
  std::string target;
  status = FollowLinks(files_, path_, target);
  if (status == kDone) status = KeepAside(files_, target, loaded.report.kept_as);
  if (status == kDone) status = PutInPlace(*loaded.tree.Root(), info, locked, nullptr);
  if (status != kDone) return status;
  content_.tree = std::move(loaded.tree);
  ++content_.generation;
  AddReport(std::move(loaded.report));
  return kDone;
}

// One report for a file, however often it was come upon before it could be kept aside.
void JournalHive::AddReport(JournalReport report) {
  report.path = path_;
  if (!reports_.empty() && reports_.back().kept_as.empty()) reports_.pop_back();
  reports_.push_back(std::move(report));
}

// Runs after a change was made: nothing that happens here may be reported as its failure.
void JournalHive::RewriteIfWorthwhile(OpenFile& locked,
                                      std::unique_lock<std::mutex>& state) noexcept {
  const std::uint64_t fresh = FreshJournalBytes(content_.tree);
  if (position_.end <= 2 * fresh + kSlackBytes || position_.end < rewrite_from_) return;
  Int32 status = kOutOfMemory;
  try {
    status = Rewrite(locked, state);
  } catch (const std::bad_alloc&) {
    if (!state.owns_lock()) state.lock();
  }
  if (status != kDone) rewrite_from_ = position_.end + fresh / 2 + kSlackBytes;
}

Int32 JournalHive::Rewrite(OpenFile& locked, std::unique_lock<std::mutex>& state) {
  FileInfo info;
  if (const Int32 status = locked.Describe(info); status != kDone) return status;
  // A share of the root keeps the tree, which nobody changes while the file is locked.
  const auto root = content_.tree.Root();
  const Int32 status = PutInPlace(*root, info, locked, &state);
  if (status == kDone) rewrite_first_ = false;
  return status;
}

// Writes `content` to a fresh journal with mode and owner of the former one and puts it in its
// place; `locked` becomes the fresh one. `state`, unless null, is let go while data is written.
Int32 JournalHive::PutInPlace(const Key& content, const FileInfo& former, OpenFile& locked,
                              std::unique_lock<std::mutex>* state) {
  std::string target;
  Int32 status = FollowLinks(files_, path_, target);
  if (status != kDone) return status;
  FreshFile fresh(files_, target);
  const LockResult made = fresh.Make(former.mode, &former, status);
  if (made != LockResult::Locked) return made == LockResult::Busy ? kLocked : status;
  JournalPosition position;
  if (state != nullptr) state->unlock();
  status = WriteFreshJournal(fresh.File(), content, boot_, position);
  if (state != nullptr) state->lock();
  const int descriptor = status == kDone ? OpenedForReading(files_, fresh.Path()) : -EIO;
  if (status == kDone) status = CodeOfResult(descriptor);
  OpenFile reading(files_, descriptor);
  FileInfo info;
  if (status == kDone) status = reading.Describe(info);
  if (status == kDone) status = fresh.TakePlace();
  if (status != kDone) return status;
  file_ = std::move(reading);
  identity_ = info;
  position_ = position;
  known_size_ = position.end;
  damaged_ = false;
  folder_synced_ = false;
  locked = fresh.Release();
  // A failure here is met again, and reported, before the next change is made.
  SyncFolder();
  return kDone;
}

// Makes the journal's name lasting, once for each file: whoever put it there may have been killed
// before doing so.
Int32 JournalHive::SyncFolder() {
  if (folder_synced_) return kDone;
  std::string target;
  Int32 status = FollowLinks(files_, path_, target);
  if (status == kDone) status = CodeOfResult(files_.SyncFolder(FolderOf(target)));
  folder_synced_ = status == kDone;
  return status;
}

}  // namespace quorl::internal
