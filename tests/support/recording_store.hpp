// A store that passes everything on to another one, writes down which operations were called, and
// makes one of them fail.
#pragma once

#include <string>
#include <vector>

#include "quorl/store/forwarding_store.hpp"

namespace quorl {

class RecordingStore final : public ForwardingStore {
 public:
  explicit RecordingStore(Store& behind) : behind_(behind) {}

  /// Forgets the calls so far; the `place`-th of those that follow, counted from 0, gives `code`.
  void FailAt(std::size_t place, Int32 code) {
    calls_.clear();
    first_ = last_ = place;
    code_ = code;
  }
  /// That one and all after it give `code`.
  void FailFrom(std::size_t place, Int32 code) {
    FailAt(place, code);
    last_ = static_cast<std::size_t>(-1);
  }
  void FailNever() { FailFrom(0, kDone); }

  /// The calls that may fail, by name; closing may not.
  const std::vector<std::string>& Calls() const { return calls_; }

  Int32 OpenKey(KeyHandle root, std::string_view path, Int32 access,
                KeyHandle* key) noexcept override {
    *key = 0;
    return Fails("OpenKey") ? code_ : behind_.OpenKey(root, path, access, key);
  }
  Int32 CreateKey(KeyHandle root, std::string_view path, Int32 access, KeyHandle* key,
                  bool* created) noexcept override {
    *key = 0;
    return Fails("CreateKey") ? code_ : behind_.CreateKey(root, path, access, key, created);
  }
  Int32 QueryValue(KeyHandle key, std::string_view name, Int32* type,
                   OutBuffer data) noexcept override {
    return Fails("QueryValue") ? code_ : behind_.QueryValue(key, name, type, data);
  }
  Int32 SetValue(KeyHandle key, std::string_view name, Int32 type,
                 std::string_view data) noexcept override {
    return Fails("SetValue") ? code_ : behind_.SetValue(key, name, type, data);
  }
  Int32 DeleteValue(KeyHandle key, std::string_view name) noexcept override {
    return Fails("DeleteValue") ? code_ : behind_.DeleteValue(key, name);
  }
  Int32 EnumValue(KeyHandle key, Int32 index, OutBuffer name, Int32* type,
                  OutBuffer data) noexcept override {
    return Fails("EnumValue") ? code_ : behind_.EnumValue(key, index, name, type, data);
  }
  Int32 EnumKey(KeyHandle key, Int32 index, OutBuffer name) noexcept override {
    return Fails("EnumKey") ? code_ : behind_.EnumKey(key, index, name);
  }
  Int32 QueryInfo(KeyHandle key, KeyInfo* info) noexcept override {
    return Fails("QueryInfo") ? code_ : behind_.QueryInfo(key, info);
  }
  Int32 CopyTree(KeyHandle root, std::string_view source, KeyHandle destination) noexcept override {
    return Fails("CopyTree") ? code_ : behind_.CopyTree(root, source, destination);
  }
  Int32 DeleteTree(KeyHandle root, std::string_view path) noexcept override {
    return Fails("DeleteTree") ? code_ : behind_.DeleteTree(root, path);
  }

 private:
  Store& Next() const noexcept override { return behind_; }

  bool Fails(const char* call) noexcept {
    const std::size_t place = calls_.size();
    calls_.emplace_back(call);
    return code_ != kDone && place >= first_ && place <= last_;
  }

  Store& behind_;
  std::vector<std::string> calls_;
  std::size_t first_ = 0;
  std::size_t last_ = 0;
  Int32 code_ = kDone;
};

}  // namespace quorl
