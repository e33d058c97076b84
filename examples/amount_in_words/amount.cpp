#include "examples/amount_in_words/amount.hpp"

#include <algorithm>
#include <optional>

#include "examples/amount_in_words/problem.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/number_text.hpp"

namespace amounts {

using quorl::Currency;
using quorl::Locale;
using quorl::StringView;

namespace {

constexpr StringView kMarks = u",.";

// The mark that a unit stands for as a separator of thousands, 0 if it is none.
constexpr char16_t GroupMark(char16_t unit) {
  if (IsBlank(unit)) return u' ';
  if (unit == u'\'' || unit == u'\u2019') return u'\u2019';
  return kMarks.find(unit) != StringView::npos ? unit : u'\0';
}

std::size_t DecimalMarkAt(StringView number) {
  const std::size_t last = number.find_last_of(kMarks);
  if (last == StringView::npos) return last;
  const bool both = number.find(number[last] == u',' ? u'.' : u',') != StringView::npos;
  return both || number.find(number[last]) == last ? last : StringView::npos;
}

// The one mark between groups of three digits, 0 without groups; none for anything else.
std::optional<char16_t> GroupMarkOf(StringView whole) {
  char16_t mark = u'\0';
  std::size_t run = 0;
  for (const char16_t unit : whole) {
    if (IsDigit(unit)) {
      ++run;
      continue;
    }
    const char16_t next = GroupMark(unit);
    const bool fits = mark == u'\0' ? run >= 1 && run <= 3 : next == mark && run == 3;
    if (next == u'\0' || !fits) return std::nullopt;
    mark = next;
    run = 0;
  }
  return mark == u'\0' || run == 3 ? std::optional(mark) : std::nullopt;
}

Currency ReadUnsigned(StringView number, StringView shown) {
  const std::size_t at = DecimalMarkAt(number);
  const bool has_decimals = at != StringView::npos;
  const StringView decimals = has_decimals ? number.substr(at + 1) : StringView();
  const auto group = GroupMarkOf(number.substr(0, at));
  const bool all_digits = std::ranges::all_of(decimals, IsDigit);
  if (!group || !all_digits || number.empty() || has_decimals == decimals.empty()) {
    Refuse(messages::kNoAmount, shown);
  }
  if (decimals.size() > kMostDecimals) Refuse(messages::kTooManyDecimals, shown);
  static Locale locale;  // made once: of an amount only the separators are its own
  locale.decimal_separator = has_decimals ? number[at] : *group == u'.' ? u',' : u'.';
  locale.thousand_separator.assign(*group != u'\0' ? 1 : 0, *group);
  Currency amount;
  const auto reading = quorl::ReadCurrency(number, locale, amount);
  if (reading == quorl::NumberReading::kOutOfRange) Refuse(messages::kOutOfRange, shown);
  if (reading != quorl::NumberReading::kGood) Refuse(messages::kNoAmount, shown);
  return amount;
}

}  // namespace

StringView WithoutBlanks(StringView text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

Currency ReadAmount(StringView text) {
  StringView number = WithoutBlanks(text);
  const bool negative = number.starts_with(u'-') || number.starts_with(u'\u2212');
  if (negative || number.starts_with(u'+')) number.remove_prefix(1);
  const Currency amount = ReadUnsigned(number, text);
  return negative ? -amount : amount;
}

}  // namespace amounts
