#include "examples/parity/replay.hpp"

#include <algorithm>
#include <memory>
#include <set>
#include <vector>

#include "examples/parity/by_name.hpp"
#include "examples/parity/host_object.hpp"
#include "examples/parity/log_text.hpp"
#include "examples/parity/slot_call.hpp"

namespace parity {

namespace {

constexpr Message<> kNotMade{"no object of the class can be made",
                             "aucun objet de la classe n'a pu être créé"};
constexpr Message<> kNotThere{"(the object is missing)", "(l'objet manque)"};
constexpr Message<> kReleased{"the component let it go", "le composant l'a libéré"};
constexpr Message<> kKept{"the component keeps it", "le composant le garde"};
constexpr Message<> kNoCall{"(no call)", "(pas d'appel)"};
constexpr Message<> kCutOff{"(the log stops here: what followed is lost)",
                            "(le journal s'arrête ici : la suite est perdue)"};
constexpr Message<1> kCounted{"calls: {0}", "appels : {0}"};

class Player;

// An object of the host's, which answers as the log has it.
class PlayedHost : public HostObject {
 public:
  PlayedHost(Player& player, std::uint32_t number) : player_(player), number_(number) {}

 private:
  HRESULT Find(const std::vector<Name>& names, std::int32_t& id) override;
  HRESULT Invoke(std::int32_t id, std::uint16_t flags, const DISPPARAMS& parameters,
                 VARIANT* result, EXCEPINFO* info, std::uint32_t* wrong_argument) override;

  // Identifiers count from 1 in the order in which names are first asked for.
  std::int32_t IdentifierOf(const Name& name) {
    const auto found = std::ranges::find(names_, name);
    if (found != names_.end()) return static_cast<std::int32_t>(found - names_.begin()) + 1;
    names_.push_back(name);
    return static_cast<std::int32_t>(names_.size());
  }
  Name NameOf(std::int32_t id) const {
    const bool is_known = id > 0 && static_cast<std::size_t>(id) <= names_.size();
    return is_known ? names_[static_cast<std::size_t>(id) - 1] : Numbered(id);
  }

  Player& player_;
  std::uint32_t number_;
  std::vector<Name> names_;
};

class Player {
 public:
  Player(const Log& log, const Replaying& how)
      : log_(log), how_(how), differs_(log.header.differs.begin(), log.header.differs.end()) {}

  Summary Run() {
    for (const Entry& entry : log_.entries) {
      how_.progress(summary_.all.calls);
      Play(entry);
    }
    if (!log_.ended_with) {
      Tell({log_.lines, "end", kCutOff(), ""}, "");
    } else if (*log_.ended_with != log_.calls) {
      Tell({log_.lines, "end", kCounted(*log_.ended_with), kCounted(log_.calls)}, "");
    }
    return std::move(summary_);
  }

  // ------------------------------------------------ what the component does with a host's object

  /// The code that the log has for a search of these names, if it has one here.
  HRESULT Search(const Entry& made) {
    const Entry* const next = Expected();
    if (next == nullptr || next->kind != Entry::Kind::kFind || Written(*next) != Written(made)) {
      return S_OK;
    }
    ++asked_.back().at;
    return next->outcome.number;
  }

  /// The answer of the log to a call of a host's object; null for one that the log has not here, or
  /// that is made outside of any call.
  const Outcome* Answer(Entry& made) {
    if (asked_.empty()) return nullptr;
    for (Argument& argument : made.arguments) Number(argument.value);
    Asked& asked = asked_.back();
    const Entry* const next = Expected();
    const std::string line = Written(made);
    if (asked.is_lost) return nullptr;
    if (next == nullptr || Written(*next) != line) {
      asked.is_lost = true;
      Tell({next != nullptr ? next->line : asked.call->outcome.line, Written(*asked.call),
            next != nullptr ? Written(*next) : kNoCall(), line},
           MemberOf(*asked.call));
      return nullptr;
    }
    ++asked.at;
    for (const Entry& entry : next->body) Play(entry);
    return &next->outcome;
  }

  /// The same value with the objects of this run.
  Value Found(Value value) const {
    ForEachObject(value, [this](ObjectValue& object) {
      const auto found = objects_.find(object.number);
      if (found != objects_.end()) object.pointer = found->second.object.Get();
    });
    return value;
  }

 private:
  struct Known {
    Counted<> object;
    Name class_name;
    PlayedHost* host = nullptr;
  };
  // A call of the component under way: what of its body has been asked for.
  struct Asked {
    const Entry* call;
    std::size_t at = 0;
    bool is_lost = false;
  };

  void Play(const Entry& entry) {
    switch (entry.kind) {
      case Entry::Kind::kObject:
        return Make(entry);
      case Entry::Kind::kHost: {
        auto* const host = new PlayedHost(*this, entry.object);
        objects_[entry.object] = {Counted<>::Adopt(host), {}, host};
        return;
      }
      case Entry::Kind::kRelease:
        return ReleaseIt(entry);
      default:
        return Call(entry);
    }
  }

  void Make(const Entry& entry) {
    Counted<> made = how_.make(entry.name);
    if (!made) Tell({entry.line, Written(entry), "", kNotMade()}, "");
    objects_[entry.object] = {std::move(made), entry.name};
  }

  void ReleaseIt(const Entry& entry) {
    const Known known = std::move(objects_[entry.object]);
    objects_.erase(entry.object);
    if (known.host == nullptr || known.host->References() == 1) return;
    Tell({entry.line, Written(entry), kReleased(), kKept()}, "");
  }

