#include "quorl/buffer/roll_buffer.hpp"

#include <algorithm>
#include <cstdint>
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

[[noreturn]] void Fail(StringView description) {
  throw RaisedError(kFailedCheck, kSource, description);
}

void Check(bool allowed, StringView description) {
  if (!allowed) Fail(description);
}

}  // namespace

// A growth that moves the items cannot fail halfway, nor can what puts a copy into its place.
static_assert(std::is_nothrow_move_constructible_v<Variant>);
static_assert(std::is_nothrow_move_assignable_v<Variant>);

void RollBuffer::FailBeyondLast() { Fail(kBeyondLast); }

void RollBuffer::FailBeforeFirst() { Fail(kBeforeFirst); }

bool RollBuffer::IsItem(Int32 position) const noexcept {
  // As an unsigned number a negative one is too large.
  return static_cast<std::uint32_t>(position) < static_cast<std::uint32_t>(count_);
}

std::size_t RollBuffer::PhysicalIndex(Int32 position) const noexcept {
  // Of two numbers below 2^31 the sum is below 2^32.
  const std::uint32_t size = static_cast<std::uint32_t>(buffer_size_);
  const std::uint32_t place =
      static_cast<std::uint32_t>(first_) + static_cast<std::uint32_t>(position);
  return place < size ? place : place - size;
}

void RollBuffer::BufferSize(Int32 New_BufferSize) {
  Check(New_BufferSize > 0, kSizeNotPositive);
  // The items end when this call does: an object among them may call back, and finds the new state.
  std::vector<Variant> dropped;
  dropped.swap(items_);
  buffer_size_ = New_BufferSize;
  Clear();
}

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
  Variant& item = items_[PhysicalIndex(index_)];
  if (!ReplaceText(item, New_Item)) item = CopyOf(New_Item);
}

Variant RollBuffer::Items(Int32 Index) const {
  Check(IsItem(Index), kItemOutside);
  return CopyOf(items_[PhysicalIndex(Index)]);
}

void RollBuffer::Clear() noexcept {
  count_ = 0;
  index_ = -1;
  first_ = 0;
}

// Afterwards the place exists, if it was the next one behind those that do.
void RollBuffer::MakeRoom(std::size_t place) {
  if (place < items_.size()) return;
  if (items_.size() == items_.capacity()) {
    const std::size_t size = static_cast<std::size_t>(buffer_size_);
    const std::size_t wanted = std::max(kFirstGrowth, 2 * items_.size());
    WithinMemory([&] { items_.reserve(std::min(size, wanted)); });
  }
  items_.emplace_back();
}

void RollBuffer::StandOnNew(Int32 next) noexcept {
  const bool drops_oldest = next == buffer_size_;
  if (drops_oldest) first_ = static_cast<Int32>(PhysicalIndex(1));
  index_ = drops_oldest ? next - 1 : next;
  count_ = index_ + 1;
}

// Apart, so that a text that finds its place needs no room for what this does.
[[gnu::noinline]] void RollBuffer::AddCopy(Int32 next, const Variant& item) {
  const std::size_t place = PhysicalIndex(next);
  Variant copy = CopyOf(item);
  MakeRoom(place);
  StandOnNew(next);
  // Last, as it ends the former content: an object in it may call back, and finds the new state.
  items_[place] = std::move(copy);
}

void RollBuffer::AddItem(const Variant& Item) {
  const Int32 next = std::min(index_, count_ - 1) + 1;
  const std::size_t place = PhysicalIndex(next);
  const bool is_in_place = place < items_.size() && ReplaceText(items_[place], Item);
  is_in_place ? StandOnNew(next) : AddCopy(next, Item);
}

void RollBuffer::MoveFirst() {
  Check(count_ > 0, kEmptyBuffer);
  index_ = 0;
}

void RollBuffer::MoveLast() {
  Check(count_ > 0, kEmptyBuffer);
  index_ = count_ - 1;
}

}  // namespace quorl
