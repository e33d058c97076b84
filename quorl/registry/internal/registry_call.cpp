#include "quorl/registry/internal/registry_call.hpp"

#include <algorithm>
#include <span>

#include "quorl/runtime/ansi.hpp"
#include "quorl/store/operations.hpp"

namespace quorl::internal {

RegistryCall::RegistryCall(const Registry& registry, StringView member,
                           std::initializer_list<CallArgument> arguments)
    : registry_(registry), member_(member), count_(arguments.size()) {
  std::ranges::copy(arguments, arguments_.begin());
  if (!std::ranges::all_of(arguments, &CallArgument::SurelyHasText)) text_ = Text();
}

OpenKey RegistryCall::Open(const Variant& key_name, Int32 access) const {
  OpenKey key = OpenIfThere(key_name, access);
  if (!key) RequireDone(kAbsent);
  return key;
}

OpenKey RegistryCall::OpenIfThere(const Variant& key_name, Int32 access) const {
  KeyHandle handle = 0;
  const Int32 code = RegOpenKeyExA(registry_.HKey(), PathOf(key_name), 0, access, &handle);
  if (code == kAbsent) return OpenKey();
  RequireDone(code);
  return OpenKey(handle);
}

OpenKey RegistryCall::Create(const Variant& key_name, Int32 access) const {
  const SecurityRecord security;
  KeyHandle handle = 0;
  RequireDone(RegCreateKeyExA(registry_.HKey(), PathOf(key_name), 0, "0", 0, access, &security,
                              &handle, nullptr));
  return OpenKey(handle);
}

std::string RegistryCall::PathOf(const Variant& key_name) const {
  return ToAnsi(registry_.KeyFullName(key_name));
}

void RegistryCall::RequireDone(Int32 code) const {
  if (code != kDone) RaiseStoreFailure(code, text_.empty() ? Text() : text_);
}

String RegistryCall::Text() const {
  return CallTextOf(member_, std::span(arguments_).first(count_));
}

}  // namespace quorl::internal
