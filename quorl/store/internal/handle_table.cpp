#include "quorl/store/internal/handle_table.hpp"

#include <cstdint>
#include <utility>

namespace quorl::internal {

KeyHandle HandleTable::Add(std::shared_ptr<OpenedKey> opened) {
  const std::lock_guard lock(mutex_);
  KeyHandle handle = last_;
  do {
    handle = handle == INT32_MAX ? 1 : handle + 1;
  } while (open_.contains(handle));
  open_.emplace(handle, std::move(opened));
  last_ = handle;
  return handle;
}

std::shared_ptr<OpenedKey> HandleTable::Find(KeyHandle handle) const noexcept {
  const std::lock_guard lock(mutex_);
  const auto found = open_.find(handle);
  return found == open_.end() ? nullptr : found->second;
}

bool HandleTable::Remove(KeyHandle handle) noexcept {
  const std::lock_guard lock(mutex_);
  return open_.erase(handle) != 0;
}

std::size_t HandleTable::Count() const noexcept {
  const std::lock_guard lock(mutex_);
  return open_.size();
}

}  // namespace quorl::internal
