// What keeps an amount, a line or the whole command from being done.
#pragma once

#include <stdexcept>
#include <string>

#include "examples/amount_in_words/messages.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"

namespace amounts {

/// Of one amount or line; the others are done all the same.
struct Problem : std::runtime_error {
  using runtime_error::runtime_error;
};
/// Of the command line.
struct WrongUsage : std::runtime_error {
  using runtime_error::runtime_error;
};

template <class Kind = Problem>
[[noreturn]] void Refuse(const command::Message<1>& what, quorl::StringView text) {
  throw Kind(what(quorl::Utf8(text)));
}

// What kept `work` from being done, empty when nothing did.
template <class Work>
std::string ProblemOf(Work work) {
  try {
    work();
  } catch (const Problem& problem) {
    return problem.what();
  } catch (const quorl::RaisedError& error) {
    return messages::kQuoted(std::to_string(error.Number()), quorl::Utf8(error.Description()));
  }
  return {};
}

}  // namespace amounts
