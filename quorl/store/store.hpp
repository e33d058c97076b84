// A store: seven root keys, below each a tree of keys, in each key values. The twelve operations
// (operations.hpp) act on the process's current store; the members here are the same operations on
// a particular one, and their contracts stand there.
//
// Two stores exist: persistent_store.hpp (the default) and memory_store.hpp. A store may be used
// from any number of threads at once; a handle may be used by one thread after another.
// No member throws: every failure is a code of status.hpp, and after a failure nothing has changed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "quorl/runtime/types.hpp"
#include "quorl/store/status.hpp"

namespace quorl {

/// An open key: a number above 0, or one of the root keys.
using KeyHandle = Int32;

/// The root keys, which are open always and need no closing.
enum StoreRoot : KeyHandle {
  kClassesRoot = INT32_MIN,
  kCurrentUser = INT32_MIN + 1,
  kLocalMachine = INT32_MIN + 2,
  kUsers = INT32_MIN + 3,
  kPerformanceData = INT32_MIN + 4,
  kCurrentConfig = INT32_MIN + 5,
  kDynData = INT32_MIN + 6,
};
inline constexpr int kRootCount = 7;

/// What a key is opened for: any sum of these. Other bits are taken and mean nothing here.
enum KeyAccess : Int32 {
  kReadValues = 0x1,
  kSetValues = 0x2,
  kCreateSubkeys = 0x4,
  kListSubkeys = 0x8,
  kAllAccess = 0xF003F,
};

/// A moment, as the enumerations give it. The stores keep no time: both parts are 0.
struct FileTime {
  std::uint32_t low = 0;
  std::uint32_t high = 0;
};

/// The security record of a new key. It is ignored.
struct SecurityRecord {
  Int32 size = 0;
  const void* descriptor = nullptr;
  Int32 inherited = 0;
};

/// What `RegQueryInfoKeyA` tells of a key; lengths in bytes, without terminator.
struct KeyInfo {
  Int32 subkeys = 0;
  Int32 longest_subkey = 0;
  Int32 values = 0;
  Int32 longest_value_name = 0;
  Int32 longest_data = 0;
};

/// A buffer of the caller with the size that comes in as its capacity and goes out as the size used
/// or needed. `bytes` null: only the size is asked for. `size` null: nothing is asked for.
struct OutBuffer {
  void* bytes = nullptr;
  Int32* size = nullptr;
};

/// A value of few bytes, as `Store::ReadShortValue` gives it.
struct ShortValue {
  static constexpr std::size_t kRoom = 256;

  Int32 type = 0;
  Int32 size = 0;                 ///< Of its bytes.
  std::array<char, kRoom> bytes;  ///< The first `size` of them.
};

/// One of several changes that are committed together; see `Store::Commit`.
struct StoreChange {
  enum class Kind : std::uint8_t {
    kCreateKey,       ///< Makes the key with every missing level; nothing when it exists.
    kSetValue,        ///< Makes or replaces a value; missing levels of its key are made.
    kDeleteValue,     ///< Nothing when the value or its key is absent.
    kDeleteKey,       ///< The key with all below it, if there is one; of a root key, all it holds.
    kDeleteEmptyKey,  ///< The same if the key has neither values nor subkeys by then.
  };
  Kind kind = Kind::kCreateKey;
  KeyHandle root = 0;  ///< A root key.
  std::string path{};  ///< The key's, from the root.
  std::string name{};  ///< The value's.
  Int32 type = 0;
  std::string data{};
};

/// The operations on one store. See operations.hpp for each one's contract.
class QUORL_API Store {
 public:
  Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;
  virtual ~Store() = default;

  virtual Int32 OpenKey(KeyHandle root, std::string_view path, Int32 access,
                        KeyHandle* key) noexcept = 0;
  /// `created` may be null; it tells whether the last level was made by this call.
  virtual Int32 CreateKey(KeyHandle root, std::string_view path, Int32 access, KeyHandle* key,
                          bool* created) noexcept = 0;
  virtual Int32 CloseKey(KeyHandle key) noexcept = 0;
  virtual Int32 QueryValue(KeyHandle key, std::string_view name, Int32* type,
                           OutBuffer data) noexcept = 0;
  virtual Int32 SetValue(KeyHandle key, std::string_view name, Int32 type,
                         std::string_view data) noexcept = 0;
  virtual Int32 DeleteValue(KeyHandle key, std::string_view name) noexcept = 0;
  virtual Int32 EnumValue(KeyHandle key, Int32 index, OutBuffer name, Int32* type,
                          OutBuffer data) noexcept = 0;
  virtual Int32 EnumKey(KeyHandle key, Int32 index, OutBuffer name) noexcept = 0;
  virtual Int32 QueryInfo(KeyHandle key, KeyInfo* info) noexcept = 0;
  virtual Int32 CopyTree(KeyHandle root, std::string_view source,
                         KeyHandle destination) noexcept = 0;
  virtual Int32 DeleteTree(KeyHandle root, std::string_view path) noexcept = 0;

  /// Reads a value in one step, as `Registry.GetValue` tries first: the codes of `OpenKey` and of
  /// `QueryValue`, and 234 when the value has more than `ShortValue::kRoom` bytes, `root` is no
  /// root key, or the store has no such step. The value is then read by `OpenKey`, `QueryValue` and
  /// `CloseKey`, which a store that does not override this therefore sees each time.
  virtual Int32 ReadShortValue(KeyHandle /*root*/, std::string_view /*path*/,
                               std::string_view /*name*/, ShortValue* /*value*/) noexcept {
    return kBufferTooSmall;
  }

  /// Makes all `changes` in their order, each seeing what those before it did, as one durable
  /// change of each hive. Everything that can fail but the disk itself (arguments, locks, memory,
  /// room on the disk) is done for all hives before the first is committed. After a code other than
  /// 0 nothing has changed, with one exception: when writing to a later hive fails, or the process
  /// is ended between two hives, the hives that were committed before stay so. They are committed
  /// in the order of the root keys' numbers. Gives 6 when a root is no root key, 87 for a path, a
  /// name or data out of its contract, and the codes of the store.
  ///     const StoreChange changes[] = {
  ///         {.kind = StoreChange::Kind::kDeleteKey, .root = kCurrentUser, .path = "Maison"},
  ///         {.kind = StoreChange::Kind::kSetValue, .root = kCurrentUser, .path = "Maison\\Caisse",
  ///          .name = "Copies", .type = 1, .data = std::string("2", 2)}};
  ///     const Int32 code = CurrentStore().Commit(changes);
  virtual Int32 Commit(std::span<const StoreChange> changes) noexcept = 0;

  /// How many handles are open.
  virtual Int32 OpenKeyCount() const noexcept = 0;
};

}  // namespace quorl
