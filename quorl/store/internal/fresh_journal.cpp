#include "quorl/store/internal/fresh_journal.hpp"

#include <new>
#include <utility>

#include "quorl/store/internal/random_number.hpp"

namespace quorl::internal {
namespace {

// Transactions of a fresh journal: many, so that damage to the head of one leaves the others.
constexpr std::size_t kTransactionBytes = std::size_t{64} * 1024;

}  // namespace

FreshJournal::FreshJournal(std::shared_ptr<KeyTree> tree)
    : tree_(std::move(tree)), writer_(static_cast<std::uint32_t>(RandomNumber()), 0, {}) {
  position_.salt = writer_.Salt();
  position_.end = 0;
  bytes_ = Encoded(JournalHeader{.salt = position_.salt});
  position_.SetAnchor(0, bytes_);
  tree_->Follow(this);
}

FreshJournal::~FreshJournal() { tree_->Follow(nullptr); }

std::string FreshJournal::Next(std::size_t wanted) {
  // What stops halfway is not gone on with.
  if (std::exchange(lacked_memory_, true)) throw std::bad_alloc();
  while (!IsWalked() && bytes_.size() + writer_.Size() < wanted) WalkOn();
  EndTransaction();
  position_.end += bytes_.size();
  lacked_memory_ = false;
  return std::exchange(bytes_, {});
}

std::vector<Key*> FreshJournal::Keys() const {
  std::vector<Key*> keys;
  keys.reserve(formerly_.size());
  for (const std::uint32_t number : formerly_) keys.push_back(tree_->Numbered(number));
  return keys;
}

// One step: the next value of the key where the walk is, or the next key.
void FreshJournal::WalkOn() {
  const Key* key = tree_->Numbered(key_);
  if (key_ == numbers_.size()) {
    EnterKey(key);
  } else if (const Value* value = key == nullptr ? nullptr : key->ValueAt(value_)) {
    writer_.AppendValue(numbers_[key_], *value);
    ++value_;
  } else {
    ++key_;
    value_ = 0;
  }
  if (writer_.Size() >= kTransactionBytes) EndTransaction();
}

void FreshJournal::EnterKey(const Key* key) {
  if (key == nullptr) {
    numbers_.push_back(Key::kNoNumber);
    return;
  }
  const auto number = static_cast<std::uint32_t>(formerly_.size());
  formerly_.push_back(key_);
  numbers_.push_back(number);
  if (number != 0) writer_.AppendCreation(numbers_[key->Parent()->Number()], key->Name(), number);
}

void FreshJournal::EndTransaction() {
  if (writer_.IsEmpty()) return;
  position_.last = writer_.LastNumber();
  position_.identity = writer_.LastIdentity();
  const std::string bytes = writer_.Finish();
  position_.SetAnchor(position_.end + bytes_.size(), bytes);
  bytes_ += bytes;
  writer_ = TransactionWriter(position_.salt, position_.last, position_.identity);
}

bool FreshJournal::IsWalked(const Key& key, const Value& value) const noexcept {
  if (key.Number() != key_) return IsReached(key);
  const Value* next = key.ValueAt(value_);
  return IsReached(key) && (next == nullptr || value.slot < next->slot);
}

template <class Write>
void FreshJournal::Note(Write write) noexcept {
  try {
    write();
  } catch (const std::bad_alloc&) {
    lacked_memory_ = true;
  }
}

void FreshJournal::ValueComes(const Key& key, const Value& value) noexcept {
  // A new value of the key where the walk is will still be met.
  const Value* former = key.Number() == key_ ? key.FindValue(value.name) : &value;
  if (former != nullptr && IsWalked(key, *former))
    Note([&] { writer_.AppendValue(numbers_[key.Number()], value); });
}

void FreshJournal::ValueGoes(const Key& key, const Value& value) noexcept {
  if (!IsWalked(key, value)) return;
  if (key.Number() == key_) --value_;
  Note([&] { writer_.AppendDeletion(numbers_[key.Number()], value.name); });
}

void FreshJournal::KeyGoes(const Key& key) noexcept {
  if (!IsReached(key)) return;
  if (key.Number() == key_) value_ = 0;
  // A transaction cannot delete a key that it makes.
  Note([&] {
    EndTransaction();
    writer_.AppendDeletion(numbers_[key.Number()]);
  });
}

std::uint64_t FreshJournalBytes(const KeyTree& tree) noexcept {
  const std::uint64_t bytes = FreshBytes(tree.TotalWeight());
  return kHeaderBytes + bytes + (bytes / kTransactionBytes + 1) * kTransactionHeadBytes;
}

}  // namespace quorl::internal
