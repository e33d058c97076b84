#include "quorl/frame/internal/listing.hpp"

#include <algorithm>
#include <string>

#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/utf.hpp"

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

String CurrentInterfaceName(StringView class_name) { return Joined(u"_", class_name); }

String Digits(std::size_t number) { return Utf16(std::to_string(number)); }

}  // namespace

String QualifiedName(const ClassRow& row) { return Joined(kLibraryName, u".", row.name); }

String VersionText(std::size_t minor) { return Joined(u"1.", Digits(minor)); }

String InterfaceName(const ClassRow& row, std::size_t version) {
  if (version + 1 == row.interfaces.size()) return CurrentInterfaceName(row.name);
  return Joined(row.name, u"___v", Digits(version));
}

String PublishedName(const TypeRow& type) {
  const bool is_class = type.type == VariantType::kObject && !type.name.empty();
  return is_class ? CurrentInterfaceName(type.name) : String(type.name);
}

std::size_t ListingPlaceOf(const ClassRow& row, const MemberRow& member) noexcept {
  return static_cast<std::size_t>(std::ranges::count_if(
      row.members, [&](const MemberRow& other) { return StandsBefore(other, member); }));
}

}  // namespace quorl::frame
