#include "examples/amount_in_words/table.hpp"

#include <algorithm>
#include <cwchar>
#include <string>

#include "examples/command/output.hpp"
#include "examples/command/printable.hpp"
#include "quorl/runtime/utf.hpp"

namespace amounts {

using quorl::String;
using quorl::StringView;
using quorl::Utf8;

namespace {

bool IsPlain(StringView text) {
  return std::ranges::all_of(text, [](char16_t unit) { return unit >= u' ' && unit <= u'~'; });
}

// Columns of a terminal.
std::size_t WidthOf(StringView text) {
  const std::string bytes = Utf8(text);
  std::wstring wide(bytes.size(), L'\0');
  wide.resize(std::min(std::mbstowcs(wide.data(), bytes.c_str(), wide.size()), wide.size()));
  return static_cast<std::size_t>(std::max(wcswidth(wide.c_str(), wide.size()), 0));
}

}  // namespace

void AddCell(String& row, StringView content, std::size_t width, Side side) {
  const bool plain = IsPlain(content);
  const String printable = plain ? String() : command::Printable(content);
  const StringView text = plain ? content : printable;
  const std::size_t blanks = width - std::min(plain ? text.size() : WidthOf(text), width);
  if (side == Side::kRight) row.append(blanks, u' ');
  row += text;
  if (side == Side::kLeft) row.append(blanks, u' ');
}

void PrintRow(const Row& row) {
  static String line;  // keeps its memory from row to row
  line.clear();
  const auto add = [](StringView content, std::size_t width, Side side = Side::kLeft) {
    AddCell(line, content, width, side);
    line += u' ';
  };
  add(row.reference, kReferenceWidth);
  add(row.date, kDateWidth);
  add(row.figures, kFiguresWidth, Side::kRight);
  add(row.currency, kCodeWidth);
  add(row.language, kCodeWidth);
  line += row.words;
  line += u'\n';
  command::Print(Utf8(line));
}

}  // namespace amounts
