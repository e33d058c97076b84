// A store that passes everything on to another one, writes down which operations were called, and
// makes one of them fail.
#pragma once

#include <string>
#include <vector>

#include "quorl/store/forwarding_store.hpp"

namespace quorl {

class RecordingStore final : public ForwardingStore {
 public:
  explicit RecordingStore(Store& next) : next_(next) {}

  /// Forgets the calls so far; the `place`-th of those that follow, counted from 0, gives `code`.
  void FailAt(std::size_t place, Int32 code) {
    calls_.clear();
    place_ = place;
    code_ = code;
  }
  void FailNever() { FailAt(0, kDone); }

  /// The calls that may fail, by name; closing may not.
  const std::vector<std::string>& Calls() const { return calls_; }

#define QUORL_RECORDED(operation, parameters, arguments)          \
  Int32 operation parameters noexcept override {                  \
    return Fails(#operation) ? code_ : next_.operation arguments; \
  }
  // clang-format off
  QUORL_RECORDED(OpenKey, (KeyHandle root, std::string_view path, Int32 access, KeyHandle* key),
                 (root, path, access, key))
  QUORL_RECORDED(CreateKey, (KeyHandle root, std::string_view path, Int32 access, KeyHandle* key,
                             bool* created), (root, path, access, key, created))
  QUORL_RECORDED(QueryValue, (KeyHandle key, std::string_view name, Int32* type, OutBuffer data),
                 (key, name, type, data))
  QUORL_RECORDED(SetValue, (KeyHandle key, std::string_view name, Int32 type,
                            std::string_view data), (key, name, type, data))
  QUORL_RECORDED(DeleteValue, (KeyHandle key, std::string_view name), (key, name))
  QUORL_RECORDED(EnumValue, (KeyHandle key, Int32 index, OutBuffer name, Int32* type,
                             OutBuffer data), (key, index, name, type, data))
  QUORL_RECORDED(EnumKey, (KeyHandle key, Int32 index, OutBuffer name), (key, index, name))
  QUORL_RECORDED(QueryInfo, (KeyHandle key, KeyInfo* info), (key, info))
  QUORL_RECORDED(CopyTree, (KeyHandle root, std::string_view source, KeyHandle destination),
                 (root, source, destination))
  QUORL_RECORDED(DeleteTree, (KeyHandle root, std::string_view path), (root, path))
  QUORL_RECORDED(Commit, (std::span<const StoreChange> changes), (changes))
  // clang-format on
#undef QUORL_RECORDED

 private:
  Store& Next() const noexcept override { return next_; }

  bool Fails(const char* call) noexcept {
    const std::size_t place = calls_.size();
    calls_.emplace_back(call);
    return code_ != kDone && place == place_;
  }

  Store& next_;
  std::vector<std::string> calls_;
  std::size_t place_ = 0;
  Int32 code_ = kDone;
};

}  // namespace quorl
