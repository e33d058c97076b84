// How the generated texts call the types of arguments and results.
#pragma once

#include <string>
#include <vector>

#include "quorl/frame/internal/member_row.hpp"

namespace quorl::tools {

/// The types of arguments and results, and what each is called in the catalogue for machines.
std::vector<VariantType> ValueTypes();
StringView ValueTypeName(VariantType type);

/// In interface-definition text. `published` is the type's published name, or empty.
std::string DescribedType(VariantType type, const std::string& published, bool by_reference);

/// In plain C: as an argument of a slot, and as what a slot's result pointer points to.
std::string SlotArgumentType(const frame::TypeRow& type);
std::string SlotResultType(const frame::TypeRow& type);

}  // namespace quorl::tools
