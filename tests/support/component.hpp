// The component as a host in another language meets it: its library, calls in each of the three
// ways with plain values, an object of the host's own, and arguments of every kind.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/dispatch_proxy.hpp"
#include "quorl/abi/internal/guarded.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/cells.hpp"
#include "tests/support/recording_host.hpp"

namespace quorl {

using namespace internal;

using abi::OwnedVariant;
using abi::Reference;
using frame::ClassRow;
using frame::MemberKind;
using frame::MemberRow;

constexpr const char* kComponentPath = QUORL_BINARY_DIR "/libquorl.so";

/// A component's library with its four exports, loaded as long as this lives.
class Library {
 public:
  explicit Library(const std::string& path = kComponentPath)
      : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { dlclose(handle_); }

  template <class Interface = QuorlClassFactory>
  Reference<Interface> Factory(const ClassRow& row,
                               const GUID& identifier = IID_IClassFactory) const {
    Reference<Interface> factory;
    EXPECT_EQ(get_class_object(&row.identifier, &identifier, factory.Receive()), S_OK);
    return factory;
  }
  /// A new instance under any identifier of its class.
  Reference<QuorlDispatch> Make(const ClassRow& row, const GUID& identifier) const {
    const auto factory = Factory(row);
    Reference<QuorlDispatch> object;
    EXPECT_EQ(
        factory.Get()->table->CreateInstance(factory.Get(), nullptr, &identifier, object.Receive()),
        S_OK);
    return object;
  }
  Reference<QuorlDispatch> Make(StringView name) const {
    const ClassRow& row = *frame::FindClass(name);
    return Make(row, row.CurrentInterface());
  }

  template <class Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(dlsym(handle_, name));
  }

  void* const handle_;
  const DllGetClassObjectFunction get_class_object =
      Find<DllGetClassObjectFunction>("DllGetClassObject");
  const DllCanUnloadNowFunction can_unload_now = Find<DllCanUnloadNowFunction>("DllCanUnloadNow");
  const DllRegisterServerFunction register_server =
      Find<DllRegisterServerFunction>("DllRegisterServer");
  const DllUnregisterServerFunction unregister_server =
      Find<DllUnregisterServerFunction>("DllUnregisterServer");
};

/// What a call gave: a value, or a code with the failure's record. Values are compared by type and
/// content; a NaN is the same as another.
struct CallResult {
  Variant value;
  HRESULT code = S_OK;
  Failure failure;

  friend bool operator==(const CallResult& a, const CallResult& b) {
    const bool same_value =
        a.value == b.value || (!a.value.Holds<Array>() && Shown(a.value) == Shown(b.value));
    return same_value && a.code == b.code && a.failure == b.failure;
  }
  friend void PrintTo(const CallResult& result, std::ostream* out) {
    PrintTo(result.value, out);
    *out << " code " << std::hex << static_cast<std::uint32_t>(result.code) << std::dec << ' ';
    PrintTo(result.failure, out);
  }
};

/// The Number that a code stands for.
inline Int32 NumberIn(HRESULT code) {
  const auto bits = static_cast<std::uint32_t>(code);
  return bits >> 16 == 0x800A ? static_cast<Int32>(bits & 0xFFFF) : code;
}

/// A text that a caller owns, taken as a value.
inline String Taken(BSTR text) {
  String copy(abi::ViewOf(text));
  SysFreeString(text);
  return copy;
}

/// The thread's error info with `code` for its Number, taken away; nothing if there is none.
inline Failure TakenErrorInfo(HRESULT code = S_OK) {
  Reference<QuorlErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) != S_OK) return {};
  BSTR texts[] = {nullptr, nullptr, nullptr};
  std::uint32_t context = 1;
  QuorlErrorInfo* object = info.Get();
  EXPECT_EQ(object->table->GetSource(object, &texts[0]), S_OK);
  EXPECT_EQ(object->table->GetDescription(object, &texts[1]), S_OK);
  EXPECT_EQ(object->table->GetHelpFile(object, &texts[2]), S_OK);
  EXPECT_EQ(object->table->GetHelpContext(object, &context), S_OK);
  EXPECT_TRUE(texts[2] == nullptr && context == 0);
  return {NumberIn(code), Taken(texts[0]), Taken(texts[1])};
}

