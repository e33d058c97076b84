// The root keys by name, as text files and command lines write them. Constants; free of threads'
// concerns.
#pragma once

#include <optional>

#include "quorl/registry/registry.hpp"

namespace quorl {

/// "HKEY_CURRENT_USER" and so on; the empty text for a number that is no root key.
StringView RootName(HKeyEnum root) noexcept;

/// A key by its root and the path below that.
struct KeyPlace {
  HKeyEnum root = HKEY_CURRENT_USER;
  String path;
};

/// The key that a text such as "HKEY_CURRENT_USER\Software\Maison" names, in any case; HKCR, HKCU,
/// HKLM, HKU and HKCC stand for their roots too. None when it begins with no root key.
std::optional<KeyPlace> PlaceNamed(StringView text);

/// The path with one backslash between two levels and none at either end.
String TidyPath(StringView path);

/// The text that names a key, with the root's full name and a tidy path.
String NameOf(const KeyPlace& place);

}  // namespace quorl
