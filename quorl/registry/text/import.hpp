// Brings what a file in the registry text format says into the store; for the bytes of the file see
// reader.hpp.
#pragma once

#include "quorl/registry/text/format.hpp"

namespace quorl {

/// Makes every change that `text` asks for, or none. Deleting what is absent is no failure.
///
/// What is new is put together in memory first (below HKEY_DYN_DATA) and reaches each root key as
/// one lasting change. So a text for one root key without deletions is there whole or not at all
/// for every other process, and after the kill of this one or the loss of power too. Deletions are
/// made before that, one by one, and root keys follow one another: when one of these steps fails,
/// the former content is put back before the failure is raised; a process that is killed among them
/// leaves the rest to be done, which importing again does.
///
/// Failures are the store's, as those of `Registry`. Where the former content could not be put back
/// either, because the disk failed or the like, the Description says so in a line at its end. A key
/// or value that was deleted and put back has its name in the case in which `text` has it, and may
/// stand behind other values of its key. May be called from any thread; while it runs, nobody else
/// should write to the same keys.
void ImportRegistry(const RegistryText& text);

}  // namespace quorl
