// Calls by name, as a host makes them that learns at run time what an object has.
#pragma once

#include <vector>

#include "examples/parity/binary.hpp"

namespace parity {

/// What the object answers to the names in a call.
struct Identifiers {
  HRESULT code = S_OK;
  std::int32_t member = -1;
  std::vector<std::int32_t> named;  ///< Of the named arguments, in their order.
};
Identifiers IdentifiersOf(QuorlDispatch* object, const Entry& call);

/// The outcome of a call whose objects have their pointers. A result is asked for where the log's
/// outcome has one, or fails.
Outcome CallByName(QuorlDispatch* object, const Identifiers& ids, const Entry& call);

/// The outcome of a search for names.
Outcome FindByName(QuorlDispatch* object, const Entry& find);

}  // namespace parity
