// Amounts in words in the four languages, numbers in words and rounding, each beside peers on the
// same inputs: ICU's spell-out rules where the build offers ICU (QUORL_BENCH_ICU), and for rounding
// the standard library's two usual ways.

#include <benchmark/benchmark.h>

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "quorl/money/internal/number_to_text.hpp"
#include "quorl/money/internal/word_tables.hpp"
#include "quorl/money/money.hpp"
#include "quorl/numeric/math.hpp"

#ifdef QUORL_BENCH_ICU
#include <unicode/rbnf.h>
#endif

namespace {

using quorl::Currency;
using quorl::Int32;
using quorl::Math;
using quorl::Money;
using quorl::String;
using quorl::StringView;
using quorl::Variant;

// From a cent to the largest amounts, each input as often as any other.
constexpr std::array<std::int64_t, 8> kUnits{100,
                                             12'500'000,
                                             -800'000,
                                             12'345'678,
                                             10'000'000'000,
                                             98'765'432'100,
                                             1'805'060'000,
                                             9'223'372'036'854'775'807};
constexpr std::array<const char16_t*, 8> kDigits{
    u"1", u"80", u"999", u"1250", u"180506", u"1000000", u"987654321", u"922337203685477"};
constexpr std::array<double, 8> kNumbers{1.005,     -2.675, 12.3299,     0.045,
                                         21474.365, 1e-7,   1234567.895, -99.995};

template <class Inputs, class Call>
void Measure(benchmark::State& state, const Inputs& inputs, Call call) {
  std::size_t at = 0;
  for (auto _ : state) {
    auto input = inputs[at++ % inputs.size()];
    benchmark::DoNotOptimize(input);
    auto result = call(input);
    benchmark::DoNotOptimize(result);
  }
  state.SetItemsProcessed(state.iterations());
}

void Amount_Quorl(benchmark::State& state, StringView language) {
  Money money;
  money.Unit = u"euro";
  money.Units = u"euros";
  money.SubUnit = u"cent";
  money.SubUnits = u"cents";
  money.SubUnitRow = 2;
  money.Language = language;
  Measure(state, kUnits,
          [&](std::int64_t units) { return money.ToText(Currency::FromTenThousandths(units)); });
}

void Number_Quorl(benchmark::State& state, Int32 base) {
  std::array<char16_t, quorl::internal::LongestWords(15)> words;
  Measure(state, kDigits, [&](const char16_t* digits) {
    return quorl::internal::NumberToText(words.data(), base, digits, 0, 0);
  });
}

#ifdef QUORL_BENCH_ICU

using icu::RuleBasedNumberFormat;
using icu::UnicodeString;

// Whole part and cents, the names appended: what a host of ICU writes for an amount.
void Amount_Icu(benchmark::State& state, const char* locale) {
  UErrorCode status = U_ZERO_ERROR;
  const RuleBasedNumberFormat rules(icu::URBNF_SPELLOUT, icu::Locale(locale), status);
  if (U_FAILURE(status) != 0) return state.SkipWithError("ICU has no rules for this language");
  Measure(state, kUnits, [&](std::int64_t units) {
    UnicodeString text;
    rules.format(units / 10000, text).append(u" euros ", 7);
    rules.format(std::abs(units % 10000) / 100, text).append(u" cents", 6);
    return text;
  });
}

void Number_Icu(benchmark::State& state, const char* locale) {
  UErrorCode status = U_ZERO_ERROR;
  const RuleBasedNumberFormat rules(icu::URBNF_SPELLOUT, icu::Locale(locale), status);
  if (U_FAILURE(status) != 0) return state.SkipWithError("ICU has no rules for this language");
  UnicodeString text;
  Measure(state, kDigits, [&](const char16_t* digits) {
    std::int64_t number = 0;
    for (; *digits != 0; ++digits) number = number * 10 + (*digits - u'0');
    return rules.format(number, text.remove()).length();
  });
}

#else

void Peer_Icu(benchmark::State& state) {
  state.SkipWithError("ICU is not in this build: its rows are left out");
}
BENCHMARK(Peer_Icu);

#endif

BENCHMARK_CAPTURE(Amount_Quorl, French, u"FR");
BENCHMARK_CAPTURE(Amount_Quorl, English, u"UK");
BENCHMARK_CAPTURE(Amount_Quorl, Dutch, u"NL");
BENCHMARK_CAPTURE(Amount_Quorl, German, u"DE");
#ifdef QUORL_BENCH_ICU
BENCHMARK_CAPTURE(Amount_Icu, French, "fr_BE");
BENCHMARK_CAPTURE(Amount_Icu, English, "en_GB");
BENCHMARK_CAPTURE(Amount_Icu, Dutch, "nl_NL");
BENCHMARK_CAPTURE(Amount_Icu, German, "de_DE");
#endif
BENCHMARK_CAPTURE(Number_Quorl, French, quorl::internal::kFrenchWords);
BENCHMARK_CAPTURE(Number_Quorl, German, quorl::internal::kGermanWords);
#ifdef QUORL_BENCH_ICU
BENCHMARK_CAPTURE(Number_Icu, French, "fr_BE");
BENCHMARK_CAPTURE(Number_Icu, German, "de_DE");
#endif

// --- Rounding to 2 decimals ---

void StdRound_Quorl(benchmark::State& state) {
  Measure(state, kNumbers, [](double number) { return Math::StdRound(number, 2); });
}
void FixRound_Quorl(benchmark::State& state) {
  Measure(state, kNumbers, [](double number) { return Math::FixRound(number, 2); });
}
void Round2019_Quorl(benchmark::State& state) {
  Measure(state, kNumbers, [](double number) { return Math::Round2019(number); });
}

// Fast, and wrong for 1.005.
void Round_Standard(benchmark::State& state) {
  Measure(state, kNumbers, [](double number) { return std::round(number * 100) / 100; });
}

// Through decimal text, which is what a careful host does without a library.
void Round_StandardText(benchmark::State& state) {
  Measure(state, kNumbers, [](double number) {
    std::array<char, 32> text;
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed, 2);
    double rounded = 0;
    std::from_chars(text.data(), end.ptr, rounded);
    return rounded;
  });
}

BENCHMARK(StdRound_Quorl);
BENCHMARK(FixRound_Quorl);
BENCHMARK(Round2019_Quorl);
BENCHMARK(Round_Standard);
BENCHMARK(Round_StandardText);

}  // namespace
