// What a fork must not tear: an object that registers here is asked to hold still before the
// process forks and let go in parent and child, so that the child finds no lock taken by a thread
// that it does not have.
#pragma once

namespace quorl::internal {

/// The derived class registers itself when it is whole and unregisters before it is taken apart.
class ForkAware {
 public:
  ForkAware() = default;
  ForkAware(const ForkAware&) = delete;
  ForkAware& operator=(const ForkAware&) = delete;
  virtual ~ForkAware() = default;

  /// May throw std::bad_alloc.
  void Register();
  void Unregister() noexcept;

  /// Waits until no other thread is at work in the object, and keeps it so.
  virtual void HoldForFork() noexcept = 0;
  virtual void ReleaseAfterFork() noexcept = 0;

 private:
  ForkAware* former_ = nullptr;
  ForkAware* next_ = nullptr;
  friend class ForkRegister;
};

}  // namespace quorl::internal
