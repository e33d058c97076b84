#include "quorl/abi/internal/guarded.hpp"

#include "quorl/abi/internal/errors.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl::abi {

HRESULT Guarded(Work work, internal::FunctionRef<HRESULT(const RaisedError&)> code_of) noexcept {
  try {
    return internal::WithinMemory(work);
  } catch (const RaisedError& error) {
    return code_of(error);
  } catch (...) {
    return E_UNEXPECTED;
  }
}

HRESULT GuardedSlot(Work work) noexcept {
  return Guarded(work, [](const RaisedError& error) {
    SetErrorInfoOf(error);
    return CodeOf(error.Number());
  });
}

HRESULT GuardedFunction(Work work) noexcept {
  return Guarded(work, [](const RaisedError& error) { return SystemCodeOf(error); });
}

}  // namespace quorl::abi
