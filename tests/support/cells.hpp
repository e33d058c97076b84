// Tables of many short texts, one row a text, and what comes out of a case as such a cell.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tests/support/print.hpp"
#include "tests/support/raises.hpp"

namespace quorl {

/// Cells(u"a|b||c") is "a", "b", "" and "c".
inline std::vector<String> Cells(StringView row, char16_t separator = u'|') {
  std::vector<String> cells(1);
  for (const char16_t unit : row) {
    unit == separator ? void(cells.emplace_back()) : cells.back().push_back(unit);
  }
  return cells;
}

/// Several short rows in one text: Rows(u"a|b;c|d").
inline std::vector<std::vector<String>> Rows(StringView table) {
  std::vector<std::vector<String>> rows;
  for (const String& row : Cells(table, u';')) rows.push_back(Cells(row));
  return rows;
}

/// Pairs(u"a=b|c=") is "a" with "b" and "c" with "", the second of each in UTF-8.
inline std::vector<std::pair<String, std::string>> Pairs(StringView row) {
  std::vector<std::pair<String, std::string>> pairs;
  for (const String& cell : Cells(row)) {
    const std::size_t mark = cell.find(u'=');
    pairs.emplace_back(cell.substr(0, mark), Utf8(cell.substr(mark + 1)));
  }
  return pairs;
}

/// What `work` gives, a Variant as it is shown and "" for nothing; or "!" and the Number of what it
/// raised, with the Source unless that is the runtime's own failure as it stands.
template <class Work>
std::string ResultOf(Work&& work) {
  std::string result;
  const Failure failure = FailureOf([&] {
    using Result = decltype(work());
    if constexpr (std::is_void_v<Result>) {
      work();
    } else if constexpr (std::is_arithmetic_v<Result>) {
      result = std::to_string(work());
    } else if constexpr (std::is_convertible_v<Result, StringView>) {
      result = Utf8(work());
    } else if constexpr (std::is_same_v<Result, Variant>) {
      result = Shown(work());
    } else {
      result = work();
    }
  });
  if (failure == Failure{}) return result;
  const bool is_runtimes = failure == RuntimeFailure(failure.number);
  return '!' + std::to_string(failure.number) + (is_runtimes ? "" : " of " + Utf8(failure.source));
}

}  // namespace quorl
