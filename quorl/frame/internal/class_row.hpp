// One class of the catalogue.
#pragma once

#include <span>

#include "quorl/abi/quorl.h"
#include "quorl/frame/internal/component_object.hpp"
#include "quorl/frame/internal/member_row.hpp"

namespace quorl::frame {

enum class ClassKind { kGlobal, kCreatable };

/// What is written down once of a class. Constant.
struct ClassRow {
  StringView name;
  ClassKind kind;
  GUID identifier;
  /// Interface identifiers, oldest first, the current one last; version 1.k has k + 1.
  std::span<const GUID> interfaces;
  /// The members in table order.
  std::span<const MemberRow> members;
  const QuorlDispatchTable* table;

  /// Makes an instance; raises what its construction raises.
  ComponentObject* (*make)(const ClassRow& row, Holder holder);
  /// Ends an instance and, where the library does not hold it itself, gives its memory back.
  void (*end)(ComponentObject* object) noexcept;
  void* (*instance)(ComponentObject* object) noexcept;

  const GUID& CurrentInterface() const { return interfaces.back(); }
  int MinorVersion() const { return static_cast<int>(interfaces.size()) - 1; }
};

/// The identifier by which a member is called: the gets and puts of a property share one. It is the
/// place, from 1, of the first row of that name.
std::int32_t IdentifierOf(const ClassRow& row, const MemberRow& member) noexcept;

/// Whether two names of members or arguments are the same: case does not count.
bool IsSameName(StringView a, StringView b) noexcept;

/// The row of a place in the table; null for a name or an identifier that the class has not. Of a
/// property, its first row.
const MemberRow* FindByName(const ClassRow& row, StringView name) noexcept;

}  // namespace quorl::frame
