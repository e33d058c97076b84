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
    first_ = made_ + place;
    end_ = from_then_on ? INT64_MAX : first_ + 1;
  }
  ~FailingAllocation() { end_ = 0; }

  /// Whether an allocation has failed.
  static bool Met() { return made_ > first_; }

  static void* Allocate(std::size_t size) noexcept {
    const std::int64_t number = made_++;
    return number >= first_ && number < end_ ? nullptr : std::malloc(size == 0 ? 1 : size);
  }

 private:
  static inline std::int64_t made_ = 0;
  static inline std::int64_t first_ = 0;
  static inline std::int64_t end_ = 0;
};

}  // namespace quorl

#pragma GCC diagnostic push
#if defined(__GNUC__) && !defined(__clang__)
// The compiler sees one of the three inlined and the others not, and takes them for strangers.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif
void* operator new(std::size_t size) {
  if (void* memory = quorl::FailingAllocation::Allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return quorl::FailingAllocation::Allocate(size);
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
#pragma GCC diagnostic pop
