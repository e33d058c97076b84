// Picks an entry of a host's combo box by its text, a part of its text or the number stored with
// it.
//
// The combo box is the host's own object, reached by the names of four members: `ListCount`; `List`
// and `ItemData` with the index of an entry from 0, an Int16, which `List` gets by reference; and
// `ListIndex`, the selected entry or -1. Nothing else of it is touched, and no reference is kept.
// Called from the combo's thread.
//
// Texts match when they are equal character for character after blanks at both ends are taken off
// and all is lower-cased: case does not count, accents and blanks inside do. The entry at the
// lowest index wins. A search that finds nothing clears the selection.
//
//     ComboBoxEx::CmbSelectMatchToken(combo, u"1000", 2);  // "Bruxelles 1000"
//     Int32 id = ComboBoxEx::CmbCurrentItemData(combo, 0);
#pragma once

#include "quorl/runtime/object.hpp"
#include "quorl/runtime/types.hpp"

namespace quorl {

/// Each selecting member reads `ListCount` once, the entries in order up to the first match, and
/// writes `ListIndex` once, an Int16, as its last step: after a failure the selection is what it
/// was. Failures of all: 91 for an empty `Combo`; 438 for a member that is missing; 6 for a
/// `ListCount` of NaN, above 32768 or below -32767, or of 32768 without a match; 94 and 13 for a
/// `ListCount` or an entry that is Null or has no number or text, 6 for an entry of NaN or outside
/// the calendar; 7 when memory is short; others of the host unchanged.
class ComboBoxEx {
 public:
  /// Selects the first entry that matches `Text`. With a `Length` other than 0 only the first
  /// `Length` characters of both count, cut before blanks are taken off. Failure 5 for a negative
  /// `Length`, before the combo is touched.
  static void CmbSelectMatchString(const Object& Combo, StringView Text, Int16 Length = 0);

  /// Selects the first entry whose token number `Index`, from 1, matches `Text`. Tokens stand
  /// between single blanks, so that two blanks have an empty one between them; one beyond the last
  /// is empty too, and an empty one matches a `Text` of blanks or none. An `Index` below 1 is taken
  /// for 1. Failure 6 for -32768 at the first entry that is not empty, thus not for an empty list.
  static void CmbSelectMatchToken(const Object& Combo, StringView Text, Int16 Index = 1);

  /// Selects the first entry of which the `Length` characters from position `Start`, from 1, match
  /// the whole of `Text`; with 0 all characters from there on. Failure 5 at the first entry, thus
  /// not for an empty list, for a `Start` below 1 or a negative `Length`.
  static void CmbSelectMatchSubString(const Object& Combo, StringView Text, Int16 Start = 1,
                                      Int16 Length = 0);

  /// Selects the first entry whose `ItemData` is that number; Null is no number and does not match.
  /// Failure 13 for an entry's `ItemData` that is a text without a number, an array, Missing or an
  /// object without a plain value, 6 for a text beyond a Double.
  static void CmbSelectItemData(const Object& Combo, Int32 ItemData);

  /// The `ItemData` of the selected entry, `DefValue` if none is. `ListIndex` is read a second time
  /// for the index and passed on as the combo gave it. Failure 6 for an `ItemData` beyond an Int32,
  /// 13 for one that is no number, 94 for Null; 13 and 6 for a `ListIndex` that is no number.
  static Int32 CmbCurrentItemData(const Object& Combo, Int32 DefValue);
};

}  // namespace quorl
