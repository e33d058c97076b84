#include "quorl/abi/internal/bstr.hpp"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "quorl/runtime/raised_error.hpp"

namespace {

using Length = std::uint32_t;

constexpr std::size_t kMostUnits =
    (std::numeric_limits<Length>::max() - sizeof(Length) - sizeof(char16_t)) / sizeof(char16_t);

char* StartOf(const char16_t* bstr) {
  return reinterpret_cast<char*>(const_cast<char16_t*>(bstr)) - sizeof(Length);
}

Length BytesOf(const char16_t* bstr) {
  Length bytes = 0;
  std::memcpy(&bytes, StartOf(bstr), sizeof(bytes));
  return bytes;
}

}  // namespace

extern "C" {

BSTR SysAllocStringLen(const char16_t* text, uint32_t length) {
  if (length > kMostUnits) return nullptr;
  const auto bytes = static_cast<Length>(length * sizeof(char16_t));
  // Zeroed, which also makes the terminator.
  char* start = static_cast<char*>(std::calloc(1, sizeof(Length) + bytes + sizeof(char16_t)));
  if (start == nullptr) return nullptr;
  std::memcpy(start, &bytes, sizeof(bytes));
  if (text != nullptr && bytes != 0) std::memcpy(start + sizeof(Length), text, bytes);
  return reinterpret_cast<char16_t*>(start + sizeof(Length));
}

BSTR SysAllocString(const char16_t* text) {
  if (text == nullptr) return nullptr;
  const std::size_t length = std::char_traits<char16_t>::length(text);
  return length > kMostUnits ? nullptr : SysAllocStringLen(text, static_cast<uint32_t>(length));
}

void SysFreeString(BSTR text) {
  if (text != nullptr) std::free(StartOf(text));
}

uint32_t SysStringLen(BSTR text) {
  return text == nullptr ? 0 : static_cast<uint32_t>(BytesOf(text) / sizeof(char16_t));
}

}  // extern "C"

namespace quorl::abi {

StringView ViewOf(const char16_t* bstr) noexcept {
  if (bstr == nullptr) return {};
  return {bstr, BytesOf(bstr) / sizeof(char16_t)};
}

BSTR NewBstr(StringView text) {
  BSTR bstr = text.size() > kMostUnits
                  ? nullptr
                  : SysAllocStringLen(text.data(), static_cast<uint32_t>(text.size()));
  if (bstr == nullptr) Raise(FailureNumber::kOutOfMemory);
  return bstr;
}

}  // namespace quorl::abi
