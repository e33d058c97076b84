#include "examples/parity/by_name.hpp"

#include <algorithm>
#include <cstdlib>

namespace parity {

namespace {

// "#5"
bool IsIdentifier(const Name& name) { return name.size() > 1 && name[0] == u'#'; }

std::int32_t IdentifierIn(const Name& name) {
  const std::string digits(name.begin() + 1, name.end());
  return static_cast<std::int32_t>(std::strtol(digits.c_str(), nullptr, 10));
}

bool HasToBeAsked(const Argument& argument) {
  return argument.name && *argument.name != kPutValue && !IsIdentifier(*argument.name);
}

HRESULT Ask(QuorlDispatch* object, const std::vector<Name>& names, std::vector<std::int32_t>& ids) {
  ids.assign(names.size(), -1);
  std::vector<const char16_t*> pointers;
  pointers.reserve(names.size());
  for (const Name& name : names) pointers.push_back(name.c_str());
  return object->table->GetIDsOfNames(object, nullptr, pointers.data(),
                                      static_cast<std::uint32_t>(names.size()), 0, ids.data());
}

Outcome RefusedWith(HRESULT code) {
  Record none;
  return OutcomeOf(code, nullptr, none, 0);
}

}  // namespace

Identifiers IdentifiersOf(QuorlDispatch* object, const Entry& call) {
  Identifiers found;
  std::vector<std::int32_t> ids;
  if (IsIdentifier(call.name)) {
    found.member = IdentifierIn(call.name);
  } else {
    std::vector<Name> names{call.name};
    for (const Argument& argument : call.arguments) {
      if (HasToBeAsked(argument)) names.push_back(*argument.name);
    }
    found.code = Ask(object, names, ids);
    found.member = ids.front();
    ids.erase(ids.begin());
  }
  auto next = ids.begin();
  for (const Argument& argument : call.arguments) {
    if (!argument.name) continue;
    if (*argument.name == kPutValue) {
      found.named.push_back(QUORL_PUT_VALUE);
    } else if (IsIdentifier(*argument.name)) {
      found.named.push_back(IdentifierIn(*argument.name));
    } else {
      found.named.push_back(next == ids.end() ? -1 : *next++);
    }
  }
  return found;
}

Outcome CallByName(QuorlDispatch* object, const Identifiers& ids, const Entry& call) {
  if (ids.code < 0) return RefusedWith(ids.code);
  const std::vector<std::size_t> order = BinaryOrder(call.arguments);
  std::vector<Passed> owned;
  std::vector<VARIANT> arguments;
  for (const std::size_t place : order) {
    owned.emplace_back(call.arguments[place].value);
    arguments.push_back(owned.back().Get());
  }
  std::vector<std::int32_t> named = ids.named;
  DISPPARAMS parameters{arguments.data(), named.data(),
                        static_cast<std::uint32_t>(arguments.size()),
                        static_cast<std::uint32_t>(named.size())};
  const bool asks = call.outcome.kind != Outcome::Kind::kGives || call.outcome.result.has_value();
  Passed result;
  Record record;
  std::uint32_t wrong = 0;
  const HRESULT code =
      object->table->Invoke(object, ids.member, nullptr, 0, call.flags, &parameters,
                            asks ? result.Address() : nullptr, record.Address(), &wrong);
  Outcome outcome = OutcomeOf(code, asks ? &result.Get() : nullptr, record, wrong);
  for (std::size_t place = 0; place < order.size(); ++place) {
    const auto at = std::ranges::find(order, place) - order.begin();
    if (!call.arguments[place].value.If<ReferenceValue>()) continue;
    outcome.written_back.push_back(ValueOf(arguments[static_cast<std::size_t>(at)]));
  }
  return outcome;
}

Outcome FindByName(QuorlDispatch* object, const Entry& find) {
  std::vector<Name> names{find.name};
  for (const Argument& argument : find.arguments) names.push_back(*argument.name);
  std::vector<std::int32_t> ids;
  return RefusedWith(Ask(object, names, ids));
}

}  // namespace parity
