// The operations over seven hives, one for each root key: handles, rights, paths and buffers, which
// are the same wherever the hives are kept.
#pragma once

#include <array>
#include <memory>
#include <string_view>

#include "quorl/store/internal/fork_aware.hpp"
#include "quorl/store/internal/handle_table.hpp"
#include "quorl/store/internal/hive.hpp"
#include "quorl/store/store.hpp"

namespace quorl::internal {

/// The engine of both stores; see store.hpp for the members.
class HiveStore final : public Store, private ForkAware {
 public:
  using Hives = std::array<std::unique_ptr<Hive>, kRootCount>;

  /// The hives in the order of the root keys' numbers, none null.
  explicit HiveStore(Hives hives);
  ~HiveStore() override;

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
  Int32 ReadShortValue(KeyHandle root, std::string_view path, std::string_view name,
                       ShortValue* value) noexcept override;
  Int32 Commit(std::span<const StoreChange> changes) noexcept override;
  Int32 OpenKeyCount() const noexcept override;

 private:
  using Opened = std::shared_ptr<OpenedKey>;

  void HoldForFork() noexcept override;
  void ReleaseAfterFork() noexcept override;

  Opened Find(KeyHandle key) const;
  StoreStatus ReadKey(KeyHandle key, Int32 right, FunctionRef<StoreStatus(Key&)> look) const;
  StoreStatus WriteKey(KeyHandle key, Int32 right,
                       FunctionRef<StoreStatus(Key&, ChangePlan&)> plan) const;
  StoreStatus CommitAll(std::span<const StoreChange> changes);

  Hives hives_;
  std::array<Opened, kRootCount> roots_;  // Open always, with every right.
  HandleTable handles_;
};

}  // namespace quorl::internal
