#include "quorl/abi/internal/errors.hpp"

#include <new>
#include <utility>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/store/status.hpp"

namespace quorl::abi {
namespace {

constexpr std::uint32_t kLibraryCode = 0x800A0000;
constexpr std::uint32_t kSystemCode = 0x80070000;
constexpr std::uint32_t kNumberBits = 0xFFFF;

class ErrorInfo final : public Counted<ErrorInfo, QuorlErrorInfo> {
 public:
  explicit ErrorInfo(const RaisedError& error) noexcept : Counted(kTable), error_(error) {}

  static bool Answers(const GUID& identifier) { return identifier == IID_IErrorInfo; }

  static HRESULT GetGUID(QuorlErrorInfo*, GUID* out) {
    if (out == nullptr) return E_POINTER;
    *out = GUID{};
    return S_OK;
  }
  static HRESULT GetSource(QuorlErrorInfo* self, BSTR* out) {
    return Give(From(self)->error_.Source(), out);
  }
  static HRESULT GetDescription(QuorlErrorInfo* self, BSTR* out) {
    return Give(From(self)->error_.Description(), out);
  }
  static HRESULT GetHelpFile(QuorlErrorInfo*, BSTR* out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return S_OK;
  }
  static HRESULT GetHelpContext(QuorlErrorInfo*, std::uint32_t* out) {
    if (out == nullptr) return E_POINTER;
    *out = 0;
    return S_OK;
  }

 private:
  static HRESULT Give(const String& text, BSTR* out) {
    if (out == nullptr) return E_POINTER;
    *out = SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size()));
    return *out == nullptr ? E_OUTOFMEMORY : S_OK;
  }

  static const QuorlErrorInfoTable kTable;

  RaisedError error_;
};

const QuorlErrorInfoTable ErrorInfo::kTable{QueryInterface, AddRef,        Release,
                                            GetGUID,        GetSource,     GetDescription,
                                            GetHelpFile,    GetHelpContext};

using ErrorReference = Reference<QuorlErrorInfo>;

// A plain pointer, which is sound even while the thread ends; what it holds then goes with it.
thread_local constinit QuorlErrorInfo* threads_error = nullptr;

QuorlErrorInfo* TakeThreadsError() noexcept { return std::exchange(threads_error, nullptr); }

struct FreeWithThread {
  ~FreeWithThread() { ErrorReference::Adopt(TakeThreadsError()); }
};

void SetThreadsError(ErrorReference error) noexcept {
  static thread_local const FreeWithThread at_the_end;
  const ErrorReference former = ErrorReference::Adopt(TakeThreadsError());
  threads_error = error.Detach();
}

BSTR TextOrNull(const String& text) noexcept {
  return SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size()));
}

Int32 NumberOf(const EXCEPINFO& info) {
  const auto code = static_cast<std::uint32_t>(info.scode);
  if (code == 0) return info.code;
  return (code & ~kNumberBits) == kLibraryCode ? static_cast<Int32>(code & kNumberBits)
                                               : info.scode;
}

}  // namespace

HRESULT CodeOf(Int32 number) noexcept {
  const auto bits = static_cast<std::uint32_t>(number);
  return static_cast<HRESULT>(bits <= kNumberBits ? kLibraryCode + bits : bits | 0x80000000U);
}

void SetErrorInfoOf(const RaisedError& error) noexcept {
  SetThreadsError(ErrorReference::Adopt(new (std::nothrow) ErrorInfo(error)));
}

void RequireDone(Int32 code) {
  if (code != kDone) throw RaisedError(code, u"Quorl", u"");
}

HRESULT SystemCodeOf(const RaisedError& error) noexcept {
  if (error.Source() == kRuntimeSource) {
    const bool is_memory = error.Number() == static_cast<Int32>(FailureNumber::kOutOfMemory);
    return is_memory ? E_OUTOFMEMORY : E_INVALIDARG;
  }
  return QUORL_CODE(kSystemCode + (static_cast<std::uint32_t>(error.Number()) & kNumberBits));
}

void FillRecord(const RaisedError& error, EXCEPINFO& info) noexcept {
  info = EXCEPINFO{};
  info.source = TextOrNull(error.Source());
  info.description = TextOrNull(error.Description());
  info.scode = CodeOf(error.Number());
}

RaisedError ReadRecord(EXCEPINFO& info) {
  if (info.fill_in != nullptr) info.fill_in(&info);
  return RaisedError(NumberOf(info), ViewOf(info.source), ViewOf(info.description));
}

}  // namespace quorl::abi

using namespace quorl::abi;

extern "C" {

HRESULT GetErrorInfo(uint32_t, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = TakeThreadsError();
  return *out == nullptr ? S_FALSE : S_OK;
}

HRESULT SetErrorInfo(uint32_t, void* info) {
  SetThreadsError(ErrorReference::Share(static_cast<QuorlErrorInfo*>(info)));
  return S_OK;
}

}  // extern "C"
