// Amounts in words: tables of cases, failures, and the count of allocations.

#include "quorl/money/money.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

#include "tests/support/raises.hpp"

namespace {
std::size_t allocations = 0;
}  // namespace

// Not inlined, lest the compiler see malloc on one side and delete on the other.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size != 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace quorl {
namespace {

using namespace literals;

struct Names {
  const char16_t *unit, *units, *sub_unit, *sub_units;
};

constexpr Names kEuros{u"euro", u"euros", u"cent", u"cents"};

Money Of(StringView language, const Names& names, Int16 kind = 0, Int16 row = 2) {
  Money money;
  money.Unit = names.unit;
  money.Units = names.units;
  money.SubUnit = names.sub_unit;
  money.SubUnits = names.sub_units;
  money.UnitKind = money.SubUnitKind = kind;
  money.SubUnitRow = row;
  money.Language = language;
  return money;
}

TEST(Money, LanguagesNamesAndKinds) {
  constexpr Names kLivres{u"livre", u"livres", u"pièce", u"pièces"};
  constexpr Names kYens{u"yen", u"yens", u"", u""};
  constexpr Names kBlanks{u" b ", u" bs ", u" s ", u"  "};
  const struct {
    Money money;
    Currency amount;
    const char* text;
  } cases[] = {
      {Of(u"FR", kEuros), 1.01_cy, "un euro un cent"},
      {Of(u"FR", kEuros), -0.50_cy, "moins zéro euro cinquante cents"},
      {Of(u"FR", kEuros), -0.001_cy, "moins zéro euro"},
      {Of(u"FR", kEuros), 1.125_cy, "un euro treize cents"},
      {Of(u"FR", kEuros), 1.9999_cy, "un euro cent cents"},
      {Of(u"FR", kEuros), 1000000_cy, "un million d'euros"},
      {Of(u"FR", kEuros), 1500000_cy, "un million cinq-cent-mille euros"},
      {Of(u"FR", kEuros), -Currency::Highest(),
       "moins neuf-cent-vingt-deux billions trois-cent-trente-sept milliards deux-cent-trois "
       "millions six-cent-quatre-vingt-cinq-mille-quatre-cent-septante-sept euros "
       "cinquante-huit cents"},
      {Of(u"FR", kLivres, 1), 21.21_cy, "vingt-et-une livres vingt-et-une pièces"},
      {Of(u"FR", kYens), 1000000_cy, "un million de yens"},
      {Of(u"FR", kYens), 2.02_cy, "deux yens deux"},
      {Of(u"FR", {u"", u"", u"", u""}), 1000000_cy, "un million"},
      {Of(u"FR", {u"franc", u"", u"", u""}), 2_cy, "deux"},
      {Of(u"UK", {u"", u"unities", u"", u"pence"}), -1000000.50_cy,
       "minus one million unities fifty pence"},
      {Of(u"NL", kEuros), -1.50_cy, "minder een euro vijftig cents"},
      {Of(u"DE", kEuros, 1), -101.01_cy, "weniger hunderteins euros ein cent"},
      {Of(u"FR", kEuros, 0, 0), 1.5_cy, "un euro un cent"},
      {Of(u"FR", kEuros, 0, 4), 1.2345_cy, "un euro deux-mille-trois-cent-quarante-cinq cents"},
      {Of(u"FR", kEuros, 0, 10), 1.2_cy, "un euro deux milliards cents"},
      {Of(u"FR", kEuros, 0, std::numeric_limits<Int16>::min()), 1.9999_cy, "un euro"},
      // Blanks at the end are taken off after the sub-units alone.
      {Of(u"UK", kBlanks), 1_cy, "one  b "},
      {Of(u"UK", kBlanks), 1.01_cy, "one  b  one  s"},
      {Of(u"UK", kBlanks), 1.02_cy, "one  b  two"},
      // A negative kind that meets no word for one does no harm.
      {Of(u"FR", kEuros, -1), 2.02_cy, "deux euros deux cents"}};
  for (const auto& row : cases) EXPECT_EQ(Utf8(row.money.ToText(row.amount)), row.text);
}

TEST(Money, FailuresComeInTheOrderOfTheSteps) {
  const auto language = [](const String& code) {
    return Failure{5000, u"Quorl.Money",
                   u"La langue '" + code + u"' n'est pas gérée par cet objet"};
  };
  EXPECT_RAISES(Money().ToText(Currency::Lowest()), language(u""));
  EXPECT_RAISES(Of(u"fr", kEuros).ToText(1_cy), language(u"fr"));
  EXPECT_RAISES(Of(u"EN", kEuros, -1, 400).ToText(1_cy), language(u"EN"));
  EXPECT_RAISES(Of(u"FR", kEuros, -1).ToText(Currency::Lowest()), RuntimeFailure(6));
  EXPECT_RAISES(Of(u"FR", kEuros, -1, 309).ToText(1_cy), RuntimeFailure(6));
  EXPECT_RAISES(Of(u"FR", kEuros, 0, 10).ToText(1.9_cy), RuntimeFailure(6));
  EXPECT_RAISES(Of(u"FR", kEuros, -1).ToText(1_cy), RuntimeFailure(9));
  EXPECT_RAISES(Of(u"FR", kEuros, -1).ToText(2.01_cy), RuntimeFailure(9));
}

TEST(Money, AllocatesItsResultAndNothingElse) {
  const String name(1000, u'x');
  for (const StringView language : {u"FR", u"UK", u"NL", u"DE"}) {
    const Money plain = Of(language, kEuros, 0, 9);
    const Money named = Of(language, {name.c_str(), name.c_str(), name.c_str(), name.c_str()});
    for (const Money* money : {&plain, &named}) {
      for (const Currency amount : {-777777777777777.7777_cy, 1000000_cy, -80.80_cy}) {
        allocations = 0;
        const String text = money->ToText(amount);
        EXPECT_EQ(allocations, 1U) << Utf8(text);
        EXPECT_TRUE(money == &named || text.capacity() == text.size());
      }
    }
  }
}

}  // namespace
}  // namespace quorl