  std::string MemberOf(const Entry& entry) const {
    const Name& class_name = objects_.at(entry.object).class_name;
    return WrittenName(class_name) + '.' + WrittenName(entry.name);
  }

  void Call(const Entry& entry) {
    Entry called = entry;
    called.body.clear();
    for (Argument& argument : called.arguments) argument.value = Found(std::move(argument.value));
    const std::string member = MemberOf(entry);
    summary_.all.calls += entry.kind == Entry::Kind::kCall;
    summary_.members[member].calls += entry.kind == Entry::Kind::kCall;
    QuorlDispatch* const object = objects_[entry.object].object.Get();
    if (object == nullptr) {
      Tell({entry.line, Written(entry), Written(entry.outcome), kNotThere()}, member);
      return;
    }
    asked_.push_back({&entry});
    Outcome outcome =
        entry.kind == Entry::Kind::kCall ? MakeCall(object, called) : FindByName(object, entry);
    const Asked asked = asked_.back();
    asked_.pop_back();
    if (!asked.is_lost && asked.at < entry.body.size()) {
      const Entry& next = entry.body[asked.at];
      Tell({next.line, Written(entry), Written(next), kNoCall()}, member);
    }
    Compare(entry, outcome, member);
  }

  void Compare(const Entry& entry, Outcome& outcome, const std::string& member) {
    if (outcome.result) Number(*outcome.result);
    for (Value& value : outcome.written_back) Number(value);
    const bool asks_for_result =
        entry.outcome.kind != Outcome::Kind::kGives || entry.outcome.result;
    if (!asks_for_result) outcome.result.reset();
    const auto text =
        differs_.contains(member) ? Shape : [](const Outcome& one) { return Written(one); };
    const std::string logged = text(entry.outcome);
    const std::string now = text(outcome);
    if (logged != now) Tell({entry.outcome.line, Written(entry), logged, now}, member);
  }

  void Tell(const Difference& difference, const std::string& member) {
    ++summary_.all.differences;
    if (!member.empty()) ++summary_.members[member].differences;
    how_.differs(difference);
  }

  // ------------------------------------------------------------------- calls of the component

  Outcome MakeCall(QuorlDispatch* object, const Entry& entry) {
    const Identifiers ids = IdentifiersOf(object, entry);
    if (how_.through_table && ids.code >= 0) {
      const Name& class_name = objects_[entry.object].class_name;
      auto slots = slots_.find(class_name);
      if (slots == slots_.end()) slots = slots_.emplace(class_name, SlotsOf(object)).first;
      if (auto outcome = CallThroughTable(object, slots->second, ids, entry)) {
        ++summary_.through_table;
        return *std::move(outcome);
      }
    }
    return CallByName(object, ids, entry);
  }

  // The numbers of this run's objects.
  void Number(Value& value) const {
    ForEachObject(value, [this](ObjectValue& object) {
      for (const auto& [number, known] : objects_) {
        if (object.pointer != nullptr && known.object.Get() == object.pointer)
          object.number = number;
      }
    });
  }

  const Entry* Expected() const {
    if (asked_.empty()) return nullptr;
    const Asked& asked = asked_.back();
    const auto& body = asked.call->body;
    return asked.is_lost || asked.at == body.size() ? nullptr : &body[asked.at];
  }

  const Log& log_;
  const Replaying& how_;
  std::set<std::string> differs_;
  std::map<std::uint32_t, Known> objects_;
  std::map<Name, std::vector<Slot>> slots_;
  std::vector<Asked> asked_;
  Summary summary_;
};

HRESULT PlayedHost::Find(const std::vector<Name>& names, std::int32_t& id) {
  Entry made;
  made.kind = Entry::Kind::kFind;
  made.object = number_;
  made.name = names.front();
  for (std::size_t i = 1; i < names.size(); ++i) made.arguments.push_back({names[i], {}});
  const HRESULT code = player_.Search(made);
  if (code >= 0) id = IdentifierOf(made.name);
  return code;
}

HRESULT PlayedHost::Invoke(std::int32_t id, std::uint16_t flags, const DISPPARAMS& parameters,
                           VARIANT* result, EXCEPINFO* info, std::uint32_t* wrong_argument) {
  Entry made;
  made.object = number_;
  made.flags = flags;
  made.name = NameOf(id);
  made.arguments = ArgumentsOf(parameters, [](std::int32_t named) {
    return named == QUORL_PUT_VALUE ? kPutValue : Numbered(named);
  });
  const Outcome* const answer = player_.Answer(made);
  if (answer == nullptr) return DISP_E_MEMBERNOTFOUND;
  auto written = answer->written_back.begin();
  for (std::uint32_t i = parameters.argument_count; i-- > 0;) {
    const VARIANT& argument = parameters.arguments[i];
    if ((argument.vt & VT_BYREF) != 0 && written != answer->written_back.end()) {
      WriteBack(argument, player_.Found(*written++));
    }
  }
  if (answer->kind == Outcome::Kind::kGives) {
    if (result != nullptr && answer->result) {
      *result = Passed(player_.Found(*answer->result)).Detach();
    }
    return S_OK;
  }
  if (wrong_argument != nullptr) *wrong_argument = answer->wrong_argument;
  if (answer->kind == Outcome::Kind::kRefused) return answer->number;
  if (info != nullptr) Fill(*info, answer->number, answer->source, answer->description);
  return DISP_E_EXCEPTION;
}

}  // namespace

Summary Replay(const Log& log, const Replaying& how) { return Player(log, how).Run(); }

}  // namespace parity
