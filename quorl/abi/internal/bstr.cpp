#include "quorl/abi/internal/bstr.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
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
  void* start = ::operator new(sizeof(Length) + bytes + sizeof(char16_t), std::nothrow);
  if (start == nullptr) return nullptr;
  std::memcpy(start, &bytes, sizeof(bytes));
  auto* units = reinterpret_cast<char16_t*>(static_cast<char*>(start) + sizeof(Length));
  if (text == nullptr) {
    std::fill_n(units, length, u'\0');
  } else {
    std::copy_n(text, length, units);
  }
  units[length] = u'\0';
  return units;
}

BSTR SysAllocString(const char16_t* text) {
  if (text == nullptr) return nullptr;
  const std::size_t length = std::char_traits<char16_t>::length(text);
  return length > kMostUnits ? nullptr : SysAllocStringLen(text, static_cast<uint32_t>(length));
}

void SysFreeString(BSTR text) {
  if (text != nullptr) ::operator delete(StartOf(text));
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
