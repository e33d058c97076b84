// The test for an optional date, as an entry field needs it.
//
// A global class: no state, static members, usable from any thread.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl {

class Dates {
 public:
  /// True for a text of nothing but blanks, and for one that is a date by `Locale::Current()`.
  /// A tab is no blank: alone, it is False. Failure 7 where memory does not suffice to read the
  /// system's locale at its first use; no other.
  ///
  ///     Dates::IsDateOrEmpty(u"  ");          // true
  ///     Dates::IsDateOrEmpty(u"2024-02-30");  // false
  static Boolean IsDateOrEmpty(StringView Text);
};

}  // namespace quorl
