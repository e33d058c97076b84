#include "quorl/text/joined.hpp"

#include "quorl/runtime/raised_error.hpp"

namespace quorl::text {

String Joined(std::initializer_list<StringView> pieces) {
  return WithinMemory([&] {
    std::size_t length = 0;
    for (const StringView piece : pieces) length += piece.size();
    String joined;
    joined.reserve(length);
    for (const StringView piece : pieces) joined += piece;
    return joined;
  });
}

}  // namespace quorl::text
