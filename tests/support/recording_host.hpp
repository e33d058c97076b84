// A late-bound host that a test fills with members and that writes down every use of them.
#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "quorl/runtime/object.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/runtime/variant.hpp"
#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"

namespace quorl {

/// "#" and the Number of a failure.
inline std::string ShownFailure(Int32 number) {
  return std::string("#").append(std::to_string(number));
}

/// What `work` gave, shown, or "#" and the Number of the failure that it raised.
template <class Work>
std::string Outcome(Work work) {
  try {
    return Shown(Variant(work()));
  } catch (const RaisedError& error) {
    return ShownFailure(error.Number());
  }
}

/// The Number of the failure that `work` raised, 0 if none.
template <class Work>
Int32 NumberRaised(Work work) {
  return FailureOf(work).number;
}

/// One journal may serve several hosts, so that the order among them shows.
using Journal = std::vector<std::string>;

/// A member is what a read or a call of it gives; a write replaces it, unless a reaction is set.
/// Names count by code unit; a name without a member raises 438 as any host does.
class RecordingHost : public LateBound {
 public:
  using Arguments = std::span<Variant>;
  using Member = std::function<Variant(Arguments)>;
  using Reaction = std::function<void(const Variant&)>;

  explicit RecordingHost(std::string name, Journal* journal = nullptr)
      : name_(std::move(name)), journal_(journal) {}

  RecordingHost& With(String member, Variant value) {
    return WithMember(std::move(member), [value](Arguments) { return value; });
  }
  RecordingHost& WithMember(String member, Member given) {
    members_[std::move(member)] = std::move(given);
    return *this;
  }
  RecordingHost& OnPut(String member, Reaction reaction) {
    reactions_[std::move(member)] = std::move(reaction);
    return *this;
  }
  void Remove(const String& member) { members_.erase(member); }

  Variant Get(StringView name, Arguments arguments) override {
    Note(name, arguments, "");
    return Find(name, arguments)->second(arguments);
  }
  Variant GetByReference(StringView name, Arguments arguments) override {
    Note(name, arguments, " by reference");
    return Find(name, arguments)->second(arguments);
  }
  void Put(StringView name, Arguments arguments, const Variant& value) override {
    Note(name, arguments, " = " + Shown(value));
    const auto member = Find(name, arguments);
    if (const auto reaction = reactions_.find(member->first); reaction != reactions_.end()) {
      return reaction->second(value);
    }
    member->second = [value](Arguments) { return value; };
  }
  Variant Call(StringView name, Arguments arguments) override {
    Note(name, arguments, "!");
    return Find(name, arguments)->second(arguments);
  }

 private:
  std::map<String, Member>::iterator Find(StringView name, Arguments arguments) {
    const auto found = members_.find(String(name));
    if (found == members_.end()) LateBound::Get(name, arguments);
    return found;
  }
  void Note(StringView name, Arguments arguments, const std::string& end) {
    if (journal_ == nullptr) return;
    std::string line = name_ + "." + Utf8(name);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      line += (i == 0 ? "(" : ", ") + Shown(arguments[i]);
    }
    journal_->push_back(line + (arguments.empty() ? "" : ")") + end);
  }

  std::string name_;
  Journal* journal_;
  std::map<String, Member> members_;
  std::map<String, Reaction> reactions_;
};

}  // namespace quorl
