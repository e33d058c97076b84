#include "quorl/store/internal/fork_aware.hpp"

#include <pthread.h>

#include <mutex>
#include <new>

namespace quorl::internal {

/// The chain of all registered objects.
class ForkRegister {
 public:
  static void Add(ForkAware& object) {
    static const bool installed = pthread_atfork(&Hold, &Release, &Release) == 0;
    if (!installed) throw std::bad_alloc();
    const std::lock_guard lock(mutex_);
    object.next_ = first_;
    if (first_ != nullptr) first_->former_ = &object;
    first_ = &object;
  }

  static void Remove(ForkAware& object) noexcept {
    const std::lock_guard lock(mutex_);
    if (object.next_ != nullptr) object.next_->former_ = object.former_;
    (object.former_ != nullptr ? object.former_->next_ : first_) = object.next_;
  }

 private:
  static void Hold() noexcept {
    mutex_.lock();
    for (auto* object = first_; object != nullptr; object = object->next_) object->HoldForFork();
  }

  static void Release() noexcept {
    for (auto* object = first_; object != nullptr; object = object->next_) {
      object->ReleaseAfterFork();
    }
    mutex_.unlock();
  }

  inline static constinit std::mutex mutex_;
  inline static ForkAware* first_ = nullptr;
};

void ForkAware::Register() { ForkRegister::Add(*this); }
void ForkAware::Unregister() noexcept { ForkRegister::Remove(*this); }

}  // namespace quorl::internal
