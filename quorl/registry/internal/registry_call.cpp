#include "quorl/registry/internal/registry_call.hpp"

#include <algorithm>
#include <span>

#include "quorl/runtime/ansi.hpp"
#include "quorl/store/key_name.hpp"
#include "quorl/store/operations.hpp"

namespace quorl::internal {

std::string PathBelow(StringView root_key_name, StringView key_name) {
  std::string path = ToAnsi(root_key_name);
  if (!key_name.empty()) (path += kPathSeparator) += ToAnsi(key_name);
  return path;
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

void RegistryCall::RequireDone(Int32 code) const {
  if (code != kDone) RaiseStoreFailure(code, text_.empty() ? Text() : text_);
}

String RegistryCall::Text() const {
  return CallTextOf(member_, std::span(arguments_).first(count_));
}

}  // namespace quorl::internal
