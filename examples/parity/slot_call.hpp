// Calls of members through the table of their class, as a compiled host makes them: every argument
// of the very type that the table has, nothing converted. What the table has is asked of the
// object's type information.
#pragma once

#include <map>
#include <optional>
#include <vector>

#include "examples/parity/binary.hpp"
#include "examples/parity/by_name.hpp"

namespace parity {

/// A member of a table.
struct Slot {
  QuorlFunction function;
  Name name;
  struct Parameter {
    Name name;
    std::uint16_t type;
    bool is_optional;
    Value otherwise;  ///< What it is when it is left out.
  };
  std::vector<Parameter> parameters;
};

/// The table of the object's class; empty for an object without type information.
std::vector<Slot> SlotsOf(QuorlDispatch* object);

/// The outcome of the call in `entry`, whose objects have their pointers. Empty when a host cannot
/// make the call through the table, because it needs a conversion or is a wrong one.
std::optional<Outcome> CallThroughTable(QuorlDispatch* object, const std::vector<Slot>& slots,
                                        const Identifiers& ids, const Entry& entry);

}  // namespace parity
