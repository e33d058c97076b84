// The registry text format: keys and values as administrators keep and carry them in a file.
//
//     Windows Registry Editor Version 5.00
//
//     ; a comment, on a line of its own or after a value
//     [HKEY_CURRENT_USER\Software\Maison\Caisse]
//     @="the value without a name"
//     "Chemin"="C:\\Données\\\"2024\""
//     "Copies"=dword:00000002
//     "Logo"=hex:89,50,4e,47
//     "Autres"=hex(7):41,00,00,00,00,00
//     "Ancienne"=-
//
//     [-HKEY_CURRENT_USER\Software\Maison\Essai]
//
// A section opens with a key, whose line ends with its closing bracket, and lists values; a minus
// deletes the key with all below it, or the value. A text in quotes has \\ and \" for a backslash
// and a quote, and may run over several lines. The bytes of a `hex` go on in the next line after a
// backslash, after which and below which comments may stand. `hex(n)` is a value of type n, any
// hexadecimal number of 32 bits, `hex` alone is type 3. In version 5.00 the bytes of the text types
// 1, 2 and 7 are those of UTF-16; the store keeps these texts in single bytes, so that they are
// converted on the way in and on the way out, and nothing is lost in a file that comes from the
// store. Version 4 ("REGEDIT4") is a file of single bytes, texts within `hex(n)` included.
//
// A file that `WriteRegistryText` makes says in its second line which line is its last, so that one
// that was cut off is refused. To add to such a file by hand, delete its second line. In a file of
// another program that line is absent, and nothing is said about its end.
//
// This header has what a file says; reader.hpp and writer.hpp turn that into bytes and back,
// import.hpp and export.hpp bring it into the store and out of it. Plain values; thread-compatible.
#pragma once

#include <string>
#include <vector>

#include "quorl/registry/text/root_name.hpp"

namespace quorl {

/// One value, as the store has it or is to have it.
struct RegistryTextValue {
  String name;               ///< Empty for the value without a name.
  bool is_deletion = false;  ///< The value is deleted, and type and data mean nothing.
  Int32 type = 0;
  std::string data;  ///< As it is stored: a text in single bytes with its terminator.

  friend bool operator==(const RegistryTextValue&, const RegistryTextValue&) = default;
};

/// One section. The key is made if need be, then its values are set and deleted; or it is deleted
/// with all below it, and has no values.
struct RegistryTextKey {
  KeyPlace place;
  bool is_deletion = false;
  std::vector<RegistryTextValue> values;

  friend bool operator==(const RegistryTextKey&, const RegistryTextKey&) = default;
};

/// A file, section by section. What a later one says goes over what an earlier one says.
using RegistryText = std::vector<RegistryTextKey>;

/// Source of the failures of reading and writing the format.
inline constexpr StringView kRegistryTextSource = u"Quorl.RegistryText";

/// The second line of a file that `WriteRegistryText` makes, and its last one: comments both.
inline constexpr StringView kEndAnnouncement = u"; Complete only if the last line is \"; end\".";
inline constexpr StringView kEndLine = u"; end";

/// Whether the format writes a type's bytes as UTF-16, and the store in single bytes: 1, 2 and 7.
constexpr bool IsTextType(Int32 type) { return type == 1 || type == 2 || type == 7; }

}  // namespace quorl
