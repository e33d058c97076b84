// Calls by name: names to identifiers, arguments to their places, defaults, the failure record. One
// plain adapter for all members, in the source of which the slot Invoke stands.
#pragma once

#include <cstdint>

#include "quorl/abi/quorl.h"
#include "quorl/frame/internal/class_row.hpp"

namespace quorl::frame {

/// `names[0]` is a member's name, those after it its arguments'; see quorl.h.
HRESULT IdentifiersOf(const ClassRow& row, const char16_t** names, std::uint32_t count,
                      std::int32_t* ids) noexcept;

/// What an argument of that type becomes when it is left out; the argument is optional.
Variant DefaultOf(const Argument& argument, const TypeRow& type);

}  // namespace quorl::frame
