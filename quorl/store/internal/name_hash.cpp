#include "quorl/store/internal/name_hash.hpp"

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl::internal {
namespace {

constexpr std::uint64_t kFirst = 0xCBF29CE484222325;
constexpr std::uint64_t kFactor = 0x100000001B3;

}  // namespace

const std::array<char16_t, 256>& FoldedBytes() noexcept {
  static const std::array<char16_t, 256> table = [] {
    std::array<char16_t, 256> folded{};
    for (std::size_t byte = 0; byte < folded.size(); ++byte) {
      folded[byte] = LowerCase(FromAnsi(static_cast<unsigned char>(byte)));
    }
    return folded;
  }();
  return table;
}

std::uint64_t HashOfName(std::string_view name) noexcept {
  const auto& folded = FoldedBytes();
  std::uint64_t hash = kFirst;
  for (const char byte : name) {
    hash = (hash ^ folded[static_cast<unsigned char>(byte)]) * kFactor;
  }
  return hash;
}

}  // namespace quorl::internal
