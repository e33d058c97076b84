// A change to a tree of keys, and the two steps in which it is made: preparing does everything that
// can fail and touches nothing that can be seen, applying cannot fail. Between the two the journal
// writes the change down. Nothing here locks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "quorl/store/internal/key_tree.hpp"

namespace quorl::internal {

/// The numbers are those of the journal's records; `Merge` and `Replace` are written as a group of
/// them.
enum class ChangeKind : std::uint8_t {
  None = 0,
  CreateKey = 1,    ///< Every missing level of `path` is made.
  SetValue = 2,     ///< `path`, `name`, `type`, `data`; missing levels are made.
  DeleteValue = 3,  ///< `path`, `name`; nothing when it is absent.
  DeleteKey = 4,    ///< `path` with all below it; nothing when it is absent.
  Merge = 5,        ///< The values and subkeys of `content` into `path`.
  Replace = 6,      ///< Those of `content` in place of what the key at `path` holds.
};

struct Change {
  ChangeKind kind = ChangeKind::None;
  std::string path;
  std::string name;
  Int32 type = 0;
  std::string_view data;               ///< Lent until the change is made.
  std::shared_ptr<const Key> content;  ///< A key of this tree or of another.
};

/// A change with everything allocated that it needs.
class PreparedChange {
 public:
  /// Makes the change. The tree must be as it was when the change was prepared.
  void Apply(KeyTree& tree) noexcept;

 private:
  friend class ChangePreparation;

  struct Put {
    Key* into = nullptr;
    Value* replaced = nullptr;
    std::unique_ptr<Value> value;
  };
  struct Graft {
    Key* into = nullptr;
    std::shared_ptr<Key> subkey;
  };

  std::vector<Put> puts_;
  std::vector<Graft> grafts_;
  Key* losing_key_ = nullptr;
  const Value* lost_value_ = nullptr;
  Key* losing_parent_ = nullptr;
  const Key* lost_key_ = nullptr;
  Key* cleared_ = nullptr;
  Key* replaced_ = nullptr;
  std::shared_ptr<Key> replacement_;
  Weight added_;
};

/// Prepares `change`. May throw std::bad_alloc; the tree then holds what it held.
PreparedChange Prepare(const KeyTree& tree, const Change& change);

/// A copy of `key` with all below it, as the root of a tree of its own.
std::shared_ptr<Key> DetachedCopy(const Key& key);

/// `path` with those levels that exist in the case that they were made with.
std::string CanonicalPath(const KeyTree& tree, std::string_view path);

}  // namespace quorl::internal
