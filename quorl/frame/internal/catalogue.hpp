// The catalogue: everything that is written down of the library's classes and members, once.
//
// Tables, calls by name, the type description, the class tables of the C header and the
// registration are made from it. The order of a class's rows is its table's order and a promise to
// every host ever built: a new row goes at the end.
#pragma once

#include <span>

#include "quorl/frame/internal/class_row.hpp"

namespace quorl::frame {

inline constexpr StringView kLibraryName = u"Quorl";

/// The twelve classes.
std::span<const ClassRow> Catalogue() noexcept;

/// The class of that identifier, or of that name ("Math"); null for none.
const ClassRow* FindClass(const GUID& identifier) noexcept;
const ClassRow* FindClass(StringView name) noexcept;

}  // namespace quorl::frame
