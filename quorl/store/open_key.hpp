// A key of the store that is closed on every way out of a scope, for whoever opens keys
// (operations.hpp). Used from one thread at a time.
#pragma once

#include <utility>

#include "quorl/store/operations.hpp"

namespace quorl {

/// Owns an open key, or none.
class OpenKey {
 public:
  OpenKey() noexcept = default;
  /// Takes `handle` over; 0 is no key.
  explicit OpenKey(KeyHandle handle) noexcept : handle_(handle) {}
  OpenKey(OpenKey&& other) noexcept : handle_(std::exchange(other.handle_, 0)) {}
  OpenKey& operator=(OpenKey&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~OpenKey() {
    if (handle_ != 0) RegCloseKey(handle_);
  }

  explicit operator bool() const noexcept { return handle_ != 0; }
  KeyHandle Handle() const noexcept { return handle_; }

 private:
  KeyHandle handle_ = 0;
};

}  // namespace quorl
