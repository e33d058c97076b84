// A reference to something callable, lent for one call: no allocation, no ownership.
#pragma once

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>

namespace quorl::internal {

template <class Signature>
class FunctionRef;

/// Made from any callable that outlives the call it is passed to.
template <class Result, class... Arguments>
class FunctionRef<Result(Arguments...)> {
 public:
  // NOLINTBEGIN(bugprone-forwarding-reference-overload): the constraint leaves copies alone.
  template <class Callable>
  requires(!std::same_as<std::remove_cvref_t<Callable>, FunctionRef> &&
           std::is_invocable_r_v<Result, Callable&, Arguments...>) FunctionRef(Callable&& callable)
  noexcept
      : object_(const_cast<void*>(static_cast<const void*>(std::addressof(callable)))),
        call_([](void* object, Arguments... arguments) -> Result {
          return (*static_cast<std::remove_reference_t<Callable>*>(object))(
              std::forward<Arguments>(arguments)...);
        }) {}
  // NOLINTEND(bugprone-forwarding-reference-overload)

  Result operator()(Arguments... arguments) const {
    return call_(object_, std::forward<Arguments>(arguments)...);
  }

 private:
  void* object_;
  Result (*call_)(void*, Arguments...);
};

}  // namespace quorl::internal
