// GUIDs as texts: a new one, the two fixed ones, and one made from a number.
//
// The form is 38 characters, "{8-4-4-4-12}" hexadecimal digits, capitals above 9. Members hold no
// state that a caller can see and may be called from any thread and on both sides of a fork. Their
// one failure is 7, where memory does not hold the text.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl {

class GUIDs {
 public:
  /// A new GUID: 122 bits from the system's source of randomness, version 4. The empty text if the
  /// system gives none.
  static String CreateGUID();

  /// "{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}": all ones, whatever the name says.
  static String GetNullGUID();

  /// "{00000000-0000-0000-0000-000000000000}".
  static String GetZeroGUID();

  /// The zero GUID with `Number` in decimal digits in its first group, filled with zeros to eight
  /// digits and never cut: 42 gives "{00000042-0000-0000-0000-000000000000}", and -42 and 123456789
  /// give 39 characters.
  static String GetNumGUID(Int32 Number);
};

}  // namespace quorl
