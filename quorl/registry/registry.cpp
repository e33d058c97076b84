#include "quorl/registry/registry.hpp"

#include <bit>
#include <cstring>
#include <string>

#include "quorl/registry/internal/key_path.hpp"
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

// The last byte is the terminator, whatever it is.
String TextOf(std::string_view data) {
  return FromAnsi(data.substr(0, data.empty() ? 0 : data.size() - 1));
}

// A value of this type and size. `read(void* data, Int32* size)` gives its bytes as the store does,
// with a code; there may be fewer by then.
template <class Read>
Variant ValueOf(const RegistryCall& call, Int32 type, Int32 size, Read read) {
  switch (type) {
    case REG_SZ: {
      std::string data(static_cast<std::size_t>(size), '\0');
      call.RequireDone(read(data.data(), &size));
      return TextOf(std::string_view(data).substr(0, static_cast<std::size_t>(size)));
    }
    case REG_BINARY: {
      Array bytes = Array::WithBounds(VariantType::kByte, 0, size - 1);
      call.RequireDone(read(bytes.WritableBytes().data(), &size));
      return bytes;
    }
    case REG_DWORD: {
      Int32 number = 0;
      Int32 capacity = sizeof(number);
      call.RequireDone(read(&number, &capacity));
      return number;
    }
    default:
      return Null;
  }
}

// For every store and every value: the key is opened, its value asked for its size, then read.
Variant ReadInSteps(const RegistryCall& call, std::string_view path, std::string_view name,
                    const Variant& otherwise) {
  const OpenKey key = call.OpenIfThere(path, kReadValues);
  if (!key) return otherwise;
  Int32 type = 0;
  Int32 size = 0;
  const Int32 code = RegQueryValueExA(key.Handle(), name, nullptr, &type, nullptr, &size);
  if (code == kAbsent) return otherwise;
  call.RequireDone(code);
  return ValueOf(call, type, size, [&](void* data, Int32* capacity) {
    return RegQueryValueExA(key.Handle(), name, nullptr, nullptr, data, capacity);
  });
}

Variant ReadShort(const RegistryCall& call, const ShortValue& value) {
  const std::string_view bytes(value.bytes.data(), static_cast<std::size_t>(value.size));
  if (value.type == REG_SZ) return TextOf(bytes);
  return ValueOf(call, value.type, value.size, [&](void* data, const Int32* capacity) {
    if (value.size > *capacity) return kBufferTooSmall;
    std::memcpy(data, bytes.data(), bytes.size());
    return kDone;
  });
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
  call.RequireDone(RegSetValueExA(key.Handle(), StoreName(value_name), 0, type, data.data(), size));
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
    String name;
    // Neither below nor above: Null is not different from the empty text.
    const std::partial_ordering order = CompareToText(KeyName, u"");
    if (order < 0 || order > 0) AppendText(name, KeyName);
    return Joined(root_key_name_, SeparatorBefore(name), name);
  });
}

Boolean Registry::KeyExists(const Variant& KeyName) const {
  return WithinMemory([&] {
    const RegistryCall call(hkey_, u"KeyExists", {KeyName});
    return static_cast<bool>(call.OpenIfThere(StoreName(KeyFullName(KeyName)), kReadValues));
  });
}

Variant Registry::GetValue(StringView KeyName, StringView ValueName, const Variant& Default) const {
  return WithinMemory([&]() -> Variant {
    const RegistryCall call(hkey_, u"GetValue", {KeyName, ValueName, Default});
    const StoreName path = PathBelow(root_key_name_, KeyName);
    const StoreName name(ValueName);
    ShortValue value;
    const Int32 code = call.ReadShortValue(path, name, value);
    if (code == kAbsent) return Default;
    if (code == kBufferTooSmall) return ReadInSteps(call, path, name, Default);
    call.RequireDone(code);
    return ReadShort(call, value);
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
    call.RequireDone(RegDeleteValueA(key.Handle(), StoreName(ValueName)));
  });
}

}  // namespace quorl
