// The content of a store as a text that can be compared, and changes to a store as values.
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quorl/store/store.hpp"

namespace quorl {

/// Whether the long sweeps are to run.
inline bool LongSweeps() { return std::getenv("QUORL_LONG") != nullptr; }

/// A key that closes itself.
class TestKey {
 public:
  TestKey(Store& store, KeyHandle root, std::string_view path, Int32 access = kAllAccess)
      : store_(store), code_(store.OpenKey(root, path, access, &key_)) {}
  TestKey(const TestKey&) = delete;
  TestKey& operator=(const TestKey&) = delete;
  ~TestKey() {
    if (key_ != 0) store_.CloseKey(key_);
  }
  KeyHandle Handle() const { return key_; }
  Int32 Code() const { return code_; }

 private:
  Store& store_;
  KeyHandle key_ = 0;
  Int32 code_;
};

/// Makes the key if need be and sets the value; the first code that is not 0.
inline Int32 Save(Store& store, KeyHandle root, std::string_view path, std::string_view name,
                  std::string_view data, Int32 type = 1) {
  KeyHandle key = 0;
  if (const Int32 code = store.CreateKey(root, path, kSetValues, &key, nullptr)) return code;
  const Int32 code = store.SetValue(key, name, type, data);
  store.CloseKey(key);
  return code;
}

/// The value's data, or its failure as "code 2".
inline std::string Load(Store& store, KeyHandle root, std::string_view path,
                        std::string_view name) {
  const TestKey key(store, root, path, kReadValues);
  Int32 size = 0;
  Int32 code = key.Code();
  if (code == kDone) code = store.QueryValue(key.Handle(), name, nullptr, {nullptr, &size});
  std::string data(static_cast<std::size_t>(size), '\0');
  if (code == kDone) code = store.QueryValue(key.Handle(), name, nullptr, {data.data(), &size});
  return code == kDone ? data : "code " + std::to_string(code);
}

/// The names of a key's subkeys, in the store's order.
inline std::vector<std::string> SubkeyNames(Store& store, KeyHandle key) {
  std::vector<std::string> names;
  std::string name(256, '\0');
  Int32 size = 256;
  for (Int32 i = 0; store.EnumKey(key, i, {name.data(), &size}) == kDone; ++i, size = 256) {
    names.push_back(name.substr(0, static_cast<std::size_t>(size)));
  }
  return names;
}

/// The values of a key, one a line, in the store's order.
inline std::string ValuesText(Store& store, KeyHandle key) {
  KeyInfo info;
  store.QueryInfo(key, &info);
  std::string text;
  for (Int32 i = 0; i < info.values; ++i) {
    Int32 name_size = info.longest_value_name + 1;
    Int32 data_size = info.longest_data;
    Int32 type = 0;
    std::string name(static_cast<std::size_t>(name_size), '\0');
    std::string data(static_cast<std::size_t>(data_size), '\0');
    const Int32 code =
        store.EnumValue(key, i, {name.data(), &name_size}, &type, {data.data(), &data_size});
    name.resize(static_cast<std::size_t>(name_size));
    data.resize(static_cast<std::size_t>(data_size));
    text += code != kDone ? "  code " + std::to_string(code) + '\n'
                          : "  " + name + " = " + std::to_string(type) + ":" + data + '\n';
  }
  return text;
}

/// Everything below a root key, or the failure to open it.
inline std::string ContentOf(Store& store, KeyHandle root = kCurrentUser) {
  std::string text;
  std::vector<std::string> waiting{""};
  while (!waiting.empty()) {
    const std::string path = std::move(waiting.back());
    waiting.pop_back();
    const TestKey key(store, root, path);
    text += "[" + path + "]\n";
    if (key.Code() != kDone) return text + "code " + std::to_string(key.Code());
    text += ValuesText(store, key.Handle());
    const auto names = SubkeyNames(store, key.Handle());
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
      waiting.push_back(path.empty() ? *name : path + "\\" + *name);
    }
  }
  return text;
}

/// One change to a store, all by one operation but the last, which are committed together.
struct Action {
  enum class Kind : std::uint8_t {
    kCreateKey,
    kSetValue,
    kDeleteValue,
    kDeleteKey,
    kCopyKey,
    kReplaceValues,  ///< The key goes, is made again with the value, and another one beside it.
  };
  Kind kind = Kind::kSetValue;
  std::string path;
  std::string name{};  ///< Of a value; of a copy, the destination.
  std::string data{};
  Int32 type = 1;
};

inline Int32 Do(Store& store, const Action& action) {
  using enum Action::Kind;
  if (action.kind == kDeleteKey) return store.DeleteTree(kCurrentUser, action.path);
  if (action.kind == kReplaceValues) {
    const auto change = [&](StoreChange::Kind kind, const std::string& path) {
      return StoreChange{kind, kCurrentUser, path, action.name, action.type, action.data};
    };
    const StoreChange changes[] = {change(StoreChange::Kind::kDeleteKey, action.path),
                                   change(StoreChange::Kind::kSetValue, action.path),
                                   change(StoreChange::Kind::kCreateKey, action.path + "\\New")};
    return store.Commit(changes);
  }
  const std::string& path = action.kind == kCopyKey ? action.name : action.path;
  KeyHandle key = 0;
  Int32 code = action.kind == kCreateKey
                   ? store.CreateKey(kCurrentUser, path, kAllAccess, &key, nullptr)
                   : store.OpenKey(kCurrentUser, path, kAllAccess, &key);
  if (code != kDone) return code;
  if (action.kind == kSetValue) code = store.SetValue(key, action.name, action.type, action.data);
  if (action.kind == kDeleteValue) code = store.DeleteValue(key, action.name);
  if (action.kind == kCopyKey) code = store.CopyTree(kCurrentUser, action.path, key);
  store.CloseKey(key);
  return code;
}

}  // namespace quorl
