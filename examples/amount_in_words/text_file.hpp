// Lines of a file of text, whatever its encoding.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>

#include "quorl/runtime/types.hpp"

namespace amounts {

/// Reads a file of any length line by line. It is UTF-16 if it begins with a mark, else UTF-8, else
/// from its first line that is no UTF-8 on Windows-1252, unless it has shown itself UTF-8 before.
class TextFile {
 public:
  /// `file` is lent.
  explicit TextFile(int file);

  /// Why it cannot be read further, empty when it can.
  std::string Failure() const;

  /// The next line without its end, LF, CR LF or CR; false at the end. Throws a Problem for a line
  /// that cannot be read; those after it still can.
  bool Next(quorl::String& line);

 private:
  enum class Encoding { kUnknown, kUtf8, kWindows1252, kUtf16, kSwappedUtf16 };

  std::size_t UnitSize() const { return encoding_ >= Encoding::kUtf16 ? 2 : 1; }
  bool Fill();
  int NextByte() {
    if (at_ == end_ && !Fill()) return EOF;
    return static_cast<unsigned char>(bytes_[at_++]);
  }
  void TakeBytes(quorl::String& line);
  int NextUnit();
  void Decode(quorl::String& line);

  int file_;
  std::array<char, 65536> bytes_;
  std::size_t at_ = 0;   // of the next byte
  std::size_t end_ = 0;  // of those that were read
  bool ended_ = false;
  Encoding encoding_ = Encoding::kUnknown;
  bool after_return_ = false;
  bool half_ = false;
  int error_ = 0;
};

}  // namespace amounts
