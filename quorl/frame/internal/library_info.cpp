#include "quorl/frame/internal/library_info.hpp"

#include <new>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/enumerations.hpp"
#include "quorl/frame/internal/identifiers.hpp"
#include "quorl/frame/internal/type_info.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl::frame {
namespace {

const EnumeratorRow* FindEnumeratorRow(StringView name) {
  for (const EnumerationRow& row : kEnumerations) {
    for (const EnumeratorRow& member : row.members) {
      if (EqualsIgnoringCase(member.name, name)) return &member;
    }
  }
  return nullptr;
}

class LibraryInfo final : public abi::Counted<LibraryInfo, QuorlLibraryInfo> {
 public:
  LibraryInfo() noexcept : Counted(kTable) { CountUse(+1); }
  ~LibraryInfo() { CountUse(-1); }

  static bool Answers(const GUID& identifier) {
    return abi::operator==(identifier, QUORL_IID_LIBRARY_INFO);
  }

  static HRESULT GetLibraryAttributes(QuorlLibraryInfo*, QuorlLibraryAttributes* out) {
    if (out == nullptr) return E_POINTER;
    *out = {};
    return abi::GuardedSlot([&] {
      *out = {kLibraryIdentifier,
              abi::NewBstr(kLibraryName),
              1,
              0,
              static_cast<std::uint32_t>(Catalogue().size()),
              static_cast<std::uint32_t>(kEnumerations.size())};
      return S_OK;
    });
  }

  static HRESULT GetClass(QuorlLibraryInfo*, std::uint32_t index, QuorlTypeInfo** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (index >= Catalogue().size()) return DISP_E_BADINDEX;
    *out = NewTypeInfo(Catalogue()[index]);
    return *out == nullptr ? E_OUTOFMEMORY : S_OK;
  }

  static HRESULT GetEnumeration(QuorlLibraryInfo*, std::uint32_t index, QuorlEnumeration* out) {
    if (out == nullptr) return E_POINTER;
    *out = {};
    if (index >= kEnumerations.size()) return DISP_E_BADINDEX;
    return abi::GuardedSlot([&] {
      const EnumerationRow& row = kEnumerations[index];
      *out = {abi::NewBstr(row.name), static_cast<std::uint32_t>(row.members.size())};
      return S_OK;
    });
  }

  static HRESULT GetEnumerator(QuorlLibraryInfo*, std::uint32_t index, std::uint32_t member,
                               QuorlEnumerator* out) {
    if (out == nullptr) return E_POINTER;
    *out = {};
    if (index >= kEnumerations.size() || member >= kEnumerations[index].members.size()) {
      return DISP_E_BADINDEX;
    }
    return abi::GuardedSlot([&] {
      const EnumeratorRow& row = kEnumerations[index].members[member];
      *out = {abi::NewBstr(row.name), row.value};
      return S_OK;
    });
  }

  static HRESULT FindEnumerator(QuorlLibraryInfo*, const char16_t* name, std::int32_t* out) {
    if (out == nullptr) return E_POINTER;
    *out = 0;
    if (name == nullptr) return E_POINTER;
    const EnumeratorRow* found = FindEnumeratorRow(name);
    if (found == nullptr) return DISP_E_UNKNOWNNAME;
    *out = found->value;
    return S_OK;
  }

 private:
  static const QuorlLibraryInfoTable kTable;
};

const QuorlLibraryInfoTable LibraryInfo::kTable{QueryInterface,       AddRef,        Release,
                                                GetLibraryAttributes, GetClass,      GetEnumeration,
                                                GetEnumerator,        FindEnumerator};

}  // namespace

QuorlLibraryInfo* NewLibraryInfo() noexcept { return new (std::nothrow) LibraryInfo(); }

}  // namespace quorl::frame
