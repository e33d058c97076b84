#include "quorl/store/internal/journal_hive.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <new>
#include <utility>

#include "quorl/store/internal/rewriting.hpp"

namespace quorl::internal {
namespace {

using std::chrono::microseconds;
using std::chrono::nanoseconds;

// How long a writer waits for another one that does not let go.
constexpr std::chrono::seconds kPatience{20};
// The pauses between looks at the lock, short ones to begin with.
constexpr microseconds kShortPause{50};
constexpr microseconds kLongPause{1000};
constexpr std::chrono::milliseconds kEagerness{50};
// For how many changes a writer is polite after it found the lock taken.
constexpr int kPoliteTurns = 16;
// A file's time of change may be as coarse as this: two changes within it may bear the same time.
constexpr std::chrono::milliseconds kCoarsestTime{20};
// How long a file that has not changed is taken for the one that the path names.
constexpr std::chrono::milliseconds kPathIsTrusted{10};
// How often a file that looks damaged is read before it is taken for damaged without its lock.
constexpr int kLooksAtDamage = 4;
// A journal may be so much longer than twice a fresh one, lest a small one be rewritten all the
// time. With the zeros at its end it stays within 64 KiB.
constexpr std::uint64_t kSlackBytes = std::uint64_t{40} * 1024;
// A change that makes a journal longer which will soon be too long rewrites so many times as much.
constexpr std::size_t kPiecesAChange = 4;

}  // namespace

// A planned change with the file locked for it and its transaction written out.
class JournalHive::Pending final : public PendingChange {
 public:
  // With `state_` of the hive held.
  Pending(JournalHive& hive, std::unique_lock<std::mutex> writing, OpenFile locked, Change change)
      : hive_(hive),
        writing_(std::move(writing)),
        locked_(std::move(locked)),
        content_(hive.content_),
        change_(std::move(change)),
        before_(hive.position_),
        after_(hive.position_) {
    TransactionWriter writer(before_.salt, before_.last, before_.identity);
    writer.Append(change_, content_->NextNumber());
    after_.last = writer.LastNumber();
    after_.identity = writer.LastIdentity();
    bytes_ = writer.Finish();
    after_.end = before_.end + bytes_.size();
    after_.SetAnchor(before_.end, bytes_);
    content_->ReserveNumbers(change_.MadeKeys().size());
    change_.ReserveValues();
  }
  ~Pending() override { hive_.is_appending_ = false; }

  // With `state_` held; from here on, only the disk can fail.
  StoreStatus Reserve(std::uint64_t file_size) {
    const StoreStatus status =
        ReserveRoom(locked_, file_size, before_.end, bytes_.size(), change_.OnlyRemoves());
    hive_.is_appending_ = status == kDone;
    return status;
  }

  StoreStatus Commit() noexcept override {
    const StoreStatus status = hive_.Finish(locked_, bytes_, after_);
    if (status == kDone) {
      const std::lock_guard state(hive_.state_);
      // Unless the file was exchanged from outside meanwhile, nobody else can have moved on.
      if (hive_.content_ == content_ && hive_.position_.end == before_.end) {
        change_.Apply(*content_);
        hive_.position_ = after_;
      }
    }
    hive_.is_appending_ = false;
    if (status == kDone) hive_.RewriteIfWorthwhile(locked_, bytes_.size());
    return status;
  }

