#include "quorl/abi/values.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

#include "quorl/abi/bstr.hpp"
#include "quorl/abi/element.hpp"
#include "quorl/abi/foreign_object.hpp"
#include "quorl/abi/safe_array.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/raised_error.hpp"

namespace quorl::abi {
namespace {

// References and arrays nested deeper than this are taken for endless.
constexpr int kMostNested = 64;

Variant ReadVariant(const VARIANT& value, int depth);

template <class Value>
Value At(const void* place) {
  Value value;
  std::memcpy(&value, place, sizeof(value));
  return value;
}

Variant ReadError(std::int32_t code) {
  if (code != DISP_E_PARAMNOTFOUND) Raise(FailureNumber::kTypeMismatch);
  return Missing;
}

// A value of a plain type at a place in memory.
Variant ReadValue(std::uint16_t vt, const void* place, int depth) {
  switch (vt) {
    case VT_I2:
      return At<Int16>(place);
    case VT_I4:
      return At<Int32>(place);
    case VT_R4:
      return At<Single>(place);
    case VT_R8:
      return At<Double>(place);
    case VT_CY:
      return Currency::FromTenThousandths(At<std::int64_t>(place));
    case VT_DATE:
      return Date(At<Double>(place));
    case VT_BSTR:
      return ViewOf(At<BSTR>(place));
    case VT_DISPATCH:
      return ObjectOf(At<QuorlDispatch*>(place));
    case VT_ERROR:
      return ReadError(At<std::int32_t>(place));
    case VT_BOOL:
      return At<std::int16_t>(place) != 0;
    case VT_UI1:
      return At<Byte>(place);
    case VT_VARIANT:
      return ReadVariant(*static_cast<const VARIANT*>(place), depth + 1);
    default:
      Raise(FailureNumber::kTypeMismatch);
  }
}

std::vector<ArrayBound> LeftmostFirst(std::span<const QuorlBound> bounds) {
  std::vector<ArrayBound> result;
  for (std::size_t i = bounds.size(); i-- > 0;) {
    result.push_back({bounds[i].lower, bounds[i].count});
  }
  return result;
}

Variant ReadArray(std::uint16_t vt, const SAFEARRAY* array, int depth) {
  if (array == nullptr) Raise(FailureNumber::kTypeMismatch);
  const bool is_other = array->features != 0 && array->features != vt;
  const std::optional<std::size_t> count = ElementCount(*array, vt);
  if (is_other || !count || vt == VT_ERROR) Raise(FailureNumber::kTypeMismatch);
  Array result(static_cast<VariantType>(vt), LeftmostFirst(BoundsOf(*array)));
  if (vt == VT_UI1) {
    std::copy_n(static_cast<const Byte*>(array->data), *count, result.WritableBytes().begin());
    return result;
  }
  const std::span<Variant> elements = result.WritableElements();
  for (std::size_t i = 0; i < *count; ++i) {
    elements[i] =
        ReadValue(vt, static_cast<const char*>(array->data) + i * array->element_size, depth + 1);
  }
  return result;
}

Variant ReadReference(std::uint16_t vt, const void* place, int depth) {
  if (place == nullptr) Raise(FailureNumber::kTypeMismatch);
  if ((vt & VT_ARRAY) == 0) return ReadValue(vt, place, depth);
  return ReadArray(static_cast<std::uint16_t>(vt & ~VT_ARRAY), At<SAFEARRAY*>(place), depth);
}

Variant ReadVariant(const VARIANT& value, int depth) {
  if (depth > kMostNested) Raise(FailureNumber::kTypeMismatch);
  if (value.vt == VT_EMPTY) return Empty;
  if (value.vt == VT_NULL) return Null;
  if ((value.vt & VT_BYREF) != 0) {
    return ReadReference(static_cast<std::uint16_t>(value.vt & ~VT_BYREF), value.value.reference,
                         depth);
  }
  if ((value.vt & VT_ARRAY) != 0) {
    return ReadArray(static_cast<std::uint16_t>(value.vt & ~VT_ARRAY), value.value.array, depth);
  }
  if (value.vt == VT_VARIANT) Raise(FailureNumber::kTypeMismatch);
  return ReadValue(value.vt, &value.value, depth);
}

struct Writer {
  VARIANT& out;

