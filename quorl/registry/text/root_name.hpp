// Keys by name, as text files and command lines write them. Pure functions.
#pragma once

#include <optional>

#include "quorl/registry/registry.hpp"

namespace quorl {

/// "HKEY_CURRENT_USER" and so on; the empty text for a number that is no root key.
StringView RootName(HKeyEnum root) noexcept;

/// A key by its root and the path below that.
struct KeyPlace {
  HKeyEnum root = HKEY_CURRENT_USER;
  String path;  ///< Empty for the root key itself.

  friend bool operator==(const KeyPlace&, const KeyPlace&) = default;
};

/// The key that a text such as "HKEY_CURRENT_USER\Software\Maison" names, in any case; HKCR, HKCU,
/// HKLM, HKU and HKCC stand for their roots too. Nothing when it begins with no root key.
/// Failure 7 where memory does not suffice, here and below.
std::optional<KeyPlace> PlaceNamed(StringView text);

/// The path with one backslash between two levels and no backslash at either end.
String TidyPath(StringView path);

/// The text that names a key, with the root's full name and a tidy path.
String NameOf(const KeyPlace& place);

}  // namespace quorl
