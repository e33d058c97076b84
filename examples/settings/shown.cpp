#include "examples/settings/shown.hpp"

#include <unistd.h>

#include <array>
#include <cstdlib>

#include "examples/command/output.hpp"
#include "quorl/runtime/utf.hpp"

namespace settings {

using namespace quorl;
namespace {

// The text of an environment variable, empty where there is none.
std::string_view Said(const char* variable) {
  const char* const text = std::getenv(variable);
  return text == nullptr ? std::string_view() : text;
}

bool HasColours() {
  static const bool has_colours = command::IsTerminal(STDOUT_FILENO) && Said("NO_COLOR").empty() &&
                                  !Said("TERM").empty() && Said("TERM") != "dumb";
  return has_colours;
}

// Bold blue, faint, green, red, bold red: those that can be read on white and on black.
constexpr std::array<std::string_view, 5> kColours{"1;34", "2", "32", "31", "1;31"};

void AppendEscaped(String& json, char16_t unit) {
  constexpr StringView kDigits = u"0123456789abcdef";
  json += u"\\u";
  for (unsigned shift = 16; shift > 0; shift -= 4) json += kDigits[unit >> (shift - 4) & 0xFU];
}

}  // namespace

std::string Painted(Paint paint, std::string_view text) {
  if (!HasColours()) return std::string(text);
  std::string painted = "\033[";
  painted.append(kColours[static_cast<std::size_t>(paint)]).append("m").append(text);
  return painted.append("\033[0m");
}

std::string JsonText(std::string_view text) {
  String json = u"\"";
  for (const char16_t unit : Utf16(text)) {
    const bool is_control = unit < u' ' || (unit >= u'\u007F' && unit < u'\u00A0');
    if (is_control) {
      AppendEscaped(json, unit);
      continue;
    }
    if (unit == u'"' || unit == u'\\') json += u'\\';
    json += unit;
  }
  return Utf8(json += u'"');
}

JsonObject& JsonObject::AddRaw(std::string_view name, std::string_view json) {
  if (!members_.empty()) members_ += ", ";
  members_.append(JsonText(name)).append(": ").append(json);
  return *this;
}

void JsonArray::Add(std::string_view json) {
  if (!elements_.empty()) elements_ += ", ";
  elements_.append(json);
}

void JsonRows::Print(std::string_view json) {
  command::Print(is_first_ ? "[\n" : ",\n");
  command::Print(json);
  is_first_ = false;
}

void JsonRows::End() { command::Print(is_first_ ? "[]\n" : "\n]\n"); }

}  // namespace settings
