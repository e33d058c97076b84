// `Strings`: cutting, counting, searching, shaping and filtering of texts.
//
// A character is one 16-bit code unit; lengths and positions count code units. Positions start at
// 1, and 0 means that nothing was found. Characters are compared by code unit: no member but
// `WinVal` depends on a locale, and case and accents always count. A blank is U+0020 alone; tabs,
// line ends and no-break blanks are ordinary characters.
//
// Every member is a function of its arguments, which it only reads: there is no state, and any
// number of threads may call at once (`WinVal` as far as `Locale::Current()` is left alone). Where
// an argument, a result or a counter is an Int16 it ends at 32767, and going past raises failure 6;
// nothing is ever cut silently. Every member that gives a text or a Variant raises failure 7 when
// memory is short; the others but `WinVal` ask for none. For reading numbers see
// quorl/runtime/number_text.hpp.
#pragma once

#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// All members are static; an object may be made and used just as well.
///
///     Strings::GetToken(u"red;green;blue", u";", 2);  // u"green"
///     Strings::NbrTokens(u"red;green;blue", u";");    // u"3"
///     Strings::Padl(u"42", 8, u"0");                  // u"00000042"
///     Strings::ProperCase(u"JEAN DUPONT");            // u"Jean Dupont"
///     Strings::DigitsOf(u"+32 2 555 01 20");          // u"3225550120"
class Strings {
 public:
  /// True if `Text` is empty or holds blanks alone.
  static Boolean IsEmptyString(StringView Text);

  /// A copy of `ReplaceValue`, of whatever type, where `Value` is Null; otherwise a copy of
  /// `Value`, Empty and Missing included.
  static Variant IfIsNull(const Variant& Value, const Variant& ReplaceValue);

  /// `Text` brought to exactly `Length` characters at its left end: filled with the first character
  /// of `PadChar`, or cut there when it is too long. Padl(u"12", 5, u"0") is "00012",
  /// Padl(u"abcdef", 3) is "def". Failure 5 for a negative `Length` or an empty `PadChar`.
  static String Padl(StringView Text, Int16 Length, StringView PadChar = u" ");
  /// The same at the right end. Padr(u"12", 5, u"0") is "12000", Padr(u"abcdef", 3) is "abc".
  static String Padr(StringView Text, Int16 Length, StringView PadChar = u" ");

  /// The plural of a French word by the short rule: `Text` without the blanks around it and with an
  /// s after it, a capital S where the last character is absent or below U+0061, as A to Z and the
  /// digits are; nothing is added after s, x, S and X. "mot" gives "mots", "MOT" "MOTS", "prix"
  /// "prix", "cheval" "chevals", "CAFÉ" "CAFÉs".
  static String Pluriel(StringView Text);

  /// `Text` in lower case, but for its first character and each character after a blank, which are
  /// in upper case. "l'école du PORT" gives "L'école Du Port", "jean-pierre" "Jean-pierre".
  /// Failure 6 for more than 32767 characters, or a blank at position 32767.
  static String ProperCase(StringView Text);

  /// How many tokens `Text` has, in decimal digits: the occurrences of `Separator` that
  /// `StrCount` counts, plus 1; "0" for an empty `Text`. Failure 6 as for `StrCount`, but never on
  /// an empty `Text`.
  static String NbrTokens(StringView Text, StringView Separator);

  /// The token of that number, counted from 1: what stands between two neighbouring occurrences of
  /// `Separator`, or between one and an end of `Text`. Neighbouring separators delimit an empty
  /// token, and nothing is trimmed. `Separator` is matched as a whole; an empty one gives an empty
  /// token. An `Index` of 0 or below counts as 1; one past the last token gives the empty text.
  /// GetToken(u"a,,b", u",", 3) is "b". Failure 6 for an `Index` of -32768 on a text that is not
  /// empty.
  ///
  /// The search runs over `Text` with one more `Separator` after it. A separator that overlaps
  /// itself ("aaa") may thus be found across the end of `Text`, which takes the last token's end
  /// with it: GetToken(u"xaa", u"aaa") is "x", and the next `Index` gives what is left after that
  /// occurrence but for one character, here "a".
  static String GetToken(StringView Text, StringView Separator = u" ", Int16 Index = 1);

  /// How often `SubString` occurs, from left to right and without overlap: 2 for "aa" in "aaaa".
  /// 0 for an empty `Text`. Failure 6 for a `SubString` of more than 32767 characters, for an empty
  /// one in a text that is not empty, and for more than 2147483647 occurrences.
  static Int32 StrCount(StringView Text, StringView SubString);

