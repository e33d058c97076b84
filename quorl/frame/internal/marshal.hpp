// The types of members between C++, a slot of a table, and a Variant of a call by name: one
// specialisation a type.
//
// For a parameter: `In` is the slot's argument, `FromSlot` holds it as C++ wants it, `FromGiven`
// the same from an argument of a call by name; both convert to the parameter. For a result: `Out`
// is what the slot's result pointer points to, and `Write` fills it; `Former` takes over the old
// content of the result slot and frees it after the call, because the caller may have passed that
// very text as an argument. `kType` is what the description says.
#pragma once

#include <type_traits>
#include <utility>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/dispatch_proxy.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/frame/internal/component_object.hpp"
#include "quorl/frame/internal/member_row.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl::frame {

/// The published name of an enumeration; specialised beside the catalogue.
template <class Enumeration>
struct EnumerationName {
  static_assert(sizeof(Enumeration) == 0,
                "this enumeration is not published: see enumerations.hpp");
  static constexpr StringView kName{};
};

/// What follows the assertion only keeps the compiler from saying more.
template <class Type>
struct Marshal {
  static_assert(sizeof(std::type_identity<Type>) == 0,
                "members cannot take or give this type: specialise Marshal in marshal.hpp");
  static constexpr TypeRow kType{};
  using In = int;
  using Out = int;
  struct FromSlot {
    template <class Source>
    explicit FromSlot(const Source&) {}
    operator Type() const;
  };
  using FromGiven = FromSlot;
  using Former = FromSlot;
  static void Write(Out*, const Type&) {}
};

/// What all plain types share. `Marshal<Type>` narrows what a slot or a VARIANT of the type holds,
/// and converts a Variant.
template <class Type, class Slot>
struct PlainMarshal {
  using In = Slot;
  struct FromSlot {
    Type value;
    explicit FromSlot(In in) : value(Marshal<Type>::Narrow(in)) {}
    operator Type() const { return value; }
  };
  struct FromGiven {
    Type value;
    explicit FromGiven(const GivenArgument& given) : value(Marshal<Type>::Read(given)) {}
    operator Type() const { return value; }
  };
  static Type Read(const GivenArgument& given) {
    using Known = Marshal<Type>;
    if (const VARIANT* lent = given.Lent(Known::kType.type)) {
      return Known::Narrow(abi::ValueAt<typename Known::Out>(&lent->value));
    }
    return Known::Convert(given.Take());
  }
  struct Former {
    template <class Out>
    explicit Former(Out*) {}
  };
};

template <>
struct Marshal<Int16> : PlainMarshal<Int16, std::int32_t> {
  static constexpr TypeRow kType{VariantType::kInt16};
  using Out = std::int16_t;
  static Int16 Narrow(std::int32_t in) { return CheckedInt16(in); }
  static Int16 Convert(const Variant& value) { return ToInt16(value); }
  static Int16 Read(const GivenArgument& given) {
    // Most hosts have one whole number alone, an Int32.
    if (const VARIANT* lent = given.Lent(VariantType::kInt32)) return Narrow(lent->value.i4);
    return PlainMarshal::Read(given);
  }
  static void Write(Out* out, Int16 value) { *out = value; }
};

template <>
struct Marshal<Int32> : PlainMarshal<Int32, std::int32_t> {
  static constexpr TypeRow kType{VariantType::kInt32};
  using Out = std::int32_t;
  static Int32 Narrow(std::int32_t in) { return in; }
  static Int32 Convert(const Variant& value) { return ToInt32(value); }
  static void Write(Out* out, Int32 value) { *out = value; }
};

template <class Enumeration>
requires std::is_enum_v<Enumeration>
struct Marshal<Enumeration> : PlainMarshal<Enumeration, std::int32_t> {
  static constexpr TypeRow kType{VariantType::kInt32, EnumerationName<Enumeration>::kName};
  using Out = std::int32_t;
  static Enumeration Narrow(std::int32_t in) { return static_cast<Enumeration>(in); }
  static Enumeration Convert(const Variant& value) { return Narrow(ToInt32(value)); }
  static void Write(Out* out, Enumeration value) { *out = value; }
};

template <>
struct Marshal<Double> : PlainMarshal<Double, double> {
  static constexpr TypeRow kType{VariantType::kDouble};
  using Out = double;
  static Double Narrow(double in) { return in; }
  static Double Convert(const Variant& value) { return ToDouble(value); }
  static void Write(Out* out, Double value) { *out = value; }
};

template <>
struct Marshal<Date> : PlainMarshal<Date, double> {
  static constexpr TypeRow kType{VariantType::kDate};
  using Out = double;
  static Date Narrow(double in) { return Date(in); }
  static Date Convert(const Variant& value) { return ToDate(value); }
  // A Date outside the calendar is a failure here.
  static Date Read(const GivenArgument& given) { return Convert(given.Take()); }
  static void Write(Out* out, Date value) { *out = value.Days(); }
};

template <>
struct Marshal<Currency> : PlainMarshal<Currency, std::int64_t> {
  static constexpr TypeRow kType{VariantType::kCurrency};
  using Out = std::int64_t;
  static Currency Narrow(std::int64_t in) { return Currency::FromTenThousandths(in); }
  static Currency Convert(const Variant& value) { return ToCurrency(value); }
  static void Write(Out* out, Currency value) { *out = value.TenThousandths(); }
};

