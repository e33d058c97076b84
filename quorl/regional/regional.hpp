// `Regional`: the decimal and thousand separators that are in force, and those of the user's
// settings.
//
// There are two sources, which need not agree: `Locale::Current()` (quorl/runtime/locale.hpp), by
// which the library itself reads and writes numbers, and the text values "sDecimal", "sThousand",
// "sMonDecimalSep" and "sMonThousandSep" of the key "Control Panel\International" below
// HKEY_CURRENT_USER. An instance reads all six separators when it is made and keeps them: the
// properties give what was read then, until `GetRegional` or `SetRegional` is called on the same
// instance. Nothing else in the library looks at them. Whatever gives or takes a text raises
// failure 7 when memory is short.
//
// Most hosts use the hidden instance, `GlobalInstance<Regional>()` of global_instance.hpp. An
// instance is used from one thread at a time.
#pragma once

#include <array>

#include "quorl/runtime/enumerations.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl {

class Regional {
 public:
  /// Calls `GetRegional`; where that fails, no instance is made.
  Regional();

  /// The separators that the library applies, `DecimalChar` being the sixth character and
  /// `ThousandChar` the second of 1000.2 written with thousand separators and one decimal, as in
  /// "1,000.2". So a locale without a thousand separator gives "2" and "0", and one of two
  /// characters shifts what is read.
  String DecimalChar() const;
  String ThousandChar() const;

  /// Reads all six separators afresh. A value that is absent from the settings gives the empty
  /// text, one of another type the text that it converts to. Failures of `Registry::GetValue`, and
  /// for a value that has no text 13 (REG_BINARY) or 94 (types that `GetValue` gives as Null); what
  /// was read until then has changed.
  void GetRegional();

  /// Turns a typed comma (44) or point (46) into the decimal separator: `KeyAscii` becomes the code
  /// unit of the first character of `DecimalChar`. Any other key stays. Failure 5, with the key as
  /// it was, when there is no such character.
  void ConvertDecimalPoint(Int16& KeyAscii) const;

  /// The separators of numbers, and of amounts of money, in the user's settings.
  String NumDecimalChar() const;
  String NumThousandChar() const;
  String MonDecimalChar() const;
  String MonThousandChar() const;

  /// Whether numbers and amounts of money have the same separators, as they were last read.
  Boolean CheckRegional() const;

  /// Writes one separator to the user's settings and then remembers it. `Value` may be empty or
  /// longer than one character. Does nothing for any other `regionalItem`. `DecimalChar` and
  /// `ThousandChar` stay. Failures of `Registry::SaveValue`, after which nothing is remembered.
  void SetRegional(RegionalItemEnum regionalItem, StringView Value);

 private:
  String decimal_char_;
  String thousand_char_;
  // Those of the settings, in the order of RegionalItemEnum.
  std::array<String, 4> settings_;
};

}  // namespace quorl
