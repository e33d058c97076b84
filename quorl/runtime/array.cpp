#include "quorl/runtime/array.hpp"

#include <algorithm>
#include <atomic>
#include <limits>
#include <unordered_map>
#include <utility>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

using namespace internal;

struct Array::Storage {
  Storage(VariantType element_type, std::vector<ArrayBound> dimensions)
      : element(element_type), bounds(std::move(dimensions)) {}
  Storage(const Storage& other)
      : element(other.element),
        bounds(other.bounds),
        bytes(other.bytes),
        variants(other.variants) {}
  Storage& operator=(const Storage&) = delete;
  // Arrays within arrays go one after the other: their depth must not become the stack's.
  ~Storage() {
    std::shared_ptr<Storage> doomed;
    TakeLastReferencesTo(doomed);
    while (doomed) {
      const std::shared_ptr<Storage> current = std::move(doomed);
      doomed = std::move(current->next_doomed);
      current->TakeLastReferencesTo(doomed);
    }
  }

  // Moves every array that only this one holds into the list.
  void TakeLastReferencesTo(std::shared_ptr<Storage>& list) noexcept {
    if (element != VariantType::kVariant) return;
    for (Variant& held : variants) {
      Array* const array = held.If<Array>();
      if (array == nullptr || array->storage_.use_count() != 1) continue;
      std::shared_ptr<Storage> taken = std::move(array->storage_);
      taken->next_doomed = std::move(list);
      list = std::move(taken);
    }
  }

  VariantType element;
  std::vector<ArrayBound> bounds;
  std::vector<Byte> bytes;        // the elements of an array of bytes
  std::vector<Variant> variants;  // the elements of any other
  std::shared_ptr<Storage> next_doomed;
};

namespace {

// More cannot be counted by the bounds of one dimension, and no element takes less than a byte.
constexpr std::size_t kMostElements = std::numeric_limits<Int32>::max();

std::size_t ElementsWithin(std::span<const ArrayBound> bounds) {
  std::size_t size = 1;
  for (const ArrayBound& bound : bounds) {
    if (bound.count != 0 && size > kMostElements / bound.count) Raise(FailureNumber::kOutOfMemory);
    size *= bound.count;
  }
  return size;
}

void RequireBounds(std::span<const ArrayBound> bounds) {
  if (bounds.empty()) Raise(FailureNumber::kInvalidArgument);
  for (const ArrayBound& bound : bounds) {
    const std::int64_t upper = std::int64_t{bound.lower} + bound.count - 1;
    if (upper > std::numeric_limits<Int32>::max()) Raise(FailureNumber::kSubscriptOutOfRange);
  }
}

Variant ZeroOf(VariantType element) {
  switch (element) {
    case VariantType::kVariant:
      return Empty;
    case VariantType::kObject:
      return Object();
    case VariantType::kByte:
    case VariantType::kInt16:
    case VariantType::kInt32:
    case VariantType::kSingle:
    case VariantType::kDouble:
    case VariantType::kCurrency:
    case VariantType::kDate:
    case VariantType::kString:
    case VariantType::kBoolean:
      return ConvertTo(Empty, element);
    default:
      Raise(FailureNumber::kInvalidArgument);
  }
}

ArrayBound CountedFromZero(std::size_t size) {
  if (size > kMostElements) Raise(FailureNumber::kOutOfMemory);
  return {0, static_cast<std::uint32_t>(size)};
}

}  // namespace

Array::Array(VariantType element, std::span<const ArrayBound> bounds) {
  RequireBounds(bounds);
  const std::size_t size = ElementsWithin(bounds);
  WithinMemory([&] {
    const Variant zero = ZeroOf(element);
    storage_ =
        std::make_shared<Storage>(element, std::vector<ArrayBound>(bounds.begin(), bounds.end()));
    if (element == VariantType::kByte) {
      storage_->bytes.resize(size);
    } else {
      storage_->variants.resize(size, zero);
    }
  });
}

Array::Array(VariantType element, std::initializer_list<ArrayBound> bounds)
    : Array(element, std::span(bounds.begin(), bounds.size())) {}

Array Array::WithBounds(VariantType element, Int32 lower, Int32 upper) {
  if (upper < lower) Raise(FailureNumber::kSubscriptOutOfRange);
  const std::int64_t count = std::int64_t{upper} - lower + 1;
  if (count > std::int64_t{kMostElements}) Raise(FailureNumber::kOutOfMemory);
  return {element, {ArrayBound{lower, static_cast<std::uint32_t>(count)}}};
}

Array Array::OfBytes(std::vector<Byte> bytes) {
  const ArrayBound bound = CountedFromZero(bytes.size());
  Array array(VariantType::kByte, {ArrayBound{}});
  array.storage_->bounds = {bound};
  array.storage_->bytes = std::move(bytes);
  return array;
}

Array Array::OfStrings(std::span<const String> texts) {
  const ArrayBound bound = CountedFromZero(texts.size());
  Array array(VariantType::kString, {ArrayBound{}});
  array.storage_->bounds = {bound};
  WithinMemory([&] { array.storage_->variants.assign(texts.begin(), texts.end()); });
  return array;
}

VariantType Array::ElementType() const noexcept { return storage_->element; }

std::size_t Array::Dimensions() const noexcept { return storage_->bounds.size(); }

std::span<const ArrayBound> Array::Bounds() const noexcept { return storage_->bounds; }

