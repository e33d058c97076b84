// Tokens, occurrences and positions.

#include <algorithm>
#include <array>
#include <bitset>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/search.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/unit_block.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;

namespace {

std::int64_t LengthOf(StringView text) { return static_cast<std::int64_t>(text.size()); }

// A text with one separator after it, in which `GetToken` searches, without the copy that putting
// the two together would take. The separator is not empty.
class ClosedText {
 public:
  ClosedText(StringView text, StringView separator)
      : text_(text), separator_(separator), search_(text, separator) {}

  // The first separator at or after `start`, or 0; `start` never goes back.
  std::int64_t FindSeparator(std::int64_t start) {
    const std::size_t found = search_.Next(static_cast<std::size_t>(start - 1));
    return found != StringView::npos ? static_cast<std::int64_t>(found) + 1 : FindAcrossEnd(start);
  }

  // What lies at or after `start`, a position after the text.
  StringView RestAfterText(std::int64_t start) const {
    return SliceFrom(separator_, start - LengthOf(text_));
  }

 private:
  // A separator that the text does not hold whole begins in its last characters, one fewer than the
  // separator has, or is the one after the text. The former takes a separator that overlaps itself,
  // which holds its first character again.
  std::int64_t FindAcrossEnd(std::int64_t start) const {
    if (separator_.find(separator_.front(), 1) == StringView::npos) {
      const std::int64_t after = LengthOf(text_) + 1;
      return start <= after ? after : 0;
    }
    const StringView tail = LastOf(text_, LengthOf(separator_) - 1);
    const std::int64_t skipped = LengthOf(text_) - LengthOf(tail);
    const String closed_tail = Joined(tail, separator_);
    const std::int64_t found =
        Find(std::max<std::int64_t>(start - skipped, 1), closed_tail, separator_);
    return found == 0 ? 0 : found + skipped;
  }

  StringView text_;
  StringView separator_;
  Search search_;
};

// The last position of the range that `nStart` and `nCount` give, or the text's end before it.
std::int64_t EndOfRange(StringView text, Int16 start, Int16 count) {
  const Int16 after = CheckedInt16(std::int64_t{start} + count);
  const Int16 end = CheckedInt16(std::int64_t{after} - 1);
  return std::min<std::int64_t>(end, LengthOf(text));
}

// The first place in `text` of one of one to four `units`, or npos: each is compared with eight
// characters at once.
std::size_t FindAnyOfFour(StringView text, StringView units) {
  std::array<UnitBlock, 4> wanted;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    wanted[i] = BlockOf(units[std::min(i, units.size() - 1)]);
  }
  std::size_t place = 0;
  for (; place + kBlockUnits <= text.size(); place += kBlockUnits) {
    const UnitBlock block = BlockAt(text.data() + place);
    const Lanes lanes((block == wanted[0]) | (block == wanted[1]) | (block == wanted[2]) |
                      (block == wanted[3]));
    if (!lanes.IsEmpty()) return place + lanes.First();
  }
  return text.find_first_of(units, place);
}

// The same for a few units more, or none.
std::size_t FindAnyOfFew(StringView text, StringView units) {
  std::size_t place = 0;
  for (; place + kBlockUnits <= text.size(); place += kBlockUnits) {
    const UnitBlock block = BlockAt(text.data() + place);
    UnitBlock wanted{};
    for (const char16_t unit : units) {
      wanted |= static_cast<UnitBlock>(block == BlockOf(unit));
    }
    const Lanes lanes(wanted);
    if (!lanes.IsEmpty()) return place + lanes.First();
  }
  return text.find_first_of(units, place);
}

// So many comparisons cost about as much as an empty set of all units.
constexpr std::size_t kComparisons = 512;

// The same for many units, in a time that grows with the sum of both lengths.
std::size_t FindAnyOfMany(StringView text, StringView units) {
  const std::size_t near = kComparisons / units.size();
  const std::size_t found = FindAnyOfFew(text.substr(0, near), units);
  if (found != StringView::npos) return found;
  std::bitset<0x10000> wanted;
  for (const char16_t unit : units) wanted[unit] = true;
  for (std::size_t place = near; place < text.size(); ++place) {
    if (wanted[text[place]]) return place;
  }
  return StringView::npos;
}

