// Writes a file in the registry text format, version 5.00; for the format see format.hpp.
// Touches neither files nor the store. May be called from any thread.
#pragma once

#include <string>

#include "quorl/registry/text/format.hpp"

namespace quorl {

enum class RegistryTextEncoding {
  kUtf16,  ///< With a mark, low byte first: what other programs of the kind expect.
  kUtf8,   ///< Without a mark.
};

/// The content of a file that says `text`; `ReadRegistryText` gives the same again, and lines end
/// with CR LF. Failure 5000 with Source "Quorl.RegistryText" for a key whose name holds a line
/// break, which the format has no way to write; 7 where memory does not suffice.
std::string WriteRegistryText(const RegistryText& text,
                              RegistryTextEncoding encoding = RegistryTextEncoding::kUtf16);

}  // namespace quorl
