#include "quorl/abi/internal/safe_array.hpp"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "quorl/abi/internal/element.hpp"

namespace quorl::abi {
namespace {

// `features` keeps the element type in its four highest bits, which are 0 in an array that a host
// laid out by itself, and below them what kind of thing has to be freed.
constexpr int kTypeShift = 12;
constexpr std::uint16_t kBytesAsType = 13;

std::uint16_t FeaturesFor(std::uint16_t vt) {
  const unsigned type = vt == VT_UI1 ? kBytesAsType : vt;
  const unsigned owned = vt == VT_BSTR       ? QUORL_ARRAY_OF_TEXTS
                         : vt == VT_DISPATCH ? QUORL_ARRAY_OF_OBJECTS
                         : vt == VT_VARIANT  ? QUORL_ARRAY_OF_VARIANTS
                                             : 0;
  return static_cast<std::uint16_t>(type << kTypeShift | owned);
}

// The type that the array was made for; 0 in an array of a host's own.
std::uint16_t TypeOf(const SAFEARRAY& array) {
  const auto type = static_cast<std::uint16_t>(array.features >> kTypeShift);
  return type == kBytesAsType ? std::uint16_t{VT_UI1} : type;
}

// The one limit of an array's size.
constexpr std::size_t kMostBytes = std::numeric_limits<std::int32_t>::max();

std::size_t DescriptorSize(std::size_t dimensions) {
  return offsetof(SAFEARRAY, bounds) + dimensions * sizeof(QuorlBound);
}

// Bounds as they follow each other in memory after the descriptor's fixed part.
QuorlBound* FirstBound(SAFEARRAY& array) {
  return reinterpret_cast<QuorlBound*>(reinterpret_cast<char*>(&array) +
                                       offsetof(SAFEARRAY, bounds));
}

bool IsBound(const QuorlBound& bound) {
  return std::int64_t{bound.lower} + bound.count - 1 <= std::numeric_limits<std::int32_t>::max();
}

// The product of the counts; none if it cannot be.
std::optional<std::size_t> Product(std::span<const QuorlBound> bounds, std::size_t element_size) {
  std::size_t count = 1;
  for (const QuorlBound& bound : bounds) {
    if (!IsBound(bound)) return std::nullopt;
    if (bound.count != 0 && count > kMostBytes / element_size / bound.count) return std::nullopt;
    count *= bound.count;
  }
  return count;
}

SAFEARRAY* NewArray(std::uint16_t vt, std::span<const QuorlBound> bounds) {
  const std::size_t size = ElementSize(vt);
  const std::optional<std::size_t> count = Product(bounds, size);
  if (!count) return nullptr;
  auto* array = static_cast<SAFEARRAY*>(std::calloc(1, DescriptorSize(bounds.size())));
  void* data = std::calloc(*count == 0 ? 1 : *count, size);
  if (array == nullptr || data == nullptr) {
    std::free(array);
    std::free(data);
    return nullptr;
  }
  array->dimensions = static_cast<std::uint16_t>(bounds.size());
  array->features = FeaturesFor(vt);
  array->element_size = static_cast<std::uint32_t>(size);
  array->data = data;
  std::memcpy(FirstBound(*array), bounds.data(), bounds.size_bytes());
  return array;
}

void FreeArray(SAFEARRAY* array, std::size_t count) {
  auto* element = static_cast<char*>(array->data);
  const std::uint16_t vt = TypeOf(*array);
  for (std::size_t i = 0; IsOwning(vt) && i < count; ++i) {
    FreeElement(vt, element + i * array->element_size);
  }
  std::free(array->data);
  std::free(array);
}

// The place of an element; null for a subscript out of bounds.
char* PlaceOf(const SAFEARRAY& array, const std::int32_t* subscripts) {
  const std::span<const QuorlBound> bounds = BoundsOf(array);
  std::size_t position = 0;
  std::size_t stride = 1;
  for (std::size_t i = 0; i < bounds.size(); ++i) {
    const QuorlBound& bound = bounds[bounds.size() - 1 - i];
    const std::int64_t offset = std::int64_t{subscripts[i]} - bound.lower;
    if (offset < 0 || offset >= bound.count) return nullptr;
    position += stride * static_cast<std::size_t>(offset);
    stride *= bound.count;
  }
  return static_cast<char*>(array.data) + position * array.element_size;
}

bool IsOurs(const SAFEARRAY* array) {
  return array != nullptr && ElementCount(array, TypeOf(*array)).has_value();
}

const QuorlBound* BoundAt(const SAFEARRAY* array, std::uint32_t dimension) {
  if (dimension == 0 || dimension > array->dimensions) return nullptr;
  return &BoundsOf(*array)[array->dimensions - dimension];
}

}  // namespace

std::span<const QuorlBound> BoundsOf(const SAFEARRAY& array) noexcept {
  return {FirstBound(const_cast<SAFEARRAY&>(array)), array.dimensions};
}

std::optional<std::size_t> ElementCount(const SAFEARRAY* array, std::uint16_t vt) noexcept {
  const std::size_t size = ElementSize(vt);
  if (array == nullptr || size == 0 || array->element_size != size) return std::nullopt;
  const bool is_made_for_others = TypeOf(*array) != 0 && TypeOf(*array) != vt;
  if (is_made_for_others || array->dimensions == 0 || array->dimensions > kMostDimensions) {
    return std::nullopt;
  }
  const std::optional<std::size_t> count = Product(BoundsOf(*array), size);
  if (count && *count != 0 && array->data == nullptr) return std::nullopt;
  return count;
}

HRESULT CopyArray(std::uint16_t vt, const SAFEARRAY* source, SAFEARRAY** copy) noexcept {
  *copy = nullptr;
  if (source == nullptr) return S_OK;
  const std::optional<std::size_t> count = ElementCount(source, vt);
  if (!count) return E_INVALIDARG;
  if (!MayCopy(*count * source->element_size)) return E_OUTOFMEMORY;
  SAFEARRAY* made = NewArray(vt, BoundsOf(*source));
  if (made == nullptr) return E_OUTOFMEMORY;
  if (!IsOwning(vt) && *count != 0) {
    std::memcpy(made->data, source->data, *count * source->element_size);
  }
  for (std::size_t i = 0; IsOwning(vt) && i < *count; ++i) {
    const std::size_t at = i * source->element_size;
    const HRESULT code = CopyElement(vt, static_cast<char*>(made->data) + at,
                                     static_cast<const char*>(source->data) + at);
    if (code != S_OK) {
      FreeArray(made, *count);
      return code;
    }
  }
  *copy = made;
  return S_OK;
}

}  // namespace quorl::abi

