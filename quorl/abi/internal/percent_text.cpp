#include "quorl/abi/internal/percent_text.hpp"

#include <charconv>
#include <cstddef>

#include "quorl/runtime/internal/hex.hpp"

namespace quorl::abi {

using namespace internal;
namespace {

bool StandsForItself(unsigned char byte) { return byte >= 0x20 && byte < 0x7F && byte != '%'; }

}  // namespace

std::string PercentEscaped(std::string_view bytes) {
  std::string text;
  for (const char character : bytes) {
    const auto byte = static_cast<unsigned char>(character);
    if (StandsForItself(byte)) {
      text += character;
    } else {
      const auto pair = HexPair<char>(byte);
      text.append({'%', pair[0], pair[1]});
    }
  }
  return text;
}

std::string PercentUnescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    unsigned byte = 0;
    const std::string_view digits = text.substr(at + 1, 2);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (text[at] == '%' && digits.size() == 2 && read.ptr == digits.data() + 2) {
      bytes += static_cast<char>(byte);
      at += 2;
    } else {
      bytes += text[at];
    }
  }
  return bytes;
}

}  // namespace quorl::abi
