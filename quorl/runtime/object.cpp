#include "quorl/runtime/object.hpp"

#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;

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
  return WithinMemory([&] { return Required().Get(name, arguments); });
}

Variant Object::GetByReference(StringView name, std::span<Variant> arguments) const {
  return WithinMemory([&] { return Required().GetByReference(name, arguments); });
}

void Object::Put(StringView name, std::span<Variant> arguments, const Variant& value) const {
  WithinMemory([&] { Required().Put(name, arguments, value); });
}

Variant Object::Call(StringView name, std::span<Variant> arguments) const {
  return WithinMemory([&] { return Required().Call(name, arguments); });
}

}  // namespace quorl
