#include "quorl/abi/internal/guid.hpp"
#include "quorl/frame/internal/catalogue.hpp"
#include "quorl/frame/internal/listing.hpp"
#include "quorl/runtime/utf.hpp"
#include "tools/description.hpp"

namespace quorl::tools {

std::string ClassList() {
  std::string list;
  for (const frame::ClassRow& row : frame::Catalogue()) {
    list += Utf8(frame::QualifiedName(row) + u" " + abi::GuidText(row.identifier)) + "\n";
  }
  return list;
}

}  // namespace quorl::tools
