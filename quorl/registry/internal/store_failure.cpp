#include "quorl/registry/internal/store_failure.hpp"

#include <cmath>

#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/status.hpp"

namespace quorl::internal {

void RaiseStoreFailure(Int32 code, StringView call_text) {
  const StringView sentence = SentenceOf(code);
  throw RaisedError(code, kRegistrySource,
                    Joined(u"Erreur d'accès au registre windows dans la fonction ", call_text,
                           u"\n\n", sentence.empty() ? u"Erreur inconnue" : sentence));
}

bool CallArgument::SurelyHasText() const noexcept {
  if (value_ == nullptr) return true;
  if (const Array* array = value_->If<Array>()) {
    return array->ElementType() == VariantType::kByte;
  }
  if (const Double* number = value_->If<Double>()) return std::isfinite(*number);
  if (const Single* number = value_->If<Single>()) return std::isfinite(*number);
  return !value_->IsMissing() && !value_->Holds<Object>() && !value_->Holds<Date>();
}

void CallArgument::AppendTo(String& text) const {
  if (value_ != nullptr) {
    AppendText(text, *value_);
  } else {
    text += text_;
  }
}

String CallTextOf(StringView operation, std::span<const CallArgument> arguments) {
  String text(operation);
  StringView before = u"(";
  for (const CallArgument& argument : arguments) {
    text += before;
    argument.AppendTo(text);
    before = u", ";
  }
  return text += u')';
}

}  // namespace quorl::internal
