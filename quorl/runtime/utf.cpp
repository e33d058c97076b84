#include "quorl/runtime/utf.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }
bool IsSurrogate(char32_t point) { return point >= 0xD800 && point <= 0xDFFF; }
bool IsContinuation(unsigned char byte) { return (byte & 0xC0) == 0x80; }

struct Decoded {
  char32_t point;
  std::size_t length;
};

// How many bytes the sequence that `lead` opens has, and which points are too small to need them.
struct SequenceForm {
  std::size_t length;
  char32_t bits;
  char32_t smallest;
};

SequenceForm FormOf(unsigned char lead) {
  if (lead < 0x80) return {1, lead, 0};
  if ((lead & 0xE0) == 0xC0) return {2, static_cast<char32_t>(lead & 0x1F), 0x80};
  if ((lead & 0xF0) == 0xE0) return {3, static_cast<char32_t>(lead & 0x0F), 0x800};
  if ((lead & 0xF8) == 0xF0) return {4, static_cast<char32_t>(lead & 0x07), 0x10000};
  return {0, 0, 0};
}

Decoded DecodeUtf8(std::string_view text, std::size_t at) {
  constexpr Decoded kBad{kReplacement, 1};
  const SequenceForm form = FormOf(static_cast<unsigned char>(text[at]));
  if (form.length == 0 || text.size() - at < form.length) return kBad;
  char32_t point = form.bits;
  for (std::size_t i = 1; i < form.length; ++i) {
    const auto byte = static_cast<unsigned char>(text[at + i]);
    if (!IsContinuation(byte)) return kBad;
    point = (point << 6) | (byte & 0x3FU);
  }
  if (point < form.smallest || point > 0x10FFFF || IsSurrogate(point)) return kBad;
  return {point, form.length};
}

void AppendUtf16(String& out, char32_t point) {
  if (point < 0x10000) {
    out.push_back(static_cast<char16_t>(point));
    return;
  }
  point -= 0x10000;
  out.push_back(static_cast<char16_t>(0xD800 + (point >> 10)));
  out.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
}

Decoded DecodeUtf16(StringView text, std::size_t at) {
  const char16_t unit = text[at];
  if (!IsSurrogate(unit)) return {unit, 1};
  if (IsHighSurrogate(unit) && at + 1 < text.size() && IsLowSurrogate(text[at + 1])) {
    const char32_t high = unit - 0xD800U;
    const char32_t low = text[at + 1] - 0xDC00U;
    return {0x10000 + (high << 10) + low, 2};
  }
  return {kReplacement, 1};
}

bool IsAscii(char16_t unit) { return unit < 0x80; }

// The number of ASCII units at the head of a text, four at a time as long as all four are.
std::size_t AsciiRun(StringView text) {
  constexpr std::uint64_t kBeyondAscii = 0xFF80FF80FF80FF80;
  std::size_t run = 0;
  for (std::uint64_t four = 0; run + 4 <= text.size(); run += 4) {
    std::memcpy(&four, text.data() + run, sizeof four);
    if ((four & kBeyondAscii) != 0) break;
  }
  while (run < text.size() && IsAscii(text[run])) ++run;
  return run;
}

// Most of most texts: the units become bytes as they are.
void AppendAscii(std::string& out, StringView run) {
  const std::size_t size = out.size();
  out.resize(size + run.size());
  std::ranges::transform(run, out.begin() + static_cast<std::ptrdiff_t>(size),
                         [](char16_t unit) { return static_cast<char>(unit); });
}

// Of a point beyond ASCII.
void AppendUtf8(std::string& out, char32_t point) {
  const auto tail = [point](int shift) {
    return static_cast<char>(0x80 | ((point >> shift) & 0x3F));
  };
  if (point < 0x800) {
    out.append({static_cast<char>(0xC0 | (point >> 6)), tail(0)});
  } else if (point < 0x10000) {
    out.append({static_cast<char>(0xE0 | (point >> 12)), tail(6), tail(0)});
  } else {
    out.append({static_cast<char>(0xF0 | (point >> 18)), tail(12), tail(6), tail(0)});
  }
}

}  // namespace

String Utf16(std::string_view text) {
  String out;
  WithinMemory([&] { out.reserve(text.size()); });
  for (std::size_t at = 0; at < text.size();) {
    const Decoded decoded = DecodeUtf8(text, at);
    AppendUtf16(out, decoded.point);
    at += decoded.length;
  }
  return out;
}

std::string Utf8(StringView text) {
  return WithinMemory([&] {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
      const std::size_t ascii = AsciiRun(text);
      AppendAscii(out, text.substr(0, ascii));
      text.remove_prefix(ascii);
      while (!text.empty() && !IsAscii(text.front())) {
        const Decoded decoded = DecodeUtf16(text, 0);
        AppendUtf8(out, decoded.point);
        text.remove_prefix(decoded.length);
      }
    }
    return out;
  });
}

}  // namespace quorl
