// The allocator's exceptions as the runtime's failure 7, for every member that allocates.
#pragma once

#include <new>
#include <stdexcept>
#include <utility>

#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::internal {

/// Runs `work` and turns the allocator's exceptions into failure 7, so that a size that a caller
/// provoked comes out as a RaisedError like everything else.
template <class Work>
decltype(auto) WithinMemory(Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const std::bad_alloc&) {
    Raise(FailureNumber::kOutOfMemory);
  } catch (const std::length_error&) {
    Raise(FailureNumber::kOutOfMemory);
  }
}

/// A copy for the caller. Failure 7 where memory does not hold it.
inline String CopyOf(StringView text) {
  return WithinMemory([&] { return String(text); });
}
inline String CopyOf(const String& text) { return CopyOf(StringView(text)); }
inline Variant CopyOf(const Variant& value) {
  return WithinMemory([&] { return Variant(value); });
}

}  // namespace quorl::internal
