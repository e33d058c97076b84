// `RollBuffer`: the most recent items that a host gave, up to a capacity, walked with a cursor.
//
// Items stand in the order in which they came, at positions from 0 (the oldest that is kept) to
// `Count()` - 1 (the newest). The cursor stands on one of them, or at BOF, position -1 before the
// first, or at EOF, position `Count()` after the last; on an empty buffer it is at both.
//
// An item is added directly after the cursor and cuts off whatever followed there, as a browser
// forgets its forward pages. The oldest item is dropped only when the cursor stands on the last
// position of a full buffer, which is where a run of additions leaves it.
//
// Values are copied in and out; an object is kept as a reference to the same object. An item that
// was cut off, cleared or cut short stays alive out of reach until its place is written again,
// `BufferSize` is set or the buffer ends.
//
// Storage grows with the items: a capacity of 2147483647 is legal and costs nothing until it is
// filled. Failure 7, wherever an item is stored or handed out, says that memory is short.
//
// Every failure leaves the buffer as it was. The buffer's own have Number 5000 and Source
// "RollBuffer"; the members say when, roll_buffer.cpp holds the texts. An instance has no lock and
// is used from one thread at a time. It is neither copied nor moved.
#pragma once

#include <cstddef>
#include <vector>

#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// A property is a pair of functions of its name: `BufferSize()` reads, `BufferSize(3)` writes.
///
///     RollBuffer history;
///     history.BufferSize(3);
///     for (const char16_t* page : {u"a", u"b", u"c", u"d"}) history.AddItem(page);
///     history.Items(0);        // u"b": the oldest was dropped
///     history.MovePrevious();  // the cursor is on u"c"
///     history.AddItem(u"e");   // u"d" is forgotten: b, c, e
class RollBuffer {
 public:
  /// An empty buffer with a capacity of 100.
  RollBuffer() = default;
  RollBuffer(const RollBuffer&) = delete;
  RollBuffer& operator=(const RollBuffer&) = delete;

  /// The capacity.
  Int32 BufferSize() const noexcept { return buffer_size_; }
  /// Sets the capacity and drops all items, also where the capacity is the same as before.
  /// Failure 5000 for 0 or less.
  void BufferSize(Int32 New_BufferSize);

  /// How many items there are.
  Int32 Count() const noexcept { return count_; }

  /// The cursor's position: -1 at BOF and on an empty buffer, `Count()` at EOF.
  Int32 Index() const noexcept { return index_; }
  /// Puts the cursor on an item. Failure 5000 below 0 and from `Count()` up.
  void Index(Int32 New_Index);

  /// A copy of the item at the cursor. Failure 5000 at BOF and EOF.
  Variant CurrentItem() const;
  /// Replaces the item at the cursor. Failure 5000 at BOF and EOF.
  void CurrentItem(const Variant& New_Item);

  /// A copy of the item at position `Index`; the cursor stays. Failure 5000 below 0 and from
  /// `Count()` up.
  Variant Items(Int32 Index) const;

  /// Whether the cursor is before the first item.
  Boolean BOF() const noexcept { return index_ == -1; }
  /// Whether the cursor is on position 0.
  Boolean OnFirst() const noexcept { return index_ == 0; }
  /// Whether the cursor is at `Count()` - 1, as it is on an empty buffer too.
  Boolean OnLast() const noexcept { return index_ == count_ - 1; }

  /// Whether the cursor is after the last item, or the buffer is empty. `AtEOF` and `EOF` are one
  /// member. The standard header `<cstdio>`, and with it most others, defines EOF as a macro, which
  /// is set aside here for the declaration alone and stays in force for whoever includes this
  /// header. Where the macro is defined, write `AtEOF()`, in a call and in a pointer to the member.
  Boolean AtEOF() const noexcept { return index_ == count_ || count_ == 0; }
#pragma push_macro("EOF")
#undef EOF
  Boolean EOF() const noexcept { return AtEOF(); }
#pragma pop_macro("EOF")

  /// Drops all items; the capacity stays.
  void Clear() noexcept;

  /// Adds a copy of `Item` directly after the cursor, drops what followed there, and puts the
  /// cursor on it: on an empty buffer it is the only item, and at BOF it becomes so. At EOF it is
  /// added as with the cursor on the last item. With the cursor on the last position of a full
  /// buffer the oldest item is dropped.
  void AddItem(const Variant& Item);

  /// Puts the cursor on the oldest item. Failure 5000 on an empty buffer.
  void MoveFirst();
  /// Puts the cursor on the newest item. Failure 5000 on an empty buffer.
  void MoveLast();
  /// One forward, from BOF to the first item, from the last item to EOF. Failure 5000 at EOF and on
  /// an empty buffer.
  void MoveNext() {
    if (AtEOF()) FailBeyondLast();
    ++index_;
  }
  /// One back, from EOF to the last item, from the first item to BOF. Failure 5000 at BOF and on an
  /// empty buffer.
  void MovePrevious() {
    if (BOF()) FailBeforeFirst();
    --index_;
  }

 private:
  static constexpr Int32 kDefaultSize = 100;

  [[noreturn]] static void FailBeyondLast();
  [[noreturn]] static void FailBeforeFirst();
  bool IsItem(Int32 position) const noexcept;
  std::size_t PhysicalIndex(Int32 position) const noexcept;
  void MakeRoom(std::size_t place);
  void StandOnNew(Int32 next) noexcept;
  void AddCopy(Int32 next, const Variant& item);

  // The ring, as far as it was ever filled. It turns only once it has its full size, so that
  // `first_` is 0 as long as places are missing at its end.
  std::vector<Variant> items_;
  Int32 buffer_size_ = kDefaultSize;
  Int32 count_ = 0;
  Int32 index_ = -1;
  Int32 first_ = 0;
};

}  // namespace quorl
