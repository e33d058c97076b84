// The tagged value of every member that takes or gives "anything".
//
// A Variant is a value: copies are independent (arrays share elements until one is written), moves
// are cheap. It is used from one thread at a time. For conversions see convert.hpp, for comparison
// by the library's rules compare.hpp, for multiplication and division arithmetic.hpp.
#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>
#include <variant>

#include "quorl/runtime/array.hpp"
#include "quorl/runtime/currency.hpp"
#include "quorl/runtime/date.hpp"
#include "quorl/runtime/object.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl {

/// What a Variant holds, with the numbers that the binary contract uses.
enum class VariantType : std::uint16_t {
  kEmpty = 0,
  kNull = 1,
  kInt16 = 2,
  kInt32 = 3,
  kSingle = 4,
  kDouble = 5,
  kCurrency = 6,
  kDate = 7,
  kString = 8,
  kObject = 9,
  kMissing = 10,
  kBoolean = 11,
  /// Only as the element type of an array whose elements are of any type.
  kVariant = 12,
  kByte = 17,
  /// Any array; the array knows its own element type.
  kArray = 0x2000,
};

/// The state "no value", as a database field has it.
struct NullState {
  friend constexpr bool operator==(NullState, NullState) noexcept = default;
};
/// The state of an optional argument that was left out.
struct MissingState {
  friend constexpr bool operator==(MissingState, MissingState) noexcept = default;
};
/// The state "never assigned", which a new Variant has.
using EmptyState = std::monostate;

inline constexpr EmptyState Empty{};
inline constexpr NullState Null{};
inline constexpr MissingState Missing{};

namespace detail {

// The number of a content's type; of any other type there is none.
template <class Content>
struct TypeOf;
template <VariantType kType>
using Number = std::integral_constant<VariantType, kType>;
template <>
struct TypeOf<EmptyState> : Number<VariantType::kEmpty> {};
template <>
struct TypeOf<NullState> : Number<VariantType::kNull> {};
template <>
struct TypeOf<MissingState> : Number<VariantType::kMissing> {};
template <>
struct TypeOf<Byte> : Number<VariantType::kByte> {};
template <>
struct TypeOf<Int16> : Number<VariantType::kInt16> {};
template <>
struct TypeOf<Int32> : Number<VariantType::kInt32> {};
template <>
struct TypeOf<Single> : Number<VariantType::kSingle> {};
template <>
struct TypeOf<Double> : Number<VariantType::kDouble> {};
template <>
struct TypeOf<Currency> : Number<VariantType::kCurrency> {};
template <>
struct TypeOf<Date> : Number<VariantType::kDate> {};
template <>
struct TypeOf<Boolean> : Number<VariantType::kBoolean> {};
template <>
struct TypeOf<String> : Number<VariantType::kString> {};
template <>
struct TypeOf<Object> : Number<VariantType::kObject> {};
template <>
struct TypeOf<Array> : Number<VariantType::kArray> {};

}  // namespace detail

/// A number or truth value in exactly its own type, so that no pointer or wider integer slips into
/// a Variant as a Boolean.
template <class Plain>
concept PlainScalar =
    std::same_as<Plain, Boolean> || std::same_as<Plain, Byte> || std::same_as<Plain, Int16> ||
    std::same_as<Plain, Int32> || std::same_as<Plain, Single> || std::same_as<Plain, Double>;

/// A value of one of the types of `VariantType`. Copying one throws std::bad_alloc where memory
/// does not hold the copy, as the standard strings do; members of the library raise failure 7
/// instead.
///
///     Variant a;                    // Empty
///     Variant b = 5;                // Int32
///     Variant c = Int16{5};         // Int16
///     Variant d = 2.5;              // Double
///     Variant e = u"text";          // String
///     Variant f = true;             // Boolean
///     Variant g = Null;             // Null
///     Variant h = 12.50_cy;         // Currency
class QUORL_API Variant {
 public:
  Variant() noexcept = default;
  Variant(EmptyState) noexcept {}
  Variant(NullState) noexcept : type_(VariantType::kNull) {}
  Variant(MissingState) noexcept : type_(VariantType::kMissing) {}
  template <PlainScalar Plain>
  Variant(Plain value) noexcept {
    HoldWord(value);
  }
  Variant(Currency value) noexcept { HoldWord(value); }
  Variant(Date value) noexcept { HoldWord(value); }
  Variant(String value) noexcept { Hold<String>(std::move(value)); }
  Variant(StringView value) { Hold<String>(value); }
  /// A null pointer gives the empty text.
  Variant(const char16_t* value) : Variant(value == nullptr ? StringView() : StringView(value)) {}
  Variant(Object value) noexcept { Hold<Object>(std::move(value)); }
  Variant(Array value) noexcept { Hold<Array>(std::move(value)); }

