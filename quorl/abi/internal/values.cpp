#include "quorl/abi/internal/values.hpp"

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/dispatch_proxy.hpp"
#include "quorl/abi/internal/element.hpp"
#include "quorl/abi/internal/safe_array.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl::abi {

using namespace internal;
namespace {

// Counts one level of nesting as long as it lives.
class Level {
 public:
  explicit Level(int& depth) : depth_(depth) {
    if (depth >= kMostNested) Raise(FailureNumber::kTypeMismatch);
    ++depth_;
  }
  ~Level() { --depth_; }
  Level(const Level&) = delete;
  Level& operator=(const Level&) = delete;

 private:
  int& depth_;
};

Variant ReadError(std::int32_t code) {
  if (code != DISP_E_PARAMNOTFOUND) Raise(FailureNumber::kTypeMismatch);
  return Missing;
}

std::vector<ArrayBound> LeftmostFirst(std::span<const QuorlBound> bounds) {
  std::vector<ArrayBound> result;
  for (std::size_t i = bounds.size(); i-- > 0;) {
    result.push_back({bounds[i].lower, bounds[i].count});
  }
  return result;
}

// Reads one value with all that it leads to.
class Reader {
 public:
  Variant Read(const VARIANT& value) {
    if (value.vt == VT_EMPTY) return Empty;
    if (value.vt == VT_NULL) return Null;
    const auto type = static_cast<std::uint16_t>(value.vt & ~(VT_BYREF | VT_ARRAY));
    if ((value.vt & VT_BYREF) != 0) {
      return ReadReference(type, (value.vt & VT_ARRAY) != 0, value.value.reference);
    }
    if ((value.vt & VT_ARRAY) != 0) return ReadArray(type, value.value.array);
    return ReadValue(type, &value.value);
  }

 private:
  Variant ReadReference(std::uint16_t type, bool is_array, const void* place) {
    if (place == nullptr) Raise(FailureNumber::kTypeMismatch);
    return is_array ? ReadArray(type, ValueAt<SAFEARRAY*>(place)) : ReadElement(type, place);
  }

  // What an array's element or a reference may be: a value, or a VARIANT with a value of its own.
  Variant ReadElement(std::uint16_t type, const void* place) {
    if (type != VT_VARIANT) return ReadValue(type, place);
    const Level level(depth_);
    return Read(ValueAt<VARIANT>(place));
  }

  // A value of a single type at a place in memory.
  Variant ReadValue(std::uint16_t type, const void* place) {
    if (IsNumber(type)) return NumberAt(type, place);
    switch (type) {
      case VT_BSTR:
        return ViewOf(ValueAt<BSTR>(place));
      case VT_DISPATCH:
        return ObjectOf(ValueAt<QuorlDispatch*>(place));
      case VT_ERROR:
        return ReadError(ValueAt<std::int32_t>(place));
      default:
        Raise(FailureNumber::kTypeMismatch);
    }
  }

  Variant ReadArray(std::uint16_t type, const SAFEARRAY* array) {
    const std::optional<std::size_t> count = ElementCount(array, type);
    if (!count || type == VT_ERROR) Raise(FailureNumber::kTypeMismatch);
    TakeRoom(type == VT_UI1 ? *count : *count * sizeof(Variant));
    const Level level(array_depth_);
    Array result(static_cast<VariantType>(type), LeftmostFirst(BoundsOf(*array)));
    const auto* place = static_cast<const char*>(array->data);
    if (type == VT_UI1) {
      std::copy_n(reinterpret_cast<const Byte*>(place), *count, result.WritableBytes().begin());
      return result;
    }
    for (Variant& element : result.WritableElements()) {
      element = ReadElement(type, place);
      place += array->element_size;
    }
    return result;
  }

  // The outermost array may be as large as memory.
  void TakeRoom(std::size_t bytes) {
    if (array_depth_ == 0) return;
    if (bytes >= room_) Raise(FailureNumber::kTypeMismatch);
    room_ -= bytes + 1;
  }

  int depth_ = 0;
  int array_depth_ = 0;
  std::size_t room_ = kMostNestedBytes;
};

// Writes one value with all that it holds. `depth` is that of the arrays around it.
struct Writer {
  VARIANT& out;
  int& depth;

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

void Write(const Variant& value, VARIANT& out, int& depth) {
  out = VARIANT{};
  value.Visit(Writer{out, depth});
}

void PutElement(std::uint16_t vt, void* place, const VARIANT& value) {
  if (vt == VT_VARIANT) {
    std::memcpy(place, &value, sizeof(value));
  } else {
    std::memcpy(place, &value.value, ElementSize(vt));
  }
}

void WriteElements(std::span<const Variant> elements, std::uint16_t vt, SAFEARRAY& array,
                   int& depth) {
  auto* place = static_cast<char*>(array.data);
  for (const Variant& element : elements) {
    VARIANT binary;
    Write(element, binary, depth);
    PutElement(vt, place, binary);
    place += array.element_size;
  }
}

void Writer::operator()(const Array& value) const {
  const auto vt = static_cast<std::uint16_t>(value.ElementType());
  std::vector<QuorlBound> bounds;
  for (const ArrayBound& bound : value.Bounds()) bounds.push_back({bound.count, bound.lower});
  SAFEARRAY* array = SafeArrayCreate(vt, static_cast<std::uint32_t>(bounds.size()), bounds.data());
  if (array == nullptr) Raise(FailureNumber::kOutOfMemory);
  // Freed again if an element does not come through.
  OwnedVariant whole;
  Writer{*whole.Address(), depth}.Set(VT_ARRAY | vt, array);
  const Level level(depth);
  if (vt == VT_UI1) {
    std::ranges::copy(value.Bytes(), static_cast<Byte*>(array->data));
  } else {
    WriteElements(value.Elements(), vt, *array, depth);
  }
  out = whole.Detach();
}

bool IsReference(const VARIANT& value) {
  return (value.vt & VT_BYREF) != 0 && value.value.reference != nullptr;
}

// Whether what it points to is a VARIANT that is a reference again.
bool LeadsToReference(const VARIANT& value) {
  return value.vt == (VT_BYREF | VT_VARIANT) && IsReference(value) &&
         IsReference(ValueAt<VARIANT>(value.value.reference));
}

}  // namespace

Variant ReadBinary(const VARIANT& value) {
  return WithinMemory([&] { return Reader().Read(value); });
}

void WriteBinary(const Variant& value, VARIANT& out) {
  int depth = 0;
  WithinMemory([&] { Write(value, out, depth); });
}

void WriteBack(const VARIANT& reference, const Variant& value) {
  VARIANT target = reference;
  for (int i = 0; i < kMostNested && LeadsToReference(target); ++i) {
    target = ValueAt<VARIANT>(target.value.reference);
  }
  const auto type = static_cast<std::uint16_t>(target.vt & ~VT_BYREF);
  if (!IsReference(target) || ElementSize(type) == 0) return;
  const Variant converted =
      type == VT_VARIANT ? value : ConvertTo(value, static_cast<VariantType>(type));
  OwnedVariant binary(converted);
  alignas(VARIANT) char former[sizeof(VARIANT)];
  std::memcpy(former, target.value.reference, ElementSize(type));
  PutElement(type, target.value.reference, binary.Detach());
  FreeElement(type, former);
}

}  // namespace quorl::abi
