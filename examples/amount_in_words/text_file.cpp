#include "examples/amount_in_words/text_file.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <utility>

#include "examples/amount_in_words/problem.hpp"
#include "examples/command/system_error.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/utf.hpp"

namespace amounts {

using quorl::String;
using quorl::Utf16;
using quorl::Utf8;

namespace {

constexpr std::size_t kLongestLine = 65536;

}  // namespace

TextFile::TextFile(int file) : file_(file) {
  while (end_ < 3 && Fill()) {
  }
  for (const auto& [mark, encoding] : {std::pair{std::string_view("\xEF\xBB\xBF"), Encoding::kUtf8},
                                       {"\xFF\xFE", Encoding::kUtf16},
                                       {"\xFE\xFF", Encoding::kSwappedUtf16}}) {
    if (!std::string_view(bytes_.data(), end_).starts_with(mark)) continue;
    at_ = mark.size();
    encoding_ = encoding;
    break;
  }
}

std::string TextFile::Failure() const {
  return error_ == 0 ? std::string() : command::SystemErrorText(error_);
}

bool TextFile::Next(String& line) {
  line.clear();
  bool too_long = false;
  int unit = NextUnit();
  if (unit == '\n' && after_return_) unit = NextUnit();
  if (unit == EOF) return false;
  for (; unit != EOF && unit != '\n' && unit != '\r'; unit = NextUnit()) {
    too_long = too_long || line.size() == kLongestLine / UnitSize();
    if (!too_long) line += static_cast<char16_t>(unit);
    if (!too_long && UnitSize() == 1) TakeBytes(line);
  }
  after_return_ = unit == '\r';
  if (too_long) throw Problem(messages::kLineTooLong(kLongestLine));
  Decode(line);
  return true;
}

// Reads what there is, which of a terminal is a line; false at the end.
bool TextFile::Fill() {
  if (ended_) return false;
  if (at_ == end_) at_ = end_ = 0;
  const ssize_t count = read(file_, bytes_.data() + end_, bytes_.size() - end_);
  if (count < 0) error_ = errno;
  ended_ = count <= 0;
  if (!ended_) end_ += static_cast<std::size_t>(count);
  return !ended_;
}

// Takes at once what was read already of a line of bytes.
void TextFile::TakeBytes(String& line) {
  const auto begin = bytes_.begin() + static_cast<std::ptrdiff_t>(at_);
  const auto end = bytes_.begin() +
                   static_cast<std::ptrdiff_t>(std::min(end_, at_ + kLongestLine - line.size()));
  const auto stop =
      std::find_if(begin, end, [](char byte) { return byte == '\n' || byte == '\r'; });
  const std::size_t size = line.size(), count = static_cast<std::size_t>(stop - begin);
  line.resize(size + count);
  std::transform(begin, stop, line.begin() + static_cast<std::ptrdiff_t>(size),
                 [](char byte) { return static_cast<unsigned char>(byte); });
  at_ += count;
}

int TextFile::NextUnit() {
  const int first = NextByte();
  if (first == EOF || UnitSize() == 1) return first;
  const int second = NextByte();
  half_ = second == EOF;
  if (half_) return 0;
  return encoding_ == Encoding::kUtf16 ? first | second << 8 : first << 8 | second;
}

// Of a line of bytes, its text.
void TextFile::Decode(String& line) {
  if (half_) throw Problem(messages::kEndsInCharacter());
  char16_t bits = 0, zeros = 0;  // of the units' own size, so that many are seen to at once
  for (const char16_t unit : line) {
    bits |= unit;
    zeros |= unit == 0 ? 1 : 0;
  }
  if (zeros != 0) throw Problem(messages::kZeroByte());
  if (UnitSize() == 2) {
    if (Utf16(Utf8(line)) != line) throw Problem(messages::kHalfCharacter());
    return;
  }
  if (bits < u'\u0080') return;
  const std::string bytes(line.begin(), line.end());
  if (encoding_ != Encoding::kWindows1252) {
    line = Utf16(bytes);
    if (Utf8(line) == bytes) {
      encoding_ = Encoding::kUtf8;
      return;
    }
    if (encoding_ == Encoding::kUtf8) throw Problem(messages::kNoUtf8());
  }
  line = quorl::FromAnsi(bytes);
  const auto is_control = [](char16_t unit) { return unit >= u'\u0080' && unit < u'\u00A0'; };
  if (std::ranges::any_of(line, is_control)) throw Problem(messages::kNeitherEncoding());
  encoding_ = Encoding::kWindows1252;
}

}  // namespace amounts
