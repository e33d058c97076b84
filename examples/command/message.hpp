// A sentence of a command in both its languages. One without a translation, or whose translation
// takes other arguments, does not compile.
//
//     constexpr Message<2> kNotRead{"'{0}' cannot be read: {1}", "« {0} » est illisible : {1}"};
//     std::cerr << kNotRead(path, reason);
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "examples/command/language.hpp"

namespace command {

// Called by what does not compile, which says why by this name.
void ALanguageIsMissingOrAnArgumentInOneOfThem() noexcept;

/// {0}, {1} and so on stand for the `kArguments` arguments; each language has every one of them.
template <std::size_t kArguments = 0>
class Message {
 public:
  consteval Message(std::string_view english, std::string_view french)
      : english_(english), french_(french) {
    if (!TakesAllArguments(english) || !TakesAllArguments(french)) {
      ALanguageIsMissingOrAnArgumentInOneOfThem();
    }
  }

  constexpr std::string_view In(Language language) const {
    return language == Language::kFrench ? french_ : english_;
  }

  /// In the person's language.
  template <class... Arguments>
  requires(sizeof...(Arguments) == kArguments) std::string operator()(
      const Arguments&... arguments) const {
    const std::array<std::string, kArguments> texts{TextOf(arguments)...};
    std::string_view rest = In(PersonsLanguage());
    std::string said;
    for (std::size_t at = 0; (at = PlaceAt(rest)) != rest.npos;) {
      said.append(rest.substr(0, at)).append(texts[IndexAt(rest, at)]);
      rest.remove_prefix(at + kPlaceLength);
    }
    return said.append(rest);
  }

 private:
  static constexpr std::size_t kPlaceLength = 3;

  static std::string TextOf(std::string_view text) { return std::string(text); }
  static std::string TextOf(std::size_t number) { return std::to_string(number); }

  static constexpr std::size_t IndexAt(std::string_view text, std::size_t at) {
    return static_cast<std::size_t>(text[at + 1] - '0');
  }

  // Of the first place for an argument.
  static constexpr std::size_t PlaceAt(std::string_view text) {
    for (std::size_t at = text.find('{'); at != text.npos; at = text.find('{', at + 1)) {
      if (at + 2 < text.size() && text[at + 2] == '}' && IndexAt(text, at) < kArguments) return at;
    }
    return text.npos;
  }

  static constexpr bool TakesAllArguments(std::string_view text) {
    for (std::size_t i = 0; i < kArguments; ++i) {
      const char place[] = {'{', static_cast<char>('0' + i), '}'};
      if (text.find(std::string_view(place, kPlaceLength)) == text.npos) return false;
    }
    return !text.empty();
  }

  std::string_view english_;
  std::string_view french_;
};

}  // namespace command
