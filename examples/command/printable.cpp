#include "examples/command/printable.hpp"

#include "quorl/runtime/utf.hpp"

namespace command {

quorl::String Printable(quorl::StringView text) {
  quorl::String shown(text);
  for (char16_t& unit : shown) {
    if (unit < u' ') unit = static_cast<char16_t>(u'\u2400' + unit);
    if (unit >= u'\u007F' && unit < u'\u00A0') unit = u'\u2421';
  }
  return shown;
}

std::string Printable(const std::string& text) {
  return quorl::Utf8(Printable(quorl::Utf16(text)));
}

}  // namespace command
