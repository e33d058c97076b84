#include "quorl/abi/internal/guarded.hpp"

#include "quorl/abi/internal/errors.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl::abi {

HRESULT CodeOfCaught(internal::FunctionRef<HRESULT(const RaisedError&)> code_of) noexcept {
  try {
    internal::WithinMemory([] { throw; });
  } catch (const RaisedError& error) {
    return code_of(error);
  } catch (...) {
  }
  return E_UNEXPECTED;
}

HRESULT SlotCodeOfCaught() noexcept {
  return CodeOfCaught([](const RaisedError& error) {
    SetErrorInfoOf(error);
    return CodeOf(error.Number());
  });
}

HRESULT FunctionCodeOfCaught() noexcept {
  return CodeOfCaught([](const RaisedError& error) { return SystemCodeOf(error); });
}

}  // namespace quorl::abi
