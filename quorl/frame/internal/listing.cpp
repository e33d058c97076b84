#include "quorl/frame/internal/listing.hpp"

#include <algorithm>

#include "quorl/runtime/internal/join.hpp"

namespace quorl::frame {

using namespace internal;
namespace {

bool StandsBefore(const MemberRow& first, const MemberRow& second) {
  const bool first_placed = first.listing >= 0;
  const bool second_placed = second.listing >= 0;
  if (first_placed && second_placed) return first.listing < second.listing;
  if (first_placed != second_placed) return first_placed;
  return &first < &second;
}

}  // namespace

String InterfaceName(const ClassRow& row, std::size_t version) {
  if (version + 1 == row.interfaces.size()) return Joined({u"_", row.name});
  const auto digit = static_cast<char16_t>(u'0' + version);
  return Joined({row.name, u"___v", StringView(&digit, 1)});
}

std::size_t ListingPlaceOf(const ClassRow& row, const MemberRow& member) noexcept {
  return static_cast<std::size_t>(std::ranges::count_if(
      row.members, [&](const MemberRow& other) { return StandsBefore(other, member); }));
}

}  // namespace quorl::frame