template <>
struct Marshal<Boolean> : PlainMarshal<Boolean, std::int16_t> {
  static constexpr TypeRow kType{VariantType::kBoolean};
  using Out = std::int16_t;
  static Boolean Narrow(std::int16_t in) { return in != 0; }
  static Boolean Convert(const Variant& value) { return ToBoolean(value); }
  static void Write(Out* out, Boolean value) { *out = value ? kTrueAsNumber : Int16{0}; }
};

template <>
struct Marshal<StringView> {
  static constexpr TypeRow kType{VariantType::kString};
  using In = BSTR;
  struct FromSlot {
    StringView text;
    explicit FromSlot(In in) : text(abi::ViewOf(in)) {}
    operator StringView() const { return text; }
  };
  struct FromGiven {
    String converted;
    StringView text;
    explicit FromGiven(const GivenArgument& given) {
      // A text is lent as it stands.
      if (const VARIANT* lent = given.Lent(VariantType::kString)) {
        text = abi::ViewOf(lent->value.bstr);
      } else if (given.read != nullptr && given.read->Holds<String>()) {
        text = *given.read->If<String>();
      } else {
        converted = ToString(given.Take());
        text = converted;
      }
    }
    FromGiven(const FromGiven&) = delete;
    FromGiven& operator=(const FromGiven&) = delete;
    operator StringView() const { return text; }
  };
};

/// As a result, and as a field that a host writes.
template <>
struct Marshal<String> : Marshal<StringView> {
  using Out = BSTR;
  class Former {
   public:
    explicit Former(Out* out) : text_(std::exchange(*out, nullptr)) {}
    Former(const Former&) = delete;
    Former& operator=(const Former&) = delete;
    ~Former() { SysFreeString(text_); }

   private:
    BSTR text_;
  };
  static void Write(Out* out, const String& value) { *out = abi::NewBstr(value); }
};

template <>
struct Marshal<Variant> {
  static constexpr TypeRow kType{VariantType::kVariant};
  using Out = VARIANT;
  using Former = abi::ClearedResult;
  static void Write(Out* out, const Variant& value) { abi::ToBinary(value, *out); }
};

template <>
struct Marshal<const Variant&> {
  static constexpr TypeRow kType{VariantType::kVariant};
  using In = VARIANT;
  struct FromSlot {
    Variant value;
    explicit FromSlot(const In& in) : value(abi::FromBinary(in)) {}
    operator const Variant&() const { return value; }
  };
  struct FromGiven {
    Variant value;
    explicit FromGiven(const GivenArgument& given) : value(given.Take()) {}
    operator const Variant&() const { return value; }
  };
};

template <>
struct Marshal<const Object&> {
  static constexpr TypeRow kType{VariantType::kObject};
  using In = QuorlDispatch*;
  struct FromSlot {
    Object value;
    explicit FromSlot(In in) : value(abi::ObjectOf(in)) {}
    operator const Object&() const { return value; }
  };
  struct FromGiven {
    Object value;
    explicit FromGiven(const GivenArgument& given) : value(ToObject(given.Take())) {}
    operator const Object&() const { return value; }
  };
};

/// An argument that the member writes back.
template <>
struct Marshal<Int16&> {
  static constexpr TypeRow kType{VariantType::kInt16, {}, true};
  using In = std::int16_t*;
  struct FromSlot {
    Int16* place;
    explicit FromSlot(In in) : place(in) {}
    operator Int16&() const { return *place; }
  };
  struct FromGiven {
    Variant* place;  // null for a value that was not passed by reference
    Int16 value;
    explicit FromGiven(const GivenArgument& given)
        : place(given.read), value(ToInt16(given.Take())) {}
    FromGiven(const FromGiven&) = delete;
    FromGiven& operator=(const FromGiven&) = delete;
    ~FromGiven() {
      if (place != nullptr) *place = value;
    }
    operator Int16&() { return value; }
  };
};

/// Whether a slot lacks the place where it is to write an argument back.
template <class In>
bool IsAbsent(const In&) {
  return false;
}
inline bool IsAbsent(std::int16_t* const& place) { return place == nullptr; }

/// Whether what a slot is given can lead to code of a host.
template <class Value>
bool MayHoldObject(const Value&) {
  return false;
}
inline bool MayHoldObject(const VARIANT& value) { return abi::MayHoldObject(value.vt); }
inline bool MayHoldObject(QuorlDispatch* const& object) { return object != nullptr; }

template <>
struct Marshal<Registry&> {
  static constexpr TypeRow kType{VariantType::kObject, u"Registry"};
  using In = QuorlDispatch*;
  struct FromSlot {
    Registry& value;
    explicit FromSlot(In in) : value(RegistryBehind(in)) {}
    operator Registry&() const { return value; }
  };
  struct FromGiven {
    Registry& value;
    explicit FromGiven(const GivenArgument& given)
        : value(RegistryBehind(ToObject(given.Take()))) {}
    operator Registry&() const { return value; }
  };
};

}  // namespace quorl::frame
