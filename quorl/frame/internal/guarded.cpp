#include "quorl/frame/internal/guarded.hpp"

#include <new>

#include "quorl/abi/internal/errors.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl::frame {

using namespace internal;

HRESULT Guarded(void (*work)(void* context), void* context) noexcept {
  try {
    // Anything else that the standard library throws is memory that ran out.
    WithinMemory([&] { work(context); });
    return S_OK;
  } catch (const RaisedError& error) {
    abi::SetErrorInfoOf(error);
    return abi::CodeOf(error.Number());
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace quorl::frame