/// Stands around every call of the three ways; the test of lacking memory puts its own here.
inline std::function<HRESULT(const std::function<HRESULT()>&)> around_call =
    [](const std::function<HRESULT()>& call) { return call(); };

/// The slot of a table that takes anything: whole numbers and pointers travel in six registers,
/// reals in registers of their own, VARIANTs on the stack, each in their order, and a callee looks
/// at those that it knows of. A VARIANT goes to the stack on x86-64, and as a pointer among the
/// whole numbers on AArch64: not to be moved then.
struct SlotArguments {
  std::array<std::int64_t, 5> w{};
  std::array<double, 4> r{};
  std::array<VARIANT, 4> v{};
  std::size_t wholes = 0;
  std::size_t reals = 0;
  std::size_t variants = 0;

  void Add(VariantType type, const VARIANT& value) {
    if (type == VariantType::kVariant) {
      v.at(variants) = value;
#if defined(__aarch64__)
      Add(&v.at(variants));
#endif
      ++variants;
    } else if (type == VariantType::kDouble || type == VariantType::kDate) {
      r.at(reals++) = value.value.r8;
    } else {
      const bool is_short = value.vt == VT_I2 || value.vt == VT_BOOL;
      w.at(wholes++) = is_short ? value.value.i2 : value.value.cy;
    }
  }
  void Add(const void* pointer) { w.at(wholes++) = reinterpret_cast<std::int64_t>(pointer); }
  HRESULT Call(QuorlDispatch* self, std::size_t slot) const {
    using W = std::int64_t;
    using Slot = HRESULT (*)(void*, W, W, W, W, W, double, double, double, double, VARIANT, VARIANT,
                             VARIANT, VARIANT);
    Slot function = nullptr;
    std::memcpy(&function, reinterpret_cast<const char*>(self->table) + slot * sizeof(void*),
                sizeof(function));
    return around_call([&] {
      return function(self, w[0], w[1], w[2], w[3], w[4], r[0], r[1], r[2], r[3], v[0], v[1], v[2],
                      v[3]);
    });
  }
};

/// The call of a member as a host in C++ makes it.
inline CallResult CallInCpp(QuorlDispatch* self, const ClassRow&, const MemberRow& member,
                            std::span<Variant> arguments) {
  CallResult result;
  std::vector<frame::GivenArgument> given;
  for (Variant& argument : arguments) given.push_back({nullptr, &argument});
  OwnedVariant binary;
  result.failure = FailureOf([&] {
    around_call([&]() -> HRESULT { return member.call(self, given, binary.Address()), S_OK; });
  });
  result.value = abi::FromBinary(binary.Get());
  if (result.failure != Failure{}) result.code = DISP_E_EXCEPTION;
  return result;
}

/// The call of a member through its slot. Each argument is of the member's own type already.
inline CallResult CallBySlot(QuorlDispatch* self, const ClassRow& row, const MemberRow& member,
                             std::span<Variant> arguments) {
  const VariantType type = member.result.type;
  const bool is_variant = type == VariantType::kVariant;
  const bool is_owned = is_variant || type == VariantType::kString;
  OwnedVariant slot = is_owned ? OwnedVariant(Variant(u"what stood there")) : OwnedVariant();
  std::vector<OwnedVariant> binary(arguments.begin(), arguments.end());
  SlotArguments passed;
  for (std::size_t i = 0; i < binary.size(); ++i) {
    const auto& known = member.types.elements[i];
    known.by_reference ? passed.Add(&binary[i].Address()->value)
                       : passed.Add(known.type, binary[i].Get());
  }
  if (is_variant) passed.Add(slot.Address());
  if (!is_variant && type != VariantType::kEmpty) passed.Add(&slot.Address()->value);
  const HRESULT code =
      passed.Call(self, 7 + static_cast<std::size_t>(&member - row.members.data()));
  CallResult result;
  if (code != S_OK) {
    result = {{}, DISP_E_EXCEPTION, TakenErrorInfo(code)};
    result.failure.number = NumberIn(code);
    EXPECT_TRUE(!is_owned ||
                (is_variant ? slot.Get().vt == VT_EMPTY : slot.Get().value.bstr == nullptr))
        << Utf8(member.name);
  } else {
    if (!is_variant) slot.Address()->vt = static_cast<std::uint16_t>(type);
    result.value = abi::FromBinary(slot.Get());
  }
  for (std::size_t i = 0; i < binary.size(); ++i) {
    if (member.types.elements[i].by_reference) arguments[i] = abi::FromBinary(binary[i].Get());
  }
  return result;
}

