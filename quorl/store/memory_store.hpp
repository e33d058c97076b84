// A store in memory: the same operations, nothing on the disk, gone with the object. For hosts that
// keep no settings, and for tests. Threads as in store.hpp.
#pragma once

#include <memory>

#include "quorl/store/forwarding_store.hpp"

namespace quorl {

/// Seven empty root keys to begin with. Construction may throw std::bad_alloc.
class QUORL_API MemoryStore final : public ForwardingStore {
 public:
  MemoryStore();

  Int32 ReadShortValue(KeyHandle root, std::string_view path, std::string_view name,
                       ShortValue* value) noexcept override {
    return Next().ReadShortValue(root, path, name, value);
  }

 private:
  Store& Next() const noexcept override { return *engine_; }

  std::unique_ptr<Store> engine_;
};

}  // namespace quorl
