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
#include "tests/support/print.hpp"

namespace quorl {

/// One journal may serve several hosts, so that the order among them shows.
using Journal = std::vector<std::string>;

/// A member is what a read or a call of it gives; a write replaces it, unless a reaction is set.
/// Names count by code unit; a name without a member raises 438 as any host does.
class RecordingHost : public LateBound {
 public:
  using Arguments = std::span<Variant>;
  using Member = std::function<Variant(Arguments)>;

  explicit RecordingHost(std::string name, Journal* journal = nullptr)
      : name_(std::move(name)), journal_(journal) {}

  RecordingHost& With(String member, Variant value) {
    return WithMember(std::move(member), [value](Arguments) { return value; });
  }
  RecordingHost& WithMember(String member, Member given) {
    members_[std::move(member)] = std::move(given);
    return *this;
  }
  void WithFailure(String member, Int32 number) {
    WithMember(std::move(member),
               [number](Arguments) -> Variant { throw RaisedError(number, u"Host", u"No"); });
  }
  void Remove(const String& member) { members_.erase(member); }

  Variant Get(StringView name, Arguments arguments) override { return Use(name, arguments, ""); }
  Variant GetByReference(StringView name, Arguments arguments) override {
    return Use(name, arguments, " by reference");
  }
  Variant Call(StringView name, Arguments arguments) override { return Use(name, arguments, "!"); }
  void Put(StringView name, Arguments arguments, const Variant& value) override {
    Note(name, arguments, " = " + Shown(value));
    Find(name, arguments) = [value](Arguments) { return value; };
  }

 private:
  Variant Use(StringView name, Arguments arguments, const char* how) {
    Note(name, arguments, how);
    return Find(name, arguments)(arguments);
  }
  Member& Find(StringView name, Arguments arguments) {
    const auto found = members_.find(String(name));
    if (found == members_.end()) LateBound::Get(name, arguments);
    return found->second;
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
};

}  // namespace quorl
