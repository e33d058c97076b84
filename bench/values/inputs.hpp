// Values to be compared and converted, and items for a buffer.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "bench/measure.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl::bench {

inline constexpr const char* kCompareNumbers = "Variant with Variant, numbers";
inline constexpr const char* kCompareTexts = "Variant with Variant, texts of 21";
inline constexpr const char* kReadDouble = "Text to Double by locale";
inline constexpr const char* kWriteDouble = "Double to text";
inline constexpr const char* kAddItem = "RollBuffer.AddItem of 20 units, capacity N";
inline constexpr const char* kWalk = "RollBuffer walked, an item, capacity N";
inline constexpr const char* kNewGuid = "CreateGUID";
inline constexpr std::size_t kCapacity = 100;

/// An Int32 and a Double.
inline auto PairsOfNumbers() {
  return Seeded::List(10, [](Seeded& seeded) {
    return std::pair(static_cast<int>(seeded.Whole(-1000, 1000)), seeded.Scaled(0.01, 1000));
  });
}

/// Which differ in one unit of the last six.
inline auto PairsOfTexts() {
  return Seeded::List(11, [](Seeded& seeded) {
    String first = seeded.Text(21, u"abcdefghijklmnopqrstuvwxyz");
    String second = first;
    second[static_cast<std::size_t>(seeded.Whole(15, 20))] = u'A';
    return std::pair(first, second);
  });
}

inline std::vector<double> Prices() {
  return Seeded::List(12, [](Seeded& seeded) { return std::round(seeded.Scaled(1, 1e7)) / 100; });
}
inline std::vector<String> PricesAsTexts() {
  return Turned(Prices(), [](double price) {
    const std::string digits = std::to_string(price);
    return Utf16(digits.substr(0, digits.find('.') + 3));
  });
}

inline std::vector<String> Items() {
  return Seeded::List(
      13, [](Seeded& seeded) { return seeded.Text(20, u"abcdefghijklmnopqrstuvwxyz"); });
}

/// A row without inputs.
inline std::vector<int> Nothing() { return {0}; }

}  // namespace quorl::bench
