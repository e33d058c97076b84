// Amounts in words: tables of cases, failures, and the count of allocations.

#include "quorl/money/money.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <new>

#include "tests/support/outcome.hpp"

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

TEST(Money, FrenchEuros) {
  const std::pair<Currency, const char*> cases[] = {
      {0_cy, "zéro euro"},
      {0.01_cy, "zéro euro un cent"},
      {1.01_cy, "un euro un cent"},
      {2.50_cy, "deux euros cinquante cents"},
      {-1_cy, "moins un euro"},
      {-0.50_cy, "moins zéro euro cinquante cents"},
      {-0.001_cy, "moins zéro euro"},
      {1.125_cy, "un euro treize cents"},
      {1.9999_cy, "un euro cent cents"},
      {1000000_cy, "un million d'euros"},
      {1500000_cy, "un million cinq-cent-mille euros"},
      {1100000000_cy, "un milliard cent millions d'euros"},
      {3000001_cy, "trois millions un euros"},
      {-Currency::Highest(),
       "moins neuf-cent-vingt-deux billions trois-cent-trente-sept milliards deux-cent-trois "
       "millions six-cent-quatre-vingt-cinq-mille-quatre-cent-septante-sept euros "
       "cinquante-huit cents"},
  };
  const Money euros = Of(u"FR", kEuros);
  for (const auto& [amount, text] : cases) EXPECT_EQ(Utf8(euros.ToText(amount)), text);
}

TEST(Money, LanguagesNamesAndKinds) {
  constexpr Names kPounds{u"pound", u"pounds", u"penny", u"pence"};
  constexpr Names kLivres{u"livre", u"livres", u"pièce", u"pièces"};
  constexpr Names kDutch{u"euro", u"euro", u"cent", u"cent"};
  constexpr Names kGerman{u"Euro", u"Euro", u"Cent", u"Cent"};
  constexpr Names kYens{u"yen", u"yens", u"", u""};
  constexpr Names kBlanks{u" b ", u" bs ", u" s ", u"  "};
  const struct {
    Money money;
    Currency amount;
    const char* text;
  } cases[] = {
      {Of(u"FR", kLivres, 1), 21.21_cy, "vingt-et-une livres vingt-et-une pièces"},
      {Of(u"FR", kLivres, 1), 1000001_cy, "un million une livres"},
      {Of(u"FR", kYens), 1000000_cy, "un million de yens"},
      {Of(u"FR", kYens), 2.02_cy, "deux yens deux"},
      {Of(u"FR", {u"", u"", u"", u""}), 1000000_cy, "un million"},
      {Of(u"FR", {u"franc", u"", u"", u""}), 2_cy, "deux"},
      {Of(u"UK", kPounds), 0_cy, "zero pound"},
      {Of(u"UK", kPounds), 1000000_cy, "one million pounds"},
      {Of(u"UK", kPounds), -1.50_cy, "minus one pound fifty pence"},
      {Of(u"NL", kDutch), -1.50_cy, "minder een euro vijftig cent"},
      {Of(u"DE", kGerman), 1.01_cy, "eins Euro eins Cent"},
      {Of(u"DE", kGerman, 1), 101.01_cy, "hunderteins Euro ein Cent"},
      {Of(u"DE", kGerman, 2), 1.01_cy, "eine Euro eine Cent"},
      {Of(u"DE", kGerman), -1000000_cy, "weniger eine Million Euro"},
      {Of(u"FR", kEuros, 0, 0), 1.5_cy, "un euro un cent"},
      {Of(u"FR", kEuros, 0, 0), 1.4999_cy, "un euro"},
      {Of(u"FR", kEuros, 0, 3), 1.234_cy, "un euro deux-cent-trente-quatre cents"},
      {Of(u"FR", kEuros, 0, 4), 1.2345_cy, "un euro deux-mille-trois-cent-quarante-cinq cents"},
      {Of(u"FR", kEuros, 0, -1), 1.9999_cy, "un euro"},
      {Of(u"FR", kEuros, 0, std::numeric_limits<Int16>::min()), 1.9999_cy, "un euro"},
      // Blanks at the end are taken off behind the sub-units alone.
      {Of(u"UK", kBlanks), 1_cy, "one  b "},
      {Of(u"UK", kBlanks), 1.01_cy, "one  b  one  s"},
      {Of(u"UK", kBlanks), 1.02_cy, "one  b  two"},
      // A negative kind that meets no word for one does no harm.
      {Of(u"FR", kEuros, -1), 2.02_cy, "deux euros deux cents"},
  };
  for (const auto& row : cases) EXPECT_EQ(Utf8(row.money.ToText(row.amount)), row.text);
}

TEST(Money, FailuresComeInTheOrderOfTheSteps) {
  const auto overflow = RuntimeFailure(FailureNumber::kOverflow);
  const auto out_of_range = RuntimeFailure(FailureNumber::kSubscriptOutOfRange);
  const auto language = [](const std::string& code) {
    return "Quorl.Money (5000): La langue '" + code + "' n'est pas gérée par cet objet";
  };
  const struct {
    Money money;
    Currency amount;
    std::string failure;
  } cases[] = {
      {Money(), Currency::Lowest(), language("")},
      {Of(u"fr", kEuros), 1_cy, language("fr")},
      {Of(u"EN", kEuros, -1, 400), 1_cy, language("EN")},
      {Of(u"FR ", kEuros), 1_cy, language("FR ")},
      {Of(u"FR", kEuros, -1), Currency::Lowest(), overflow},
      {Of(u"FR", kEuros, -1, 309), 1_cy, overflow},
      {Of(u"FR", kEuros, 0, 10), 1.9_cy, overflow},
      {Of(u"FR", kEuros, -1), 1_cy, out_of_range},
      {Of(u"FR", kEuros, -1), 2.01_cy, out_of_range},
      {Of(u"UK", kEuros, -1), 101_cy, out_of_range},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(FailureOf([&] { row.money.ToText(row.amount); }), row.failure);
  }
  EXPECT_EQ(Utf8(Of(u"FR", kEuros, 0, 10).ToText(1.2_cy)), "un euro deux milliards cents");
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
        EXPECT_EQ(text.capacity(), text.size());
      }
    }
  }
}

}  // namespace
}  // namespace quorl
