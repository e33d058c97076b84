#include "quorl/runtime/variant.hpp"

namespace quorl {

static_assert(std::is_trivially_copyable_v<Currency> && sizeof(Currency) == sizeof(std::uint64_t) &&
              std::is_trivially_copyable_v<Date> && sizeof(Date) == sizeof(std::uint64_t));
static_assert(alignof(String) <= alignof(std::uint64_t) &&
              alignof(Object) <= alignof(std::uint64_t) &&
              alignof(Array) <= alignof(std::uint64_t));

void Variant::HoldContentOf(Variant& owner) noexcept {
  if (auto* text = owner.If<String>()) return Hold<String>(std::move(*text));
  if (auto* object = owner.If<Object>()) return Hold<Object>(std::move(*object));
  Hold<Array>(std::move(*owner.If<Array>()));
}

void Variant::HoldReferenceOf(const Variant& owner) noexcept {
  if (const auto* object = owner.If<Object>()) return Hold<Object>(*object);
  Hold<Array>(*owner.If<Array>());
}

void Variant::ReleaseReference() noexcept {
  if (auto* object = If<Object>()) return std::destroy_at(object);
  std::destroy_at(If<Array>());
}

}  // namespace quorl