/// A call by identifier with arguments as they are to stand in the array.
inline CallResult Invoke(QuorlDispatch* self, std::int32_t id, std::uint16_t flags,
                         DISPPARAMS parameters) {
  OwnedVariant slot(Variant(u"what stood there"));
  EXCEPINFO info{};
  CallResult result;
  result.code = around_call([&] {
    return self->table->Invoke(self, id, nullptr, 0, flags, &parameters, slot.Address(), &info,
                               nullptr);
  });
  result.value = abi::FromBinary(slot.Get());
  EXPECT_TRUE(info.code == 0 && info.help_file == nullptr && info.fill_in == nullptr);
  const Int32 number = result.code == DISP_E_EXCEPTION ? NumberIn(info.scode) : 0;
  result.failure = {number, Taken(info.source), Taken(info.description)};
  EXPECT_TRUE(result.code == S_OK || result.value.IsEmpty());
  return result;
}

inline std::uint16_t FlagOf(MemberKind kind) {
  return kind == MemberKind::kMethod ? DISPATCH_METHOD
         : kind == MemberKind::kGet  ? DISPATCH_PROPERTYGET
                                     : DISPATCH_PROPERTYPUT;
}

/// A call with named arguments and then positional ones in call order, the first of these by
/// reference if asked, and then written back.
using Named = std::vector<std::pair<std::int32_t, Variant>>;
inline CallResult InvokeWith(QuorlDispatch* self, std::int32_t id, std::uint16_t flags,
                             const Named& named, std::span<Variant> positional,
                             bool by_reference = false) {
  std::vector<OwnedVariant> owned;
  std::vector<std::int32_t> ids;
  for (const auto& [identifier, value] : named) {
    owned.emplace_back(value);
    ids.push_back(identifier);
  }
  for (std::size_t i = positional.size(); i-- > 0;) owned.emplace_back(positional[i]);
  std::vector<VARIANT> passed;
  for (const OwnedVariant& value : owned) passed.push_back(value.Get());
  if (by_reference) {
    passed.back().vt |= VT_BYREF;
    passed.back().value.reference = &owned.back().Address()->value;
  }
  const CallResult result =
      Invoke(self, id, flags,
             {passed.data(), ids.data(), static_cast<std::uint32_t>(passed.size()),
              static_cast<std::uint32_t>(ids.size())});
  if (by_reference) positional[0] = abi::FromBinary(owned.back().Get());
  return result;
}

/// The call of a member by name, the value of a put by its own.
inline CallResult CallByName(QuorlDispatch* self, const ClassRow&, const MemberRow& member,
                             std::span<Variant> arguments) {
  Named named;
  if (member.kind == MemberKind::kPut) named.emplace_back(QUORL_PUT_VALUE, arguments.back());
  return InvokeWith(self, member.identifier, FlagOf(member.kind), named,
                    arguments.first(arguments.size() - named.size()),
                    member.types.elements[0].by_reference);
}

inline CallResult CallNamed(QuorlDispatch* self, const char16_t* member, std::uint16_t flags,
                            const Named& named, std::vector<Variant> positional = {}) {
  std::int32_t id = -1;
  EXPECT_EQ(self->table->GetIDsOfNames(self, nullptr, &member, 1, 0, &id), S_OK);
  return InvokeWith(self, id, flags, named, positional);
}

