// A store that passes every operation on to another one: the base of a store that keeps its engine
// to itself, and of one that only watches or alters some operations of another.
#pragma once

#include "quorl/store/store.hpp"

namespace quorl {

/// Each member does what `Next` does; see store.hpp. Threads as the next store's.
class QUORL_API ForwardingStore : public Store {
 public:
  Int32 OpenKey(KeyHandle root, std::string_view path, Int32 access,
                KeyHandle* key) noexcept override;
  Int32 CreateKey(KeyHandle root, std::string_view path, Int32 access, KeyHandle* key,
                  bool* created) noexcept override;
  Int32 CloseKey(KeyHandle key) noexcept override;
  Int32 QueryValue(KeyHandle key, std::string_view name, Int32* type,
                   OutBuffer data) noexcept override;
  Int32 SetValue(KeyHandle key, std::string_view name, Int32 type,
                 std::string_view data) noexcept override;
  Int32 DeleteValue(KeyHandle key, std::string_view name) noexcept override;
  Int32 EnumValue(KeyHandle key, Int32 index, OutBuffer name, Int32* type,
                  OutBuffer data) noexcept override;
  Int32 EnumKey(KeyHandle key, Int32 index, OutBuffer name) noexcept override;
  Int32 QueryInfo(KeyHandle key, KeyInfo* info) noexcept override;
  Int32 CopyTree(KeyHandle root, std::string_view source, KeyHandle destination) noexcept override;
  Int32 DeleteTree(KeyHandle root, std::string_view path) noexcept override;
  Int32 Commit(std::span<const StoreChange> changes) noexcept override;
  Int32 OpenKeyCount() const noexcept override;

 private:
  /// The store that does the work; the same as long as this one lives.
  virtual Store& Next() const noexcept = 0;
};

}  // namespace quorl
