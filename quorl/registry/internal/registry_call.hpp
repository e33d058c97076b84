// A call of a member of `Registry` under way. Used from one thread at a time.
#pragma once

#include <array>
#include <initializer_list>
#include <string>

#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/store/open_key.hpp"

namespace quorl::internal {

/// Opens the keys of one call, and raises a code of the store with that call in words. Refers to
/// the instance and to the arguments.
class RegistryCall {
 public:
  /// At most four arguments. One that may have no text is put in words now, so that its failure
  /// comes before anything happens in the store; all others only when the store fails.
  RegistryCall(const Registry& registry, StringView member,
               std::initializer_list<CallArgument> arguments);

  /// The key below the instance's root; code 2 is raised when it is absent.
  OpenKey Open(const Variant& key_name, Int32 access) const;
  /// The same, without a key when it is absent.
  OpenKey OpenIfThere(const Variant& key_name, Int32 access) const;
  /// The same, with every missing level made.
  OpenKey Create(const Variant& key_name, Int32 access) const;
  /// The path below the root key, as the store has it.
  std::string PathOf(const Variant& key_name) const;

  /// Raises `code` unless it is 0.
  void RequireDone(Int32 code) const;

 private:
  String Text() const;

  const Registry& registry_;
  StringView member_;
  std::array<CallArgument, 4> arguments_;
  std::size_t count_;
  String text_;  ///< Empty where it is to be put together when it is needed.
};

}  // namespace quorl::internal
