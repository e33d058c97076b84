#include "quorl/abi/internal/guid.hpp"

#include <algorithm>
#include <cstring>

#include "quorl/abi/internal/guarded.hpp"
#include "quorl/runtime/internal/guid_text.hpp"

namespace quorl::abi {

using namespace internal;
namespace {

// The text shows the three numbers of the structure from their highest byte on.
GuidBytes BytesOf(const GUID& guid) {
  GuidBytes bytes{};
  for (std::size_t i = 0; i < 4; ++i) bytes[i] = static_cast<Byte>(guid.Data1 >> (24 - 8 * i));
  for (std::size_t i = 0; i < 2; ++i) {
    bytes[4 + i] = static_cast<Byte>(guid.Data2 >> (8 - 8 * i));
    bytes[6 + i] = static_cast<Byte>(guid.Data3 >> (8 - 8 * i));
  }
  std::ranges::copy(guid.Data4, bytes.begin() + 8);
  return bytes;
}

GUID GuidOf(const GuidBytes& bytes) {
  GUID guid{};
  for (std::size_t i = 0; i < 4; ++i) guid.Data1 = guid.Data1 << 8 | bytes[i];
  guid.Data2 = static_cast<std::uint16_t>(bytes[4] << 8 | bytes[5]);
  guid.Data3 = static_cast<std::uint16_t>(bytes[6] << 8 | bytes[7]);
  std::copy(bytes.begin() + 8, bytes.end(), guid.Data4);
  return guid;
}

}  // namespace

String GuidText(const GUID& guid) { return WriteGuid(BytesOf(guid)); }

bool ReadGuidText(StringView text, GUID& guid) noexcept {
  const std::optional<GuidBytes> bytes = ReadGuid(text);
  if (bytes) guid = GuidOf(*bytes);
  return bytes.has_value();
}

}  // namespace quorl::abi

extern "C" {

HRESULT CLSIDFromString(const char16_t* text, GUID* out) {
  if (out == nullptr) return E_POINTER;
  *out = GUID{};
  if (text == nullptr) return E_POINTER;
  return quorl::abi::ReadGuidText(text, *out) ? S_OK : CO_E_CLASSSTRING;
}

int32_t StringFromGUID2(const GUID* guid, char16_t* buffer, int32_t capacity) {
  constexpr auto kUnits = static_cast<int32_t>(quorl::internal::kZeroGuidText.size()) + 1;
  if (guid == nullptr || buffer == nullptr || capacity < kUnits) return 0;
  const HRESULT code = quorl::abi::GuardedFunction([&] {
    std::memcpy(buffer, quorl::abi::GuidText(*guid).c_str(), kUnits * sizeof(char16_t));
    return S_OK;
  });
  return code == S_OK ? kUnits : 0;
}

}  // extern "C"
