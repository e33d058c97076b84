#include "quorl/runtime/object.hpp"

#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

Variant LateBound::Get(StringView, std::span<Variant>) { Raise(FailureNumber::kNoSuchMember); }

Variant LateBound::GetByReference(StringView name, std::span<Variant> arguments) {
  return Get(name, arguments);
}

void LateBound::Put(StringView, std::span<Variant>, const Variant&) {
  Raise(FailureNumber::kNoSuchMember);
}

Variant LateBound::Call(StringView, std::span<Variant>) { Raise(FailureNumber::kNoSuchMember); }

LateBound& Object::Required() const {
  if (!target_) Raise(FailureNumber::kNoObject);
  return *target_;
}

Variant Object::Get(StringView name, std::span<Variant> arguments) const {
  return Required().Get(name, arguments);
}

Variant Object::GetByReference(StringView name, std::span<Variant> arguments) const {
  return Required().GetByReference(name, arguments);
}

void Object::Put(StringView name, std::span<Variant> arguments, const Variant& value) const {
  Required().Put(name, arguments, value);
}

Variant Object::Call(StringView name, std::span<Variant> arguments) const {
  return Required().Call(name, arguments);
}

}  // namespace quorl
