// Takes a key with all below it out of the store, as a file in the registry text format has it; for
// the bytes of the file see writer.hpp.
#pragma once

#include "quorl/registry/text/format.hpp"

namespace quorl {

/// The key at `place` and every key below it, each before its subkeys, with all values as they are
/// stored. A key or value that another process changes meanwhile is given as it is when it is
/// reached. Failure 2 when the key is absent; other failures as those of `Registry`. May be called
/// from any thread.
RegistryText ExportRegistry(const KeyPlace& place);

/// The same of the one key, without what is below it.
RegistryTextKey ExportKey(const KeyPlace& place);

}  // namespace quorl
