#include "quorl/runtime/ansi.hpp"

#include <algorithm>
#include <array>

#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr unsigned kFirst = 0x80;

// Bytes 80 to 9F; all others are the code unit of the same number.
constexpr std::array<char16_t, 32> kUpperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 80 to 87
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 88 to 8F
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 90 to 97
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 98 to 9F
};

constexpr auto kCharacters = [] {
  std::array<char16_t, 256> characters{};
  for (unsigned byte = 0; byte < characters.size(); ++byte) {
    const bool is_upper_control = byte >= kFirst && byte < kFirst + kUpperControls.size();
    characters[byte] = is_upper_control ? kUpperControls[byte - kFirst] : char16_t(byte);
  }
  return characters;
}();

// Inline in the loops over whole texts, which calls of the exported functions would take longer
// than.
constexpr char16_t CharacterOf(char byte) noexcept {
  return kCharacters[static_cast<unsigned char>(byte)];
}

constexpr unsigned char ByteOf(char16_t unit) noexcept {
  if (unit < kFirst || (unit >= 0xA0 && unit <= 0xFF)) return static_cast<unsigned char>(unit);
  const auto* found = std::ranges::find(kUpperControls, unit);
  if (found == kUpperControls.end()) return '?';
  return static_cast<unsigned char>(kFirst + static_cast<unsigned>(found - kUpperControls.begin()));
}

}  // namespace

char16_t FromAnsi(unsigned char byte) noexcept { return kCharacters[byte]; }

String FromAnsi(std::string_view bytes) {
  String text = WithinMemory([&] { return String(bytes.size(), u'\0'); });
  std::ranges::transform(bytes, text.begin(), CharacterOf);
  return text;
}

unsigned char ToAnsi(char16_t unit) noexcept { return ByteOf(unit); }

std::string ToAnsi(StringView text) {
  std::string bytes = WithinMemory([&] { return std::string(text.size(), '\0'); });
  ToAnsi(text, bytes.data());
  return bytes;
}

char* ToAnsi(StringView text, char* bytes) noexcept {
  // Most texts have nothing but these.
  const auto* unit = text.begin();
  while (unit != text.end() && *unit < kFirst) *bytes++ = static_cast<char>(*unit++);
  return std::transform(unit, text.end(), bytes, ByteOf);
}

}  // namespace quorl
