// Makes the calls of a log again and tells what is otherwise now.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "examples/parity/binary.hpp"

namespace parity {

/// What the log says and what it is now, at a line of the log.
struct Difference {
  std::size_t line;
  std::string what;  ///< The call.
  std::string logged;
  std::string now;
};

struct Tally {
  std::size_t calls = 0;
  std::size_t differences = 0;
};

/// How many calls were made of the component, by member ("Strings.Padl").
struct Summary {
  std::map<std::string, Tally> members;
  Tally all;
  std::size_t through_table = 0;
};

struct Replaying {
  /// A new object of that class, null if there is none.
  std::function<Counted<>(const Name& class_name)> make;
  /// Called for each difference as it is found.
  std::function<void(const Difference&)> differs;
  /// Called before each call that stands by itself.
  std::function<void(std::size_t calls)> progress;
  /// Through the table where a host can; what needs a conversion, and wrong calls, by name.
  bool through_table = false;
};

/// Makes the calls in their order. The host's objects answer as they did in the log. A call that
/// ends otherwise is a difference, and so are a call of a host's object that the log has not, or
/// has otherwise, or has and that is not made; an object that cannot be made, and one of the host's
/// that the component keeps; a log without its end. Throws std::bad_alloc.
Summary Replay(const Log& log, const Replaying& how);

}  // namespace parity
