// What `Registry` has to do, over nothing but a map: the slow and obvious counterpart of a random
// walk. Names and texts of plain letters, so that a character is a byte.
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "quorl/registry/registry.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/variant.hpp"

namespace quorl {

/// What a call gave: a value, or the Number of a failure.
struct CallOutcome {
  Int32 number = 0;
  Variant value;

  friend bool operator==(const CallOutcome&, const CallOutcome&) = default;
};

template <class Work>
CallOutcome OutcomeOf(Work work) {
  try {
    return {0, work()};
  } catch (const RaisedError& error) {
    return {error.Number(), {}};
  }
}

class RegistryModel {
 public:
  struct Value {
    String name;
    Int32 type = 0;
    std::string data;
  };
  using Path = std::vector<String>;  // lower-cased levels

  /// `fixed_root`: the root is a root key, which always exists, and not a key below one.
  explicit RegistryModel(bool fixed_root) : fixed_root_(fixed_root) {
    if (fixed_root) keys_[Path()];
  }

  CallOutcome KeyExists(const String& key) const { return {0, keys_.contains(Levels(key))}; }

  CallOutcome GetValue(const String& key, const String& name, const Variant& otherwise) const {
    const Value* value = Find(key, name);
    if (value == nullptr) return {0, otherwise};
    if (value->type == 1) return {0, Widened(value->data.substr(0, value->data.size() - 1))};
    if (value->type == 4) return {0, Number(value->data)};
    return {0, BytesOf(value->data)};
  }

  /// `data` as it is to be stored, or the Number that its making raises.
  CallOutcome SaveValue(const String& key, const String& name, Int32 type,
                        const std::optional<std::string>& data, Int32 number) {
    Create(key);
    if (type != 1 && type != 3 && type != 4) return {};
    if (!data) return {number, {}};
    Put(keys_[Levels(key)].values, {name, type, *data});
    return {};
  }

  CallOutcome DeleteValue(const String& key, const String& name) {
    if (Find(key, name) == nullptr) return {2, {}};
    std::erase_if(keys_[Levels(key)].values,
                  [&](const Value& value) { return Lower(value.name) == Lower(name); });
    return {};
  }

  CallOutcome GetAllValues(const String& key) const {
    const auto found = keys_.find(Levels(key));
    if (found == keys_.end()) return {2, {}};
    const std::vector<Value>& values = found->second.values;
    if (values.empty()) return {};
    const auto count = static_cast<std::uint32_t>(values.size());
    Array table(VariantType::kVariant, {{0, count}, {0, 3}});
    for (Int32 i = 0; i < static_cast<Int32>(count); ++i) {
      const Value& value = values[static_cast<std::size_t>(i)];
      table.Set({i, 0}, value.name);
      table.Set({i, 2}, value.type);
      if (value.type == 1) {
        table.Set({i, 1}, Widened(value.data.substr(0, value.data.find('\0'))));
      } else if (value.type == 4) {
        table.Set({i, 1}, Number(value.data));
      } else {
        table.Set({i, 1}, BytesOf(value.data));
      }
    }
    return {0, table};
  }

  CallOutcome GetSubKeys(const String& key, Int32 levels) const {
    const Path top = Levels(key);
    if (!keys_.contains(top)) return {2, {}};
    std::vector<String> names;
    for (const auto& [path, content] : keys_) {
      const bool below =
          path.size() >= top.size() && std::equal(top.begin(), top.end(), path.begin());
      const auto depth = static_cast<Int32>(path.size() - top.size());
      if (!below || (depth > levels && levels > 0) || (depth > 0 && levels < 0)) continue;
      String name = key;
      for (std::size_t i = top.size(); i < path.size(); ++i) {
        name += u'\\' + keys_.at(Path(path.begin(), path.begin() + static_cast<int>(i) + 1)).name;
      }
      names.push_back(name);
    }
    return {0, Array::OfStrings(names)};
  }

  CallOutcome DeleteKey(const String& key) {
    const Path top = Levels(key);
    std::erase_if(keys_, [&](const auto& entry) {
      return entry.first.size() >= top.size() &&
             std::equal(top.begin(), top.end(), entry.first.begin());
    });
    if (fixed_root_) keys_[Path()];
    return {};
  }

  CallOutcome CopyKey(const String& from, const String& to) {
    Create(to);
    const Path source = Levels(from);
    const Path target = Levels(to);
    if (!keys_.contains(source)) return {2, {}};
    const std::map<Path, Key> before = keys_;
    for (const auto& [path, content] : before) {
      if (path.size() < source.size() || !std::equal(source.begin(), source.end(), path.begin())) {
        continue;
      }
      Path copy = target;
      copy.insert(copy.end(), path.begin() + static_cast<int>(source.size()), path.end());
      const auto [place, is_new] = keys_.try_emplace(copy);
      if (is_new) place->second.name = content.name;
      for (const Value& value : content.values) Put(place->second.values, value);
    }
    return {};
  }

 private:
  struct Key {
    String name;  // as it was made
    std::vector<Value> values;
  };

  static String Lower(String text) {
    for (char16_t& unit : text) {
      if (unit >= u'A' && unit <= u'Z') unit = static_cast<char16_t>(unit + 32);
    }
    return text;
  }
  static Path Split(const String& key) {
    Path levels(1);
    for (const char16_t unit : key) {
      if (unit != u'\\') {
        levels.back() += unit;
      } else if (!levels.back().empty()) {
        levels.emplace_back();
      }
    }
    if (levels.back().empty()) levels.pop_back();
    return levels;
  }
  static Path Levels(const String& key) { return Split(Lower(key)); }

  static String Widened(const std::string& bytes) { return {bytes.begin(), bytes.end()}; }
  static Variant BytesOf(const std::string& data) {
    return Array::OfBytes({data.begin(), data.end()});
  }
  static Variant Number(const std::string& data) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number * 256 + static_cast<unsigned char>(data[i]);
    return static_cast<Int32>(number);
  }

  static void Put(std::vector<Value>& values, const Value& given) {
    for (Value& value : values) {
      if (Lower(value.name) != Lower(given.name)) continue;
      value.type = given.type;
      value.data = given.data;
      return;
    }
    values.push_back(given);
  }
  void Create(const String& key) {
    Path path;
    keys_[path];
    for (const String& level : Split(key)) {
      path.push_back(Lower(level));
      const auto [place, is_new] = keys_.try_emplace(path);
      if (is_new) place->second.name = level;
    }
  }
  const Value* Find(const String& key, const String& name) const {
    const auto found = keys_.find(Levels(key));
    if (found == keys_.end()) return nullptr;
    for (const Value& value : found->second.values) {
      if (Lower(value.name) == Lower(name)) return &value;
    }
    return nullptr;
  }

  bool fixed_root_;
  std::map<Path, Key> keys_;
};

}  // namespace quorl
