// Files that hold settings in the registry text format. Refusal where one cannot be had.
#pragma once

#include <string>

#include "quorl/registry/text/reader.hpp"

namespace settings {

/// What a file says; "-" is standard input.
quorl::RegistryText ReadSettingsFile(
    const std::string& path, quorl::ForeignCharacters foreign = quorl::ForeignCharacters::kRefuse);

/// Replaces a file as a whole or not at all. A new one is for its owner alone.
void WriteFile(const std::string& path, const std::string& bytes);

}  // namespace settings
