// What is said of classes beyond their rows: names, flags, and the order of the listing.
#pragma once

#include <cstddef>
#include <cstdint>

#include "quorl/frame/internal/class_row.hpp"

namespace quorl::frame {

/// Application object, creatable, predeclared; creatable alone.
inline constexpr std::uint16_t kGlobalFlags = 0xB;
inline constexpr std::uint16_t kCreatableFlags = 0x2;
/// Dual, automation-compatible, non-extensible, hidden.
inline constexpr std::uint16_t kInterfaceFlags = 0x11D0;

constexpr std::uint16_t ClassFlags(const ClassRow& row) {
  return row.kind == ClassKind::kGlobal ? kGlobalFlags : kCreatableFlags;
}

/// The name by which hosts find a class: "Quorl.Math".
String QualifiedName(const ClassRow& row);

/// The number of a version of an interface: "1.4".
String VersionText(std::size_t minor);

/// The name of the interface's version 1.k: "Math___v0" for a former one, "_Math" for the current.
String InterfaceName(const ClassRow& row, std::size_t version);

/// The name of a type as it is published: an enumeration's own, "_Registry" for a class; empty for
/// a type that has none.
String PublishedName(const TypeRow& type);

/// The place, from 0, of a member in the listing: those with a place of their own first, the others
/// in table order.
std::size_t ListingPlaceOf(const ClassRow& row, const MemberRow& member) noexcept;

}  // namespace quorl::frame
