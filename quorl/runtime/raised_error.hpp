// The one failure record, and the failures that the runtime raises under its own name.
//
// `RaisedError` is the only exception that leaves a public member of the library. After a failure
// nothing has changed, unless the member's own comment says otherwise. A RaisedError is an
// immutable value; copying it never throws.
#pragma once

#include <exception>
#include <memory>

#include "quorl/runtime/types.hpp"

namespace quorl {

/// A failure on its way to the caller.
///
///     try {
///       Math::RoundSup(1.5, -1);
///     } catch (const RaisedError& error) {
///       error.Number();       // 5000
///       error.Source();       // u"Quorl.Math"
///       error.Description();  // u"Le nombre de décimales doit être supérieur ou égal à 0."
///     }
class QUORL_API RaisedError : public std::exception {
 public:
  /// Raises the runtime's failure 7 where memory does not suffice for the record.
  RaisedError(Int32 number, StringView source, StringView description);
  // There is no move, so that what a RaisedError is moved from stays whole.
  RaisedError(const RaisedError&) noexcept = default;
  RaisedError& operator=(const RaisedError&) noexcept = default;

  /// The failure's number: 5000 for a failed check of the library's own, the store's code for a
  /// failure of `Registry`, else one of `FailureNumber`.
  Int32 Number() const noexcept;
  /// Who raised it: "Quorl.Math", "RollBuffer", "qlWinRegistry", "Quorl.Runtime".
  const String& Source() const noexcept;
  /// The text for a person.
  const String& Description() const noexcept;
  /// Source, Number and Description in UTF-8: "Quorl.Runtime (13): ...".
  const char* what() const noexcept override;

 private:
  struct Record;
  std::shared_ptr<const Record> record_;
};

/// The failures of the runtime, by Number.
enum class FailureNumber : Int32 {
  kInvalidArgument = 5,
  kOverflow = 6,
  kOutOfMemory = 7,
  kSubscriptOutOfRange = 9,
  kDivisionByZero = 11,
  kTypeMismatch = 13,
  kNoObject = 91,
  kInvalidUseOfNull = 94,
  kObjectRequired = 424,
  kNoSuchMember = 438,
};

/// The number of a failed check of the library's own.
inline constexpr Int32 kFailedCheck = 5000;

/// Source of every failure that `Raise` raises.
inline constexpr StringView kRuntimeSource = u"Quorl.Runtime";

/// Raises the runtime's failure of that number, with its Source and its French Description.
[[noreturn]] QUORL_API void Raise(FailureNumber number);

/// The runtime's French sentence for `number`; empty for a number that is none of its own.
QUORL_API StringView DescriptionOf(FailureNumber number) noexcept;

}  // namespace quorl
