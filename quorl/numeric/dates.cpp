#include "quorl/numeric/dates.hpp"

#include "quorl/runtime/date_text.hpp"
#include "quorl/runtime/internal/text.hpp"

namespace quorl {

using namespace internal;

Boolean Dates::IsDateOrEmpty(StringView Text) { return Trim(Text).empty() || IsDate(Text); }

}  // namespace quorl
