// One class of the catalogue.
#pragma once

#include <span>

#include "quorl/abi/quorl.h"
#include "quorl/frame/internal/component_object.hpp"
#include "quorl/frame/internal/member_row.hpp"

namespace quorl::frame {

enum class ClassKind { kGlobal, kCreatable };

/// One version of a class's interface.
struct InterfaceRow {
  GUID identifier;
  /// How many members it knows: the first so many of the table.
  std::size_t members;
};

/// What is written down once of a class. Constant.
struct ClassRow {
  StringView name;
  ClassKind kind;
  GUID identifier;
  /// The interface's versions, oldest first, the current one last; version 1.k has k + 1.
  std::span<const InterfaceRow> interfaces;
  /// The members in table order.
  std::span<const MemberRow> members;
  /// Their places by their names; see name_index.hpp.
  std::span<const std::uint8_t> names;
  const QuorlDispatchTable* table;

  /// Makes an instance; raises what its construction raises.
  ComponentObject* (*make)(const ClassRow& row, Holder holder);
  /// Destroys an instance; frees its memory unless it is a hidden instance (static storage).
  void (*destroy)(ComponentObject* object) noexcept;
  /// The place of the class's hidden instance, null until it is made.
  ComponentObject** hidden;

  const GUID& CurrentInterface() const { return interfaces.back().identifier; }
  std::size_t MinorVersion() const { return interfaces.size() - 1; }
};

/// The first row called `name`, ignoring case; null if there is none.
const MemberRow* FindByName(const ClassRow& row, StringView name) noexcept;

}  // namespace quorl::frame
