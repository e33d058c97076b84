#include <memory>

#include "bench/values/inputs.hpp"
#include "quorl/buffer/roll_buffer.hpp"
#include "quorl/regional/guids.hpp"
#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "Quorl";

// The inputs, or both of each pair, in Variants.
template <class Make>
auto InVariants(Make make) {
  return [=] { return Turned(make(), [](const auto& input) { return Variant(input); }); };
}
template <class Make>
auto PairsInVariants(Make make) {
  return [=] {
    return Turned(make(), [](const auto& pair) {
      return std::pair(Variant(pair.first), Variant(pair.second));
    });
  };
}

void Comparisons() {
  const auto is_less = [](const std::pair<Variant, Variant>& pair) {
    return Compare(pair.first, pair.second) < 0;
  };
  Measure(kCompareNumbers, kWho, PairsInVariants(PairsOfNumbers), is_less);
  Measure(kCompareTexts, kWho, PairsInVariants(PairsOfTexts), is_less);
}

void Conversions() {
  const auto read = [](const Variant& text) { return ToDouble(text); };
  Measure(kReadDouble, kWho, InVariants(PricesAsTexts), read);
  Measure(kWriteDouble, kWho, InVariants(Prices),
          [](const Variant& number) { return ToString(number); });
  for (const std::size_t digits : {10U, 100U, 1000U}) {
    Measure(
        "Text of N digits to Double", AtSize(kWho, digits),
        [=] { return std::array{Variant(u"0." + Seeded(14).Text(digits, u"123456789"))}; }, read);
  }
}

std::shared_ptr<RollBuffer> FullBuffer(std::size_t capacity) {
  const auto buffer = std::make_shared<RollBuffer>();
  buffer->BufferSize(static_cast<Int32>(capacity));
  const std::vector<String> items = Items();
  for (std::size_t i = 0; i < capacity; ++i) buffer->AddItem(items[i % items.size()]);
  return buffer;
}

void Buffers() {
  for (const std::size_t capacity : {kCapacity, kCapacity * 10, kCapacity * 1000}) {
    const auto buffer = FullBuffer(capacity);
    const std::string who = AtSize(kWho, capacity);
    Measure(kAddItem, who, InVariants(Items), [=](const Variant& item) {
      buffer->AddItem(item);
      return buffer->Index();
    });
    Measure(kWalk, who, Nothing, [=](int) {
      if (buffer->OnLast()) buffer->MoveFirst();
      buffer->MoveNext();
      return buffer->CurrentItem();
    });
  }
}

const AtStart rows([] {
  Comparisons();
  Conversions();
  Buffers();
  Measure(kNewGuid, kWho, Nothing, [](int) { return GUIDs::CreateGUID(); });
});

}  // namespace
