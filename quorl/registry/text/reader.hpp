// Reads a file in the registry text format; for the format see format.hpp. Touches neither
// files nor the store. May be called from any thread.
#pragma once

#include <string_view>

#include "quorl/registry/text/format.hpp"

namespace quorl {

/// What becomes of a character that the store has no place for.
enum class ForeignCharacters {
  kRefuse,   ///< The file is bad.
  kReplace,  ///< It becomes "?", as everywhere in `Registry`.
};

/// What a file's content says. `bytes` is the content: version 5.00 in UTF-16 with a mark, low byte
/// first, or in UTF-8 with or without one; version 4 in single bytes.
///
/// A file that is not wholly good raises `RegistryTextError` (fault.hpp), failure 5000 with Source
/// "Quorl.RegistryText" and a Description that begins with the file and the line, "caisse.reg:12:
/// ", and says in French what is wrong there. Bad are: an unknown header or encoding, a line that
/// is neither key nor value nor comment, a key below no root key, the deletion of a root key, a
/// value before the first key or below a deleted one, a name that the store does not take, an
/// unknown or cut off content, a lone backslash in a text, half a character in the bytes of a text,
/// a file that announces its last line and lacks it, and a file that neither announces it nor has a
/// key. Failure 7 where memory does not suffice.
RegistryText ReadRegistryText(std::string_view bytes, StringView file,
                              ForeignCharacters foreign = ForeignCharacters::kRefuse);

}  // namespace quorl
