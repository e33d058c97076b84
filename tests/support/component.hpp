// The component as a host in another language meets it: its library, calls through slots and by
// name with plain values, and an object of the host's own.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <ostream>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "quorl/abi/internal/bstr.hpp"
#include "quorl/abi/internal/dispatch_proxy.hpp"
#include "quorl/abi/internal/ref_counted.hpp"
#include "quorl/abi/internal/values.hpp"
#include "quorl/abi/quorl.h"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"
#include "tests/support/print.hpp"

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
    Find(get_class_object, "DllGetClassObject");
    Find(can_unload_now, "DllCanUnloadNow");
    Find(register_server, "DllRegisterServer");
    Find(unregister_server, "DllUnregisterServer");
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

  DllGetClassObjectFunction get_class_object = nullptr;
  DllCanUnloadNowFunction can_unload_now = nullptr;
  DllRegisterServerFunction register_server = nullptr;
  DllUnregisterServerFunction unregister_server = nullptr;

 private:
  template <class Function>
  void Find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(handle_, name));
    EXPECT_NE(function, nullptr) << name;
  }

  void* handle_;
};

/// What a call gave: a value, or a code with the failure's record. Values are compared by type and
/// content; a NaN is the same as another.
struct CallResult {
  Variant value;
  HRESULT code = S_OK;
  Int32 number = 0;
  String source;
  String description;

  static CallResult Of(const RaisedError& error) {
    return {{}, DISP_E_EXCEPTION, error.Number(), error.Source(), error.Description()};
  }
  friend bool operator==(const CallResult& a, const CallResult& b) {
    const bool same_value =
        a.value == b.value || (!a.value.Holds<Array>() && Shown(a.value) == Shown(b.value));
    return same_value && a.code == b.code && a.number == b.number && a.source == b.source &&
           a.description == b.description;
  }
  friend void PrintTo(const CallResult& result, std::ostream* out) {
    PrintTo(result.value, out);
    *out << " code " << std::hex << static_cast<std::uint32_t>(result.code) << std::dec << " #"
         << result.number << ' ' << Shown(result.source) << ' ' << Shown(result.description);
  }
};

/// A text that a caller owns, taken as a value.
inline String Taken(BSTR text) {
  String copy(abi::ViewOf(text));
  SysFreeString(text);
  return copy;
}

/// The thread's error info, taken away; an empty result if there is none.
inline CallResult TakenErrorInfo() {
  Reference<QuorlErrorInfo> info;
  if (GetErrorInfo(0, info.Receive()) != S_OK) return {};
  BSTR source = nullptr;
  BSTR description = nullptr;
  BSTR help_file = SysAllocString(u"none yet");
  SysFreeString(help_file);
  std::uint32_t context = 1;
  QuorlErrorInfo* object = info.Get();
  EXPECT_EQ(object->table->GetSource(object, &source), S_OK);
  EXPECT_EQ(object->table->GetDescription(object, &description), S_OK);
  EXPECT_EQ(object->table->GetHelpFile(object, &help_file), S_OK);
  EXPECT_EQ(object->table->GetHelpContext(object, &context), S_OK);
  EXPECT_EQ(help_file, nullptr);
  EXPECT_EQ(context, 0u);
  return {{}, S_OK, 0, Taken(source), Taken(description)};
}

/// A caller's slot, which holds a text before the call.
class ResultSlot {
 public:
  ResultSlot() : slot_(Variant(u"what stood there before")) {}
  VARIANT* Address() { return slot_.Address(); }
  Variant Value() const { return abi::FromBinary(slot_.Get()); }

 private:
  OwnedVariant slot_;
};

/// Arguments of one slot. Whole numbers and pointers travel in six registers, reals in registers of
/// their own, VARIANTs on the stack, each in their order; a callee looks at those that it knows of.
/// So one signature serves every slot.
class SlotArguments {
 public:
  void AddWhole(std::int64_t value) { whole_.at(wholes_++) = value; }
  void AddPointer(const void* pointer) { AddWhole(reinterpret_cast<std::int64_t>(pointer)); }
  void AddReal(double value) { real_.at(reals_++) = value; }
  void AddVariant(const VARIANT& value) { variant_.at(variants_++) = value; }

