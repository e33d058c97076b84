// The hidden instance of a class that remembers something, for the hosts that call its members by
// the class's name alone.
#pragma once

namespace quorl {

/// The one instance of `Class`, made at the first call and kept until the library unloads. A
/// failure to make it passes through, and the next call tries again. The making is safe from
/// several threads; the instance has the thread rule of its class.
///
///     GlobalInstance<Regional>().DecimalChar();
template <class Class>
Class& GlobalInstance() {
  static Class instance;
  return instance;
}

}  // namespace quorl
