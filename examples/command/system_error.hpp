// Why a file could not be had, in the person's language.
#pragma once

#include <string>

namespace command {

/// `error` is an errno value.
std::string SystemErrorText(int error);

}  // namespace command