  HRESULT Call(QuorlDispatch* self, std::size_t slot) const {
    using AnySlot =
        HRESULT (*)(void*, std::int64_t, std::int64_t, std::int64_t, std::int64_t, std::int64_t,
                    double, double, double, double, VARIANT, VARIANT, VARIANT, VARIANT);
    AnySlot function = nullptr;
    std::memcpy(&function, reinterpret_cast<const char*>(self->table) + slot * sizeof(void*),
                sizeof(function));
    return function(self, whole_[0], whole_[1], whole_[2], whole_[3], whole_[4], real_[0], real_[1],
                    real_[2], real_[3], variant_[0], variant_[1], variant_[2], variant_[3]);
  }

 private:
  std::array<std::int64_t, 5> whole_{};
  std::array<double, 4> real_{};
  std::array<VARIANT, 4> variant_{};
  std::size_t wholes_ = 0;
  std::size_t reals_ = 0;
  std::size_t variants_ = 0;
};

inline void AddArgument(SlotArguments& to, VariantType type, OwnedVariant& value) {
  const VARIANT& binary = value.Get();
  switch (type) {
    case VariantType::kVariant:
      return to.AddVariant(binary);
    case VariantType::kDouble:
    case VariantType::kDate:
      return to.AddReal(binary.value.r8);
    case VariantType::kInt16:
    case VariantType::kInt32:
      return to.AddWhole(binary.vt == VT_I2 ? binary.value.i2 : binary.value.i4);
    case VariantType::kCurrency:
      return to.AddWhole(binary.value.cy);
    case VariantType::kBoolean:
      return to.AddWhole(binary.value.boolean);
    default:
      return to.AddPointer(binary.value.reference);
  }
}

/// The call of a member through its slot. Each argument is of the member's own type already.
inline CallResult CallBySlot(QuorlDispatch* self, const ClassRow& row, const MemberRow& member,
                             std::span<Variant> arguments) {
  std::vector<OwnedVariant> binary;
  for (const Variant& argument : arguments) binary.emplace_back(argument);
  SlotArguments passed;
  for (std::size_t i = 0; i < binary.size(); ++i) {
    const auto& type = member.types.elements[i];
    if (type.by_reference) {
      passed.AddPointer(&binary[i].Address()->value.i2);
    } else {
      AddArgument(passed, type.type, binary[i]);
    }
  }
  const VariantType type = member.result.type;
  const bool is_text = type == VariantType::kString;
  OwnedVariant slot =
      is_text || type == VariantType::kVariant ? OwnedVariant(Variant(u"before")) : OwnedVariant();
  if (type == VariantType::kVariant) passed.AddPointer(slot.Address());
  if (type != VariantType::kVariant && type != VariantType::kEmpty) {
    passed.AddPointer(&slot.Address()->value);
  }
  const auto place = static_cast<std::size_t>(&member - row.members.data());
  CallResult result;
  const HRESULT code = passed.Call(self, 7 + place);
  if (code != S_OK) {
    result = TakenErrorInfo();
    result.code = DISP_E_EXCEPTION;
    const auto bits = static_cast<std::uint32_t>(code);
    result.number = bits >> 16 == 0x800A ? static_cast<Int32>(bits & 0xFFFF) : code;
    EXPECT_TRUE(!is_text || slot.Get().value.bstr == nullptr) << Utf8(member.name);
    EXPECT_TRUE(type != VariantType::kVariant || slot.Get().vt == VT_EMPTY) << Utf8(member.name);
  } else {
    if (type != VariantType::kVariant) slot.Address()->vt = static_cast<std::uint16_t>(type);
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
  ResultSlot slot;
  EXCEPINFO info{};
  CallResult result;
  result.code =
      self->table->Invoke(self, id, nullptr, 0, flags, &parameters, slot.Address(), &info, nullptr);
  result.value = slot.Value();
  if (result.code == DISP_E_EXCEPTION) {
    const auto bits = static_cast<std::uint32_t>(info.scode);
    result.number = bits >> 16 == 0x800A ? static_cast<Int32>(bits & 0xFFFF) : info.scode;
  }
  EXPECT_EQ(info.code, 0);
  EXPECT_EQ(info.help_file, nullptr);
  EXPECT_TRUE(info.fill_in == nullptr && info.reserved_pointer == nullptr);
  result.source = Taken(info.source);
  result.description = Taken(info.description);
  EXPECT_TRUE(result.code == S_OK || result.value.IsEmpty());
  return result;
}

inline std::uint16_t FlagOf(MemberKind kind) {
  return kind == MemberKind::kMethod ? DISPATCH_METHOD
         : kind == MemberKind::kGet  ? DISPATCH_PROPERTYGET
                                     : DISPATCH_PROPERTYPUT;
}

/// The call of a member by name, all arguments by position, those that it writes by reference.
inline CallResult CallByName(QuorlDispatch* self, const ClassRow& row, const MemberRow& member,
                             std::span<Variant> arguments) {
  std::vector<OwnedVariant> binary;
  std::vector<VARIANT> passed;
  for (std::size_t i = arguments.size(); i-- > 0;) binary.emplace_back(arguments[i]);
  for (std::size_t i = 0; i < binary.size(); ++i) {
    VARIANT value = binary[i].Get();
    if (member.types.elements[arguments.size() - 1 - i].by_reference) {
      value.value.reference = &binary[i].Address()->value;
      value.vt |= VT_BYREF;
    }
    passed.push_back(value);
  }
  std::int32_t put = QUORL_PUT_VALUE;
  const bool is_put = member.kind == MemberKind::kPut;
  const auto count = static_cast<std::uint32_t>(passed.size());
  const CallResult result =
      Invoke(self, IdentifierOf(row, member), FlagOf(member.kind),
             {passed.data(), is_put ? &put : nullptr, count, is_put ? 1u : 0u});
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (!member.types.elements[i].by_reference) continue;
    arguments[i] = abi::FromBinary(binary[arguments.size() - 1 - i].Get());
  }
  return result;
}

