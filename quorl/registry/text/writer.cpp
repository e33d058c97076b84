#include "quorl/registry/text/writer.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

#include "quorl/registry/text/root_name.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/hex.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/utf16_bytes.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr StringView kLineEnd = u"\r\n";
constexpr StringView kLineBreaks = u"\r\n";
constexpr std::size_t kLineLength = 80;

class Writer {
 public:
  explicit Writer(RegistryTextEncoding encoding) : encoding_(encoding) {
    if (encoding == RegistryTextEncoding::kUtf16) Put(u"\uFEFF");
    Put(u"Windows Registry Editor Version 5.00");
    EndLine();
    Put(kEndAnnouncement);
    EndLine();
  }

  void WriteKey(const RegistryTextKey& key) {
    const String name = NameOf(key.place);
    if (name.find_first_of(kLineBreaks) != String::npos) {
      throw RaisedError(
          kFailedCheck, kRegistryTextSource,
          u"Une clé dont le nom contient une fin de ligne ne peut pas être écrite : " + name);
    }
    EndLine();
    Put(key.is_deletion ? u"[-" : u"[");
    Put(name);
    Put(u"]");
    EndLine();
    for (const RegistryTextValue& value : key.values) WriteValue(value);
  }

  std::string Result() && {
    EndLine();
    Put(kEndLine);
    EndLine();
    return std::move(bytes_);
  }

 private:
  void WriteValue(const RegistryTextValue& value) {
    if (value.name.empty()) {
      Put(u"@");
    } else {
      PutQuoted(value.name);
    }
    Put(u"=");
    PutContent(value);
    EndLine();
  }

  void PutContent(const RegistryTextValue& value) {
    const std::string_view data = value.data;
    if (value.is_deletion) {
      Put(u"-");
    } else if (IsPlainText(value)) {
      PutQuoted(FromAnsi(data.substr(0, data.size() - 1)));
    } else if (value.type == REG_DWORD && data.size() == sizeof(Int32)) {
      Put(u"dword:");
      for (std::size_t i = data.size(); i-- > 0;) PutByte(static_cast<Byte>(data[i]));
    } else {
      PutType(static_cast<std::uint32_t>(value.type));
      PutBytes(data, IsTextType(value.type));
    }
  }

  // One terminator at the end and nothing that would not stand in one line.
  static bool IsPlainText(const RegistryTextValue& value) {
    constexpr std::string_view kUnfit("\0\r\n", 3);
    return value.type == REG_SZ && !value.data.empty() &&
           value.data.find_first_of(kUnfit) == value.data.size() - 1 && value.data.back() == '\0';
  }

  void PutType(std::uint32_t type) {
    if (type == REG_BINARY) return Put(u"hex:");
    String digits;
    for (; type != 0 || digits.empty(); type >>= 4) {
      digits += HexPair<char16_t>(type & 0xF, kSmallHexDigits)[1];
    }
    std::ranges::reverse(digits);
    Put(Joined(u"hex(", digits, u"):"));
  }

  void PutBytes(std::string_view data, bool is_text) {
    const std::string bytes = is_text ? BytesOf(FromAnsi(data)) : std::string(data);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      if (i > 0) PutComma();
      PutByte(static_cast<Byte>(bytes[i]));
    }
  }

  void PutByte(Byte byte) {
    const auto digits = HexPair<char16_t>(byte, kSmallHexDigits);
    Put({digits.data(), digits.size()});
  }

  // Room is kept for one more byte, its comma and a backslash.
  void PutComma() {
    Put(u",");
    if (column_ + 4 <= kLineLength) return;
    Put(u"\\");
    EndLine();
    Put(u"  ");
  }

  void PutQuoted(StringView text) {
    String quoted = u"\"";
    for (const char16_t unit : text) {
      if (unit == u'"' || unit == u'\\') quoted += u'\\';
      quoted += unit;
    }
    Put(quoted += u'"');
  }

  void EndLine() {
    Put(kLineEnd);
    column_ = 0;
  }

  void Put(StringView text) {
    column_ += text.size();
    bytes_ += encoding_ == RegistryTextEncoding::kUtf8 ? Utf8(text) : BytesOf(text);
  }

  RegistryTextEncoding encoding_;
  std::string bytes_;
  std::size_t column_ = 0;
};

}  // namespace

std::string WriteRegistryText(const RegistryText& text, RegistryTextEncoding encoding) {
  return WithinMemory([&] {
    Writer writer(encoding);
    for (const RegistryTextKey& key : text) writer.WriteKey(key);
    return std::move(writer).Result();
  });
}

}  // namespace quorl