  /// `Text` with its first occurrence of `OldSubString`, and only that one, replaced. An empty
  /// `OldSubString` is found at the very front, but not in an empty `Text`. Failure 6 where the
  /// position found, or it plus the length of `OldSubString`, is above 32767; without an occurrence
  /// the position counts as 0.
  static String StrTran(StringView Text, StringView OldSubString, StringView NewSubString);

  /// The letters A to Z and a to z and the digits 0 to 9 of `Text`, in their order. Accented
  /// letters are dropped. Failure 6 for more than 32766 characters.
  static String AphpaNumericOf(StringView Text);
  /// The digits 0 to 9 of `Text`. Failure 6 as for `AphpaNumericOf`.
  static String DigitsOf(StringView Text);

  /// The number that the whole of `Text` holds by `Locale::Current()`, 0 where it holds none or one
  /// beyond a Double. "1 234,56" is 1234.56 under fr-FR; "12abc" is 0 everywhere. Failure 7 where
  /// memory does not suffice to read the system's locale at its first use; no other.
  static Double WinVal(StringView Text);

  /// The same as `AphpaNumericOf`, under its other name.
  static String AlphpaNumericOf(StringView Text);
  /// The letters A to Z and a to z of `Text`. Failure 6 as for `AphpaNumericOf`.
  static String AlphpabeticOf(StringView Text);

  /// `Text` without its trailing blanks, and then without the run of `Char` that stands at its end.
  /// A blank after which `Char` was removed stays. A `Char` of any length but 1 removes nothing.
  /// RTrimEx(u"12.500  ", u"0") is "12.5".
  static String RTrimEx(StringView Text, StringView Char = u" ");
  /// The mirror of `RTrimEx`, at the front. LTrimEx(u"  007", u"0") is "7".
  static String LTrimEx(StringView Text, StringView Char = u" ");

  /// True if the first character of `Text`, in lower case, is one of "aàâäeéèêioôöuûü". True for
  /// the empty text as well.
  static Boolean IsVoyelle(StringView Text);

  /// The position in `cText` of the first `cSubString` that begins at `nStart` or after, or 0.
  /// With an `nCount` other than 0 it must lie within the `nCount` characters from `nStart` on; a
  /// range past the end stops there, and a negative `nCount` leaves no room. An empty `cSubString`
  /// is found at `nStart`, up to one past the end, but never in an empty `cText`.
  /// IndexOf(u"abcabc", u"bc", 3) is 5; IndexOf(u"abcabc", u"bc", 1, 2) is 0.
  /// Failure 5 for an `nStart` below 1, and for `nCount` not 0 with `nStart` + `nCount` - 1 below
  /// 0. Failure 6 for a position above 32767, and for `nCount` not 0 with `nStart` + `nCount`, or
  /// that minus 1, outside an Int16; where both apply, the range is computed first.
  static Int16 IndexOf(StringView cText, StringView cSubString, Int16 nStart = 1, Int16 nCount = 0);
  /// Whether `IndexOf` gives a position. Failures as there.
  static Boolean Contains(StringView cText, StringView cSubString, Int16 nStart = 1,
                          Int16 nCount = 0);

  /// The position of the first character at `nStart` or after that is one of `cAnyOf`, or 0; with
  /// an `nCount` above 0 among the `nCount` characters from `nStart` on, otherwise up to the end.
  /// IndexOfAny(u"abcabc", u"xc", 4) is 6.
  /// Failure 5 for an `nStart` below 1. Failure 6: with an `nCount` above 0 as for `IndexOf`;
  /// without, for more than 32767 characters, and for exactly 32767 without a match.
  static Int16 IndexOfAny(StringView cText, StringView cAnyOf, Int16 nStart = 1, Int16 nCount = 0);
  /// Whether `IndexOfAny` gives a position. Failures as there.
  static Boolean ContainsAny(StringView cText, StringView cAnyOf, Int16 nStart = 1,
                             Int16 nCount = 0);

  /// True if `Text` holds nothing but the digits 0 to 9; so True for the empty text. Failure 6 for
  /// more than 32767 characters, and for exactly 32767 digits.
  static Boolean IsDigits(StringView Text);

  /// `Text` itself if it has at most `Length` characters; otherwise its head and its tail with
  /// "..." between, `Length` characters in all. The dots stand in the middle, or after
  /// `DotsPosition` characters where that is above 5 and below `Length` - 5.
  /// TruncateMiddle(u"abcdefghijklmnopqrstuvwxyz", 20, 6) is "abcdef...pqrstuvwxyz".
  /// For a text that has to be cut: failure 5 for a `Length` below 5, 6 for one below -32763.
  static String TruncateMiddle(StringView Text, Int16 Length, Int16 DotsPosition = 0);
};

}  // namespace quorl
