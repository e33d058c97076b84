#include "quorl/store/forwarding_store.hpp"

namespace quorl {

Int32 ForwardingStore::OpenKey(KeyHandle root, std::string_view path, Int32 access,
                               KeyHandle* key) noexcept {
  return Next().OpenKey(root, path, access, key);
}
Int32 ForwardingStore::CreateKey(KeyHandle root, std::string_view path, Int32 access,
                                 KeyHandle* key, bool* created) noexcept {
  return Next().CreateKey(root, path, access, key, created);
}
Int32 ForwardingStore::CloseKey(KeyHandle key) noexcept { return Next().CloseKey(key); }
Int32 ForwardingStore::QueryValue(KeyHandle key, std::string_view name, Int32* type,
                                  OutBuffer data) noexcept {
  return Next().QueryValue(key, name, type, data);
}
Int32 ForwardingStore::SetValue(KeyHandle key, std::string_view name, Int32 type,
                                std::string_view data) noexcept {
  return Next().SetValue(key, name, type, data);
}
Int32 ForwardingStore::DeleteValue(KeyHandle key, std::string_view name) noexcept {
  return Next().DeleteValue(key, name);
}
Int32 ForwardingStore::EnumValue(KeyHandle key, Int32 index, OutBuffer name, Int32* type,
                                 OutBuffer data) noexcept {
  return Next().EnumValue(key, index, name, type, data);
}
Int32 ForwardingStore::EnumKey(KeyHandle key, Int32 index, OutBuffer name) noexcept {
  return Next().EnumKey(key, index, name);
}
Int32 ForwardingStore::QueryInfo(KeyHandle key, KeyInfo* info) noexcept {
  return Next().QueryInfo(key, info);
}
Int32 ForwardingStore::CopyTree(KeyHandle root, std::string_view source,
                                KeyHandle destination) noexcept {
  return Next().CopyTree(root, source, destination);
}
Int32 ForwardingStore::DeleteTree(KeyHandle root, std::string_view path) noexcept {
  return Next().DeleteTree(root, path);
}
Int32 ForwardingStore::Commit(std::span<const StoreChange> changes) noexcept {
  return Next().Commit(changes);
}
Int32 ForwardingStore::OpenKeyCount() const noexcept { return Next().OpenKeyCount(); }

}  // namespace quorl
