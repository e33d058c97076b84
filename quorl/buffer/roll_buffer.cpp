#include "quorl/buffer/roll_buffer.hpp"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;

namespace {

constexpr StringView kSource = u"RollBuffer";

constexpr StringView kSizeNotPositive = u"La taille du buffer doit être supérieure à zéro";
constexpr StringView kIndexOutside =
    u"Tentative de positionnement de l'index en dehors des limites";
constexpr StringView kNotOnItem =
    u"Aucunne donnée n'est disponible car l'index se trouve en BOF ou EOF";
constexpr StringView kItemOutside = u"Tentative d'accès à un élément en dehors des limites";
constexpr StringView kEmptyBuffer =
    u"Tentative de positionnement de l'index alors que le buffer est vide";
constexpr StringView kBeyondLast =
    u"Tentative de positionnement de l'index au dela du dernier d'élément";
constexpr StringView kBeforeFirst =
    u"Tentative de positionnement de l'index en deça du premier élément";

// The first growth of the storage, in items; from there on it doubles.
constexpr std::size_t kFirstGrowth = 16;

// What a text may keep of the memory of one before it, in units, besides twice its own length.
constexpr std::size_t kLeastKept = 64;

// Copies a text into the memory of the text in `place`, unless that is too little, or far more than
// it needs. False where it did not.
bool ReplaceText(Variant& place, const Variant& item) {
  const String* text = item.If<String>();
  String* former = place.If<String>();
  if (text == nullptr || former == nullptr) return false;
  const std::size_t most = kLeastKept + 2 * text->size();
  if (former->capacity() < text->size() || former->capacity() > most) return false;
  former->assign(*text);
  return true;
}

void Check(bool allowed, StringView description) {
  if (!allowed) throw RaisedError(kFailedCheck, kSource, description);
}

}  // namespace

// A growth that moves the items cannot fail halfway.
static_assert(std::is_nothrow_move_constructible_v<Variant>);
static_assert(std::is_nothrow_swappable_v<Variant>);

bool RollBuffer::IsItem(Int32 position) const noexcept {
  return position >= 0 && position < count_;
}

std::size_t RollBuffer::PhysicalIndex(Int32 position) const noexcept {
  const std::size_t size = static_cast<std::size_t>(buffer_size_);
  const std::size_t place = static_cast<std::size_t>(first_) + static_cast<std::size_t>(position);
  return place < size ? place : place - size;
}

Int32 RollBuffer::BufferSize() const noexcept { return buffer_size_; }

void RollBuffer::BufferSize(Int32 New_BufferSize) {
  Check(New_BufferSize > 0, kSizeNotPositive);
  // The items end when this call does: an object among them may call back, and finds the new state.
  std::vector<Variant> dropped;
  dropped.swap(items_);
  buffer_size_ = New_BufferSize;
  Clear();
}

Int32 RollBuffer::Count() const noexcept { return count_; }

Int32 RollBuffer::Index() const noexcept { return index_; }

void RollBuffer::Index(Int32 New_Index) {
  Check(IsItem(New_Index), kIndexOutside);
  index_ = New_Index;
}

Variant RollBuffer::CurrentItem() const {
  Check(IsItem(index_), kNotOnItem);
  return CopyOf(items_[PhysicalIndex(index_)]);
}

void RollBuffer::CurrentItem(const Variant& New_Item) {
  Check(IsItem(index_), kNotOnItem);
  const Variant former = Store(PhysicalIndex(index_), New_Item);
}

Variant RollBuffer::Items(Int32 Index) const {
  Check(IsItem(Index), kItemOutside);
  return CopyOf(items_[PhysicalIndex(Index)]);
}

Boolean RollBuffer::BOF() const noexcept { return index_ == -1; }

Boolean RollBuffer::OnFirst() const noexcept { return index_ == 0; }

Boolean RollBuffer::OnLast() const noexcept { return index_ == count_ - 1; }

Boolean RollBuffer::AtEOF() const noexcept { return index_ == count_ || count_ == 0; }

void RollBuffer::Clear() noexcept {
  count_ = 0;
  index_ = -1;
  first_ = 0;
}

// Puts a copy of `item` in its place, the next free one or one in use, and gives the former
// content: what that releases is released when the caller has finished.
Variant RollBuffer::Store(std::size_t place, const Variant& item) {
  if (place < items_.size()) {
    if (ReplaceText(items_[place], item)) return {};
    return std::exchange(items_[place], CopyOf(item));
  }
  Variant copy = CopyOf(item);
  if (items_.size() == items_.capacity()) {
    const std::size_t size = static_cast<std::size_t>(buffer_size_);
    const std::size_t wanted = std::max(kFirstGrowth, 2 * items_.size());
    WithinMemory([&] { items_.reserve(std::min(size, wanted)); });
  }
  items_.push_back(std::move(copy));
  return {};
}

void RollBuffer::AddItem(const Variant& Item) {
  const Int32 before = std::min(index_, count_ - 1);
  const bool drops_oldest = before == buffer_size_ - 1;
  const Variant former = Store(PhysicalIndex(drops_oldest ? 0 : before + 1), Item);
  if (drops_oldest) {
    first_ = first_ == buffer_size_ - 1 ? 0 : first_ + 1;
    index_ = before;
  } else {
    index_ = before + 1;
    count_ = index_ + 1;
  }
}

void RollBuffer::MoveFirst() {
  Check(count_ > 0, kEmptyBuffer);
  index_ = 0;
}

void RollBuffer::MoveLast() {
  Check(count_ > 0, kEmptyBuffer);
  index_ = count_ - 1;
}

void RollBuffer::MoveNext() {
  Check(index_ < count_ && count_ > 0, kBeyondLast);
  ++index_;
}

void RollBuffer::MovePrevious() {
  Check(index_ >= 0, kBeforeFirst);
  --index_;
}

}  // namespace quorl
