// Paths as the registration keeps them: bytes outside printable ASCII, and the percent sign itself,
// as "%XX".
#pragma once

#include <string>
#include <string_view>

#include "quorl/runtime/export.h"

namespace quorl::abi {

QUORL_API std::string PercentEscaped(std::string_view bytes);
/// The bytes again; a malformed escape stands for itself.
std::string PercentUnescaped(std::string_view text);

}  // namespace quorl::abi
