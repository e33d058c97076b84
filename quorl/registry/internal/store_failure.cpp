#include "quorl/registry/internal/store_failure.hpp"

#include <array>
#include <string_view>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/operations.hpp"

namespace quorl::internal {
namespace {

constexpr Int32 kSystemMessages = 4096;

String SentenceOfCode(Int32 code) {
  std::array<char, 1000> buffer;
  const Int32 length = FormatMessageA(kSystemMessages, nullptr, code, 0, buffer.data(),
                                      static_cast<Int32>(buffer.size()), nullptr);
  if (length <= 0) return u"Erreur inconnue";
  return FromAnsi(std::string_view(buffer.data(), static_cast<std::size_t>(length)));
}

}  // namespace

void RaiseStoreFailure(Int32 code, StringView call_text) {
  String description = u"Erreur d'accès au registre windows dans la fonction ";
  description += call_text;
  description += u"\n\n";
  description += SentenceOfCode(code);
  throw RaisedError(code, kRegistrySource, description);
}

}  // namespace quorl::internal
