#include "examples/settings/value_text.hpp"

#include <array>
#include <charconv>
#include <cstdint>
#include <utility>
#include <vector>

#include "examples/command/printable.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/messages.hpp"
#include "examples/settings/shown.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/utf.hpp"

namespace settings {

using namespace quorl;
namespace {

std::string HexOf(std::string_view data) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (const char byte : data) {
    const auto number = static_cast<unsigned char>(byte);
    if (!text.empty()) text += ' ';
    text += kDigits[number / 16];
    text += kDigits[number % 16];
  }
  return text;
}

std::string TextOf(const RegistryTextValue& value) {
  const std::size_t end = value.data.ends_with('\0') ? value.data.size() - 1 : value.data.size();
  return Utf8(FromAnsi(std::string_view(value.data).substr(0, end)));
}

bool IsNumber(const RegistryTextValue& value) {
  return value.type == REG_DWORD && value.data.size() == sizeof(Int32);
}

std::string NumberOf(const RegistryTextValue& value) {
  std::uint32_t number = 0;
  for (std::size_t i = sizeof(number); i-- > 0;) {
    number = number << 8U | static_cast<unsigned char>(value.data[i]);
  }
  return std::to_string(static_cast<Int32>(number));
}

Variant DwordFrom(const std::string& text) {
  const bool is_hex = text.starts_with("0x");
  const bool is_negative = text.starts_with('-');
  const char* const first = text.data() + (is_hex ? 2 : 0);
  const char* const last = text.data() + text.size();
  std::int64_t number = 0;
  const auto [end, error] = std::from_chars(first, last, number, is_hex ? 16 : 10);
  const bool is_whole = error == std::errc() && end == last && (!is_hex || first[0] != '-');
  if (!is_whole || number > UINT32_MAX || (is_negative && number < INT32_MIN)) {
    throw WrongUse(messages::kNoNumber(text));
  }
  return static_cast<Int32>(static_cast<std::uint32_t>(number));
}

Variant BytesFrom(std::string text) {
  std::erase(text, ' ');
  std::vector<Byte> bytes(text.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char* const pair = text.data() + 2 * i;
    if (std::from_chars(pair, pair + 2, bytes[i], 16).ptr != pair + 2) bytes.clear();
  }
  if (bytes.empty() || text.size() % 2 != 0) throw WrongUse(messages::kNoBytes());
  return Array::OfBytes(std::move(bytes));
}

JsonObject& AddContent(JsonObject& object, const RegistryTextValue& value) {
  object.Add("type", TypeOf(value));
  return IsNumber(value) ? object.AddRaw("data", NumberOf(value))
                         : object.Add("data", ContentOf(value));
}

}  // namespace

std::string TypeOf(const RegistryTextValue& value) {
  if (value.type == REG_SZ) return "sz";
  if (value.type == REG_BINARY) return "binary";
  if (IsNumber(value)) return "dword";
  return "type " + std::to_string(static_cast<std::uint32_t>(value.type));
}

std::string ContentOf(const RegistryTextValue& value) {
  if (value.type == REG_SZ) return TextOf(value);
  return IsNumber(value) ? NumberOf(value) : HexOf(value.data);
}

std::string LineOf(const RegistryTextValue& value) {
  return '"' + Utf8(command::Printable(value.name)) + "\" " +
         Painted(Paint::kType, TypeOf(value) + ":") + ' ' + command::Printable(ContentOf(value));
}

std::string JsonOf(const RegistryTextValue& value) {
  JsonObject object;
  object.Add("name", Utf8(value.name));
  return AddContent(object, value).Text();
}

std::string JsonOfContent(const RegistryTextValue& value) {
  JsonObject object;
  return AddContent(object, value).Text();
}

Variant ValueFrom(const std::string& text, const std::string& type) {
  if (type == "dword") return DwordFrom(text);
  if (type == "binary") return BytesFrom(text);
  if (type == "sz") return Storable(text);
  throw WrongUse(messages::kUnknownType(type));
}

String Storable(const std::string& text) {
  String wide = Utf16(text);
  if (FromAnsi(ToAnsi(wide)) != wide) throw Refusal(messages::kForeignCharacter(text));
  return wide;
}

}  // namespace settings