using namespace quorl::abi;

extern "C" {

SAFEARRAY* SafeArrayCreate(uint16_t vt, uint32_t dimensions, const QuorlBound* bounds) {
  if (ElementSize(vt) == 0 || bounds == nullptr) return nullptr;
  if (dimensions == 0 || dimensions > kMostDimensions) return nullptr;
  QuorlBound last_first[kMostDimensions];
  for (uint32_t i = 0; i < dimensions; ++i) last_first[i] = bounds[dimensions - 1 - i];
  return NewArray(vt, {last_first, dimensions});
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
  if (array == nullptr) return S_OK;
  if (!IsOurs(array)) return E_INVALIDARG;
  if (array->locks != 0) return E_UNEXPECTED;
  FreeArray(array, *ElementCount(array, TypeOf(*array)));
  return S_OK;
}

uint32_t SafeArrayGetDim(SAFEARRAY* array) { return array == nullptr ? 0 : array->dimensions; }

HRESULT SafeArrayGetLBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound) {
  if (bound == nullptr) return E_POINTER;
  if (array == nullptr) return E_INVALIDARG;
  const QuorlBound* found = BoundAt(array, dimension);
  if (found == nullptr) return DISP_E_BADINDEX;
  *bound = found->lower;
  return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, uint32_t dimension, int32_t* bound) {
  if (bound == nullptr) return E_POINTER;
  if (array == nullptr) return E_INVALIDARG;
  const QuorlBound* found = BoundAt(array, dimension);
  if (found == nullptr) return DISP_E_BADINDEX;
  *bound = static_cast<int32_t>(std::int64_t{found->lower} + found->count - 1);
  return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, uint16_t* vt) {
  if (vt == nullptr) return E_POINTER;
  if (array == nullptr || ElementSize(TypeOf(*array)) == 0) return E_INVALIDARG;
  *vt = TypeOf(*array);
  return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* array, const int32_t* subscripts, void* element) {
  if (subscripts == nullptr || element == nullptr) return E_POINTER;
  if (!IsOurs(array)) return E_INVALIDARG;
  const char* place = PlaceOf(*array, subscripts);
  if (place == nullptr) return DISP_E_BADINDEX;
  return CopyElement(TypeOf(*array), element, place);
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, const int32_t* subscripts, void* element) {
  if (subscripts == nullptr) return E_POINTER;
  if (!IsOurs(array)) return E_INVALIDARG;
  const std::uint16_t vt = TypeOf(*array);
  const bool is_pointer = vt == VT_BSTR || vt == VT_DISPATCH;
  if (element == nullptr && !is_pointer) return E_POINTER;
  char* place = PlaceOf(*array, subscripts);
  if (place == nullptr) return DISP_E_BADINDEX;
  alignas(VARIANT) char copy[sizeof(VARIANT)];
  const void* source = is_pointer ? static_cast<const void*>(&element) : element;
  const HRESULT copied = CopyElement(vt, copy, source);
  if (copied != S_OK) return copied;
  alignas(VARIANT) char former[sizeof(VARIANT)];
  std::memcpy(former, place, array->element_size);
  std::memcpy(place, copy, array->element_size);
  FreeElement(vt, former);
  return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
  if (data == nullptr) return E_POINTER;
  *data = nullptr;
  if (array == nullptr) return E_INVALIDARG;
  ++array->locks;
  *data = array->data;
  return S_OK;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) {
  if (array == nullptr) return E_INVALIDARG;
  if (array->locks == 0) return E_UNEXPECTED;
  --array->locks;
  return S_OK;
}

}  // extern "C"