/// A host's object in C form, around one in C++ that gives what is there, of an array the element
/// at the index. Every use is written down.
class FakeHost : public QuorlDispatch {
 public:
  /// With all that the library asks of forms, combo boxes and collections.
  FakeHost() : QuorlDispatch{&kTable} {
    for (const auto& [name, value] :
         Pairs(u"=default|BorderStyle=2|Count=2|Height=300,5|Left=20|ListCount=2|ListIndex=1|"
               u"MDIChild=0|Move=|Name=Form|ScaleHeight=4000|ScaleWidth=3000|Top=10|Width=400|"
               u"WindowState=0")) {
      target->With(name, Utf16(value));
    }
    WithArray(u"ItemData", Array::WithBounds(VariantType::kInt32, 0, 1));
    WithArray(u"List", Array::OfStrings(std::array<String, 2>{u"deux trois", u"12"}));
  }
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  const std::shared_ptr<RecordingHost> target = std::make_shared<RecordingHost>("");
  /// Stands in for every Invoke when it is set.
  std::function<HRESULT(VARIANT* result, EXCEPINFO* info)> failure;
  /// "List 3 &Int16 0": name, flags, arguments in the array's order, & for one by reference.
  std::vector<std::string> journal;
  std::uint32_t references = 1;

 private:
  static FakeHost& At(QuorlDispatch* self) { return *static_cast<FakeHost*>(self); }
  static QuorlDispatch* Inner(QuorlDispatch* self) {
    return At(self).around_target_.Get().value.dispatch;
  }
  void WithArray(String name, Array array) {
    target->WithMember(std::move(name), [array](std::span<Variant> index) {
      return Variant(array.Get({ToInt32(index[0])}));
    });
  }

  HRESULT Note(std::int32_t id, std::uint16_t flags, const DISPPARAMS& parameters) {
    std::string line = Utf8(names_[id]) + ' ' + std::to_string(flags);
    for (std::uint32_t i = 0; i < parameters.argument_count; ++i) {
      const VARIANT& argument = parameters.arguments[i];
      line += (argument.vt & VT_BYREF) != 0 ? " &" : " ";
      if (i < parameters.named_count) line += std::to_string(parameters.named[i]) + ":";
      line += Shown(abi::FromBinary(argument));
    }
    return journal.push_back(line), S_OK;
  }
  static std::uint32_t AddReference(QuorlDispatch* self) { return ++At(self).references; }
  static std::uint32_t ReleaseReference(QuorlDispatch* self) { return --At(self).references; }
  static HRESULT Identifiers(QuorlDispatch* self, const GUID*, const char16_t** names,
                             std::uint32_t count, std::uint32_t, std::int32_t* ids) {
    const HRESULT code =
        Inner(self)->table->GetIDsOfNames(Inner(self), nullptr, names, count, 0, ids);
    return code != S_OK
               ? code
               : abi::GuardedFunction([&] { return At(self).names_[*ids] = names[0], S_OK; });
  }
  static HRESULT InvokeIt(QuorlDispatch* self, std::int32_t id, const GUID*, std::uint32_t,
                          std::uint16_t flags, DISPPARAMS* parameters, VARIANT* result,
                          EXCEPINFO* info, std::uint32_t*) {
    if (abi::GuardedFunction([&] { return At(self).Note(id, flags, *parameters); }) != S_OK) {
      return E_OUTOFMEMORY;
    }
    if (At(self).failure) return At(self).failure(result, info);
    return Inner(self)->table->Invoke(Inner(self), id, nullptr, 0, flags, parameters, result, info,
                                      nullptr);
  }

  // The library uses no more of a host's object.
  static constexpr QuorlDispatchTable kTable{nullptr, &AddReference, &ReleaseReference, nullptr,
                                             nullptr, &Identifiers,  &InvokeIt};

  OwnedVariant around_target_{Variant(Object(target))};
  std::map<std::int32_t, String> names_;
};

/// A VARIANT of any number with any content.
inline VARIANT Raw(int vt, std::int64_t content = 0) {
  VARIANT value{};
  value.vt = static_cast<std::uint16_t>(vt);
  value.value.cy = content;
  return value;
}
inline VARIANT Raw(int vt, const void* content) {
  return Raw(vt, reinterpret_cast<std::int64_t>(content));
}

/// The row of a member.
inline const MemberRow& Member(StringView class_name, StringView name) {
  return *frame::FindByName(*frame::FindClass(class_name), name);
}
inline std::int32_t IdOf(StringView class_name, StringView name) {
  return Member(class_name, name).identifier;
}

/// The component over a store of its own, in Belgian French.
class Component : public testing::Test {
 protected:
  Component() { SetErrorInfo(0, nullptr); }

  MemoryStore store_;
  ScopedStore guard_{store_};
  LocaleScope locale_{*Locale::Named(u"fr-BE")};
  Library library_;
};

}  // namespace quorl
