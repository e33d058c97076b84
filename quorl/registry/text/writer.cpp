#include "quorl/registry/text/writer.hpp"

#include <array>
#include <string_view>
#include <utility>

#include "quorl/registry/text/root_name.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/utf.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr StringView kLineEnd = u"\r\n";
constexpr StringView kLineBreaks = u"\r\n";
constexpr std::size_t kLineLength = 80;

constexpr StringView kDigits = u"0123456789abcdef";

class Writer {
 public:
  explicit Writer(RegistryTextEncoding encoding) : encoding_(encoding) {
    if (encoding == RegistryTextEncoding::kUtf16) Put(u"\uFEFF");
    Put(u"Windows Registry Editor Version 5.00");
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

  std::string Result() && { return std::move(bytes_); }

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
      for (std::size_t i = data.size(); i-- > 0;) PutByte(static_cast<unsigned char>(data[i]));
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
    for (; type != 0 || digits.empty(); type >>= 4) digits.insert(0, 1, kDigits[type & 0xF]);
    Put(u"hex(");
    Put(digits);
    Put(u"):");
  }

  void PutBytes(std::string_view data, bool is_text) {
    bool is_first = true;
    const auto put = [&](unsigned byte) {
      if (!is_first) PutComma();
      is_first = false;
      PutByte(byte);
    };
    for (const char byte : data) {
      const auto plain = static_cast<unsigned char>(byte);
      const char16_t unit = is_text ? FromAnsi(plain) : char16_t{plain};
      put(unit & 0xFFU);
      if (is_text) put(unit >> 8U);
    }
  }

  void PutByte(unsigned byte) {
    const std::array<char16_t, 2> digits{kDigits[byte >> 4], kDigits[byte & 0xF]};
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
    if (encoding_ == RegistryTextEncoding::kUtf8) {
      bytes_ += Utf8(text);
      return;
    }
    for (const char16_t unit : text) {
      bytes_.push_back(static_cast<char>(unit & 0xFF));
      bytes_.push_back(static_cast<char>(unit >> 8));
    }
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
