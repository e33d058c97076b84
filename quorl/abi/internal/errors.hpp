// Failures between RaisedError and their binary forms: a result code, the thread's error info, the
// record of a call by name.
#pragma once

#include "quorl/abi/quorl.h"
#include "quorl/runtime/raised_error.hpp"

namespace quorl::abi {

/// 0x800A0000 + Number for a Number from 0 to 0xFFFF, any other with its top bit set.
HRESULT CodeOf(Int32 number) noexcept;

/// Raises any code of the store but 0, as `SystemCodeOf` reads it.
QUORL_API void RequireDone(Int32 code);

/// The code of a function of the header: E_OUTOFMEMORY or E_INVALIDARG for the runtime's own
/// failures, 0x80070000 + Number for the store's.
HRESULT SystemCodeOf(const RaisedError& error) noexcept;

/// Makes `error` the thread's error info. Without memory for it, the thread has none.
void SetErrorInfoOf(const RaisedError& error) noexcept;

/// Fills a record that the caller owns; what it holds is ignored. Without memory the texts stay
/// null.
QUORL_API void FillRecord(const RaisedError& error, EXCEPINFO& info) noexcept;

/// The failure that a host's record tells, once the host has been asked to fill it.
RaisedError ReadRecord(EXCEPINFO& info);

/// Frees the texts of a host's record.
inline void FreeRecord(EXCEPINFO& info) noexcept {
  SysFreeString(info.source);
  SysFreeString(info.description);
  SysFreeString(info.help_file);
  info = EXCEPINFO{};
}

}  // namespace quorl::abi
