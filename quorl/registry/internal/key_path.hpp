// The one rule by which the path of a key is put together from that of a key above it.
#pragma once

#include "quorl/runtime/types.hpp"

namespace quorl::internal {

/// What stands between the path of a key and `path` below it: a backslash, but nothing before the
/// empty path, which names the key itself.
constexpr StringView SeparatorBefore(StringView path) noexcept {
  return path.empty() ? StringView() : StringView(u"\\");
}

}  // namespace quorl::internal
