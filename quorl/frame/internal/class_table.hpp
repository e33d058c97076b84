// From the rows of a class to its table of members and to the making of its instances.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <iterator>
#include <new>
#include <tuple>

#include "quorl/frame/internal/bind.hpp"
#include "quorl/frame/internal/class_row.hpp"
#include "quorl/frame/internal/name_index.hpp"

namespace quorl::frame {

/// Slots one after the other, as a host reads them.
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

/// A property's get and put stand side by side and share the identifier of the first.
template <std::size_t kCount>
constexpr auto WithIdentifiers(std::array<MemberRow, kCount> members) {
  for (std::size_t i = 0; i < kCount; ++i) {
    const bool is_second = i > 0 && members[i - 1].name == members[i].name;
    members[i].identifier = static_cast<std::int32_t>(is_second ? i : i + 1);
  }
  return members;
}

constexpr bool VersionsGrow(std::span<const InterfaceRow> versions) {
  return std::ranges::is_sorted(versions, std::less_equal{}, &InterfaceRow::members);
}

/// A class of the library as its rows describe it. `kRows` is a tuple of typed rows, `kInterfaces`
/// the versions of its interface.
template <class Class, const auto& kRows, const auto& kInterfaces>
class Described {
 public:
  static constexpr std::size_t kCount = std::tuple_size_v<std::remove_cvref_t<decltype(kRows)>>;

  static constexpr std::array<MemberRow, kCount> kMembers = std::apply(
      [](const auto&... rows) { return WithIdentifiers(std::array<MemberRow, kCount>{rows...}); },
      kRows);
  static constexpr auto kNames = NameIndexOf(kMembers);

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
  static_assert(sizeof(kTable) == (kCommonSlotCount + kCount) * sizeof(void*),
                "a slot is out of its place");

  static_assert(VersionsGrow(kInterfaces), "each version knows more members than the one before");
  static_assert(std::rbegin(kInterfaces)->members == kCount,
                "new members need a new version of their interface: add it in identifiers.hpp");

  static constexpr ClassRow Row(StringView name, ClassKind kind, const GUID& identifier) {
    return {name,   kind,           identifier, kInterfaces, kMembers,
            kNames, &kTable.common, &Make,      &Destroy,    &hidden_};
  }

 private:
  using Made = InstanceOf<Class>;

  static ComponentObject* Make(const ClassRow& row, Holder holder) {
    if (holder == Holder::kHost) return new Made(row, holder);
    // In memory that goes with the library and is never freed before: a host that releases the
    // instance while the process ends finds it sound.
    alignas(Made) static std::byte place[sizeof(Made)];
    return new (place) Made(row, holder);
  }
  static void Destroy(ComponentObject* object) noexcept {
    auto* made = static_cast<Made*>(object);
    if (made->held_by == Holder::kHost) {
      delete made;
    } else {
      made->~Made();
    }
  }

  static inline constinit ComponentObject* hidden_ = nullptr;
};

}  // namespace quorl::frame
