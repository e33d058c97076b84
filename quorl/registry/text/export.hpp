// Takes a key with all below it out of the store, as a file in the registry text format has it; for
// the bytes of the file see registry_text_writer.hpp.
#pragma once

#include "quorl/registry/text/format.hpp"

namespace quorl {

/// The key at `path` below `root` and every key below it, each before its subkeys, with all values
/// as they are stored. Keys and values that another process changes meanwhile are given as they are
/// when they are come to. Failure 2 when the key is absent; other failures as those of `Registry`.
/// May be called from any thread.
RegistryText ExportRegistry(HKeyEnum root, StringView path);

/// The same of the one key, without what is below it.
RegistryTextKey ExportKey(HKeyEnum root, StringView path);

}  // namespace quorl
