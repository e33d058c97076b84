// What the late-bound objects of this adapter have in common: the toolkit's object behind them,
// which may be gone, and members looked up by name in a table.
#pragma once

#include <QObject>
#include <QPointer>
#include <algorithm>
#include <iterator>

#include "quorl/qt/values.hpp"
#include "quorl/runtime/object.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl::qt {

using Arguments = std::span<Variant>;

/// Properties and invokable methods of an object of the toolkit.
class HostObject : public LateBound {
 public:
  explicit HostObject(QObject& object) : object_(&object) {}

  Variant Get(StringView name, Arguments arguments) override;
  void Put(StringView name, Arguments arguments, const Variant& value) override;
  Variant Call(StringView name, Arguments arguments) override;

  /// Failure 91 once it is deleted.
  QObject& Alive() const {
    if (object_.isNull()) Raise(FailureNumber::kNoObject);
    return *object_;
  }

 private:
  QPointer<QObject> object_;
};

/// One member of a class `Host`, with what it offers of a read, a write and a call.
template <class Host>
struct Member {
  StringView name;
  Variant (Host::*get)(Arguments) = nullptr;
  void (Host::*put)(const Variant&) = nullptr;
  Variant (Host::*call)(Arguments) = nullptr;
};

inline bool IsSameName(StringView left, StringView right) {
  return Lend(left).compare(Lend(right), Qt::CaseInsensitive) == 0;
}

/// The one argument that `arguments` should hold; failure 5 for another number of them.
inline const Variant& OnlyOne(Arguments arguments) {
  if (arguments.size() != 1) Raise(FailureNumber::kInvalidArgument);
  return arguments.front();
}

/// Answers to the members of `Host::kMembers`, and as `Base` to all others.
template <class Host, class Base>
class WithMembers : public Base {
 public:
  using Base::Base;

  Variant Get(StringView name, Arguments arguments) override {
    const Member<Host>* member = Find(name);
    if (member == nullptr) return Base::Get(name, arguments);
    if (member->get == nullptr) Raise(FailureNumber::kNoSuchMember);
    return (Self().*member->get)(arguments);
  }
  void Put(StringView name, Arguments arguments, const Variant& value) override {
    const Member<Host>* member = Find(name);
    if (member == nullptr) return Base::Put(name, arguments, value);
    if (member->put == nullptr || !arguments.empty()) Raise(FailureNumber::kNoSuchMember);
    (Self().*member->put)(value);
  }
  Variant Call(StringView name, Arguments arguments) override {
    const Member<Host>* member = Find(name);
    if (member == nullptr) return Base::Call(name, arguments);
    if (member->call == nullptr) Raise(FailureNumber::kNoSuchMember);
    return (Self().*member->call)(arguments);
  }

 private:
  Host& Self() { return static_cast<Host&>(*this); }
  static const Member<Host>* Find(StringView name) {
    const auto found =
        std::find_if(std::begin(Host::kMembers), std::end(Host::kMembers),
                     [name](const Member<Host>& member) { return IsSameName(member.name, name); });
    return found == std::end(Host::kMembers) ? nullptr : &*found;
  }
};

}  // namespace quorl::qt