  Variant(const Variant& other) {
    if (!other.Owns()) {
      HoldPlain(other);
    } else if (other.Holds<String>()) {
      Hold<String>(other.As<String>());
    } else {
      HoldReferenceOf(other);
    }
  }
  Variant(Variant&& other) noexcept { other.Owns() ? HoldContentOf(other) : HoldPlain(other); }
  ~Variant() {
    if (!Owns()) return;
    Holds<String>() ? std::destroy_at(&As<String>()) : ReleaseReference();
  }
  // The new content is taken before the old one goes, of which it may be an element; and the old
  // one goes when the new one is there.
  Variant& operator=(const Variant& other) { return *this = Variant(other); }
  Variant& operator=(Variant&& other) noexcept {
    if (!Owns() && !other.Owns()) {
      HoldPlain(other);
      return *this;
    }
    Variant taken(std::move(other));
    const Variant former(std::move(*this));
    this->~Variant();
    new (this) Variant(std::move(taken));
    return *this;
  }

  VariantType Type() const noexcept { return type_; }
  bool IsEmpty() const noexcept { return Holds<EmptyState>(); }
  bool IsNull() const noexcept { return Holds<NullState>(); }
  bool IsMissing() const noexcept { return Holds<MissingState>(); }

  /// Whether it holds a `Content` now: Int32, String, Object and so on. No conversion.
  template <class Content>
  bool Holds() const noexcept {
    return type_ == detail::TypeOf<Content>::value;
  }
  /// The content, null if it is of another type; valid until the Variant is assigned or gone.
  template <class Content>
  const Content* If() const noexcept {
    return Holds<Content>() ? &As<Content>() : nullptr;
  }
  template <class Content>
  Content* If() noexcept {
    return Holds<Content>() ? &As<Content>() : nullptr;
  }
  /// Calls `visitor` with the content as its own type.
  template <class Visitor>
  decltype(auto) Visit(Visitor&& visitor) const {
    switch (type_) {
      case VariantType::kNull:
        return visitor(Null);
      case VariantType::kMissing:
        return visitor(Missing);
      case VariantType::kByte:
        return visitor(As<Byte>());
      case VariantType::kInt16:
        return visitor(As<Int16>());
      case VariantType::kInt32:
        return visitor(As<Int32>());
      case VariantType::kSingle:
        return visitor(As<Single>());
      case VariantType::kDouble:
        return visitor(As<Double>());
      case VariantType::kCurrency:
        return visitor(As<Currency>());
      case VariantType::kDate:
        return visitor(As<Date>());
      case VariantType::kBoolean:
        return visitor(As<Boolean>());
      case VariantType::kString:
        return visitor(As<String>());
      case VariantType::kObject:
        return visitor(As<Object>());
      case VariantType::kArray:
        return visitor(As<Array>());
      default:
        return visitor(Empty);
    }
  }

  /// The same type and the same content, without any conversion: Int16 5 is not Int32 5 here, and
  /// two Nulls are the same. Failure 7 as for arrays. For the library's comparison see compare.hpp.
  friend bool operator==(const Variant& a, const Variant& b) {
    return a.type_ == b.type_ && a.Visit([&b]<class Content>(const Content& content) {
      return content == *b.If<Content>();
    });
  }

 private:
  template <class Content, class... From>
  void Hold(From&&... from) {
    new (bytes_) Content(std::forward<From>(from)...);
    type_ = detail::TypeOf<Content>::value;
  }

  // Writes all eight bytes at once, as HoldPlain reads them: a processor waits where one read takes
  // what two writes left.
  template <class Plain>
  void HoldWord(Plain value) noexcept {
    std::uint64_t word = 0;
    std::memcpy(&word, &value, sizeof value);
    std::memcpy(bytes_, &word, sizeof word);
    type_ = detail::TypeOf<Plain>::value;
  }

  // What it is known to hold.
  template <class Content>
  const Content& As() const noexcept {
    return *std::launder(reinterpret_cast<const Content*>(bytes_));
  }
  template <class Content>
  Content& As() noexcept {
    return *std::launder(reinterpret_cast<Content*>(bytes_));
  }

  // Texts, objects and arrays own something; the content of all else is its first eight bytes.
  bool Owns() const noexcept { return Holds<String>() || Holds<Object>() || Holds<Array>(); }
  void HoldPlain(const Variant& other) noexcept {
    std::memmove(bytes_, other.bytes_, sizeof plain_);  // `other` may be this one.
    type_ = other.type_;
  }
  void HoldContentOf(Variant& owner) noexcept;
  // Of an object or an array.
  void HoldReferenceOf(const Variant& owner) noexcept;
  void ReleaseReference() noexcept;

  union {
    std::uint64_t plain_ = 0;
    std::byte bytes_[std::max({sizeof(String), sizeof(Object), sizeof(Array)})];
  };
  VariantType type_ = VariantType::kEmpty;
};

}  // namespace quorl
