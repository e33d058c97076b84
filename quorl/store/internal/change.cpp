#include "quorl/store/internal/change.hpp"

#include <algorithm>
#include <functional>

namespace quorl::internal {
namespace {

using enum ChangeStep::Kind;

bool IsPlanned(const Key& key) noexcept { return key.StateNow() == Key::State::kPlanned; }

void PutPlanned(Key& planned, std::unique_ptr<Value> value) {
  if (Value* former = planned.FindValue(value->name)) return former->Take(*value);
  planned.ReserveValues(1);
  planned.Insert(std::move(value));
}

// Copies everything below `from`, which stays as it is, into `to`, which belongs to no tree.
void CopyBelow(const Key& from, Key& to) {
  std::vector<std::pair<const Key*, Key*>> waiting{{&from, &to}};
  while (!waiting.empty()) {
    const auto [source, copy] = waiting.back();
    waiting.pop_back();
    copy->ReserveValues(source->ValueCount());
    source->ForEachValue(
        [into = copy](const Value& value) { into->Insert(std::make_unique<Value>(value)); });
    source->ForEachSubkey([&, into = copy](const Key& subkey) {
      auto made = std::make_shared<Key>(subkey.Name());
      waiting.emplace_back(&subkey, made.get());
      into->Insert(std::move(made));
    });
  }
}

}  // namespace

bool Change::OnlyRemoves() const noexcept {
  return std::ranges::all_of(steps_, [](const ChangeStep& step) {
    return step.kind == kRemoveKey || step.kind == kRemoveValues;
  });
}

void Change::ReserveValues() const {
  std::map<Key*, std::size_t> values;
  for (const ChangeStep& step : steps_) {
    if (step.kind != kPutValues) continue;
    step.key->ReserveValues(values[step.key.get()] += step.values.size());
  }
}

void Change::Apply(KeyTree& tree) noexcept {
  for (Key* key : made_keys_) tree.Adopt(*key);
  for (ChangeStep& step : steps_) {
    // A key may have gone with one above it; what was to come below it goes too.
    const bool gone = step.key->Deleted();
    if (gone && step.kind != kInsertKey) continue;
    switch (step.kind) {
      case kInsertKey: {
        Key& made = *step.made;
        tree.Insert(*step.key, std::move(step.made), step.weight);
        if (gone) tree.Remove(made);
        break;
      }
      case kPutValues:
        for (auto& value : step.values) tree.Put(*step.key, std::move(value));
        break;
      case kRemoveValues:
        for (const auto& value : step.values) tree.RemoveValue(*step.key, value->name);
        break;
      case kRemoveKey:
        tree.Remove(*step.key);
        break;
      case kNone:
        break;
    }
  }
}

bool ChangePlan::Place::operator<(const Place& other) const noexcept {
  if (parent != other.parent) return std::less<>()(parent, other.parent);
  return std::is_lt(CompareNames(name, other.name));
}

Key* ChangePlan::FindSubkey(Key& parent, std::string_view name) const {
  if (IsPlanned(parent)) return parent.FindSubkey(name);
  if (!inserted_.empty()) {
    const auto inserted = inserted_.find({&parent, name});
    if (inserted != inserted_.end()) return change_.steps_[inserted->second].made.get();
  }
  if (removed_.contains(&parent)) return nullptr;
  Key* found = parent.FindSubkey(name);
  return found == nullptr || removed_.contains(found) ? nullptr : found;
}

Key* ChangePlan::Find(Key& from, std::string_view path) const {
  Key* key = &from;
  for (auto level = TakeLevel(path); key != nullptr && !level.empty(); level = TakeLevel(path)) {
    key = FindSubkey(*key, level);
  }
  return key;
}

Key& ChangePlan::Create(Key& parent, std::string_view name) {
  is_needed_ = true;
  auto made = std::make_shared<Key>(name);
  Key& key = *made;
  if (IsPlanned(parent)) {
    parent.Insert(std::move(made));
    return key;
  }
  key.PlanBelow(parent);
  change_.steps_.push_back({.kind = kInsertKey, .key = parent.Self(), .made = std::move(made)});
  inserted_.emplace(Place{&parent, key.Name()}, change_.steps_.size() - 1);
  return key;
}

Key& ChangePlan::Reach(Key& from, std::string_view path) {
  Key* key = &from;
  for (auto level = TakeLevel(path); !level.empty(); level = TakeLevel(path)) {
    Key* next = FindSubkey(*key, level);
    key = next == nullptr ? &Create(*key, level) : next;
  }
  return *key;
}

void ChangePlan::PutValue(Key& key, std::string_view name, Int32 type, std::string_view data) {
  is_needed_ = true;
  if (IsAnswered()) return;
  auto value = std::make_unique<Value>(name, type, data);
  if (IsPlanned(key)) return PutPlanned(key, std::move(value));
  StepOn(key, kPutValues).values.push_back(std::move(value));
}

void ChangePlan::RemoveValue(Key& key, std::string_view name) {
  Value* value = key.FindValue(name);
  if (IsPlanned(key)) {
    if (value != nullptr) key.Remove(*value);
    return;
  }
  if (value == nullptr && !with_new_values_.contains(&key)) return;
  is_needed_ = true;
  StepOn(key, kRemoveValues).values.push_back(std::make_unique<Value>(name, 0, std::string_view{}));
}

// The step under way, or a new one when that does something else or with another key.
ChangeStep& ChangePlan::StepOn(Key& key, ChangeStep::Kind kind) {
  auto& steps = change_.steps_;
  if (!steps.empty() && steps.back().kind == kind && steps.back().key.get() == &key) {
    return steps.back();
  }
  if (kind == kPutValues) with_new_values_.insert(&key);
  return steps.emplace_back(ChangeStep{.kind = kind, .key = key.Self()});
}

void ChangePlan::RemoveKey(Key& key) {
  if (IsPlanned(key)) return Forget(key);
  // What was planned below a key that goes will go with it.
  const auto first = inserted_.lower_bound({&key, {}});
  auto last = first;
  while (last != inserted_.end() && last->first.parent == &key) ++last;
  inserted_.erase(first, last);
  with_new_values_.erase(&key);
  is_needed_ = true;
  change_.steps_.push_back({.kind = kRemoveKey, .key = key.Self()});
  removed_.insert(&key);
}

// Takes a planned key back.
void ChangePlan::Forget(Key& planned) {
  Key& parent = *planned.Parent();
  if (IsPlanned(parent)) return parent.Remove(planned, nullptr);
  const auto inserted = inserted_.find({&parent, planned.Name()});
  ChangeStep& step = change_.steps_[inserted->second];
  inserted_.erase(inserted);
  step.kind = kNone;
  step.made.reset();
}

bool ChangePlan::IsEmpty(const Key& key) const {
  if (IsPlanned(key)) return key.IsEmpty();
  const auto inserted = inserted_.lower_bound({&key, {}});
  if (inserted != inserted_.end() && inserted->first.parent == &key) return false;
  // The first subkey that stays ends the search.
  for (std::size_t i = 0; i < key.SubkeyCount() && !removed_.contains(&key); ++i) {
    if (!removed_.contains(key.SubkeyAt(i))) return false;
  }
  return !HasValues(key);
}

bool ChangePlan::HasValues(const Key& key) const {
  std::set<std::uint64_t> hashes;
  key.ForEachValue([&](const Value& value) { hashes.insert(value.hash); });
  for (const ChangeStep& step : change_.steps_) {
    if (step.key.get() != &key) continue;
    for (const auto& value : step.values) {
      if (step.kind == kPutValues) hashes.insert(value->hash);
      if (step.kind == kRemoveValues) hashes.erase(value->hash);
    }
    if (step.kind == kRemoveKey) hashes.clear();
  }
  return !hashes.empty();
}

void ChangePlan::Merge(const Key& source, Key* detached, Key& into) {
  struct Pair {
    const Key* from;
    Key* detached;  // The same where it may lose what it holds.
    Key* to;
  };
  if (&source == &into) return;
  if (purpose_ == Purpose::kAsking) detached = nullptr;
  std::vector<Pair> waiting{{&source, detached, &into}};
  while (!waiting.empty() && !IsAnswered()) {
    const Pair pair = waiting.back();
    waiting.pop_back();
    if (IsPlanned(*pair.to) && pair.to->IsEmpty()) {
      if (pair.detached != nullptr) {
        pair.to->TakeContent(*pair.detached);
      } else {
        CopyBelow(*pair.from, *pair.to);
      }
      continue;
    }
    pair.from->ForEachValue([&](const Value& value) {
      if (!IsAnswered()) PutValue(*pair.to, value.name, value.type, value.data);
    });
    pair.from->ForEachSubkey([&](Key& subkey) {
      Key* there = FindSubkey(*pair.to, subkey.Name());
      waiting.push_back({&subkey, pair.detached == nullptr ? nullptr : &subkey,
                         there == nullptr ? &Create(*pair.to, subkey.Name()) : there});
    });
  }
}

Change ChangePlan::Finish() {
  std::erase_if(change_.steps_, [](const ChangeStep& step) { return step.kind == kNone; });
  for (ChangeStep& step : change_.steps_) {
    if (step.kind != kInsertKey) continue;
    ForEachKey(*step.made, [&](Key& key) {
      step.weight += key.OwnWeight();
      change_.made_keys_.push_back(&key);
    });
  }
  return std::move(change_);
}

std::shared_ptr<Key> DetachedCopy(const Key& key) {
  auto copy = std::make_shared<Key>(std::string_view{});
  CopyBelow(key, *copy);
  return copy;
}

}  // namespace quorl::internal
