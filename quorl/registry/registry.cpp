#include "quorl/registry/registry.hpp"

#include <bit>
#include <cstring>
#include <string>

#include "quorl/registry/internal/registry_call.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/compare.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/utf16_bytes.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/store/open_key.hpp"
#include "quorl/store/operations.hpp"

namespace quorl {

using namespace internal;
namespace {

static_assert(std::endian::native == std::endian::little, "a number is stored low byte first");
static_assert(Int32{HKEY_CLASSES_ROOT} == kClassesRoot &&
              Int32{HKEY_CURRENT_USER} == kCurrentUser &&
              Int32{HKEY_LOCAL_MACHINE} == kLocalMachine && Int32{HKEY_USERS} == kUsers &&
              Int32{HKEY_PERFORMANCE_DATA} == kPerformanceData &&
              Int32{HKEY_CURRENT_CONFIG} == kCurrentConfig && Int32{HKEY_DYN_DATA} == kDynData);

RegTypeEnum TypeFor(const Variant& value) {
  switch (value.Type()) {
    case VariantType::kByte:
    case VariantType::kInt16:
    case VariantType::kInt32:
    case VariantType::kBoolean:
      return REG_DWORD;
    case VariantType::kString:
      return REG_SZ;
    default:
      return REG_BINARY;
  }
}

std::string ArrayBytes(const Array& array) {
  if (array.ElementType() != VariantType::kByte) Raise(FailureNumber::kTypeMismatch);
  if (array.Dimensions() != 1) Raise(FailureNumber::kSubscriptOutOfRange);
  const std::span<const Byte> bytes = array.Bytes();
  return {bytes.begin(), bytes.end()};
}

std::string BinaryOf(const Variant& value) {
  std::string bytes;
  if (const String* text = value.If<String>()) {
    bytes = BytesOf(*text);
  } else if (const Array* array = value.If<Array>()) {
    bytes = ArrayBytes(*array);
  } else {
    Raise(FailureNumber::kTypeMismatch);
  }
  if (bytes.empty()) Raise(FailureNumber::kSubscriptOutOfRange);
  return bytes;
}

std::string DwordOf(const Variant& value) {
  const Int32 number = ToInt32(value);
  std::string bytes(sizeof(number), '\0');
  std::memcpy(bytes.data(), &number, sizeof(number));
  return bytes;
}

std::string TerminatedText(const Variant& value) {
  std::string bytes = ToAnsi(ToString(value));
  bytes.push_back('\0');
  return bytes;
}

// The bytes of a value, read into room for `size` of them: what the store gives now, which may be
// fewer. `code` is what the store said.
std::string QueryData(KeyHandle key, const std::string& name, Int32 size, Int32& code) {
  std::string data(static_cast<std::size_t>(size), '\0');
  code = RegQueryValueExA(key, name, nullptr, nullptr, data.data(), &size);
  if (code == kDone) data.resize(static_cast<std::size_t>(size));
  return data;
}

Variant ReadValue(const RegistryCall& call, const OpenKey& key, StringView value_name,
                  const Variant& otherwise) {
  const std::string name = ToAnsi(value_name);
  Int32 type = 0;
  Int32 size = 0;
  Int32 code = RegQueryValueExA(key.Handle(), name, nullptr, &type, nullptr, &size);
  if (code == kAbsent) return otherwise;
  call.RequireDone(code);
  switch (type) {
    case REG_SZ: {
      const std::string data = QueryData(key.Handle(), name, size, code);
      call.RequireDone(code);
      return FromAnsi(std::string_view(data).substr(0, data.empty() ? 0 : data.size() - 1));
    }
    case REG_BINARY: {
      Array bytes = Array::WithBounds(VariantType::kByte, 0, size - 1);
      call.RequireDone(RegQueryValueExA(key.Handle(), name, nullptr, nullptr,
                                        bytes.WritableBytes().data(), &size));
      return bytes;
    }
    case REG_DWORD: {
      Int32 number = 0;
      Int32 capacity = sizeof(number);
      call.RequireDone(RegQueryValueExA(key.Handle(), name, nullptr, nullptr, &number, &capacity));
      return number;
    }
    default:
      return Null;
  }
}

void WriteValue(const RegistryCall& call, const OpenKey& key, StringView value_name, Int32 type,
                const Variant& value) {
  std::string data;
  switch (type) {
    case REG_SZ:
      data = TerminatedText(value);
      break;
    case REG_BINARY:
      data = BinaryOf(value);
      break;
    case REG_DWORD:
      data = DwordOf(value);
      break;
    default:
      return;
  }
  const Int32 size = CheckedInt32(static_cast<std::int64_t>(data.size()));
  call.RequireDone(RegSetValueExA(key.Handle(), ToAnsi(value_name), 0, type, data.data(), size));
}

}  // namespace

void Registry::HKey(HKeyEnum New_HKey) noexcept { hkey_ = New_HKey; }

HKeyEnum Registry::HKey() const noexcept { return hkey_; }

void Registry::RootKeyName(StringView New_RootKeyName) {
  WithinMemory([&] { root_key_name_ = New_RootKeyName; });
}

String Registry::RootKeyName() const {
  return WithinMemory([&] { return root_key_name_; });
}

void Registry::InitAbsolute(HKeyEnum New_HKey, StringView New_RootKeyName) {
  RootKeyName(New_RootKeyName);
  HKey(New_HKey);
}

void Registry::InitApp(StringView Compagny, StringView AppName, RegModeEnum Mode) {
  WithinMemory([&] {
    InitAbsolute(Mode == qlWinRegCurrentUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE,
                 Joined(u"Software\\", Compagny, u"\\", AppName));
  });
}

String Registry::KeyFullName(const Variant& KeyName) const {
  return WithinMemory([&] {
    String path = root_key_name_;
    // Neither below nor above: Null is not different from the empty text.
    const std::partial_ordering order = CompareToText(KeyName, u"");
    if (order < 0 || order > 0) {
      path += u'\\';
      AppendText(path, KeyName);
    }
    return path;
  });
}

Boolean Registry::KeyExists(const Variant& KeyName) const {
  return WithinMemory([&] {
    const RegistryCall call(hkey_, u"KeyExists", {KeyName});
    return static_cast<bool>(call.OpenIfThere(ToAnsi(KeyFullName(KeyName)), kReadValues));
  });
}

Variant Registry::GetValue(StringView KeyName, StringView ValueName, const Variant& Default) const {
  return WithinMemory([&]() -> Variant {
    const RegistryCall call(hkey_, u"GetValue", {KeyName, ValueName, Default});
    const OpenKey key = call.OpenIfThere(PathBelow(root_key_name_, KeyName), kReadValues);
    return key ? ReadValue(call, key, ValueName, Default) : Default;
  });
}

void Registry::SaveValue(StringView KeyName, StringView ValueName, const Variant& Value,
                         RegTypeEnum dataType) {
  WithinMemory([&] {
    const Variant type(Int32{dataType});
    const RegistryCall call(hkey_, u"SaveValue", {KeyName, ValueName, Value, type});
    const OpenKey key = call.Create(PathBelow(root_key_name_, KeyName), kSetValues);
    WriteValue(call, key, ValueName, dataType == REG_NONE ? TypeFor(Value) : dataType, Value);
  });
}

void Registry::DeleteValue(StringView KeyName, StringView ValueName) {
  WithinMemory([&] {
    const RegistryCall call(hkey_, u"DeleteValue", {KeyName, ValueName});
    const OpenKey key = call.Open(PathBelow(root_key_name_, KeyName), kSetValues);
    call.RequireDone(RegDeleteValueA(key.Handle(), ToAnsi(ValueName)));
  });
}

}  // namespace quorl
