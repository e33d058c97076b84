// Trees of keys: those of the registry as it stands, and those that a settings file makes. Every
// command that looks at more than one value works on what is got here: a `RegistryText` without
// deletions, whose keys stand in the order of `CompareKeys`.
#pragma once

#include <compare>
#include <optional>
#include <vector>

#include "quorl/registry/text/format.hpp"

namespace settings {

/// Keys in the order in which the registry lists them: each before its subkeys, these by name.
std::strong_ordering CompareKeys(const quorl::KeyPlace& left, const quorl::KeyPlace& right);

/// How many levels below its root key.
std::size_t DepthOf(const quorl::KeyPlace& place);

/// The key with all below it; none where it is absent. What the store refuses is raised.
std::optional<quorl::RegistryText> KeysOf(const quorl::KeyPlace& place);

/// The same of several keys, none of which is below another; those that are absent are left out.
quorl::RegistryText KeysOf(const std::vector<quorl::KeyPlace>& places);

/// What these keys are after such a file was brought into an empty registry.
quorl::RegistryText KeysMadeBy(const quorl::RegistryText& file,
                               const std::vector<quorl::KeyPlace>& places);

/// The keys that the file speaks of, without those below another of them.
std::vector<quorl::KeyPlace> TopKeysOf(const quorl::RegistryText& file);

}  // namespace settings
