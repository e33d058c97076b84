#include "quorl/numeric/dates.hpp"

#include "quorl/runtime/date_text.hpp"
#include "quorl/runtime/text.hpp"

namespace quorl {

Boolean Dates::IsDateOrEmpty(StringView Text) { return Trim(Text).empty() || IsDate(Text); }

}  // namespace quorl
