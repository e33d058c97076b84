// Tables of many short texts, one row a text: Cells(u"a|b||c") is "a", "b", "" and "c".
#pragma once

#include <vector>

#include "quorl/runtime/types.hpp"

namespace quorl {

inline std::vector<String> Cells(StringView row, char16_t separator = u'|') {
  std::vector<String> cells(1);
  for (const char16_t unit : row) {
    if (unit == separator) {
      cells.emplace_back();
    } else {
      cells.back() += unit;
    }
  }
  return cells;
}

/// Several short rows in one text: Rows(u"a|b;c|d").
inline std::vector<std::vector<String>> Rows(StringView table) {
  std::vector<std::vector<String>> rows;
  for (const String& row : Cells(table, u';')) rows.push_back(Cells(row));
  return rows;
}

}  // namespace quorl
