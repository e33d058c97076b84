#include <iostream>

#include "quorl/quorl.hpp"

int main() {
  using namespace quorl;
  using namespace quorl::literals;

  Money invoice;
  invoice.Unit = u"euro";
  invoice.Units = u"euros";
  invoice.SubUnit = u"cent";
  invoice.SubUnits = u"cents";
  invoice.SubUnitRow = 2;
  invoice.Language = u"FR";
  std::cout << Utf8(invoice.ToText(1000000.80_cy)) << '\n';

  std::cout << ToDouble(Math::StdRound(1.005, 2)) << '\n';
  std::cout << Utf8(Strings::ProperCase(u"JEAN DUPONT")) << '\n';
  try {
    Math::RoundSup(1.5, -1);
  } catch (const RaisedError& error) {
    std::cout << error.what() << '\n';
  }
}
