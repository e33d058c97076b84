// The log of calls, read into memory. docs/parity.md describes its text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "examples/command/message.hpp"
#include "examples/parity/value.hpp"

namespace parity {

using command::Message;

inline constexpr const char* kFirstLine = "quorl-parity 1";

/// A name of a member, or "#5" for the identifier 5 where the name is not known.
using Name = std::u16string;

/// An argument: by position without a name, the new value of a put under the name ":".
struct Argument {
  std::optional<Name> name;
  Value value;
};
inline const Name kPutValue = u":";

struct Outcome {
  enum class Kind { kGives, kFails, kRefused };
  Kind kind = Kind::kGives;
  std::size_t line = 0;
  /// The result, unless the host asked for none; only of kGives.
  std::optional<Value> result;
  /// The failure's Number, or the code of a refused call.
  std::int32_t number = 0;
  /// Which element of the arguments a refused call complains of.
  std::uint32_t wrong_argument = 0;
  std::u16string source;
  std::u16string description;
  /// The arguments by reference as they stand after the call, in the order of the log.
  std::vector<Value> written_back;
};

/// One thing that happened. A call's body is what happened before its outcome: the calls that the
/// component made of the host's objects, and within these what the host did.
struct Entry {
  enum class Kind { kObject, kHost, kRelease, kCall, kFind };
  Kind kind = Kind::kCall;
  std::size_t line = 0;
  std::uint32_t object = 0;
  /// The class of kObject; the member of kCall and kFind.
  Name name;
  /// Of kCall: the flags of Invoke.
  std::uint16_t flags = 0;
  /// Of kFind: names alone.
  std::vector<Argument> arguments;
  std::vector<Entry> body;
  Outcome outcome;
};

/// What differs by nature, as "differs GUIDs.CreateGUID" declares it.
struct Header {
  std::string locale;  ///< Empty: the system's.
  double screen_width = 0;
  double screen_height = 0;
  std::vector<std::string> differs;
};

struct Log {
  Header header;
  std::vector<Entry> entries;
  std::size_t calls = 0;  ///< Those within others too.
  std::size_t lines = 0;
  std::optional<std::size_t> ended_with;  ///< The number of calls that the last line promises.
};

/// A log that makes no sense, at that line, from 1.
struct Unreadable {
  std::size_t line;
  Message<> what;
};

}  // namespace parity