  void operator()(EmptyState) const { out.vt = VT_EMPTY; }
  void operator()(NullState) const { out.vt = VT_NULL; }
  void operator()(MissingState) const {
    out.vt = VT_ERROR;
    out.value.error = DISP_E_PARAMNOTFOUND;
  }
  void operator()(Byte value) const { Set(VT_UI1, value); }
  void operator()(Int16 value) const { Set(VT_I2, value); }
  void operator()(Int32 value) const { Set(VT_I4, value); }
  void operator()(Single value) const { Set(VT_R4, value); }
  void operator()(Double value) const { Set(VT_R8, value); }
  void operator()(Currency value) const { Set(VT_CY, value.TenThousandths()); }
  void operator()(Date value) const { Set(VT_DATE, value.Days()); }
  void operator()(Boolean value) const {
    Set(VT_BOOL, std::int16_t{value ? kTrueAsNumber : Int16{0}});
  }
  void operator()(const String& value) const { Set(VT_BSTR, NewBstr(value)); }
  void operator()(const Object& value) const { Set(VT_DISPATCH, DispatchOf(value)); }
  void operator()(const Array& value) const;

  template <class Value>
  void Set(int vt, Value value) const {
    std::memcpy(&out.value, &value, sizeof(value));
    out.vt = static_cast<std::uint16_t>(vt);
  }
};

void WriteElement(std::uint16_t vt, void* place, const Variant& element) {
  VARIANT value = ToBinary(element);
  if (vt == VT_VARIANT) {
    std::memcpy(place, &value, sizeof(value));
  } else {
    std::memcpy(place, &value.value, ElementSize(vt));
  }
}

void Writer::operator()(const Array& value) const {
  const auto vt = static_cast<std::uint16_t>(value.ElementType());
  std::vector<QuorlBound> bounds;
  for (const ArrayBound& bound : value.Bounds()) bounds.push_back({bound.count, bound.lower});
  SAFEARRAY* array = SafeArrayCreate(vt, static_cast<std::uint32_t>(bounds.size()), bounds.data());
  if (array == nullptr) Raise(FailureNumber::kOutOfMemory);
  Set(VT_ARRAY | vt, array);
  if (vt == VT_UI1) {
    std::ranges::copy(value.Bytes(), static_cast<Byte*>(array->data));
    return;
  }
  auto* place = static_cast<char*>(array->data);
  for (const Variant& element : value.Elements()) {
    WriteElement(vt, place, element);
    place += array->element_size;
  }
}

}  // namespace

Variant FromBinary(const VARIANT& value) {
  return WithinMemory([&] { return ReadVariant(value, 0); });
}

VARIANT ToBinary(const Variant& value) {
  // Cleared again if an array's element does not come through.
  OwnedVariant result;
  WithinMemory([&] { value.Visit(Writer{*result.Address()}); });
  return result.Detach();
}

void WriteBack(const VARIANT& reference, const Variant& value) {
  if ((reference.vt & VT_BYREF) == 0 || reference.value.reference == nullptr) return;
  const auto vt = static_cast<std::uint16_t>(reference.vt & ~VT_BYREF);
  const bool to_variant = vt == VT_VARIANT;
  if (!to_variant && ElementSize(vt) == 0) Raise(FailureNumber::kTypeMismatch);
  const Variant converted = to_variant ? value : ConvertTo(value, static_cast<VariantType>(vt));
  alignas(VARIANT) char former[sizeof(VARIANT)];
  std::memcpy(former, reference.value.reference, ElementSize(vt));
  WriteElement(vt, reference.value.reference, converted);
  EndElement(vt, former);
}

}  // namespace quorl::abi
