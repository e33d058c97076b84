#include "quorl/abi/internal/dispatch_stub.hpp"

#include <algorithm>
#include <utility>
#include <vector>

#include "quorl/abi/internal/errors.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::abi {

using namespace internal;
namespace {

class LocalDispatch final : public Counted<LocalDispatch, QuorlDispatch> {
 public:
  explicit LocalDispatch(Object object) : Counted(kTable), object_(std::move(object)) {}

  static bool Answers(const GUID& identifier) { return identifier == IID_IDispatch; }
  static bool IsOne(const QuorlDispatch* dispatch) { return dispatch->table == &kTable; }
  const Object& Target() const { return object_; }

  static HRESULT GetTypeInfoCount(QuorlDispatch*, std::uint32_t* count) {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }

  static HRESULT GetTypeInfo(QuorlDispatch*, std::uint32_t, std::uint32_t, void** out) {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    return DISP_E_BADINDEX;
  }

  static HRESULT GetIDsOfNames(QuorlDispatch* self, const GUID*, const char16_t** names,
                               std::uint32_t count, std::uint32_t, std::int32_t* ids) {
    if (names == nullptr || ids == nullptr || count == 0 || names[0] == nullptr) return E_POINTER;
    std::fill_n(ids, count, -1);
    return GuardedFunction([&] {
      ids[0] = From(self)->IdentifierOf(names[0]);
      return count == 1 ? S_OK : DISP_E_UNKNOWNNAME;  // arguments have no names here
    });
  }

  static HRESULT Invoke(QuorlDispatch* self, std::int32_t id, const GUID*, std::uint32_t,
                        std::uint16_t flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* info, std::uint32_t*) {
    const ClearedResult cleared(result);
    if (parameters == nullptr) return E_POINTER;
    if (parameters->argument_count != 0 && parameters->arguments == nullptr) return E_POINTER;
    if (parameters->argument_count > kMostArguments) return DISP_E_BADPARAMCOUNT;
    if (HasNamedArgument(flags, *parameters)) return DISP_E_PARAMNOTFOUND;
    return Guarded(
        [&] {
          const Variant given = From(self)->Perform(id, flags, *parameters);
          if (result != nullptr) WriteBinary(given, *result);
          return S_OK;
        },
        [&](const RaisedError& error) {
          if (IsUnknownMember(error)) return DISP_E_MEMBERNOTFOUND;
          if (info != nullptr) FillRecord(error, *info);
          return DISP_E_EXCEPTION;
        });
  }

 private:
  static constexpr std::uint32_t kMostArguments = 255;

  // Arguments have no names here, but for the new value of a put.
  static bool HasNamedArgument(std::uint16_t flags, const DISPPARAMS& parameters) {
    const bool is_put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    if (parameters.named_count == 0) return false;
    return !is_put || parameters.named_count != 1 || parameters.named == nullptr ||
           *parameters.named != QUORL_PUT_VALUE;
  }

  static bool IsUnknownMember(const RaisedError& error) {
    return error.Number() == static_cast<Int32>(FailureNumber::kNoSuchMember) &&
           error.Source() == kRuntimeSource;
  }

  // Identifiers count from 1 in the order in which names are first asked for.
  std::int32_t IdentifierOf(StringView name) {
    auto found = std::ranges::find_if(
        names_, [&](const String& known) { return EqualsIgnoringCase(known, name); });
    if (found == names_.end()) found = names_.insert(names_.end(), String(name));
    return static_cast<std::int32_t>(found - names_.begin()) + 1;
  }

  String NameOf(std::int32_t id) const {
    if (id == QUORL_DEFAULT_MEMBER) return {};
    if (id < 0 || static_cast<std::size_t>(id) > names_.size()) Raise(FailureNumber::kNoSuchMember);
    return names_[static_cast<std::size_t>(id) - 1];
  }

  Variant Perform(std::int32_t id, std::uint16_t flags, const DISPPARAMS& parameters) {
    const String name = NameOf(id);
    std::vector<Variant> arguments;
    for (std::uint32_t i = parameters.argument_count; i-- > 0;) {
      arguments.push_back(FromBinary(parameters.arguments[i]));
    }
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0 && !arguments.empty()) {
      const Variant value = arguments.back();
      arguments.pop_back();
      object_.Put(name, arguments, value);
      return Empty;
    }
    Variant result = (flags & DISPATCH_PROPERTYGET) != 0 ? object_.Get(name, arguments)
                                                         : object_.Call(name, arguments);
    for (std::uint32_t i = 0; i < parameters.argument_count; ++i) {
      WriteBack(parameters.arguments[i], arguments[parameters.argument_count - 1 - i]);
    }
    return result;
  }

  static const QuorlDispatchTable kTable;

  Object object_;
  std::vector<String> names_;
};

const QuorlDispatchTable LocalDispatch::kTable{
    QueryInterface, AddRef, Release, GetTypeInfoCount, GetTypeInfo, GetIDsOfNames, Invoke};

}  // namespace

QuorlDispatch* NewLocalDispatch(const Object& object) {
  return WithinMemory([&] { return new LocalDispatch(object); });
}

Object LocalObjectBehind(QuorlDispatch* dispatch) noexcept {
  if (!LocalDispatch::IsOne(dispatch)) return Object();
  return LocalDispatch::From(dispatch)->Target();
}

}  // namespace quorl::abi
