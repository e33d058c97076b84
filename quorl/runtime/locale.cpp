#include "quorl/runtime/locale.hpp"

#include <atomic>

#include "quorl/runtime/internal/within_memory.hpp"

namespace quorl {

using namespace internal;
namespace {

// Every locale that was ever put in place, each once. None is changed or freed, so that a reference
// stays good whatever other threads put in place meanwhile, to the very end of the process.
struct Published {
  const Locale locale;
  const Published* next;
};
constinit std::atomic<const Published*> first_published{nullptr};

// Null stands for the system's.
constinit std::atomic<const Locale*> current{nullptr};

const Locale* Publish(const Locale& locale) {
  const Published* const first = first_published.load(std::memory_order_acquire);
  for (const auto* known = first; known != nullptr; known = known->next) {
    if (known->locale == locale) return &known->locale;
  }
  auto* const made = WithinMemory([&] { return new Published{locale, first}; });
  // Two threads may publish the same locale at once: then it stands here twice, which does no harm.
  while (!first_published.compare_exchange_weak(made->next, made, std::memory_order_acq_rel)) {
  }
  return &made->locale;
}

}  // namespace

const Locale& Locale::Current() {
  const Locale* locale = current.load(std::memory_order_acquire);
  return locale == nullptr ? System() : *locale;
}

void Locale::SetCurrent(const Locale& locale) {
  current.store(Publish(locale), std::memory_order_release);
}

void Locale::UseSystem() noexcept { current.store(nullptr, std::memory_order_release); }

LocaleScope::LocaleScope(const Locale& locale) : former_(current.exchange(Publish(locale))) {}

LocaleScope::~LocaleScope() { current.store(former_, std::memory_order_release); }

}  // namespace quorl
