#include "quorl/frame/internal/class_row.hpp"

#include "quorl/frame/internal/name_index.hpp"

namespace quorl::frame {

const MemberRow* FindByName(const ClassRow& row, StringView name) noexcept {
  const std::size_t last = row.names.size() - 1;  // their number is a power of two
  for (std::size_t slot = NameHash(name) & last; row.names[slot] != kNoRow;
       slot = (slot + 1) & last) {
    const MemberRow& member = row.members[row.names[slot]];
    if (IsSameName(member.name, name)) return &member;
  }
  return nullptr;
}

}  // namespace quorl::frame
