#include "quorl/runtime/internal/join.hpp"

#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/utf16_bytes.hpp"
#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl::internal {
namespace {

void AppendPlain(String& text, const Variant& plain) {
  if (plain.IsNull() || plain.IsEmpty()) return;
  const Array* array = plain.If<Array>();
  if (array != nullptr && array->ElementType() == VariantType::kByte) {
    text += UnitsOf(array->Bytes());
  } else if (const String* content = plain.If<String>()) {
    text += *content;
  } else {
    text += ToString(plain);
  }
}

}  // namespace

void AppendText(String& text, const Variant& value) {
  WithinMemory([&] {
    if (value.Holds<Object>()) return AppendPlain(text, PlainValueOf(value));
    AppendPlain(text, value);
  });
}

}  // namespace quorl::internal
