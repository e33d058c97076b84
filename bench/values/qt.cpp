#include <QVariant>

#include "bench/values/inputs.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "QVariant";

QVariant InQt(const String& text) { return QString::fromStdU16String(text); }
QVariant InQt(double number) { return number; }
QVariant InQt(int number) { return number; }

template <class Make>
auto PairsInQt(Make make) {
  return [=] {
    return Turned(make(),
                  [](const auto& pair) { return std::pair(InQt(pair.first), InQt(pair.second)); });
  };
}

const AtStart rows([] {
  const auto is_less = [](const std::pair<QVariant, QVariant>& pair) {
    return QVariant::compare(pair.first, pair.second) == QPartialOrdering::Less;
  };
  Measure(kCompareNumbers, kWho, PairsInQt(PairsOfNumbers), is_less);
  Measure(kCompareTexts, kWho, PairsInQt(PairsOfTexts), is_less);
  Measure(
      kReadDouble, kWho,
      [] { return Turned(PricesAsTexts(), [](const String& text) { return InQt(text); }); },
      [](const QVariant& text) { return text.toDouble(); });
  Measure(
      kWriteDouble, kWho, [] { return Turned(Prices(), [](double price) { return InQt(price); }); },
      [](const QVariant& number) { return number.toString(); });
});

}  // namespace