ArrayBound Array::Bound(std::size_t dimension) const {
  if (dimension >= Dimensions()) Raise(FailureNumber::kSubscriptOutOfRange);
  return storage_->bounds[dimension];
}

Int32 Array::LowerBound(std::size_t dimension) const { return Bound(dimension).lower; }

Int32 Array::UpperBound(std::size_t dimension) const {
  const ArrayBound bound = Bound(dimension);
  // An empty dimension at the lowest subscript of all has no subscript below it.
  return CheckedInt32(std::int64_t{bound.lower} + bound.count - 1);
}

std::size_t Array::Size() const noexcept {
  return ElementType() == VariantType::kByte ? storage_->bytes.size() : storage_->variants.size();
}

std::size_t Array::Position(std::span<const Int32> subscripts) const {
  if (subscripts.size() != Dimensions()) Raise(FailureNumber::kSubscriptOutOfRange);
  std::size_t position = 0;
  std::size_t stride = 1;
  for (std::size_t i = 0; i < subscripts.size(); ++i) {
    const ArrayBound& bound = storage_->bounds[i];
    const std::int64_t offset = std::int64_t{subscripts[i]} - bound.lower;
    if (offset < 0 || offset >= bound.count) Raise(FailureNumber::kSubscriptOutOfRange);
    position += stride * static_cast<std::size_t>(offset);
    stride *= bound.count;
  }
  return position;
}

Variant Array::Get(std::span<const Int32> subscripts) const {
  const std::size_t position = Position(subscripts);
  if (ElementType() == VariantType::kByte) return storage_->bytes[position];
  return CopyOf(storage_->variants[position]);
}

Variant Array::Get(std::initializer_list<Int32> subscripts) const {
  return Get(std::span(subscripts.begin(), subscripts.size()));
}

void Array::Set(std::span<const Int32> subscripts, const Variant& value) {
  const std::size_t position = Position(subscripts);
  if (ElementType() == VariantType::kByte) {
    const Byte byte = ToByte(value);
    WritableBytes()[position] = byte;
  } else {
    Variant converted = ConvertTo(value, ElementType());
    WritableElements()[position] = std::move(converted);
  }
}

void Array::Set(std::initializer_list<Int32> subscripts, const Variant& value) {
  Set(std::span(subscripts.begin(), subscripts.size()), value);
}

std::span<const Byte> Array::Bytes() const {
  if (ElementType() != VariantType::kByte) Raise(FailureNumber::kTypeMismatch);
  return storage_->bytes;
}

std::span<const Variant> Array::Elements() const {
  if (ElementType() == VariantType::kByte) Raise(FailureNumber::kTypeMismatch);
  return storage_->variants;
}

Array::Storage& Array::Writable() {
  if (storage_.use_count() > 1) {
    storage_ = WithinMemory([this] { return std::make_shared<Storage>(std::as_const(*storage_)); });
  } else {
    // The former holder may have been another thread's copy: what it read, it has read.
    std::atomic_thread_fence(std::memory_order_acquire);
  }
  return *storage_;
}

std::span<Byte> Array::WritableBytes() {
  if (ElementType() != VariantType::kByte) Raise(FailureNumber::kTypeMismatch);
  return Writable().bytes;
}

std::span<Variant> Array::WritableElements() {
  if (ElementType() == VariantType::kByte) Raise(FailureNumber::kTypeMismatch);
  return Writable().variants;
}

// Arrays within arrays are put on a list and compared one after the other: their depth must not
// become the stack's. Two that must be equal count as one from then on, so that an array which many
// hold is not compared once for each way that leads to it.
class Array::Comparison {
 public:
  bool FindsEqual(const Storage& left, const Storage& right) {
    if (&left == &right) return true;
    if (!AreAlike(left, right)) return false;
    while (!pairs_.empty()) {
      const auto [a, b] = pairs_.back();
      pairs_.pop_back();
      if (!AreAlike(*a, *b)) return false;
    }
    return true;
  }

 private:
  bool AreAlike(const Storage& left, const Storage& right) {
    return left.element == right.element && left.bounds == right.bounds &&
           left.bytes == right.bytes &&
           std::ranges::equal(
               left.variants, right.variants,
               [this](const Variant& a, const Variant& b) { return AreElementsAlike(a, b); });
  }

  bool AreElementsAlike(const Variant& left, const Variant& right) {
    const auto* left_array = left.If<Array>();
    const auto* right_array = right.If<Array>();
    if (left_array == nullptr || right_array == nullptr) return left == right;
    Expect(*left_array->storage_, *right_array->storage_);
    return true;
  }

  void Expect(const Storage& left, const Storage& right) {
    const Storage* const one = StandInFor(&left);
    const Storage* const other = StandInFor(&right);
    if (one == other) return;
    stand_ins_[one] = other;
    pairs_.emplace_back(&left, &right);
  }

  // The array that all those stand for which must be equal to this one.
  const Storage* StandInFor(const Storage* storage) {
    for (auto found = stand_ins_.find(storage); found != stand_ins_.end();) {
      storage = found->second;
      const auto next = stand_ins_.find(storage);
      if (next != stand_ins_.end()) found->second = next->second;  // a shorter way the next time
      found = next;
    }
    return storage;
  }

  std::vector<std::pair<const Storage*, const Storage*>> pairs_;
  std::unordered_map<const Storage*, const Storage*> stand_ins_;
};

bool operator==(const Array& a, const Array& b) {
  return WithinMemory([&] { return Array::Comparison().FindsEqual(*a.storage_, *b.storage_); });
}

}  // namespace quorl
