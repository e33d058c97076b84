#include "quorl/runtime/internal/guid_text.hpp"

#include <algorithm>
#include <cstddef>

#include "quorl/runtime/internal/hex.hpp"

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

constexpr auto kDigitPairs = [] {
  std::array<std::array<char16_t, 2>, 256> pairs{};
  for (std::size_t byte = 0; byte < pairs.size(); ++byte) {
    pairs[byte] = HexPair<char16_t>(static_cast<Byte>(byte));
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
    const std::optional<Byte> value = HexValue(text[i]);
    if (!value) return std::nullopt;
    guid[digit / 2] = static_cast<Byte>(guid[digit / 2] << 4 | *value);
    ++digit;
  }
  return guid;
}

}  // namespace quorl::internal
