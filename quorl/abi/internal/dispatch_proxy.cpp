#include "quorl/abi/internal/dispatch_proxy.hpp"

#include <vector>

#include "quorl/abi/internal/dispatch_stub.hpp"
#include "quorl/abi/internal/errors.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::abi {

using namespace internal;
namespace {

constexpr GUID kNoIdentifier{};

// How arguments reach the foreign member.
enum class Passing { kByValue, kByReference };

// The arguments of one call in binary form, in the reversed order of the contract.
class BinaryArguments {
 public:
  BinaryArguments(std::span<Variant> arguments, Passing passing) {
    owned_.reserve(arguments.size());
    passed_.reserve(arguments.size());
    for (std::size_t i = arguments.size(); i-- > 0;) {
      owned_.emplace_back(arguments[i]);
      passed_.push_back(passing == Passing::kByValue ? owned_.back().Get()
                                                     : ReferenceTo(owned_.back()));
    }
  }

  DISPPARAMS Parameters() noexcept {
    return {passed_.data(), nullptr, static_cast<std::uint32_t>(passed_.size()), 0};
  }

  // Brings back what the callee wrote.
  void WriteBackTo(std::span<Variant> arguments) const {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      arguments[i] = FromBinary(owned_[arguments.size() - 1 - i].Get());
    }
  }

 private:
  // A pointer to the value inside the VARIANT, of its own type; Empty and Null have none.
  static VARIANT ReferenceTo(OwnedVariant& owned) noexcept {
    VARIANT* value = owned.Address();
    const bool has_value = value->vt != VT_EMPTY && value->vt != VT_NULL;
    VARIANT reference{};
    reference.vt = static_cast<std::uint16_t>((has_value ? value->vt : int{VT_VARIANT}) | VT_BYREF);
    reference.value.reference = has_value ? static_cast<void*>(&value->value) : value;
    return reference;
  }

  std::vector<OwnedVariant> owned_;
  std::vector<VARIANT> passed_;
};

// What a host tells of its failure, freed on every way out.
struct HostRecord {
  HostRecord() = default;
  HostRecord(const HostRecord&) = delete;
  HostRecord& operator=(const HostRecord&) = delete;
  ~HostRecord() { FreeRecord(info); }

  EXCEPINFO info{};
};

class ForeignObject final : public LateBound {
 public:
  explicit ForeignObject(QuorlDispatch* dispatch)
      : dispatch_(Reference<QuorlDispatch>::Share(dispatch)) {}

  QuorlDispatch* Pointer() const noexcept { return dispatch_.Get(); }

  Variant Get(StringView name, std::span<Variant> arguments) override {
    return WithinMemory([&] {
      BinaryArguments binary(arguments, Passing::kByValue);
      return Invoke(name, ReadFlags(arguments), binary.Parameters());
    });
  }

  Variant GetByReference(StringView name, std::span<Variant> arguments) override {
    return WithinMemory([&] {
      BinaryArguments binary(arguments, Passing::kByReference);
      Variant result = Invoke(name, ReadFlags(arguments), binary.Parameters());
      binary.WriteBackTo(arguments);
      return result;
    });
  }

  void Put(StringView name, std::span<Variant> arguments, const Variant& value) override {
    WithinMemory([&] {
      std::vector<Variant> all(arguments.begin(), arguments.end());
      all.push_back(value);
      BinaryArguments binary(all, Passing::kByValue);
      DISPPARAMS parameters = binary.Parameters();
      std::int32_t named = QUORL_PUT_VALUE;
      parameters.named = &named;
      parameters.named_count = 1;
      Invoke(name, DISPATCH_PROPERTYPUT, parameters);
    });
  }

  Variant Call(StringView name, std::span<Variant> arguments) override {
    return WithinMemory([&] {
      BinaryArguments binary(arguments, Passing::kByValue);
      return Invoke(name, DISPATCH_METHOD, binary.Parameters());
    });
  }

 private:
  static std::uint16_t ReadFlags(std::span<Variant> arguments) {
    return arguments.empty() ? DISPATCH_PROPERTYGET : DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  }

  std::int32_t IdentifierOf(StringView name) const {
    if (name.empty()) return QUORL_DEFAULT_MEMBER;
    const String with_terminator(name);
    const char16_t* text = with_terminator.c_str();
    std::int32_t id = -1;
    QuorlDispatch* object = dispatch_.Get();
    Require(object->table->GetIDsOfNames(object, &kNoIdentifier, &text, 1, 0, &id));
    return id;
  }

  Variant Invoke(StringView name, std::uint16_t flags, DISPPARAMS parameters) const {
    const std::int32_t id = IdentifierOf(name);
    QuorlDispatch* object = dispatch_.Get();
    OwnedVariant result;
    HostRecord record;
    std::uint32_t wrong_argument = 0;
    const HRESULT code = object->table->Invoke(object, id, &kNoIdentifier, 0, flags, &parameters,
                                               result.Address(), &record.info, &wrong_argument);
    if (code == DISP_E_EXCEPTION) throw ReadRecord(record.info);
    Require(code);
    return FromBinary(result.Get());
  }

  static void Require(HRESULT code) {
    if (code == DISP_E_UNKNOWNNAME || code == DISP_E_MEMBERNOTFOUND) {
      Raise(FailureNumber::kNoSuchMember);
    }
    if (code < 0) throw RaisedError(code, kRuntimeSource, u"L'objet appelé a signalé un échec.");
  }

  Reference<QuorlDispatch> dispatch_;
};

}  // namespace

Object ObjectOf(QuorlDispatch* dispatch) {
  if (dispatch == nullptr) return Object();
  if (dispatch->table == nullptr) Raise(FailureNumber::kTypeMismatch);
  if (Object local = LocalObjectBehind(dispatch)) return local;
  return WithinMemory([&] { return MakeObject<ForeignObject>(dispatch); });
}

QuorlDispatch* ForeignPointerOf(const Object& object) noexcept {
  const auto* foreign = dynamic_cast<const ForeignObject*>(object.Target());
  return foreign == nullptr ? nullptr : foreign->Pointer();
}

QuorlDispatch* DispatchOf(const Object& object) {
  if (object.IsEmpty()) return nullptr;
  if (QuorlDispatch* foreign = ForeignPointerOf(object)) {
    foreign->table->AddRef(foreign);
    return foreign;
  }
  return NewLocalDispatch(object);
}

}  // namespace quorl::abi
