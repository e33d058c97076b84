#include "quorl/runtime/internal/text.hpp"

#include "quorl/runtime/internal/search.hpp"

namespace quorl::internal {

std::int64_t Find(std::int64_t start, StringView text, StringView sought) {
  if (start < 1) Raise(FailureNumber::kInvalidArgument);
  // The standard search finds an empty text inside an empty one; here nothing is found in it.
  if (text.empty()) return 0;
  const auto from = static_cast<std::size_t>(start - 1);
  const std::size_t found =
      sought.empty() ? text.find(sought, from) : Search(text, sought).Next(from);
  return found == StringView::npos ? 0 : static_cast<std::int64_t>(found) + 1;
}

}  // namespace quorl::internal
