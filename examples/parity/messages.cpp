#include "examples/parity/messages.hpp"

#include <cstdlib>

namespace parity {

namespace {

bool IsFrench() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && *value != '\0') return std::string_view(value).starts_with("fr");
  }
  return false;
}

}  // namespace

std::string_view Say(const Text& text) {
  static const bool is_french = IsFrench();
  return is_french ? text.french : text.english;
}

std::string Say(const Text& text, const std::string& first, const std::string& second) {
  const std::string_view pattern = Say(text);
  std::string said;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const char next = i + 1 < pattern.size() ? pattern[i + 1] : '\0';
    if (pattern[i] == '%' && (next == '1' || next == '2')) {
      said += next == '1' ? first : second;
      ++i;
    } else {
      said += pattern[i];
    }
  }
  return said;
}

}  // namespace parity
