// Members of Strings that hosts call in loops, each beside the peers that do the same job: the
// standard library by hand, and ICU where the build offers it (QUORL_BENCH_ICU).

#include <benchmark/benchmark.h>

#include <algorithm>

#include "quorl/text/strings.hpp"

#ifdef QUORL_BENCH_ICU
#include <unicode/unistr.h>
#endif

namespace {

using quorl::String;
using quorl::Strings;
using quorl::StringView;

const String kLine =
    u"2024-06-07;INV-001234;Établissements Dupont & fils;1 234,56;EUR;fr;payé;rue de l'Église 12";
const String kName = u"JEAN-PIERRE DE LA FONTAINE, RUE DE L'ÉGLISE 12";
const String kMixed = u"BE 0123.456.789 / réf. A-77 (12%)";
const String kLongText = [] {
  String text;
  for (int i = 0; i < 300; ++i) text += kLine + u";";
  return text;
}();

// Runs `call` on a text that the compiler cannot see through.
template <class Text, class Call>
void Measure(benchmark::State& state, Text text, Call call) {
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    auto result = call(text);
    benchmark::DoNotOptimize(result);
  }
}

String StandardToken(StringView text, char16_t separator, int index) {
  std::size_t start = 0;
  for (; index > 1; --index) {
    const std::size_t found = text.find(separator, start);
    if (found == StringView::npos) return {};
    start = found + 1;
  }
  return String(text.substr(start, text.find(separator, start) - start));
}

String StandardDigits(StringView text) {
  String digits;
  std::ranges::copy_if(text, std::back_inserter(digits),
                       [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
  return digits;
}

void Token_Quorl(benchmark::State& state) {
  Measure(state, kLine, [](const String& text) { return Strings::GetToken(text, u";", 6); });
}
void Token_Standard(benchmark::State& state) {
  Measure(state, kLine, [](const String& text) { return StandardToken(text, u';', 6); });
}
void Count_Quorl(benchmark::State& state) {
  Measure(state, kLongText, [](const String& text) { return Strings::StrCount(text, u";"); });
}
void Count_Standard(benchmark::State& state) {
  Measure(state, kLongText, [](const String& text) { return std::ranges::count(text, u';'); });
}
void Padl_Quorl(benchmark::State& state) {
  Measure(state, String(u"1234.56"),
          [](const String& text) { return Strings::Padl(text, 20, u"*"); });
}
void Padl_Standard(benchmark::State& state) {
  Measure(state, String(u"1234.56"),
          [](const String& text) { return String(20 - text.size(), u'*') + text; });
}
void ProperCase_Quorl(benchmark::State& state) {
  Measure(state, kName, [](const String& text) { return Strings::ProperCase(text); });
}
void Digits_Quorl(benchmark::State& state) {
  Measure(state, kMixed, [](const String& text) { return Strings::DigitsOf(text); });
}
void Digits_Standard(benchmark::State& state) {
  Measure(state, kMixed, [](const String& text) { return StandardDigits(text); });
}

#ifdef QUORL_BENCH_ICU
using icu::UnicodeString;

UnicodeString ForIcu(const String& text) {
  return UnicodeString(text.data(), static_cast<std::int32_t>(text.size()));
}

void Token_Icu(benchmark::State& state) {
  Measure(state, ForIcu(kLine), [](const UnicodeString& text) {
    std::int32_t start = 0;
    for (int index = 6; index > 1; --index) start = text.indexOf(u';', start) + 1;
    return UnicodeString(text, start, text.indexOf(u';', start) - start);
  });
}
void Count_Icu(benchmark::State& state) {
  Measure(state, ForIcu(kLongText), [](const UnicodeString& text) {
    int count = 0;
    for (std::int32_t p = text.indexOf(u';'); p >= 0; p = text.indexOf(u';', p + 1)) ++count;
    return count;
  });
}
void Padl_Icu(benchmark::State& state) {
  Measure(state, ForIcu(u"1234.56"), [](const UnicodeString& text) {
    UnicodeString padded(text);
    padded.padLeading(20, u'*');
    return padded;
  });
}
void ProperCase_Icu(benchmark::State& state) {
  Measure(state, ForIcu(kName),
          [](const UnicodeString& text) { return UnicodeString(text).toTitle(nullptr); });
}
#else
void Peer_Icu(benchmark::State& state) {
  state.SkipWithError("ICU is not in this build: its rows are left out");
}
BENCHMARK(Peer_Icu);
#endif

BENCHMARK(Token_Quorl);
BENCHMARK(Token_Standard);
BENCHMARK(Count_Quorl);
BENCHMARK(Count_Standard);
BENCHMARK(Padl_Quorl);
BENCHMARK(Padl_Standard);
BENCHMARK(ProperCase_Quorl);
BENCHMARK(Digits_Quorl);
BENCHMARK(Digits_Standard);
#ifdef QUORL_BENCH_ICU
BENCHMARK(Token_Icu);
BENCHMARK(Count_Icu);
BENCHMARK(Padl_Icu);
BENCHMARK(ProperCase_Icu);
#endif

}  // namespace
