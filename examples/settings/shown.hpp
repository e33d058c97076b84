// How things are shown: in colours on a terminal, or as JSON for another program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace settings {

enum class Paint : std::uint8_t { kKey, kType, kAdded, kRemoved, kAlarm };

/// `text` in a colour where standard output is a terminal that has some, unless the environment
/// has NO_COLOR; else as it is.
std::string Painted(Paint paint, std::string_view text);

/// A JSON string of UTF-8 text, without a character that would command a terminal.
std::string JsonText(std::string_view text);

/// A JSON object on one line.
class JsonObject {
 public:
  JsonObject& Add(std::string_view name, std::string_view text) {
    return AddRaw(name, JsonText(text));
  }
  JsonObject& AddNumber(std::string_view name, std::uint64_t number) {
    return AddRaw(name, std::to_string(number));
  }
  /// `json` is a number, an object and so on.
  JsonObject& AddRaw(std::string_view name, std::string_view json);
  std::string Text() const { return "{" + members_ + "}"; }

 private:
  std::string members_;
};

/// A JSON array on one line.
class JsonArray {
 public:
  void Add(std::string_view json);
  std::string Text() const { return "[" + elements_ + "]"; }

 private:
  std::string elements_;
};

/// A JSON array on standard output, an element a line.
class JsonRows {
 public:
  void Print(std::string_view json);
  void End();

 private:
  bool is_first_ = true;
};

}  // namespace settings
