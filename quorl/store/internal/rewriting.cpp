#include "quorl/store/internal/rewriting.hpp"

#include <utility>

#include "quorl/store/internal/journal_file.hpp"

namespace quorl::internal {
namespace {

// Lets a lock go for a while, if it is held.
class Unlocked {
 public:
  explicit Unlocked(std::unique_lock<std::mutex>& lock) : lock_(lock), was_held_(lock.owns_lock()) {
    if (was_held_) lock_.unlock();
  }
  Unlocked(const Unlocked&) = delete;
  Unlocked& operator=(const Unlocked&) = delete;
  ~Unlocked() {
    if (was_held_) lock_.lock();
  }

 private:
  std::unique_lock<std::mutex>& lock_;
  bool was_held_;
};

}  // namespace

Rewriting::Rewriting(FileSystem& files, std::string target, HiveContent content)
    : file_(files, std::move(target)), journal_(std::move(content)) {}

Rewriting::~Rewriting() {
  if (identity_ && !IsStillOpen()) file_.Forget();
}

StoreStatus Rewriting::Make(unsigned mode, const FileInfo* former) {
  FileInfo info;
  StoreStatus status = file_.Make(mode, former);
  if (status == kDone) status = file_.File().Describe(info);
  if (status == kDone) identity_ = info;
  return status;
}

bool Rewriting::IsStillOpen() const noexcept {
  return identity_ && file_.File().IsStill(*identity_);
}

StoreStatus Rewriting::Write(std::size_t wanted, std::unique_lock<std::mutex>& state) {
  const std::uint64_t offset = journal_.Position().end;
  const std::string bytes = journal_.Next(wanted);
  const Unlocked unlocked(state);
  const StoreStatus status = file_.File().Write(bytes, offset);
  if (status == kDone) file_.File().StartSync(offset, bytes.size());
  return status;
}

StoreStatus Rewriting::WriteRest(std::unique_lock<std::mutex>& state) {
  StoreStatus status = kDone;
  do {
    status = Write(kPieceBytes, state);
  } while (status == kDone && !IsWalked());
  const JournalPosition position = journal_.Position();
  const Unlocked unlocked(state);
  return status == kDone ? EndFreshJournal(file_.File(), position) : status;
}

}  // namespace quorl::internal