/// The call of a member with the names of arguments, then the positional ones in call order.
inline CallResult CallNamed(QuorlDispatch* self, const char16_t* member, std::uint16_t flags,
                            std::vector<std::pair<std::int32_t, Variant>> named,
                            std::vector<Variant> positional = {}) {
  std::int32_t id = -1;
  EXPECT_EQ(self->table->GetIDsOfNames(self, nullptr, &member, 1, 0, &id), S_OK);
  std::vector<OwnedVariant> owned;
  std::vector<std::int32_t> ids;
  for (const auto& [identifier, value] : named) {
    owned.emplace_back(value);
    ids.push_back(identifier);
  }
  for (std::size_t i = positional.size(); i-- > 0;) owned.emplace_back(positional[i]);
  std::vector<VARIANT> passed;
  for (const OwnedVariant& value : owned) passed.push_back(value.Get());
  return Invoke(self, id, flags,
                {passed.data(), ids.data(), static_cast<std::uint32_t>(passed.size()),
                 static_cast<std::uint32_t>(ids.size())});
}

/// A host's object in C form. A read of a member gives what is there, of an array the element at
/// the index; a write replaces it; a call gives it. Every use is written down.
class FakeHost : public QuorlDispatch {
 public:
  using Failure = std::function<HRESULT(VARIANT* result, EXCEPINFO* info)>;

  explicit FakeHost(std::map<String, Variant> its_members = {})
      : QuorlDispatch{&kTable}, members(std::move(its_members)) {}
  FakeHost(const FakeHost&) = delete;
  FakeHost& operator=(const FakeHost&) = delete;

  std::map<String, Variant> members;
  /// Stands in for every Invoke when it is set.
  Failure failure;
  /// "List 3 &Int16 0": name, flags, arguments in the array's order, & for one by reference.
  std::vector<std::string> journal;
  std::uint32_t references = 1;

 private:
  static FakeHost& At(QuorlDispatch* self) { return *static_cast<FakeHost*>(self); }