std::size_t FindAny(StringView text, StringView units) {
  if (!units.empty() && units.size() <= 4) return FindAnyOfFour(text, units);
  return text.size() * units.size() <= kComparisons ? FindAnyOfFew(text, units)
                                                    : FindAnyOfMany(text, units);
}

}  // namespace

String Strings::NbrTokens(StringView Text, StringView Separator) {
  if (Text.empty()) return u"0";
  const Int32 tokens = CheckedInt32(std::int64_t{StrCount(Text, Separator)} + 1);
  return ToString(tokens);
}

String Strings::GetToken(StringView Text, StringView Separator, Int16 Index) {
  if (Text.empty()) return {};
  const Int16 skipped_tokens = CheckedInt16(std::int64_t{Index} - 1);
  // An empty separator is found wherever the search stands, so nothing ever moves on.
  if (Separator.empty()) return {};

  ClosedText closed(Text, Separator);
  std::int64_t start = 1;
  for (Int16 token = 0; token < skipped_tokens; ++token) {
    const std::int64_t found = closed.FindSeparator(start);
    if (found == 0) return {};
    start = found + LengthOf(Separator);
  }
  const std::int64_t end = closed.FindSeparator(start);
  // Without an end the search stands after the whole text, and one character further counts.
  if (end == 0) return CopyOf(closed.RestAfterText(start + 1));
  return CopyOf(Slice(Text, start, end - start));
}

Int32 Strings::StrCount(StringView Text, StringView SubString) {
  const Int16 length = LengthAsInt16(SubString);
  if (Text.empty()) return 0;
  // An empty text would be found at the first position for ever, past the limit of any count.
  if (length == 0) Raise(FailureNumber::kOverflow);
  // One character cannot overlap itself, and counting it needs no search.
  if (length == 1) return CheckedInt32(static_cast<std::int64_t>(CountOf(Text, SubString.front())));
  Search search(Text, SubString);
  std::int64_t count = 0;
  for (std::size_t found = search.Next(0); found != StringView::npos;
       found = search.Next(found + SubString.size())) {
    ++count;
  }
  return CheckedInt32(count);
}

String Strings::StrTran(StringView Text, StringView OldSubString, StringView NewSubString) {
  const Int16 found = CheckedInt16(Find(1, Text, OldSubString));
  const Int16 after = CheckedInt16(found + LengthOf(OldSubString));
  if (found == 0) return CopyOf(Text);
  return Joined(FirstOf(Text, found - 1), NewSubString, SliceFrom(Text, after));
}

Int16 Strings::IndexOf(StringView cText, StringView cSubString, Int16 nStart, Int16 nCount) {
  const StringView searched =
      nCount == 0 ? cText : FirstOf(cText, EndOfRange(cText, nStart, nCount));
  return CheckedInt16(Find(nStart, searched, cSubString));
}

Boolean Strings::Contains(StringView cText, StringView cSubString, Int16 nStart, Int16 nCount) {
  return IndexOf(cText, cSubString, nStart, nCount) > 0;
}

Int16 Strings::IndexOfAny(StringView cText, StringView cAnyOf, Int16 nStart, Int16 nCount) {
  const std::int64_t end =
      nCount > 0 ? EndOfRange(cText, nStart, nCount) : std::int64_t{LengthAsInt16(cText)};
  if (nStart > end) return 0;
  const StringView scanned = Slice(cText, nStart, end - nStart + 1);
  const std::size_t offset = FindAny(scanned, cAnyOf);
  if (offset != StringView::npos) return static_cast<Int16>(nStart + static_cast<Int16>(offset));
  // Published limit: the counter is 16 bits and must reach one past the end (failure 6).
  CheckedInt16(end + 1);
  return 0;
}

Boolean Strings::ContainsAny(StringView cText, StringView cAnyOf, Int16 nStart, Int16 nCount) {
  return IndexOfAny(cText, cAnyOf, nStart, nCount) > 0;
}

}  // namespace quorl
