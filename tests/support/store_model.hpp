// A store as somebody would write it who had an hour: keys in a map, by their levels in lower case.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/text_case.hpp"
#include "tests/support/store_content.hpp"

namespace quorl {

class StoreModel {
 public:
  struct Value {
    std::string name;
    Int32 type;
    std::string data;
  };
  struct Key {
    std::string name{};  ///< As it was made.
    std::vector<Value> values{};
  };
  using Path = std::vector<String>;

  static String Folded(const std::string& name) { return LowerCase(FromAnsi(name)); }

  /// Makes the change; the code that it gives.
  Int32 Apply(const Action& action) {
    if (action.kind == Action::Kind::kCreateKey) return Create(action.path);
    if (action.kind == Action::Kind::kReplaceValues) return Replace(action);
    const auto found = keys_.find(Levels(action.path));
    if (found == keys_.end()) return kAbsent;
    std::vector<Value>& values = found->second.values;
    switch (action.kind) {
      case Action::Kind::kSetValue:
        Put(values, {action.name, action.type, action.data});
        return kDone;
      case Action::Kind::kDeleteValue:
        return Take(values, action.name) ? kDone : kAbsent;
      case Action::Kind::kDeleteKey:
        for (const auto& [path, key] : Below(action.path)) keys_.erase(path);
        keys_.try_emplace({});
        return kDone;
      default:
        return Copy(action);
    }
  }

  /// The key and all below it.
  std::map<Path, Key> Below(const std::string& top) const {
    const Path start = Levels(top);
    std::map<Path, Key> found(keys_);
    std::erase_if(found, [&](const auto& each) {
      return each.first.size() < start.size() ||
             !std::equal(start.begin(), start.end(), each.first.begin());
    });
    return found;
  }
  const Key* Find(const std::string& path) const {
    const auto found = keys_.find(Levels(path));
    return found == keys_.end() ? nullptr : &found->second;
  }
  const Value* Find(const std::string& path, const std::string& name) const {
    if (const Key* key = Find(path)) {
      for (const Value& value : key->values) {
        if (Folded(value.name) == Folded(name)) return &value;
      }
    }
    return nullptr;
  }

  /// The names of a key's levels as they were made, from the `start`-th on, a backslash before
  /// each.
  std::string NamesOf(const Path& path, std::size_t start = 0) const {
    std::string names;
    for (auto end = path.begin(); end != path.end();) {
      ++end;
      if (start > 0 && start-- > 0) continue;
      names += '\\' + keys_.at(Path(path.begin(), end)).name;
    }
    return names;
  }

  /// As `ContentOf` of a store.
  std::string Content() const {
    std::string text;
    for (const auto& [path, key] : keys_) {
      const std::string names = NamesOf(path);
      text += "[" + names.substr(names.empty() ? 0 : 1) + "]\n";
      for (const Value& value : key.values) {
        text += "  " + value.name + " = " + std::to_string(value.type) + ":" + value.data + "\n";
      }
    }
    return text;
  }

  static Path Levels(const std::string& path) {
    Path levels;
    for (const std::string& name : Split(path)) levels.push_back(Folded(name));
    return levels;
  }

 private:
  static std::vector<std::string> Split(const std::string& path) {
    std::vector<std::string> levels(1);
    for (const char byte : path) {
      byte == '\\' ? levels.emplace_back() : levels.back() += byte;
    }
    std::erase(levels, "");
    return levels;
  }

  Int32 Create(const std::string& names) {
    Path path;
    for (const std::string& name : Split(names)) {
      path.push_back(Folded(name));
      keys_.try_emplace(path, Key{name});
    }
    return kDone;
  }
  static bool Take(std::vector<Value>& values, const std::string& name) {
    return std::erase_if(
               values, [&](const Value& value) { return Folded(value.name) == Folded(name); }) != 0;
  }
  static void Put(std::vector<Value>& values, const Value& given) {
    for (Value& value : values) {
      if (Folded(value.name) != Folded(given.name)) continue;
      value.type = given.type;
      value.data = given.data;
      return;
    }
    values.push_back(given);
  }
  Int32 Replace(const Action& action) {
    for (const auto& [path, key] : Below(action.path)) keys_.erase(path);
    keys_.try_emplace({});
    Create(action.path + "\\New");
    Put(keys_[Levels(action.path)].values, {action.name, action.type, action.data});
    return kDone;
  }
  Int32 Copy(const Action& action) {
    const Path from = Levels(action.path);
    const Path to = Levels(action.name);
    if (!keys_.contains(to)) return kAbsent;
    if (from == to) return kDone;
    const auto source = Below(action.path);
    for (const auto& [path, key] : source) {
      Path into = to;
      into.insert(into.end(), path.begin() + static_cast<std::ptrdiff_t>(from.size()), path.end());
      Key& copy = keys_.try_emplace(into, Key{key.name}).first->second;
      for (const Value& value : key.values) Put(copy.values, value);
    }
    return kDone;
  }

  std::map<Path, Key> keys_{{{}, {}}};
};

}  // namespace quorl
