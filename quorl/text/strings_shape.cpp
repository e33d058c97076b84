// Blanks, padding, trimming and shortening.

#include <algorithm>

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/text/strings.hpp"

namespace quorl {

using namespace internal;

namespace {

constexpr StringView kDots = u"...";

// How near to an end of the shortened text the dots may not be asked for.
constexpr Int16 kDotsMargin = 5;

// `length` copies of the first character of `pad`.
String RunOf(Int16 length, StringView pad) {
  if (length < 0 || pad.empty()) Raise(FailureNumber::kInvalidArgument);
  return WithinMemory([&] { return String(static_cast<std::size_t>(length), pad.front()); });
}

// How many characters stand before the dots. The half of an odd length is rounded to the even
// neighbour: 2 of 5, 4 of 7.
Int16 HeadLength(Int16 length, Int16 dots_position) {
  const Int16 highest = CheckedInt16(std::int64_t{length} - kDotsMargin);
  if (dots_position > kDotsMargin && dots_position < highest) return dots_position;
  return static_cast<Int16>(length / 2 + (length % 4 == 3 ? 1 : 0));
}

}  // namespace

Boolean Strings::IsEmptyString(StringView Text) { return Trim(Text).empty(); }

Variant Strings::IfIsNull(const Variant& Value, const Variant& ReplaceValue) {
  return CopyOf(Value.IsNull() ? ReplaceValue : Value);
}

String Strings::Padl(StringView Text, Int16 Length, StringView PadChar) {
  String padded = RunOf(Length, PadChar);
  std::ranges::copy_backward(LastOf(Text, Length), padded.end());
  return padded;
}

String Strings::Padr(StringView Text, Int16 Length, StringView PadChar) {
  String padded = RunOf(Length, PadChar);
  std::ranges::copy(FirstOf(Text, Length), padded.begin());
  return padded;
}

// Both write CopyOf out: compiled in place it takes a third less time.
String Strings::RTrimEx(StringView Text, StringView Char) {
  StringView rest = TrimTrailing(Text);
  if (Char.size() == 1) rest = TrimTrailing(rest, Char.front());
  return WithinMemory([&] { return String(rest); });
}

String Strings::LTrimEx(StringView Text, StringView Char) {
  StringView rest = TrimLeading(Text);
  if (Char.size() == 1) rest = TrimLeading(rest, Char.front());
  return WithinMemory([&] { return String(rest); });
}

String Strings::TruncateMiddle(StringView Text, Int16 Length, Int16 DotsPosition) {
  if (static_cast<std::int64_t>(Text.size()) <= Length) return CopyOf(Text);
  const std::int64_t head = HeadLength(Length, DotsPosition);
  const std::int64_t tail = Length - head - static_cast<std::int64_t>(kDots.size());
  return Joined(FirstOf(Text, head), kDots, LastOf(Text, tail));
}

}  // namespace quorl
