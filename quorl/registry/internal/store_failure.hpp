// The one way in which a code of the store becomes a failure, for `Registry` and for everything
// that works on the store beside it. Thread-compatible.
#pragma once

#include <span>

#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::internal {

/// Source of every failure that is a code of the store.
inline constexpr StringView kRegistrySource = u"qlWinRegistry";

/// Raises `code` with Source "qlWinRegistry" and a Description that names the call under way and
/// puts the code in the store's words, or says "Erreur inconnue" where the store has none.
[[noreturn]] void RaiseStoreFailure(Int32 code, StringView call_text);

/// One argument of a call that may fail: a text, or a Variant. Refers to it, copies nothing.
class CallArgument {
 public:
  CallArgument() noexcept = default;
  CallArgument(StringView text) noexcept : text_(text) {}
  CallArgument(const String& text) noexcept : text_(text) {}
  CallArgument(const Variant& value) noexcept : value_(&value) {}
  CallArgument(const Variant&& value) = delete;

  /// Whether `AppendTo` gives the same text at any time and fails for want of memory alone.
  bool SurelyHasText() const noexcept;
  /// Null and Empty add nothing. Failure 13 for what has no text.
  void AppendTo(String& text) const;

 private:
  StringView text_;
  const Variant* value_ = nullptr;
};

/// A call in words: "GetValue(Fenêtre, Largeur, 100)". Fails as `AppendTo` does.
String CallTextOf(StringView operation, std::span<const CallArgument> arguments);

}  // namespace quorl::internal
