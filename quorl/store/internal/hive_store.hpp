// The operations over seven hives, one for each root key: handles, rights, paths and buffers, which
// are the same wherever the hives are kept.
#pragma once

#include <array>
#include <memory>
#include <string>
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

  Hive& HiveOf(StoreRoot root) const noexcept;

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
  Int32 OpenKeyCount() const noexcept override;

  /// Makes `destination`, opened for `kSetValues` and `kCreateSubkeys`, hold exactly what the
  /// source holds, in one change: what it held before is gone. The source may lie in another hive,
  /// so that many changes can be made ready in one that is in memory and then be made here as one:
  ///     store.CopyTree(kCurrentUser, "Software\\Maison", staging);    // in kDynData
  ///     ...
  ///     store.ReplaceTree(kDynData, "Staging", destination);
  /// Gives 2 when the source is absent; codes otherwise as for `CopyTree`.
  Int32 ReplaceTree(KeyHandle root, std::string_view source, KeyHandle destination) noexcept;

 private:
  void HoldForFork() noexcept override;
  void ReleaseAfterFork() noexcept override;

  std::shared_ptr<OpenedKey> Opened(KeyHandle key) const;
  Int32 At(KeyHandle root, std::string_view path, std::shared_ptr<OpenedKey>& place) const;
  using PlanOfTwo = void (*)(std::shared_ptr<const Key>, const Key&, Change&);
  Int32 WriteFrom(KeyHandle root, std::string_view source, KeyHandle destination,
                  PlanOfTwo plan) const noexcept;
  Int32 ReadKey(KeyHandle key, Int32 right, FunctionRef<Int32(const Key&)> look) const;

  Hives hives_;
  HandleTable handles_;
};

}  // namespace quorl::internal
