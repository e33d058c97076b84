// Values of database fields to values of a program and back, the way between a record and what a
// person sees and types.
//
// Reading maps `Null`, a field without a value, to a plain default; writing maps a blank or invalid
// entry to `Null`. Texts are read and written by `Locale::Current()`, except in the two members
// whose names begin with `Dot`, whose decimal separator is "." everywhere. An amount that comes as
// a `Currency` stays exact. Members hold no state and may be called from any thread.
//
//     Object fields = ...;                                       // the host's record set
//     Int16 at = DbLib::FieldPos(u"Price", fields);              // 3: the third field
//     String shown = DbLib::StrFieldValue(price);                // "1234,5" in France, "" for Null
//     Variant stored = DbLib::StrNumToField(u"1 234,50");        // the Double 1234.5
#pragma once

#include "quorl/runtime/variant.hpp"

namespace quorl {

/// Conversions of field values. An object counts as the value of its default member. Common to the
/// members that read: 13 for an array, `Missing`, an empty reference and an object without a plain
/// value; 94 for an object whose value is Null; what a default member raises. Common to all: 7
/// where memory does not hold the result.
class DbLib {
 public:
  /// The position, from 1, of the first field whose name is `FieldName` by code unit (case counts),
  /// or 0. `Fields` holds a collection of the host's with a member `Count` and a default member
  /// that takes an Int16 index from 0 and gives an object with a member `Name`. A name that is Null
  /// matches nothing.
  ///
  /// Failure 424 if `Fields`, or what the collection gives for a field, is no object; 91 for an
  /// empty reference; 438 where a member is missing; 94 and 13 for a `Count` that is Null or no
  /// number; 6 for a `Count` of NaN, above 32768 or below -32767 and for a match at the 32768th
  /// field; 13 and 6 for a `Name` that has no text. Other failures of the host pass unchanged.
  static Int16 FieldPos(StringView FieldName, const Variant& Fields);

  /// A text without its trailing blanks, any other value as text without blanks at both ends; ""
  /// for Null. Failure 6 for NaN, infinities and a Date outside the calendar (years 100 to 9999).
  static String StrFieldValue(const Variant& FieldValue);

  /// The value as text, untrimmed; "{00000000-0000-0000-0000-000000000000}" for Null. Failure 6 as
  /// above.
  static String GuidFieldValue(const Variant& GUID);

  /// The value as it is, of whatever type, a text and Empty included; the Int16 0 for Null. Never
  /// fails but for memory.
  static Variant NumFieldValue(const Variant& FieldValue);

  /// The value as a date, a number counting as days from 1899-12-30; that day for Null. Failure 13
  /// for a text that is no date, 6 for a number outside the calendar (years 100 to 9999).
  static Date DateFieldValue(const Variant& FieldValue);

  /// The same date as text, its time left out at midnight; "" for Null. Failures 13 and 6 as above.
  static String StrDateFieldValue(const Variant& FieldValue);

  /// True for any number but 0 and for a truth word; False for Null. Failure 13 for a text that is
  /// neither number nor truth word, 6 for NaN and for a text that is a number beyond a Double.
  static Boolean BoolFieldValue(const Variant& FieldValue);

  /// 2 for Null, 1 for a value that equals True by number (True and -1), else 0: a stored 1 gives
  /// 0, and so does an object whose value is Null. Failure 13 for a text that is no number, 6 for
  /// one beyond a Double.
  static Int16 TriStateFieldValue(const Variant& FieldValue);

  /// Null for a text of blanks alone or none, otherwise the text, untrimmed.
  static Variant StrToField(StringView Text);

  /// Null for "{00000000-0000-0000-0000-000000000000}" exactly, otherwise the text as it is, an
  /// empty one too.
  static Variant StrGuidToField(StringView Text);

  /// The number that the whole text reads as, a Double; Null for a text that is no number or lies
  /// beyond a Double.
  static Variant StrNumToField(StringView Text);

  /// The date that the whole text reads as; Null for a text that is no date.
  static Variant StrDateToField(StringView Text);

  /// False for 0, True for 1, Null for anything else.
  static Variant TriStateToBoolField(Int16 NumValue);

  /// As `StrFieldValue`, but a value that is no text is written as a number with "." and without a
  /// zero before it: 0.5 is ".5", True is "-1", Empty is "0", a date its days. "" for Null.
  /// Failure 6 for NaN and infinities; for an object whose value is a text, 13 if it is no number
  /// and 6 if it lies beyond a Double.
  static String DotStrFieldValue(const Variant& FieldValue);

  /// Null for a text of blanks alone or none, otherwise the number at its head, a Double, with "."
  /// as separator everywhere: 12 for "12abc" and "12,5", 0 for "abc". Failure 6 for a number beyond
  /// a Double.
  static Variant DotStrNumToField(StringView Text);

  /// The text with each "'" doubled, for a statement that the host writes: `l'eau` gives `l''eau`.
  /// Failure 6 for a quote at position 32767 or later.
  static String DuplicateQuotte(StringView Text);

  /// " " for Null, Empty and the empty text; otherwise the value as text, untrimmed. Failure 6 as
  /// for `StrFieldValue`.
  static String SpaceIfEmptyOrNull(const Variant& xVar);
};

}  // namespace quorl
