// Arrays as a Variant holds them: an element type, bounds for each dimension, and the elements.
//
// An Array is a value. Copies share their elements until one of them is written, which then gets
// elements of its own. Subscripts start where the bounds say; the leftmost one runs fastest in
// storage.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include "quorl/runtime/types.hpp"

namespace quorl {

class Variant;
enum class VariantType : std::uint16_t;

/// One dimension: its lowest subscript and how many there are.
struct ArrayBound {
  Int32 lower = 0;
  std::uint32_t count = 0;

  friend bool operator==(const ArrayBound&, const ArrayBound&) = default;
};

/// Holds bytes as bytes and every other element type as Variants of that type. One that has been
/// moved from may only be assigned to or destroyed.
class QUORL_API Array {
 public:
  /// An array of `element` with every element at its type's zero: 0, the empty text, Empty.
  /// At least one dimension, and any count from 0 up. Failure 5 without a dimension or for an
  /// element type that no element can have (Empty, Null, Missing, an array); 7 for more elements
  /// than memory holds; 9 for a dimension that reaches beyond the highest Int32.
  Array(VariantType element, std::span<const ArrayBound> bounds);
  Array(VariantType element, std::initializer_list<ArrayBound> bounds);

  /// One dimension from `lower` to `upper`, both included. Failure 9 where upper is below lower;
  /// the others as above.
  static Array WithBounds(VariantType element, Int32 lower, Int32 upper);
  /// Bytes, with bounds 0 to size - 1; a size of 0 is allowed. Failure 7 above 2^31 - 1 bytes
  /// and where memory is short.
  static Array OfBytes(std::vector<Byte> bytes);
  /// Texts, with bounds 0 to size - 1; a size of 0 is allowed. Failure 7 as for bytes.
  static Array OfStrings(std::span<const String> texts);

  VariantType ElementType() const noexcept;
  std::size_t Dimensions() const noexcept;
  /// Bounds of a dimension; dimensions count from 0, leftmost first. Failure 9 beyond the last.
  ArrayBound Bound(std::size_t dimension) const;
  std::span<const ArrayBound> Bounds() const noexcept;
  /// The lowest and highest subscript of a dimension; the highest of an empty one is below it.
  /// Failure 9 as for `Bound`, and 6 for the highest of an empty one at the lowest Int32.
  Int32 LowerBound(std::size_t dimension = 0) const;
  Int32 UpperBound(std::size_t dimension = 0) const;
  /// The number of elements in all dimensions together.
  std::size_t Size() const noexcept;

  /// A copy of the element at the subscripts, leftmost first. Failure 9 for a subscript out of
  /// bounds or a wrong number of them, 7 where memory does not hold the copy.
  Variant Get(std::span<const Int32> subscripts) const;
  Variant Get(std::initializer_list<Int32> subscripts) const;
  /// Replaces an element; the value is converted to the element type. Failure 9 as for `Get`, those
  /// of the conversion (see convert.hpp), and 7 where memory does not hold elements of its own.
  void Set(std::span<const Int32> subscripts, const Variant& value);
  void Set(std::initializer_list<Int32> subscripts, const Variant& value);

  /// The bytes of an array of bytes, valid until the array is written or gone. Failure 13 for any
  /// other element type.
  std::span<const Byte> Bytes() const;
  /// The elements in storage order of an array of anything but bytes, valid as above. Failure 13
  /// for an array of bytes.
  std::span<const Variant> Elements() const;
  /// The same for writing; the caller keeps to the element type and copies no array meanwhile.
  /// Failure 13 as above, and 7 where memory does not hold elements of its own.
  std::span<Byte> WritableBytes();
  std::span<Variant> WritableElements();

  /// Equal in element type, bounds and every element, without conversion, however deep arrays hold
  /// arrays. Failure 7 where memory does not suffice to compare them.
  friend QUORL_API bool operator==(const Array& a, const Array& b);

 private:
  struct Storage;
  class Comparison;

  std::size_t Position(std::span<const Int32> subscripts) const;
  Storage& Writable();

  std::shared_ptr<Storage> storage_;
};

}  // namespace quorl
