// The one place where a failure leaves C++ for a result code.
#pragma once

#include "quorl/abi/quorl.h"

namespace quorl::frame {

/// Runs `work(context)`. A failure becomes the code of a call through a table, with the thread's
/// error info set.
HRESULT Guarded(void (*work)(void* context), void* context) noexcept;

template <class Work>
HRESULT Guarded(Work&& work) noexcept {
  return Guarded([](void* context) { (*static_cast<Work*>(context))(); }, &work);
}

}  // namespace quorl::frame
