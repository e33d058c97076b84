#include "quorl/regional/regional.hpp"

#include <array>
#include <cstddef>
#include <utility>

#include "quorl/registry/registry.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr Double kSample = 1000.2;
constexpr StringView kSampleFormat = u"0,000.0";
constexpr std::int64_t kThousandPlace = 2;
constexpr std::int64_t kDecimalPlace = 6;

constexpr Int16 kComma = u',';
constexpr Int16 kPoint = u'.';

Registry UserSettings() {
  Registry settings;
  settings.InitAbsolute(HKEY_CURRENT_USER, u"Control Panel\\International");
  return settings;
}

// In the order of RegionalItemEnum.
constexpr std::array<StringView, 4> kValueNames{u"sDecimal", u"sThousand", u"sMonDecimalSep",
                                                u"sMonThousandSep"};

}  // namespace

Regional::Regional() { GetRegional(); }

String Regional::DecimalChar() const { return CopyOf(decimal_char_); }
String Regional::ThousandChar() const { return CopyOf(thousand_char_); }
String Regional::NumDecimalChar() const { return CopyOf(settings_[riNumDecimalChar]); }
String Regional::NumThousandChar() const { return CopyOf(settings_[riNumThousandChar]); }
String Regional::MonDecimalChar() const { return CopyOf(settings_[riMonDecimalChar]); }
String Regional::MonThousandChar() const { return CopyOf(settings_[riMonThousandChar]); }

void Regional::GetRegional() {
  const String sample = FormatNumber(kSample, kSampleFormat);
  decimal_char_ = Slice(sample, kDecimalPlace, 1);
  thousand_char_ = Slice(sample, kThousandPlace, 1);
  Registry settings = UserSettings();
  for (std::size_t item = 0; item < kValueNames.size(); ++item) {
    settings_[item] = ToString(settings.GetValue(u"", kValueNames[item], u""));
  }
}

void Regional::ConvertDecimalPoint(Int16& KeyAscii) const {
  if (KeyAscii != kComma && KeyAscii != kPoint) return;
  if (decimal_char_.empty()) Raise(FailureNumber::kInvalidArgument);
  KeyAscii = static_cast<Int16>(decimal_char_.front());
}

Boolean Regional::CheckRegional() const {
  return settings_[riNumDecimalChar] == settings_[riMonDecimalChar] &&
         settings_[riNumThousandChar] == settings_[riMonThousandChar];
}

void Regional::SetRegional(RegionalItemEnum regionalItem, StringView Value) {
  if (regionalItem < 0 || regionalItem >= static_cast<Int32>(kValueNames.size())) return;
  const auto item = static_cast<std::size_t>(regionalItem);
  WithinMemory([&] {
    String value(Value);
    UserSettings().SaveValue(u"", kValueNames[item], Value, REG_SZ);
    settings_[item] = std::move(value);
  });
}

}  // namespace quorl
