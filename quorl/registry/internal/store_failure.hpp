// The one way in which a code of the store becomes a failure, for `Registry` and for everything
// that works on the store beside it. Internal to the library; free of threads' concerns.
#pragma once

#include <concepts>

#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/types.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::internal {

/// Source of every failure that is a code of the store.
inline constexpr StringView kRegistrySource = u"qlWinRegistry";

/// Raises `code` with Source "qlWinRegistry" and a Description that names the call under way and
/// puts the code in the store's words, or says "Erreur inconnue" where the store has none.
[[noreturn]] void RaiseStoreFailure(Int32 code, StringView call_text);

namespace detail {

template <class Piece>
void AppendPiece(String& text, const Piece& piece) {
  if constexpr (std::convertible_to<const Piece&, StringView>) {
    text += StringView(piece);
  } else {
    AppendText(text, piece);
  }
}

}  // namespace detail

/// A call in words: "GetValue(Fenêtre, Largeur, 100)". Null and Empty add nothing. Failure 13 for
/// an argument that has no text.
template <class... Arguments>
String CallTextOf(StringView operation, const Arguments&... arguments) {
  String text(operation);
  StringView before = u"(";
  const auto append = [&](const auto& argument) {
    text += before;
    detail::AppendPiece(text, argument);
    before = u", ";
  };
  (append(arguments), ...);
  return text += u')';
}

}  // namespace quorl::internal
