// Brings what a file in the registry text format says into the store; for the bytes of the file see
// reader.hpp.
#pragma once

#include "quorl/registry/text/format.hpp"

namespace quorl {

/// Makes every change that `text` asks for, in its order, or none: a key or value that is absent
/// needs no deletion, and to delete a root key is to delete all that is in it.
///
/// Each root key gets its part as one durable change. Whatever can fail but the disk itself is done
/// for all root keys before the first gets its part, so that after a failure nothing has changed,
/// with one exception: when writing for a later root key fails, or the process is killed between
/// two of them, the earlier ones have theirs (in the order HKCR, HKCU, HKLM, HKU, HKCC). To import
/// the same again does the rest.
///
/// Failures are the store's, as those of `Registry`; the call in the Description names the root
/// keys. Failure 7 where memory does not suffice. May be called from any thread.
void ImportRegistry(const RegistryText& text);

}  // namespace quorl
