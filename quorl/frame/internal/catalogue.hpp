// The catalogue: everything that is known of the library's classes and members, written once.
//
// Tables, calls by name, the type description, the class tables of the C header and the
// registration are made from it. The order of a class's rows is its table's order and a promise to
// every host ever built: a new row goes at the end, and takes a new version in identifiers.hpp.
#pragma once

#include <span>

#include "quorl/frame/internal/class_row.hpp"

namespace quorl::frame {

inline constexpr StringView kLibraryName = u"Quorl";

/// All classes.
std::span<const ClassRow> Catalogue() noexcept;

/// The class of that identifier, or of that name ("Math"); null if there is none.
const ClassRow* FindClass(const GUID& identifier) noexcept;
const ClassRow* FindClass(StringView name) noexcept;

}  // namespace quorl::frame
