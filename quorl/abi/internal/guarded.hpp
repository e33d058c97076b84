// The one place where a failure leaves C++ for a result code.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/internal/function_ref.hpp"

namespace quorl::abi {

/// Work that gives a result code.
using Work = internal::FunctionRef<HRESULT()>;

/// Runs `work`. A failure that it raises becomes the code that `code_of` gives for it; memory that
/// ran out is the runtime's failure 7 by then. E_UNEXPECTED for an exception of a host's own.
QUORL_API HRESULT Guarded(Work work,
                          internal::FunctionRef<HRESULT(const RaisedError&)> code_of) noexcept;

/// The same for a slot of a table: the failure becomes the thread's error info.
QUORL_API HRESULT GuardedSlot(Work work) noexcept;

/// The same for a function of the C header: E_OUTOFMEMORY or E_INVALIDARG for the runtime's own
/// failures, 0x80070000 + Number for the store's.
QUORL_API HRESULT GuardedFunction(Work work) noexcept;

}  // namespace quorl::abi
