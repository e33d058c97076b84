#include "quorl/frame/internal/class_row.hpp"

#include <algorithm>

#include "quorl/runtime/text_case.hpp"

namespace quorl::frame {

std::int32_t IdentifierOf(const ClassRow& row, const MemberRow& member) noexcept {
  // A property's get and put stand side by side.
  const auto place = &member - row.members.data();
  const bool is_second =
      place > 0 && row.members[static_cast<std::size_t>(place) - 1].name == member.name;
  return static_cast<std::int32_t>(is_second ? place : place + 1);
}

const MemberRow* FindByName(const ClassRow& row, StringView name) noexcept {
  const auto found = std::ranges::find_if(
      row.members, [&](const MemberRow& member) { return EqualsIgnoringCase(member.name, name); });
  return found == row.members.end() ? nullptr : &*found;
}

}  // namespace quorl::frame
