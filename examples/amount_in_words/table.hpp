// Rows of a table, as a terminal shows them.
#pragma once

#include <cstddef>

#include "quorl/runtime/types.hpp"

namespace amounts {

/// Fixed, so that a file of any length streams through; the widest amount fits.
inline constexpr std::size_t kReferenceWidth = 10;
inline constexpr std::size_t kDateWidth = 10;
inline constexpr std::size_t kFiguresWidth = 25;
inline constexpr std::size_t kCodeWidth = 3;

enum class Side { kLeft, kRight };

void AddCell(quorl::String& row, quorl::StringView content, std::size_t width,
             Side side = Side::kLeft);

struct Row {
  quorl::StringView reference, date, figures, currency, language, words;
};

void PrintRow(const Row& row);

}  // namespace amounts
