// References to objects that are known only by the names of their members: a host's forms, combo
// boxes, field collections.
//
// A host written in C++ derives from `LateBound` and hands out an `Object` made by `MakeObject`.
// An `Object` is a counted reference; the object lives until its last reference is gone. An object
// is used from one thread at a time.
#pragma once

#include <memory>
#include <span>
#include <utility>

#include "quorl/runtime/types.hpp"

namespace quorl {

class Variant;

/// What a host implements. A name is matched as the host sees fit; the empty name is the default
/// member. `arguments` stand in call order; a callee may write an argument back by assigning to it.
/// Each operation raises failure 438 for a member that the object lacks, which is all that these
/// defaults do; any other RaisedError of a host reaches its caller unchanged.
class QUORL_API LateBound {
 public:
  LateBound() = default;
  LateBound(const LateBound&) = delete;
  LateBound& operator=(const LateBound&) = delete;
  virtual ~LateBound() = default;

  /// Reads a property, with indices if it has any.
  virtual Variant Get(StringView name, std::span<Variant> arguments);
  /// The same with the arguments passed by reference, for an object that lives behind a boundary
  /// where that makes a difference; any other has nothing to do here.
  virtual Variant GetByReference(StringView name, std::span<Variant> arguments);
  /// Writes a property; `value` is the new value.
  virtual void Put(StringView name, std::span<Variant> arguments, const Variant& value);
  /// Calls a method; Empty is the result of one that gives none.
  virtual Variant Call(StringView name, std::span<Variant> arguments);
};

/// A counted reference to a LateBound, or to nothing. Every operation on an empty reference raises
/// failure 91; failures of the object pass through, and std::bad_alloc comes out as failure 7.
///
///     Object form = MakeObject<MyForm>();
///     form.Put(u"Left", {}, Variant(120));
///     Double left = ToDouble(form.Get(u"Left"));
class QUORL_API Object {
 public:
  Object() noexcept = default;
  explicit Object(std::shared_ptr<LateBound> target) noexcept : target_(std::move(target)) {}

  bool IsEmpty() const noexcept { return target_ == nullptr; }
  explicit operator bool() const noexcept { return target_ != nullptr; }

  Variant Get(StringView name, std::span<Variant> arguments = {}) const;
  Variant GetByReference(StringView name, std::span<Variant> arguments) const;
  void Put(StringView name, std::span<Variant> arguments, const Variant& value) const;
  Variant Call(StringView name, std::span<Variant> arguments = {}) const;

  /// The object behind the reference, null for an empty one; it belongs to the references.
  LateBound* Target() const noexcept { return target_.get(); }

  /// Equal when both refer to the same object.
  friend bool operator==(const Object&, const Object&) noexcept = default;

 private:
  LateBound& Required() const;

  std::shared_ptr<LateBound> target_;
};

/// Makes a host's object and the first reference to it. Throws what the host's constructor throws,
/// and std::bad_alloc.
template <class Host, class... Arguments>
QUORL_API Object MakeObject(Arguments&&... arguments) {
  return Object(std::make_shared<Host>(std::forward<Arguments>(arguments)...));
}

}  // namespace quorl
