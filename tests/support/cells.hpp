// Tables of many short texts, one row a text: Cells(u"a|b||c") is "a", "b", "" and "c".
#pragma once

#include <vector>

#include "quorl/runtime/types.hpp"

namespace quorl {

inline std::vector<String> Cells(StringView row) {
  std::vector<String> cells(1);
  for (const char16_t unit : row) {
    if (unit == u'|') {
      cells.emplace_back();
    } else {
      cells.back() += unit;
    }
  }
  return cells;
}

}  // namespace quorl
