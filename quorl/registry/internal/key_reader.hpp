// Reading an open key as the store lists it. Used from one thread at a time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "quorl/store/operations.hpp"

namespace quorl::internal {

/// Counts and longest lengths of a key; a code of the store.
inline Int32 QueryInfo(KeyHandle key, KeyInfo& info) {
  Int32 class_size = 0;
  FileTime time;
  return RegQueryInfoKeyA(key, "0", &class_size, nullptr, &info.subkeys, &info.longest_subkey,
                          nullptr, &info.values, &info.longest_value_name, &info.longest_data,
                          nullptr, &time);
}

/// One value of a key after the other. The buffers serve all of them: what a short value leaves of
/// an earlier one stays in `Buffer()`.
class ValueRow {
 public:
  explicit ValueRow(const KeyInfo& info)
      : name_(static_cast<std::size_t>(info.longest_value_name) + 1, '\0'),
        data_(static_cast<std::size_t>(info.longest_data) + 1) {}

  /// Reads the value at `index`; a code of the store.
  Int32 Read(KeyHandle key, Int32 index) {
    name_size_ = static_cast<Int32>(name_.size());
    data_size_ = static_cast<Int32>(data_.size()) - 1;
    return RegEnumValueA(key, index, name_.data(), &name_size_, nullptr, &type_, data_.data(),
                         &data_size_);
  }

  std::string_view Name() const { return {name_.data(), static_cast<std::size_t>(name_size_)}; }
  Int32 Type() const { return type_; }
  Int32 Size() const { return data_size_; }
  /// The `Size()` bytes of the value, then what was there before; one byte more than the longest.
  const std::vector<Byte>& Buffer() const { return data_; }

 private:
  std::string name_;
  std::vector<Byte> data_;
  Int32 name_size_ = 0;
  Int32 data_size_ = 0;
  Int32 type_ = 0;
};

}  // namespace quorl::internal
