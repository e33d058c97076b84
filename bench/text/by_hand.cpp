// The same in plain standard C++, as a host would write it, with a std::u16string as the result;
// and the C library's copy and search of memory.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "bench/text/inputs.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "by hand";

String Token(StringView text, char16_t separator, int index) {
  std::size_t start = 0;
  for (; index > 1; --index) {
    const std::size_t found = text.find(separator, start);
    if (found == StringView::npos) return {};
    start = found + 1;
  }
  return String(text.substr(start, text.find(separator, start) - start));
}

String Replaced(StringView text) {
  String replaced(text);
  const std::size_t at = replaced.find(kOld);
  return at == String::npos ? replaced : replaced.replace(at, kOld.size(), kNew);
}

String Padded(StringView text) {
  String padded(20 - std::min<std::size_t>(text.size(), 20), u'*');
  return padded.append(text);
}

String Shortened(StringView text) {
  if (text.size() <= 20) return String(text);
  String shortened;
  shortened.reserve(20);
  return shortened.append(text.substr(0, 8)).append(u"...").append(text.substr(text.size() - 9));
}

String Trimmed(StringView text) {
  text = text.substr(0, text.find_last_not_of(u' ') + 1);
  return String(text.substr(0, text.find_last_not_of(u'0') + 1));
}

String Digits(StringView text) {
  String digits;
  digits.reserve(text.size());
  std::ranges::copy_if(text, std::back_inserter(digits),
                       [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
  return digits;
}

// Two bytes a unit: what is found at an odd byte is no text.
std::ptrdiff_t CountInMemory(StringView text) {
  std::ptrdiff_t count = 0;
  const auto* at = reinterpret_cast<const char*>(text.data());
  const char* const begin = at;
  const char* const end = at + text.size() * 2;
  const auto next = [&] {
    return static_cast<const char*>(memmem(at, static_cast<std::size_t>(end - at),
                                           kCountedWord.data(), kCountedWord.size() * 2));
  };
  for (const char* found = next(); found != nullptr; found = next()) {
    const bool whole = (found - begin) % 2 == 0;
    count += whole ? 1 : 0;
    at = found + (whole ? kCountedWord.size() * 2 : 1);
  }
  return count;
}

void LongTexts() {
  Measure(kCountOne, AtSize("copy", kMillion), StretchesOf(kMillion), [](StringView text) {
    static String target(kMillion, u'\0');
    std::memcpy(target.data(), text.data(), text.size() * 2);
    benchmark::ClobberMemory();
    return target.data();
  });
  Measure(kCountOne, AtSize(kWho, kMillion), StretchesOf(kMillion),
          [](StringView text) { return std::ranges::count(text, u';'); });
  Measure(kCountWord, AtSize("memmem", kMillion), StretchesOf(kMillion), CountInMemory);
  MeasureWorstFind(kWho, [](StringView text, StringView sought) { return text.find(sought); });
  for (const std::size_t size : kAnySizes) {
    Measure(kAnyInLong, AtSize(kWho, size), NoneFound(size),
            [](const Search& search) { return search.text.find_first_of(search.sought); });
  }
}

const AtStart rows([] {
  LongTexts();
  Measure(kToken, kWho, Lines, [](const String& text) { return Token(text, u';', 3); });
  Measure(kReplace, kWho, TextsWithOld, Replaced);
  Measure(kPad, kWho, Figures, Padded);
  Measure(kShorten, kWho, Names, Shortened);
  Measure(kTrim, kWho, FiguresWithZeros, Trimmed);
  Measure(kDigits, kWho, MixedTexts, Digits);
  Measure(kAnyInShort, kWho, TextsWithMarks,
          [](const String& text) { return text.find_first_of(kMarks); });
});

}  // namespace
