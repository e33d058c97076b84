// What differs between two trees of keys (keys.hpp), and that in words.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "examples/settings/shown.hpp"
#include "quorl/registry/text/format.hpp"

namespace settings {

/// A key that came or went, or one of its values that did or has another type or content. Lent by
/// the trees.
struct Difference {
  enum class Kind : std::uint8_t { kAdded, kRemoved, kChanged };
  Kind kind = Kind::kAdded;
  const quorl::RegistryTextKey* key = nullptr;
  const quorl::RegistryTextValue* before = nullptr;  ///< Of the key itself both are null.
  const quorl::RegistryTextValue* after = nullptr;
};

/// In the order of the keys, in each key by the values' names.
std::vector<Difference> DifferencesBetween(const quorl::RegistryText& before,
                                           const quorl::RegistryText& after);

/// Lines that each begin with `lead` and + or -; of a changed value one of each.
std::string LinesOf(const Difference& difference, const std::string& lead = {});

/// `{"change": "changed", "key": ..., "name": ..., "before": {...}, "after": {...}}`.
JsonObject JsonOf(const Difference& difference);

}  // namespace settings
