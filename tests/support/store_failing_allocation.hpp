// Makes the n-th allocation of the program fail. To be included by one source of a program.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>

namespace quorl {

/// While one lives, the `place`-th allocation from its making on, counted from 0, fails; with
/// `from_then_on`, every one after it too.
class FailingAllocation {
 public:
  FailingAllocation(std::int64_t place, bool from_then_on) {
    left_ = place;
    lasting_ = from_then_on;
    armed_ = true;
  }
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation() { armed_ = false; }

  /// Whether an allocation has failed.
  static bool Met() { return left_ < 0; }

  static void* Allocate(std::size_t size) {
    if (armed_ && (lasting_ ? left_ < 0 || left_-- == 0 : left_-- == 0)) {
      if (lasting_) left_ = -1;
      throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
  }

 private:
  static inline bool armed_ = false;
  static inline bool lasting_ = false;
  static inline std::int64_t left_ = 0;
};

}  // namespace quorl

#pragma GCC diagnostic push
#if defined(__GNUC__) && !defined(__clang__)
// The compiler sees one of the three inlined and the others not, and takes them for strangers.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
void* operator new(std::size_t size) { return quorl::FailingAllocation::Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return quorl::FailingAllocation::Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
#pragma GCC diagnostic pop
