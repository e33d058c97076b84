// From the rows of a class to its table of members and to the making of its instances.
#pragma once

#include <array>
#include <cstddef>
#include <new>
#include <tuple>

#include "quorl/frame/internal/bind.hpp"
#include "quorl/frame/internal/class_row.hpp"

namespace quorl::frame {

/// Slots one behind the other, as a host reads them.
template <class... Slots>
struct SlotList {};

template <class First>
struct SlotList<First> {
  First first;
};

template <class First, class Second, class... Rest>
struct SlotList<First, Second, Rest...> {
  First first;
  SlotList<Second, Rest...> rest;
};

constexpr SlotList<> MakeSlots() { return {}; }
template <class First>
constexpr SlotList<First> MakeSlots(First first) {
  return {first};
}
template <class First, class Second, class... Rest>
constexpr SlotList<First, Second, Rest...> MakeSlots(First first, Second second, Rest... rest) {
  return {first, MakeSlots(second, rest...)};
}

/// The whole table: the common slots and the members'.
template <class Slots>
struct ClassTable {
  QuorlDispatchTable common;
  Slots members;
};
/// That of a class without members.
template <>
struct ClassTable<SlotList<>> {
  QuorlDispatchTable common;
};

/// A class of the library as its rows describe it. `kRows` is a tuple of typed rows.
template <class Class, const auto& kRows>
class Described {
 public:
  static constexpr std::size_t kCount = std::tuple_size_v<std::remove_cvref_t<decltype(kRows)>>;

  static constexpr std::array<MemberRow, kCount> kMembers =
      std::apply([](const auto&... rows) { return std::array<MemberRow, kCount>{rows...}; }, kRows);

  static constexpr auto kTable = std::apply(
      [](const auto&... rows) {
        using Slots = decltype(MakeSlots(rows.kSlot...));
        if constexpr (sizeof...(rows) == 0) {
          return ClassTable<Slots>{kCommonSlots};
        } else {
          return ClassTable<Slots>{kCommonSlots, MakeSlots(rows.kSlot...)};
        }
      },
      kRows);
  static_assert(sizeof(kTable) == (7 + kCount) * sizeof(void*), "a slot is out of its place");

  static constexpr ClassRow Row(StringView name, ClassKind kind, const GUID& identifier,
                                std::span<const GUID> interfaces) {
    return {name, kind, identifier, interfaces, kMembers, &kTable.common, &Make, &End, &Instance};
  }

 private:
  using Made = InstanceOf<Class>;

  static ComponentObject* Make(const ClassRow& row, Holder holder) {
    if (holder == Holder::kHost) return new Made(row, holder);
    // In memory that goes with the library and is never given back before: a host that lets go of
    // the instance while the process ends finds it sound.
    alignas(Made) static std::byte place[sizeof(Made)];
    return new (place) Made(row, holder);
  }
  static void End(ComponentObject* object) noexcept {
    auto* made = static_cast<Made*>(object);
    if (made->held_by == Holder::kHost) {
      delete made;
    } else {
      made->~Made();
    }
  }
  static void* Instance(ComponentObject* object) noexcept {
    return &static_cast<Made*>(object)->instance;
  }
};

}  // namespace quorl::frame
