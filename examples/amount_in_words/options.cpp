#include "examples/amount_in_words/options.hpp"

#include <algorithm>
#include <array>

#include "quorl/runtime/utf.hpp"

namespace amounts {

using quorl::String;
using quorl::StringView;
using quorl::Utf16;
using quorl::Utf8;

namespace {

constexpr std::array<std::string_view, 9> kNamed{"--file",     "--language", "--currency",
                                                 "--unit",     "--units",    "--subunit",
                                                 "--subunits", "--kind",     "--decimals"};

bool IsNamed(std::string_view name) { return std::ranges::find(kNamed, name) != kNamed.end(); }

// "-5" and "-,50" are amounts, "-five" is an option.
bool IsAmount(std::string_view argument) {
  return !argument.starts_with('-') ||
         (argument.size() > 1 &&
          std::string_view("0123456789,.").find(argument[1]) != std::string_view::npos);
}

}  // namespace

Options::Options(const std::vector<std::string>& arguments) {
  for (auto at = arguments.begin(); at != arguments.end(); ++at) {
    if (*at == "--help" || *at == "-h") {
      help_ = true;
    } else if (*at == "--") {
      amounts_.insert(amounts_.end(), at + 1, arguments.end());
      break;
    } else if (*at == "-") {
      SetValue("--file", *at);
    } else if (IsAmount(*at)) {
      amounts_.push_back(*at);
    } else if (const std::size_t equals = at->find('='); equals != std::string::npos) {
      SetValue(at->substr(0, equals), at->substr(equals + 1));
    } else if (at + 1 != arguments.end() || !IsNamed(*at)) {
      SetValue(*at, at + 1 == arguments.end() ? "" : *(at + 1));
      ++at;
    } else {
      Refuse<WrongUsage>(messages::kValueMissing, Utf16(*at));
    }
  }
}

String Options::Value(const char* name, StringView otherwise) const {
  const auto found = values_.find(name);
  if (found == values_.end()) return String(otherwise);
  String text = Utf16(found->second);
  if (Utf8(text) != found->second) throw WrongUsage(messages::kValueNoUtf8(name, Utf8(text)));
  return text;
}

quorl::Int16 Options::Digit(const char* name, char16_t highest) const {
  const String text = Value(name);
  if (text.size() != 1 || text[0] < u'0' || text[0] > highest) {
    throw WrongUsage(messages::kWrongValue(name, Utf8(text)));
  }
  return static_cast<quorl::Int16>(text[0] - u'0');
}

void Options::SetValue(const std::string& name, const std::string& value) {
  if (!IsNamed(name)) Refuse<WrongUsage>(messages::kUnknownOption, Utf16(name));
  if (!values_.emplace(name, value).second) Refuse<WrongUsage>(messages::kTwice, Utf16(name));
}

}  // namespace amounts
