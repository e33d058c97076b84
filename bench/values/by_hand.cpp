// std::variant, std::from_chars and std::to_chars.
#include <array>
#include <charconv>
#include <type_traits>
#include <variant>

#include "bench/values/inputs.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

using Plain = std::variant<std::monostate, int, double, String>;

struct IsLess {
  template <class Left, class Right>
  bool operator()(const Left& left, const Right& right) const {
    if constexpr (std::is_arithmetic_v<Left> && std::is_arithmetic_v<Right>) {
      return static_cast<double>(left) < static_cast<double>(right);
    } else if constexpr (std::is_same_v<Left, Right>) {
      return left < right;
    } else {
      return false;
    }
  }
};

template <class Make>
auto PairsInPlain(Make make) {
  return [=] {
    return Turned(
        make(), [](const auto& pair) { return std::pair(Plain(pair.first), Plain(pair.second)); });
  };
}

const AtStart rows([] {
  const auto is_less = [](const std::pair<Plain, Plain>& pair) {
    return std::visit(IsLess(), pair.first, pair.second);
  };
  Measure(kCompareNumbers, "std::variant", PairsInPlain(PairsOfNumbers), is_less);
  Measure(kCompareTexts, "std::variant", PairsInPlain(PairsOfTexts), is_less);
  Measure(
      kReadDouble, "from_chars",
      [] { return Turned(PricesAsTexts(), [](const String& text) { return Utf8(text); }); },
      [](const std::string& text) {
        double number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        return number;
      });
  Measure(kWriteDouble, "to_chars", Prices, [](double number) {
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    return std::string(digits.data(), end.ptr);
  });
});

}  // namespace