  static HRESULT Query(QuorlDispatch* self, const GUID*, void** out) {
    *out = self;
    AddReference(self);
    return S_OK;
  }
  static std::uint32_t AddReference(QuorlDispatch* self) { return ++At(self).references; }
  static std::uint32_t ReleaseReference(QuorlDispatch* self) { return --At(self).references; }
  static HRESULT TypeInfoCount(QuorlDispatch*, std::uint32_t* count) {
    *count = 0;
    return S_OK;
  }
  static HRESULT TypeInfo(QuorlDispatch*, std::uint32_t, std::uint32_t, void**) {
    return DISP_E_BADINDEX;
  }
  // The place of a member among the names, from 1; the default member has the empty name and 0.
  static HRESULT Identifiers(QuorlDispatch* self, const GUID*, const char16_t** names,
                             std::uint32_t, std::uint32_t, std::int32_t* ids) {
    std::int32_t id = 0;
    for (const auto& [name, value] : At(self).members) {
      if (!name.empty()) ++id;
      if (name == *names) return *ids = id, S_OK;
    }
    return *ids = -1, DISP_E_UNKNOWNNAME;
  }
  static HRESULT InvokeIt(QuorlDispatch* self, std::int32_t id, const GUID*, std::uint32_t,
                          std::uint16_t flags, DISPPARAMS* parameters, VARIANT* result,
                          EXCEPINFO* info, std::uint32_t*) {
    FakeHost& host = At(self);
    auto member = host.members.begin();
    if (id == 0 ? !host.members.contains(u"") : false) return DISP_E_MEMBERNOTFOUND;
    if (id != 0) std::advance(member, id - (host.members.contains(u"") ? 0 : 1));
    std::string line = Utf8(member->first) + ' ' + std::to_string(flags);
    for (std::uint32_t i = 0; i < parameters->argument_count; ++i) {
      const VARIANT& argument = parameters->arguments[i];
      line += (argument.vt & VT_BYREF) != 0 ? " &" : " ";
      if (i < parameters->named_count) line += std::to_string(parameters->named[i]) + ":";
      line += Shown(abi::FromBinary(argument));
    }
    host.journal.push_back(line);
    if (host.failure) return host.failure(result, info);
    if ((flags & DISPATCH_PROPERTYPUT) != 0) {
      member->second = abi::FromBinary(parameters->arguments[0]);
      return S_OK;
    }
    Variant given = member->second;
    if (const Array* array = given.If<Array>(); array && parameters->argument_count == 1) {
      given = Variant(array->Get({ToInt32(abi::FromBinary(parameters->arguments[0]))}));
    }
    if (result != nullptr) *result = abi::ToBinary(given);
    return S_OK;
  }

  static constexpr QuorlDispatchTable kTable{
      &Query, &AddReference, &ReleaseReference, &TypeInfoCount, &TypeInfo, &Identifiers, &InvokeIt};
};

/// What the library asks of forms and combo boxes.
inline std::map<String, Variant> FormMembers() {
  return {{u"", u"default"},
          {u"BorderStyle", Int16{2}},
          {u"Count", 2},
          {u"Height", 300.5},
          {u"ItemData", Array::WithBounds(VariantType::kInt32, 0, 1)},
          {u"Left", 20},
          {u"List", Array::OfStrings(std::vector<String>{u"deux trois", u"12"})},
          {u"ListCount", Int16{2}},
          {u"ListIndex", Int16{1}},
          {u"MDIChild", false},
          {u"Move", Empty},
          {u"Name", u"Form"},
          {u"ScaleHeight", 4000},
          {u"ScaleWidth", 3000},
          {u"Top", 10},
          {u"Width", 400},
          {u"WindowState", 0}};
}

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
inline const MemberRow& Member(StringView class_name, StringView name,
                               MemberKind kind = MemberKind::kMethod) {
  for (const MemberRow& member : frame::FindClass(class_name)->members) {
    if (member.name == name && member.kind == kind) return member;
  }
  throw std::out_of_range(Utf8(name));
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
