#include "quorl/registry/internal/registry_call.hpp"

#include <algorithm>
#include <new>
#include <span>

#include "quorl/registry/internal/key_path.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/store/operations.hpp"

namespace quorl::internal {

StoreName::StoreName(StringView first, StringView second, StringView third)
    : size_(first.size() + second.size() + third.size()) {
  if (size_ > short_.size()) long_.resize(size_);
  char* bytes = long_.empty() ? short_.data() : long_.data();
  ToAnsi(third, ToAnsi(second, ToAnsi(first, bytes)));
}

StoreName PathBelow(StringView root_key_name, StringView key_name) {
  return {root_key_name, SeparatorBefore(key_name), key_name};
}

RegistryCall::RegistryCall(HKeyEnum hkey, StringView member,
                           std::initializer_list<CallArgument> arguments)
    : hkey_(hkey), member_(member), count_(arguments.size()) {
  std::ranges::copy(arguments, arguments_.begin());
  if (!std::ranges::all_of(arguments, &CallArgument::SurelyHasText)) text_ = Text();
}

OpenKey RegistryCall::Open(std::string_view path, Int32 access) const {
  OpenKey key = OpenIfThere(path, access);
  if (!key) RequireDone(kAbsent);
  return key;
}

OpenKey RegistryCall::OpenIfThere(std::string_view path, Int32 access) const {
  KeyHandle handle = 0;
  const Int32 code = RegOpenKeyExA(hkey_, path, 0, access, &handle);
  if (code == kAbsent) return OpenKey();
  RequireDone(code);
  return OpenKey(handle);
}

OpenKey RegistryCall::Create(std::string_view path, Int32 access) const {
  const SecurityRecord security;
  KeyHandle handle = 0;
  RequireDone(RegCreateKeyExA(hkey_, path, 0, "0", 0, access, &security, &handle, nullptr));
  return OpenKey(handle);
}

Int32 RegistryCall::ReadShortValue(std::string_view path, std::string_view name,
                                   ShortValue& value) const noexcept {
  try {
    const Int32 code = CurrentStore().ReadShortValue(hkey_, path, name, &value);
    // A store of the host's own may be wrong about its size.
    const bool fits = value.size >= 0 && value.size <= Int32{ShortValue::kRoom};
    return code == kDone && !fits ? Int32{kBufferTooSmall} : code;
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  }
}

void RegistryCall::RequireDone(Int32 code) const {
  if (code != kDone) RaiseStoreFailure(code, text_.empty() ? Text() : text_);
}

String RegistryCall::Text() const {
  return CallTextOf(member_, std::span(arguments_).first(count_));
}

}  // namespace quorl::internal
