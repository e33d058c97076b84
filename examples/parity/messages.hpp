// What the programs say, in the language of their user.
#pragma once

#include <string>
#include <string_view>

namespace parity {

/// One sentence in both languages.
struct Text {
  std::string_view english;
  std::string_view french;
};

/// The one in the user's language: French where the environment's messages are, else English.
std::string_view Say(const Text& text);

/// The same with `first` for "%1" and `second` for "%2".
std::string Say(const Text& text, const std::string& first, const std::string& second = {});

}  // namespace parity
