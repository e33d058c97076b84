#include "quorl/registry/text/reader.hpp"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "quorl/registry/text/fault.hpp"
#include "quorl/registry/text/root_name.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/hex.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/utf16_bytes.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/key_name.hpp"

namespace quorl {

using namespace internal;
namespace {

using Fault = RegistryTextFault;

constexpr std::string_view kUtf16Mark = "\xFF\xFE";
constexpr std::string_view kUtf16SwappedMark = "\xFE\xFF";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kHeader4InBytes = "REGEDIT4";
constexpr StringView kHeader4 = u"REGEDIT4";
constexpr StringView kHeader5 = u"Windows Registry Editor Version 5.00";

constexpr StringView kLineBreaks = u"\r\n";
// A carriage return before a line feed counts as one too.
constexpr StringView kBlanks = u" \t\r";

String Decoded(std::string_view bytes, StringView file) {
  if (bytes.starts_with(kUtf16Mark)) {
    if (bytes.size() % 2 != 0) throw RegistryTextError(file, 1, Fault::kHalfCharacter);
    return UnitsOf(bytes.substr(kUtf16Mark.size()));
  }
  if (bytes.starts_with(kUtf16SwappedMark)) {
    throw RegistryTextError(file, 1, Fault::kHighByteFirst);
  }
  if (bytes.starts_with(kUtf8Mark)) return Utf16(bytes.substr(kUtf8Mark.size()));
  return bytes.starts_with(kHeader4InBytes) ? FromAnsi(bytes) : Utf16(bytes);
}

class Reader {
 public:
  Reader(StringView text, StringView file, ForeignCharacters foreign)
      : text_(text), file_(file), foreign_(foreign) {}

  RegistryText Read() {
    ReadHeader();
    const bool is_announced = RequireAnnouncedEnd();
    for (; at_ < text_.size(); EndLine()) {
      SkipBlanks();
      if (Peek() == u'[') {
        ReadKey();
      } else if (Peek() == u'"' || Peek() == u'@') {
        ReadValue();
      } else if (!AtLineEnd()) {
        Fail(Fault::kUnknownLine);
      }
    }
    if (keys_.empty() && !is_announced) Fail(Fault::kNoKey);
    return std::move(keys_);
  }

 private:
  [[noreturn]] void Fail(Fault fault) const { FailAt(line_, fault); }
  [[noreturn]] void FailAt(Int32 line, Fault fault) const {
    throw RegistryTextError(file_, line, fault);
  }

  char16_t Peek() const { return at_ < text_.size() ? text_[at_] : u'\0'; }
  bool TakeIf(char16_t unit) {
    if (at_ >= text_.size() || text_[at_] != unit) return false;
    if (unit == u'\n') ++line_;
    ++at_;
    return true;
  }
  void SkipBlanks() { at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size()); }
  void SkipComment() { at_ = std::min(text_.find(u'\n', at_), text_.size()); }
  bool AtLineEnd() const { return at_ == text_.size() || Peek() == u'\n' || Peek() == u';'; }

  // Passes to the next line; nothing but a comment may be left on this one.
  void EndLine() {
    SkipBlanks();
    if (!AtLineEnd()) Fail(Fault::kMeaninglessEnd);
    SkipComment();
    TakeIf(u'\n');
  }

  // The rest of the line, without blanks at its end.
  StringView TakeLine() {
    const std::size_t end = std::min(text_.find(u'\n', at_), text_.size());
    const StringView line = text_.substr(at_, end - at_);
    at_ = end;
    return line.substr(0, line.find_last_not_of(kBlanks) + 1);
  }

  void ReadHeader() {
    const StringView header = TakeLine();
    if (header != kHeader5 && header != kHeader4) {
      Fail(Fault::kUnknownHeader);
    }
    has_wide_texts_ = header == kHeader5;
    TakeIf(u'\n');
  }

  // Whether the file says what its last line is; it must have that line then.
  bool RequireAnnouncedEnd() const {
    const StringView rest = text_.substr(at_);
    if (rest.substr(0, rest.find_first_of(kLineBreaks)) != kEndAnnouncement) return false;
    const StringView ended = rest.substr(0, rest.find_last_not_of(kLineBreaks) + 1);
    if (ended.substr(ended.find_last_of(kLineBreaks) + 1) != kEndLine) {
      Fail(Fault::kIncomplete);
    }
    return true;
  }

  void ReadKey() {
    StringView name = TakeLine().substr(1);
    if (!name.ends_with(u']')) Fail(Fault::kUnclosedKey);
    name.remove_suffix(1);
    RegistryTextKey key;
    key.is_deletion = name.starts_with(u'-');
    if (key.is_deletion) name.remove_prefix(1);
    std::optional<KeyPlace> place = PlaceNamed(name);
    if (!place) Fail(Fault::kNoRootKey);
    const std::string path = Stored(place->path, line_);
    if (!IsKeyPath(path)) Fail(Fault::kBadKeyName);
    const bool is_root = path.find_first_not_of(kPathSeparator) == std::string::npos;
    if (key.is_deletion && is_root) Fail(Fault::kDeletedRoot);
    key.place = {place->root, FromAnsi(path)};
    keys_.push_back(std::move(key));
  }

