#include "quorl/store/internal/value_list.hpp"

#include <algorithm>
#include <bit>
#include <compare>
#include <utility>

#include "quorl/store/key_name.hpp"

namespace quorl::internal {
namespace {

constexpr std::size_t kLeastRoom = 4;
constexpr std::size_t kShort = 16;

std::strong_ordering Order(const Value& value, std::uint64_t hash, std::string_view name) noexcept {
  return value.hash == hash ? CompareNames(value.name, name) : value.hash <=> hash;
}

constexpr std::size_t LowestBit(std::size_t number) noexcept { return number & (~number + 1); }

}  // namespace

Value::Value(std::string_view value_name, Int32 value_type, std::string_view value_data)
    : name(value_name), type(value_type), data(value_data), hash(HashOfName(value_name)) {}

Value::Value(const Value& other)
    : name(other.name), type(other.type), data(other.data), hash(other.hash) {}

void Value::Take(Value& other) noexcept {
  type = other.type;
  data.swap(other.data);
}

bool ValueList::HashIsLess::operator()(const Value& left, const Value& right) const noexcept {
  return std::is_lt(Order(left, right.hash, right.name));
}

const Value* ValueList::At(std::size_t place) const noexcept {
  if (place >= size_) return nullptr;
  if (!HasHoles()) return slots_[place].get();
  // Goes over the longest stretches that hold no more than `place` values.
  std::size_t slot = 0;
  for (std::size_t step = std::bit_floor(slots_.size()); step != 0; step /= 2) {
    if (slot + step > slots_.size() || counts_[slot + step - 1] > place) continue;
    slot += step;
    place -= counts_[slot - 1];
  }
  return slots_[slot].get();
}

Value* ValueList::Find(std::uint64_t hash, std::string_view name) const noexcept {
  return FindWhere(hash, [&](const Value& value) { return Order(value, hash, name); });
}

Value* ValueList::FindByHash(std::uint64_t hash) const noexcept {
  return FindWhere(hash, [&](const Value& value) { return value.hash <=> hash; });
}

// The value that `order` says is the one, among those that may have this hash.
template <class Compare>
Value* ValueList::FindWhere(std::uint64_t hash, Compare order) const noexcept {
  if (!buckets_.empty()) return BucketOf(hash).Find(order);
  const auto found =
      std::ranges::find_if(slots_, [&](const auto& each) { return std::is_eq(order(*each)); });
  return found == slots_.end() ? nullptr : found->get();
}

void ValueList::Reserve(std::size_t more) {
  const std::size_t needed = slots_.size() + more;
  const std::size_t room = slots_.capacity();
  const bool is_oversized = room > kShort && size_ + more < room / 8;
  if (needed <= room && !is_oversized) return;
  // Where values come and go there is half as much room more, so that this is rare.
  const std::size_t wanted = size_ + more + (HasHoles() ? size_ / 2 : 0);
  Rebuild(std::bit_ceil(std::max(wanted, kLeastRoom)));
}

// Gives the list other memory, without holes. When there is none, the list stays as it was.
void ValueList::Rebuild(std::size_t room) {
  std::vector<std::unique_ptr<Value>> slots;
  std::vector<Bucket> buckets(room > kShort ? room : 0);
  std::vector<std::uint32_t> counts;
  slots.reserve(room);
  counts.reserve(room > kShort ? room : 0);
  CloseUp();
  for (auto& each : slots_) slots.push_back(std::move(each));
  slots_.swap(slots);
  buckets_.swap(buckets);
  counts_.swap(counts);
  if (buckets_.empty()) return;
  for (const auto& each : slots_) BucketOf(each->hash).Insert(*each);
}

void ValueList::Append(std::unique_ptr<Value> value) noexcept {
  value->slot = slots_.size();
  if (!buckets_.empty()) BucketOf(value->hash).Insert(*value);
  if (HasHoles()) {
    const std::size_t number = value->slot + 1;
    std::uint32_t count = 1;
    for (std::size_t step = 1; step < LowestBit(number); step *= 2) {
      count += counts_[number - step - 1];
    }
    counts_.push_back(count);
  }
  slots_.push_back(std::move(value));
  ++size_;
}

void ValueList::Remove(Value& value) noexcept {
  if (!buckets_.empty()) BucketOf(value.hash).Remove(value);
  const std::size_t slot = value.slot;
  const bool had_holes = HasHoles();
  slots_[slot].reset();
  --size_;
  if (buckets_.empty() || size_ < slots_.size() / 2) return CloseUp();
  if (!had_holes) return CountSlots();
  for (std::size_t number = slot + 1; number <= slots_.size(); number += LowestBit(number)) {
    --counts_[number - 1];
  }
}

void ValueList::Clear() noexcept {
  slots_.clear();
  counts_.clear();
  size_ = 0;
  std::ranges::fill(buckets_, Bucket());
}

void ValueList::CloseUp() noexcept {
  if (!HasHoles()) return;
  std::erase(slots_, nullptr);
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) slots_[slot]->slot = slot;
  counts_.clear();
}

void ValueList::CountSlots() noexcept {
  counts_.assign(slots_.size(), 0);
  for (std::size_t number = 1; number <= slots_.size(); ++number) {
    counts_[number - 1] += slots_[number - 1] == nullptr ? 0 : 1;
    const std::size_t next = number + LowestBit(number);
    if (next <= slots_.size()) counts_[next - 1] += counts_[number - 1];
  }
}

}  // namespace quorl::internal
