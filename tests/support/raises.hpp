// Asserts a failure's whole record: Number, Source and Description.
//
//     EXPECT_RAISES(ToInt16(Variant(u"x")), RuntimeFailure(13)) << "the input, where it varies";
//
// The expression becomes a lambda's body, where names of structured bindings are not portable.
#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {

/// What a call raised; `Failure{}` stands for nothing raised.
struct Failure {
  Int32 number = 0;
  String source;
  String description;

  friend bool operator==(const Failure&, const Failure&) = default;
  friend void PrintTo(const Failure& failure, std::ostream* out) {
    *out << failure.number << " of \"" << Utf8(failure.source)
         << "\": " << Utf8(failure.description);
  }
};

/// The runtime's own failure of that number, as it stands.
inline Failure RuntimeFailure(Int32 number) {
  return {number, u"Quorl.Runtime", String(DescriptionOf(static_cast<FailureNumber>(number)))};
}
inline Failure RuntimeFailure(FailureNumber number) {
  return RuntimeFailure(static_cast<Int32>(number));
}

/// Runs `work`. An exception of another type passes and fails the test.
template <class Work>
Failure FailureOf(Work&& work) {
  try {
    work();
  } catch (const RaisedError& error) {
    return {error.Number(), error.Source(), error.Description()};
  }
  return {};
}

}  // namespace quorl

#define EXPECT_RAISES(expression, failure) \
  EXPECT_EQ(::quorl::FailureOf([&] { static_cast<void>(expression); }), (failure))
