#include "quorl/runtime/internal/guid_text.hpp"

#include <algorithm>
#include <cstddef>

#include "quorl/runtime/text_case.hpp"

namespace quorl::internal {
namespace {

// Where the text shows each byte's two digits.
constexpr auto kPlaces = [] {
  std::array<std::size_t, GuidBytes{}.size()> places{};
  std::size_t at = 0;
  for (std::size_t& place : places) {
    place = at = kZeroGuidText.find(u"00", at);
    at += 2;
  }
  return places;
}();

constexpr StringView kDigits = u"0123456789ABCDEF";

constexpr auto kDigitPairs = [] {
  std::array<std::array<char16_t, 2>, 256> pairs{};
  for (std::size_t byte = 0; byte < pairs.size(); ++byte) {
    pairs[byte] = {kDigits[byte / 16], kDigits[byte % 16]};
  }
  return pairs;
}();

}  // namespace

String WriteGuid(const GuidBytes& guid) {
  String text(kZeroGuidText);
  for (std::size_t i = 0; i < guid.size(); ++i) {
    std::ranges::copy(kDigitPairs[guid[i]], text.begin() + static_cast<std::ptrdiff_t>(kPlaces[i]));
  }
  return text;
}

std::optional<GuidBytes> ReadGuid(StringView text) noexcept {
  if (text.size() != kZeroGuidText.size()) return std::nullopt;
  GuidBytes guid{};
  std::size_t digit = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (kZeroGuidText[i] != u'0') {
      if (text[i] != kZeroGuidText[i]) return std::nullopt;
      continue;
    }
    const std::size_t value = kDigits.find(text[i] < 0x80 ? UpperCase(text[i]) : text[i]);
    if (value == StringView::npos) return std::nullopt;
    guid[digit / 2] = static_cast<Byte>(guid[digit / 2] << 4 | static_cast<Byte>(value));
    ++digit;
  }
  return guid;
}

}  // namespace quorl::internal
