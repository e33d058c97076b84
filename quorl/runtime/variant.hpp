// The tagged value of every member that takes or gives "anything".
//
// A Variant is a value: copies are independent (arrays share elements until one is written), moves
// are cheap. It is used from one thread at a time. For conversions see convert.hpp, for comparison
// by the library's rules compare.hpp, for multiplication and division arithmetic.hpp.
#pragma once

#include <concepts>
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
  Variant(NullState) noexcept : state_(Null) {}
  Variant(MissingState) noexcept : state_(Missing) {}
  template <PlainScalar Plain>
  Variant(Plain value) noexcept : state_(value) {}
  Variant(Currency value) noexcept : state_(value) {}
  Variant(Date value) noexcept : state_(value) {}
  Variant(String value) noexcept : state_(std::move(value)) {}
  Variant(StringView value) : state_(String(value)) {}
  /// A null pointer gives the empty text.
  Variant(const char16_t* value) : state_(value == nullptr ? String() : String(value)) {}
  Variant(Object value) noexcept : state_(std::move(value)) {}
  Variant(Array value) noexcept : state_(std::move(value)) {}

  Variant(const Variant&) = default;
  Variant(Variant&&) noexcept = default;
  ~Variant() = default;
  // The new content is taken before the old one goes: it may be an element of it.
  Variant& operator=(const Variant& other) { return *this = Variant(other); }
  Variant& operator=(Variant&& other) noexcept {
    auto taken = std::move(other.state_);
    state_ = std::move(taken);
    return *this;
  }

  VariantType Type() const noexcept;
  bool IsEmpty() const noexcept { return Holds<EmptyState>(); }
  bool IsNull() const noexcept { return Holds<NullState>(); }
  bool IsMissing() const noexcept { return Holds<MissingState>(); }

  /// Whether it holds a `Content` now: Int32, String, Object and so on. No conversion.
  template <class Content>
  bool Holds() const noexcept {
    return std::holds_alternative<Content>(state_);
  }
  /// The content, null if it is of another type; valid until the Variant is assigned or gone.
  template <class Content>
  const Content* If() const noexcept {
    return std::get_if<Content>(&state_);
  }
  template <class Content>
  Content* If() noexcept {
    return std::get_if<Content>(&state_);
  }
  /// Calls `visitor` with the content as its own type.
  template <class Visitor>
  decltype(auto) Visit(Visitor&& visitor) const {
    return std::visit(std::forward<Visitor>(visitor), state_);
  }

  /// The same type and the same content, without any conversion: Int16 5 is not Int32 5 here, and
  /// two Nulls are the same. For the library's comparison see compare.hpp.
  friend bool operator==(const Variant&, const Variant&) = default;

 private:
  std::variant<EmptyState, NullState, MissingState, Byte, Int16, Int32, Single, Double, Currency,
               Date, Boolean, String, Object, Array>
      state_;
};

}  // namespace quorl