 private:
  JournalHive& hive_;
  std::unique_lock<std::mutex> writing_;
  OpenFile locked_;
  const HiveContent content_;
  Change change_;
  const JournalPosition before_;
  JournalPosition after_;
  std::string bytes_;
};

JournalHive::JournalHive(FileSystem& files, JournalPlace place)
    : files_(files), place_(std::move(place)), path_(place_.Path()) {}

JournalHive::~JournalHive() {
  rewriting_.reset();
  CloseFile();
}

StoreStatus JournalHive::Read(Freshness freshness, Look look) {
  const std::lock_guard state(state_);
  if (freshness == Freshness::kUpToDate) {
    if (const StoreStatus status = CatchUp(); status != kDone) return status;
  }
  return look(content_);
}

StoreStatus JournalHive::Prepare(Plan plan, std::unique_ptr<PendingChange>& pending) {
  StoreStatus status = kDone;
  if (NeedsNoChange(plan, status)) return status;
  microseconds waited{0};
  for (bool is_first = true;; is_first = false) {
    {
      std::unique_lock writing(writing_);
      OpenFile locked;
      FileInfo info;
      const bool is_polite = is_first && LetsOthersGoFirst();
      status = is_polite ? kLocked : LockForWriting(locked, info);
      if (status == kDone) {
        return PrepareLocked(std::move(writing), std::move(locked), info, plan, pending);
      }
      if (!is_polite) turns_to_let_pass_ = kPoliteTurns;
    }
    if (status != kLocked || waited >= kPatience) return status;
    waited += files_.Pause(waited < kEagerness ? kShortPause : kLongPause);
  }
}

// What needs no change needs no lock, and makes no file. What the known content does not need may
// be needed by now; the other way round, it is planned anew with the file locked.
bool JournalHive::NeedsNoChange(Plan plan, StoreStatus& status) {
  const std::lock_guard state(state_);
  for (const bool is_up_to_date : {false, true}) {
    if (is_up_to_date) status = CatchUp();
    if (status != kDone) return true;
    if (!file_.IsOpen() && !is_up_to_date) continue;
    ChangePlan changes(*content_, ChangePlan::Purpose::kAsking);
    const StoreStatus planned = plan(content_, changes);
    if (planned == kDone && changes.IsNeeded()) return false;
    if (is_up_to_date) status = planned;
  }
  return true;
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
  // Parent and child would both go on with it, through one open file.
  rewriting_.reset();
}

void JournalHive::ReleaseAfterFork() noexcept {
  state_.unlock();
  writing_.unlock();
}

JournalReport JournalHive::Verify() {
  if (place_.status != kDone) return {.status = place_.status, .path = path_};
  return ExamineFile(files_, path_);
}

JournalReport JournalHive::RepairDamage() {
  JournalReport report = Verify();
  if (report.status != kDone || !report.Damaged()) return report;
  OpenFile locked;
  FileInfo info;
  Int32& status = report.status;
  microseconds waited{0};
  const std::lock_guard writing(writing_);
  while ((status = LockJournal(files_, path_, locked, info)) == kLocked && waited < kPatience) {
    waited += files_.Pause(kLongPause);
  }
  if (status == kDone)
    status = MayWrite(info) ? LoadAndRepair(locked, info, report) : kAccessDenied;
  return report;
}

// Of the locked file. `report` is what was found by then, and what came of it.
StoreStatus JournalHive::LoadAndRepair(OpenFile& locked, const FileInfo& info,
                                       JournalReport& report) {
  const std::lock_guard state(state_);
  StoreStatus status = Load(Lock::kHeld);
  if (status != kDone) return status;
  if (!damage_) {
    report = Verify();
    return static_cast<StoreStatus>(report.status);
  }
  report = *damage_;
  status = Repair(locked, info);
  if (status == kDone) report = reports_.back();
  return status;
}

StoreStatus JournalHive::Mark(HiveMark& mark) {
  const std::lock_guard state(state_);
  const StoreStatus status = CatchUp();
  if (status != kDone) return status;
  mark = {};
  if (damage_) mark = {identity_.inode, damage_->bytes};
  if (file_.IsOpen() && !damage_) mark = {position_.salt, position_.last};
  return kDone;
}

std::vector<JournalReport> JournalHive::TakeReports() {
  const std::lock_guard state(state_);
  return std::exchange(reports_, {});
}

// Brings the content to where the file is.
StoreStatus JournalHive::CatchUp() {
  if (place_.status != kDone) return place_.status;
  if (is_appending_ || IsUnchanged()) return kDone;
  const nanoseconds look = files_.Clock();
  FileInfo info;
  const int found = files_.Describe(path_, info);
  if (found == -ENOENT) {
    Detach();
    return kDone;
  }
  if (found != 0) return CodeOfResult(found);
  if (!info.regular) return kNotAHive;
  if (failed_) {
    OpenFile locked;
    FileInfo locked_info;
    bool is_ours = false;
    const StoreStatus status = LockJournal(files_, path_, locked, locked_info);
    if (status != kDone || TakeBackFailed(locked, is_ours) != kDone) return kDone;
  }
  if (damage_ && info.SameFile(identity_) && damage_->bytes == info.size) return kDone;
  FileInfo timed;
  if (IsTimeOfUse(look) && file_.IsOpen() && file_.DescribeWithTime(timed) == kDone) {
    info.changed = timed.changed;
  }
  Following following = Following::kOtherJournal;
  const StoreStatus status = ReadOn(file_, info, following);
  // What the host has put in the descriptor's place is not the journal, whatever reading it gives.
  if (status != kDone && file_.IsStill(identity_)) return status;
  const bool is_read = status == kDone && following != Following::kOtherJournal;
  if (!is_read) return Load(Lock::kNotHeld);
  NoteUnchanged(info, look);
  return kDone;
}

// Whether the open file alone tells that there is nothing new. Every change in it, and its removal
// or replacement by another writer, shows in its time of change, unless that is too coarse: it must
// have been seen before, long enough before the file was last read. What is done to the folders
// above does not show; the path is looked at again after a while.
bool JournalHive::IsUnchanged() const {
  if (failed_ || position_.last != seen_last_ || seen_.changed == nanoseconds{0}) return false;
  if (looked_at_ - seen_since_ < kCoarsestTime) return false;
  if (files_.Clock() - looked_at_ > kPathIsTrusted) return false;
  FileInfo info;
  return file_.IsOpen() && file_.DescribeWithTime(info) == kDone && info.SameFile(identity_) &&
         IsAsSeen(info);
}

bool JournalHive::IsAsSeen(const FileInfo& info) const noexcept {
  return info.SameFile(seen_) && info.size == seen_.size && info.links == seen_.links &&
         info.changed == seen_.changed;
}

// Asking for the time of change makes the next change dearer: it is not asked for while one change
// comes after the other.
bool JournalHive::IsTimeOfUse(nanoseconds look) const noexcept {
  const bool was_asked = seen_.changed != nanoseconds{0};
  return position_.last == seen_last_ && (was_asked || look - seen_since_ >= kCoarsestTime);
}

// After the file was read to its end, which was begun after `look`. It was described between, so it
// has been like `info` since now at the latest.
void JournalHive::NoteUnchanged(const FileInfo& info, nanoseconds look) noexcept {
  if (!IsAsSeen(info) || position_.last != seen_last_) {
    seen_ = info;
    seen_last_ = position_.last;
    seen_since_ = files_.Clock();
  }
  looked_at_ = look;
}

// Takes in what was committed since. `following` is what comes then; kOtherJournal when this is not
// the journal that is known.
StoreStatus JournalHive::ReadOn(const OpenFile& file, const FileInfo& info, Following& following) {
  following = Following::kOtherJournal;
  if (!file_.IsOpen() || damage_ || !info.SameFile(identity_)) return kDone;
  StoreStatus status = LookAt(file, position_, following);
  if (status != kDone || following != Following::kTransaction) return status;
  FileWindow window(file, info.size);
  status = Replay(window, position_, *content_);
  return status == kDone ? LookAt(file, position_, following) : status;
}

void JournalHive::CloseFile() noexcept {
  if (file_.IsOpen() && !file_.IsStill(identity_)) file_.Forget();
  file_ = OpenFile();
}

void JournalHive::Detach() {
  if (!file_.IsOpen()) return;
  rewriting_.reset();
  content_ = std::make_shared<KeyTree>();
  CloseFile();
  damage_.reset();
}

bool JournalHive::MayWrite(const FileInfo& info) const {
  return !place_.is_private || !files_.IsForeign(info);
}

StoreStatus JournalHive::Load(Lock lock) {
  const int descriptor = files_.Open(path_, OpenFor::kReading, 0);
  if (descriptor < 0) return CodeOfResult(descriptor);
  OpenFile file(files_, descriptor);
  FileInfo info;
  StoreStatus status = file.Describe(info);
  if (status != kDone) return status;
  // Without the lock, what a writer is just about to write may look like damage.
  for (int look = 0;; ++look) {
    LoadedJournal loaded;
    status = LoadJournal(file, loaded);
    if (status != kDone) return status;
    if (!loaded.report.Damaged() || lock == Lock::kHeld || look == kLooksAtDamage) {
      Adopt(std::move(file), info, loaded);
      return kDone;
    }
    OpenFile locked;
    FileInfo locked_info;
    if (LockJournal(files_, path_, locked, locked_info) == kDone && MayWrite(locked_info)) {
      status = Load(Lock::kHeld);
      // Where a repair is not possible, what could be had serves until somebody can.
      if (status == kDone && damage_) Repair(locked, locked_info);
      return status;
    }
    files_.Pause(kLongPause);
  }
}

void JournalHive::Adopt(OpenFile file, const FileInfo& info, LoadedJournal& loaded) {
  damage_.reset();
  if (loaded.report.Damaged()) {
    loaded.report.path = path_;
    damage_ = loaded.report;
    AddReport(std::move(loaded.report));
  }
  is_folder_synced_ = is_folder_synced_ && file_.IsOpen() && info.SameFile(identity_);
  CloseFile();
  rewriting_.reset();
  content_ = std::move(loaded.tree);
  file_ = std::move(file);
  identity_ = info;
  position_ = loaded.position;
  ends_cleanly_ = loaded.ends_cleanly;
  failed_.reset();
  rewrite_from_ = 0;
}

StoreStatus JournalHive::LockForWriting(OpenFile& locked, FileInfo& info) {
  StoreStatus status = LockJournal(files_, path_, locked, info);
  if (status != kAbsent) return status;
  status = Create(locked);
  return status == kDone ? locked.Describe(info) : status;
}

// Makes an empty journal where there is none.
StoreStatus JournalHive::Create(OpenFile& locked) {
  std::string target;
  StoreStatus status = MakeFolders(files_, place_.folder, place_.folder_mode);
  if (status == kDone) status = FollowLinks(files_, path_, target);
  if (status != kDone) return status;
  Rewriting empty(files_, target, std::make_shared<KeyTree>());
  std::unique_lock<std::mutex> none;
  status = empty.Make(place_.file_mode, nullptr);
  if (status == kDone) status = empty.WriteRest(none);
  if (status == kDone) status = empty.File().TakeEmptyPlace();
  if (status == kDone) locked = empty.File().Release();
  return status;
}

// Brings the content to where the locked file is, and the file to where it can be written on.
StoreStatus JournalHive::GetReady(OpenFile& locked, FileInfo& info,
                                  std::unique_lock<std::mutex>& state) {
  if (!MayWrite(info)) return kAccessDenied;
  StoreStatus status = kDone;
  if (bool is_ours = false; failed_) {
    status = TakeBackFailed(locked, is_ours);
    if (status != kDone && is_ours) {
      status = BeginRewriting(info);
      if (status == kDone) status = EndRewriting(locked, state);
    }
    if (status != kDone) return status;
  }
  Following following = Following::kOtherJournal;
  status = ReadOn(locked, info, following);
  const bool is_unclear =
      following == Following::kOtherJournal || following == Following::kTransaction;
  if (status == kDone && is_unclear) {
    status = Load(Lock::kHeld);
    if (status == kDone) status = LookAt(locked, position_, following);
  }
  if (status != kDone) return status;
  const bool has_rest = following == Following::kRest || !ends_cleanly_;
  const bool is_confirmed = following == Following::kConfirmation || damage_;
  if (damage_) {
    status = Repair(locked, info);
  } else if (has_rest) {
    status = locked.Truncate(position_.end);
    ends_cleanly_ = status == kDone;
  }
  if (status == kDone && !is_confirmed) status = Renew(locked, position_);
  if (status == kDone) status = SyncFolder();
  return status == kDone ? locked.Describe(info) : status;
}

StoreStatus JournalHive::PrepareLocked(std::unique_lock<std::mutex> writing, OpenFile locked,
                                       FileInfo info, Plan plan,
                                       std::unique_ptr<PendingChange>& pending) {
  std::unique_lock state(state_);
  StoreStatus status = GetReady(locked, info, state);
  if (status != kDone) return status;
  ChangePlan changes(*content_);
  status = plan(content_, changes);
  if (status != kDone) return status;
  Change change = changes.Finish();
  if (change.IsEmpty()) return kDone;
  auto made =
      std::make_unique<Pending>(*this, std::move(writing), std::move(locked), std::move(change));
  status = made->Reserve(info.size);
  if (status == kDone) pending = std::move(made);
  return status;
}

// Writes a transaction and syncs it. What fails is overwritten, for good if that works.
StoreStatus JournalHive::Finish(const OpenFile& locked, std::string_view bytes,
                                const JournalPosition& after) {
  const std::uint64_t end = after.end - bytes.size();
  const StoreStatus status = Append(locked, bytes, end);
  if (status == kDone) {
    Confirm(locked, after);
    return kDone;
  }
  const bool is_taken_back = TakeBack(locked, bytes.size(), end) == kDone;
  const std::lock_guard state(state_);
  if (!is_taken_back) failed_ = after;
  return status;
}

// Overwrites a failed change, unless another process has taken it for committed and gone on, or
// something else stands there by now. `is_ours` tells that it still stands there.
StoreStatus JournalHive::TakeBackFailed(const OpenFile& locked, bool& is_ours) {
  Following following = Following::kOtherJournal;
  StoreStatus status = LookAt(locked, *failed_, following);
  is_ours = status == kDone && (following == Following::kNothing || following == Following::kRest);
  if (is_ours) status = TakeBack(locked, failed_->end - failed_->anchor, failed_->anchor);
  if (status == kDone) failed_.reset();
  return status;
}

// Exchanges the locked, damaged file, of which the content was salvaged, for a fresh one, and
// quarantines it.
StoreStatus JournalHive::Repair(OpenFile& locked, const FileInfo& info) {
  std::string target;
  JournalReport report = *damage_;
  StoreStatus status = FollowLinks(files_, path_, target);
  if (status == kDone) status = Quarantine(files_, target, report.kept_as);
  std::unique_lock<std::mutex> none;
  if (status == kDone) status = BeginRewriting(info);
  if (status == kDone) status = EndRewriting(locked, none);
  if (status == kDone) AddReport(std::move(report));
  return status;
}

// One report for a file, however often it was found before it could be dealt with.
void JournalHive::AddReport(JournalReport report) {
  if (!reports_.empty()) {
    const JournalReport& last = reports_.back();
    if (last.kept_as.empty() && last.Damaged() == report.Damaged()) reports_.pop_back();
  }
  reports_.push_back(std::move(report));
}

// Runs after a change of so many bytes was made: nothing that happens here may be reported as its
// failure. The journal is rewritten piece by piece with the changes that make it too long. When it
// has become so before that, much having been deleted at once, the rest is done at once too.
void JournalHive::RewriteIfWorthwhile(OpenFile& locked, std::size_t changed) noexcept {
  std::unique_lock state(state_);
  const std::uint64_t fresh = FreshJournalBytes(*content_);
  const std::uint64_t longest = 2 * fresh + kSlackBytes;
  const bool is_due = position_.end > longest;
  const bool is_near = rewriting_ != nullptr || position_.end > longest - longest / 4;
  if (!is_near || position_.end < rewrite_from_) return;
  // A journal that was exchanged from outside meanwhile is not the one that is locked.
  if (!locked.IsStill(identity_)) return;
  StoreStatus status = kDone;
  try {
    const std::size_t piece = std::max(Rewriting::kPieceBytes, kPiecesAChange * changed);
    status = RewriteOn(locked, is_due ? Rewriting::kAll : piece, state);
    if (is_due && status != kDone && status != kLocked) {
      AddReport({.path = path_, .bytes = position_.end, .rewriting = status});
    }
  } catch (const std::bad_alloc&) {
    status = kOutOfMemory;
  }
  if (status == kDone) return;
  rewriting_.reset();
  rewrite_from_ = is_due ? position_.end + fresh / 2 + kSlackBytes : longest;
}

// Rewrites so much more, or begins to.
StoreStatus JournalHive::RewriteOn(OpenFile& locked, std::size_t wanted,
                                   std::unique_lock<std::mutex>& state) {
  const bool is_at_once = wanted == Rewriting::kAll;
  if (rewriting_ != nullptr && !rewriting_->IsStillOpen()) rewriting_.reset();
  if (rewriting_ == nullptr) {
    FileInfo info;
    StoreStatus status = locked.Describe(info);
    if (status == kDone) status = BeginRewriting(info);
    if (status != kDone || !is_at_once) return status;
  }
  if (is_at_once || rewriting_->IsWalked()) return EndRewriting(locked, state);
  // A thread that reads may drop it meanwhile, when it finds another journal.
  const std::shared_ptr<Rewriting> rewriting = rewriting_;
  return rewriting->Write(wanted, state);
}

// Makes a fresh file with mode and owner of the former one.
StoreStatus JournalHive::BeginRewriting(const FileInfo& former) {
  std::string target;
  StoreStatus status = FollowLinks(files_, path_, target);
  if (status != kDone) return status;
  rewriting_.reset();
  auto made = std::make_shared<Rewriting>(files_, target, content_);
  status = made->Make(former.mode, &former);
  if (status == kDone) rewriting_ = std::move(made);
  return status;
}

// Writes what is left of the fresh journal and puts it in the place of the one that is locked;
// `locked` becomes the fresh one. `state`, if it is held, is let go while data is written.
StoreStatus JournalHive::EndRewriting(OpenFile& locked, std::unique_lock<std::mutex>& state) {
  const std::shared_ptr<Rewriting> rewriting = rewriting_;
  StoreStatus status = rewriting->WriteRest(state);
  // A thread that reads may have found another journal meanwhile.
  if (status == kDone && rewriting_ != rewriting) status = kLocked;
  if (status == kDone) status = TakePlace(*rewriting, locked);
  rewriting_.reset();
  return status;
}

// The new name is made durable before the next change is made.
StoreStatus JournalHive::TakePlace(Rewriting& rewriting, OpenFile& locked) {
  FreshFile& fresh = rewriting.File();
  std::vector<Key*> keys = rewriting.Journal().Keys();
  const int descriptor = files_.Open(fresh.Path(), OpenFor::kReading, 0);
  if (descriptor < 0) return CodeOfResult(descriptor);
  OpenFile reading(files_, descriptor);
  FileInfo info;
  StoreStatus status = reading.Describe(info);
  if (status == kDone) status = fresh.TakePlace();
  if (status != kDone) return status;
  content_->Renumber(std::move(keys));
  CloseFile();
  file_ = std::move(reading);
  identity_ = info;
  position_ = rewriting.Journal().Position();
  ends_cleanly_ = true;
  damage_.reset();
  failed_.reset();
  is_folder_synced_ = false;
  rewrite_from_ = 0;
  locked = fresh.Release();
  return kDone;
}

// Makes the journal's name durable, once for each file: whoever put it there may have been killed
// before doing so.
StoreStatus JournalHive::SyncFolder() {
  if (is_folder_synced_) return kDone;
  std::string target;
  StoreStatus status = FollowLinks(files_, path_, target);
  if (status == kDone) status = CodeOfResult(files_.SyncFolder(FolderOf(target)));
  is_folder_synced_ = status == kDone;
  return status;
}

}  // namespace quorl::internal
