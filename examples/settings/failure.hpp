// What ends a command early, and the failures of the library in the person's language.
#pragma once

#include <stdexcept>
#include <string>

#include "quorl/registry/text/fault.hpp"

namespace settings {

/// What the person asked for is not to be had: the message says why, the status is 1.
struct Refusal : std::runtime_error {
  using runtime_error::runtime_error;
};

/// The command line makes no sense: status 2.
struct WrongUse : std::runtime_error {
  using runtime_error::runtime_error;
};

/// A code of the store, without a line end.
std::string SentenceOfCode(quorl::Int32 code);

/// A failure of the library. What this program has no sentence for is quoted.
std::string SentenceOfFailure(const quorl::RaisedError& error);

/// What is wrong with a settings file.
std::string SentenceOfFault(quorl::RegistryTextFault fault);

/// "'HKCU\Maison': " and why it was refused.
[[noreturn]] void RefuseAbout(const std::string& subject, const quorl::RaisedError& error);

/// The result of `work` on the store; what the library refuses is told about `subject`.
template <class Work>
auto OnStore(const std::string& subject, Work work) {
  try {
    return work();
  } catch (const quorl::RaisedError& error) {
    RefuseAbout(subject, error);
  }
}

}  // namespace settings
