// A call of a member of `Registry` under way. Used from one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/runtime/enumerations.hpp"
#include "quorl/store/open_key.hpp"

namespace quorl::internal {

/// A path or a name as the store has it. One of usual length is kept without an allocation.
class StoreName {
 public:
  explicit StoreName(StringView name) : StoreName(name, {}, {}) {}
  StoreName(const StoreName&) = delete;
  StoreName& operator=(const StoreName&) = delete;

  operator std::string_view() const noexcept {
    return {long_.empty() ? short_.data() : long_.data(), size_};
  }

 private:
  friend StoreName PathBelow(StringView root_key_name, StringView key_name);
  StoreName(StringView first, StringView second, StringView third);

  std::size_t size_;
  std::array<char, 200> short_;
  std::string long_;  ///< Empty for a name that has room in `short_`.
};

/// The path of a key below an instance's root: the text that `KeyFullName` gives.
StoreName PathBelow(StringView root_key_name, StringView key_name);

/// Opens the keys of one call by their paths, and raises a code of the store with that call in
/// words. Refers to the arguments.
class RegistryCall {
 public:
  /// At most four arguments. One that may have no text is put in words now, so that its failure
  /// comes before anything happens in the store; all others only when the store fails.
  RegistryCall(HKeyEnum hkey, StringView member, std::initializer_list<CallArgument> arguments);

  /// The key; code 2 is raised when it is absent.
  OpenKey Open(std::string_view path, Int32 access) const;
  /// The same, without a key when it is absent.
  OpenKey OpenIfThere(std::string_view path, Int32 access) const;
  /// The same, with every missing level made.
  OpenKey Create(std::string_view path, Int32 access) const;

  /// A value read in one step: a code of `Store::ReadShortValue`, 234 where it takes several.
  Int32 ReadShortValue(std::string_view path, std::string_view name,
                       ShortValue& value) const noexcept;

  /// Raises `code` unless it is 0.
  void RequireDone(Int32 code) const;

 private:
  String Text() const;

  HKeyEnum hkey_;
  StringView member_;
  std::array<CallArgument, 4> arguments_;
  std::size_t count_;
  String text_;  ///< Empty where it is to be put together when it is needed.
};

}  // namespace quorl::internal
