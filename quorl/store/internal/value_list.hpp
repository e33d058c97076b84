// The values of one key, in the order in which they were made and by their names. Each step takes
// the same time however many there are (of those that change the list, on an average), and
// logarithmic time at worst, whatever the names: by their hashes they are spread over many small
// search trees, so that names chosen to meet in one are no worse than others.
//
// A value that is removed leaves its slot empty until half of them are; the values before a slot
// are counted in a binary indexed tree meanwhile. A short list has neither: it is searched from its
// beginning, and closes up at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quorl/runtime/types.hpp"
#include "quorl/store/internal/counted_tree.hpp"
#include "quorl/store/internal/name_hash.hpp"

namespace quorl::internal {

/// One value of a key.
struct Value {
  Value(std::string_view value_name, Int32 value_type, std::string_view value_data);
  /// A copy that belongs to no list.
  explicit Value(const Value& other);

  /// Takes over type and data; name and place stay.
  void Take(Value& other) noexcept;

  std::string name;
  Int32 type;
  std::string data;
  std::uint64_t hash;    ///< `HashOfName` of the name.
  std::size_t slot = 0;  ///< Its place in the list, empty ones counted.
  TreeLink<Value> by_name{};
};

class ValueList {
 public:
  std::size_t Size() const noexcept { return size_; }
  bool IsEmpty() const noexcept { return size_ == 0; }
  /// Null after the last one.
  const Value* At(std::size_t place) const noexcept;
  /// Null when there is none of that name, in whatever case. `hash` is that of the name.
  Value* Find(std::uint64_t hash, std::string_view name) const noexcept;
  /// A value whose name has this hash.
  Value* FindByHash(std::uint64_t hash) const noexcept;

  /// Calls `visit(const Value&)` for each value in order.
  template <class Visit>
  void ForEach(Visit&& visit) const {
    for (const auto& each : slots_) {
      if (each != nullptr) visit(std::as_const(*each));
    }
  }

  /// Makes room for so many values more.
  void Reserve(std::size_t more);

  // Changes, none of which can fail.
  /// There must be room, and no value of the same name.
  void Append(std::unique_ptr<Value> value) noexcept;
  void Remove(Value& value) noexcept;
  /// Keeps the room.
  void Clear() noexcept;

 private:
  // By the names' hashes: most comparisons are of two numbers.
  struct HashIsLess {
    bool operator()(const Value& left, const Value& right) const noexcept;
  };
  using Bucket = CountedTree<Value, &Value::by_name, HashIsLess>;

  Bucket& BucketOf(std::uint64_t hash) noexcept { return buckets_[hash & (buckets_.size() - 1)]; }
  const Bucket& BucketOf(std::uint64_t hash) const noexcept {
    return buckets_[hash & (buckets_.size() - 1)];
  }
  bool HasHoles() const noexcept { return size_ != slots_.size(); }
  template <class Compare>
  Value* FindWhere(std::uint64_t hash, Compare order) const noexcept;
  void Rebuild(std::size_t room);
  void CloseUp() noexcept;
  void CountSlots() noexcept;

  std::vector<std::unique_ptr<Value>> slots_;
  std::size_t size_ = 0;
  std::vector<Bucket> buckets_;        // None for a short list, else a power of two.
  std::vector<std::uint32_t> counts_;  // The binary indexed tree, as long as there are holes.
};

}  // namespace quorl::internal
