#include "quorl/runtime/locale.hpp"

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <utility>

namespace quorl {
namespace {

// Null stands for the system's.
std::atomic<const Locale*> current{nullptr};

}  // namespace

const Locale& Locale::Current() {
  const Locale* locale = current.load(std::memory_order_acquire);
  return locale == nullptr ? System() : *locale;
}

void Locale::SetCurrent(Locale locale) {
  // Two places, used in turn: a reference that a conversion under way has just taken stays good.
  static std::array<Locale, 2> places;
  static std::size_t next = 0;
  static std::mutex guard;
  const std::scoped_lock lock(guard);
  places[next] = std::move(locale);
  current.store(&places[next], std::memory_order_release);
  next = 1 - next;
}

void Locale::UseSystem() noexcept { current.store(nullptr, std::memory_order_release); }

LocaleScope::LocaleScope(Locale locale)
    : locale_(std::move(locale)), former_(current.exchange(&locale_)) {}

LocaleScope::~LocaleScope() { current.store(former_, std::memory_order_release); }

}  // namespace quorl
