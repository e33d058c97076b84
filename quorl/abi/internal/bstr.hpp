// Texts in binary form, for the rooms that stand on this one. The functions of the C header
// (quorl.h) are their public side.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/types.hpp"

namespace quorl::abi {

/// What a BSTR holds, valid as long as it is; a null one is the empty text.
QUORL_API StringView ViewOf(const char16_t* bstr) noexcept;

/// A new BSTR with that text, the caller's to free. Failure 7 when memory ran out.
QUORL_API BSTR NewBstr(StringView text);

}  // namespace quorl::abi
