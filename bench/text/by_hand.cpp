// The same in plain standard C++, as a host would write it, with a std::u16string as the result;
// and the C library's copy and search of memory.
#include <algorithm>
#include <cstring>

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
  const std::size_t at = text.find(kOld);
  if (at == StringView::npos) return String(text);
  String replaced;
  replaced.reserve(text.size() - kOld.size() + kNew.size());
  return replaced.append(text.substr(0, at)).append(kNew).append(text.substr(at + kOld.size()));
}

String Padded(StringView text) {
  String padded(20, u'*');
  std::copy(text.begin(), text.end(), padded.end() - std::ssize(text));
  return padded;
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
  String digits(text.size(), u'\0');
  std::size_t count = 0;
  for (const char16_t unit : text) {
    digits[count] = unit;
    count += unit >= u'0' && unit <= u'9' ? 1 : 0;
  }
  digits.resize(count);
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
