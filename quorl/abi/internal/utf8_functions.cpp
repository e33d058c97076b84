// Texts from and to UTF-8, as a host converts them through the C header.
#include <cstring>
#include <string>
#include <string_view>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/runtime/utf.hpp"

extern "C" {

HRESULT QuorlFromUtf8(const char* text, BSTR* out) {
  return QuorlFromUtf8Len(text, text == nullptr ? 0 : std::strlen(text), out);
}

HRESULT QuorlFromUtf8Len(const char* text, size_t length, BSTR* out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (text == nullptr && length != 0) return E_POINTER;
  return quorl::abi::GuardedFunction([&] {
    const std::string_view bytes(text, length);
    const quorl::String units = quorl::Utf16(bytes);
    // What was well-formed comes back as it was.
    const bool is_exact = quorl::Utf8(units) == bytes;
    *out = quorl::abi::NewBstr(units);
    return is_exact ? S_OK : S_FALSE;
  });
}

HRESULT QuorlToUtf8(BSTR text, char** out, size_t* length) {
  if (length != nullptr) *length = 0;
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return quorl::abi::GuardedFunction([&] {
    const quorl::StringView units = quorl::abi::ViewOf(text);
    const std::string bytes = quorl::Utf8(units);
    const bool is_exact = quorl::Utf16(bytes) == units;
    *out = new char[bytes.size() + 1];
    std::memcpy(*out, bytes.c_str(), bytes.size() + 1);
    if (length != nullptr) *length = bytes.size();
    return is_exact ? S_OK : S_FALSE;
  });
}

void QuorlFreeUtf8(char* text) { delete[] text; }

}  // extern "C"
