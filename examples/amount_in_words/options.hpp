// The command line.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "examples/amount_in_words/problem.hpp"

namespace amounts {

class Options {
 public:
  /// Throws WrongUsage, as every member may that reads a value.
  explicit Options(const std::vector<std::string>& arguments);

  bool Help() const { return help_; }
  const std::vector<std::string>& Amounts() const { return amounts_; }
  std::size_t Count() const { return values_.size(); }
  bool Has(const char* name) const { return values_.contains(name); }
  /// As it was typed.
  const std::string& File() const { return values_.at("--file"); }
  quorl::String Value(const char* name, quorl::StringView otherwise = u"") const;
  /// A value of one digit from 0 to `highest`.
  quorl::Int16 Digit(const char* name, char16_t highest) const;

 private:
  void SetValue(const std::string& name, const std::string& value);

  std::map<std::string, std::string, std::less<>> values_;
  std::vector<std::string> amounts_;
  bool help_ = false;
};

}  // namespace amounts