  void ReadValue() {
    if (keys_.empty()) Fail(Fault::kValueWithoutKey);
    if (keys_.back().is_deletion) Fail(Fault::kValueOfDeletedKey);
    const Int32 line = line_;
    RegistryTextValue value;
    const std::string name = TakeIf(u'@') ? std::string() : Stored(TakeQuoted(), line);
    if (!IsValueName(name)) {
      FailAt(line, Fault::kBadValueName);
    }
    value.name = FromAnsi(name);
    SkipBlanks();
    if (!TakeIf(u'=')) Fail(Fault::kNoEqualsSign);
    SkipBlanks();
    ReadContent(value);
    keys_.back().values.push_back(std::move(value));
  }

  void ReadContent(RegistryTextValue& value) {
    const Int32 line = line_;
    if (TakeIf(u'-')) {
      value.is_deletion = true;
    } else if (Peek() == u'"') {
      value.type = REG_SZ;
      value.data = Stored(TakeQuoted(), line) + '\0';
    } else {
      ReadNumbers(value);
    }
  }

  void ReadNumbers(RegistryTextValue& value) {
    const Int32 line = line_;
    const String kind = TakeWord();
    if (kind == u"dword") {
      value.type = REG_DWORD;
      RequireColon();
      value.data = TakeDword();
    } else if (kind == u"hex") {
      value.type = TakeType();
      RequireColon();
      value.data = TakeBytes();
      if (has_wide_texts_ && IsTextType(value.type)) value.data = Narrowed(value.data, line);
    } else {
      Fail(Fault::kUnknownContent);
    }
  }

  String TakeWord() {
    const std::size_t start = at_;
    while (LowerCase(Peek()) >= u'a' && LowerCase(Peek()) <= u'z') ++at_;
    return LowerCase(text_.substr(start, at_ - start));
  }

  void RequireColon() {
    if (!TakeIf(u':')) Fail(Fault::kNoColon);
  }

  std::optional<std::uint32_t> TakeHex(int most_digits) {
    std::optional<std::uint32_t> number;
    for (int digits = 0; digits < most_digits; ++digits, ++at_) {
      const std::optional<Byte> digit = HexValue(Peek());
      if (!digit) break;
      number = number.value_or(0) * 16 + *digit;
    }
    return number;
  }

  std::string TakeDword() {
    std::optional<std::uint32_t> number = TakeHex(8);
    if (!number) Fail(Fault::kNoNumber);
    std::string bytes;
    for (int i = 0; i < 4; ++i, *number >>= 8) bytes.push_back(static_cast<char>(*number & 0xFF));
    return bytes;
  }

  Int32 TakeType() {
    if (!TakeIf(u'(')) return REG_BINARY;
    const std::optional<std::uint32_t> type = TakeHex(8);
    if (!type || !TakeIf(u')')) Fail(Fault::kBadType);
    return static_cast<Int32>(*type);
  }

  std::string TakeBytes() {
    std::string bytes;
    SkipContinuations();
    if (AtLineEnd()) return bytes;
    do {
      SkipContinuations();
      const std::optional<std::uint32_t> byte = TakeHex(2);
      if (!byte) Fail(Fault::kBadByte);
      bytes.push_back(static_cast<char>(*byte));
      SkipContinuations();
    } while (TakeIf(u','));
    return bytes;
  }

  // Blanks, and each backslash that continues a line, with the comments that may follow it.
  void SkipContinuations() {
    for (SkipBlanks(); TakeIf(u'\\'); SkipBlanks()) {
      EndLine();
      for (SkipBlanks(); Peek() == u';'; SkipBlanks()) EndLine();
    }
  }

  String TakeQuoted() {
    const Int32 line = line_;
    ++at_;
    String text;
    while (!TakeIf(u'"')) {
      const bool is_escaped = TakeIf(u'\\');
      if (at_ == text_.size()) FailAt(line, Fault::kUnclosedText);
      if (is_escaped && Peek() != u'\\' && Peek() != u'"') {
        Fail(Fault::kLoneBackslash);
      }
      text.push_back(Peek());
      TakeIf(Peek());
    }
    return text;
  }

  // In the store's single bytes.
  std::string Stored(StringView text, Int32 line) const {
    std::string bytes = ToAnsi(text);
    if (foreign_ == ForeignCharacters::kReplace) return bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (FromAnsi(static_cast<unsigned char>(bytes[i])) != text[i]) {
        FailAt(line, Fault::kForeignCharacter);
      }
    }
    return bytes;
  }

  std::string Narrowed(std::string_view wide, Int32 line) const {
    if (wide.size() % 2 != 0) FailAt(line, Fault::kHalfCharacterInText);
    return Stored(UnitsOf(wide), line);
  }

  StringView text_;
  StringView file_;
  ForeignCharacters foreign_;
  bool has_wide_texts_ = true;
  std::size_t at_ = 0;
  Int32 line_ = 1;
  RegistryText keys_;
};

String DescriptionOf(StringView file, Int32 line, Fault fault) {
  return Joined(file, u":", FromAnsi(std::to_string(line)), u": ",
                kRegistryTextFaults[static_cast<std::size_t>(fault)].sentence);
}

}  // namespace

RegistryTextError::RegistryTextError(StringView file, Int32 line, RegistryTextFault fault)
    : RaisedError(kFailedCheck, kRegistryTextSource, DescriptionOf(file, line, fault)),
      line_(line),
      fault_(fault) {}

RegistryText ReadRegistryText(std::string_view bytes, StringView file, ForeignCharacters foreign) {
  return WithinMemory([&] {
    const String text = Decoded(bytes, file);
    return Reader(text, file, foreign).Read();
  });
}

}  // namespace quorl
