// The one place where a failure leaves C++ for a result code.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/internal/function_ref.hpp"

namespace quorl::abi {

/// Within a handler of any exception: the code that `code_of` gives for the failure. Memory that
/// ran out is the runtime's failure 7 by then. E_UNEXPECTED for an exception of a host's own.
QUORL_API HRESULT CodeOfCaught(internal::FunctionRef<HRESULT(const RaisedError&)> code_of) noexcept;
/// The same for a slot of a table: the failure becomes the thread's error info.
QUORL_API HRESULT SlotCodeOfCaught() noexcept;
/// The same for a function of the C header: E_OUTOFMEMORY or E_INVALIDARG for the runtime's own
/// failures, 0x80070000 + Number for the store's.
QUORL_API HRESULT FunctionCodeOfCaught() noexcept;

/// Runs `work`, which gives a result code; a failure that it raises becomes one as above. A call
/// that does not fail pays nothing for it.
template <class Work, class CodeOf>
HRESULT Guarded(const Work& work, const CodeOf& code_of) noexcept {
  try {
    return work();
  } catch (...) {
    return CodeOfCaught(code_of);
  }
}

template <class Work>
HRESULT GuardedSlot(const Work& work) noexcept {
  try {
    return work();
  } catch (...) {
    return SlotCodeOfCaught();
  }
}

template <class Work>
HRESULT GuardedFunction(const Work& work) noexcept {
  try {
    return work();
  } catch (...) {
    return FunctionCodeOfCaught();
  }
}

}  // namespace quorl::abi
