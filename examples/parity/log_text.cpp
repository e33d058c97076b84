#include "examples/parity/log_text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace parity {

namespace {

constexpr std::size_t kHexOfCode = 8;
constexpr std::size_t kHexOfUnit = 4;

std::string Hex(std::uint32_t number, std::size_t digits) {
  std::string text(digits, '0');
  for (std::size_t i = digits; i-- > 0; number >>= 4U) text[i] = "0123456789ABCDEF"[number & 15U];
  return text;
}

template <class Real>
std::string Shortest(Real number) {
  if (std::isnan(number)) return "nan";
  std::array<char, 32> digits;
  const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  return {digits.begin(), end};
}

std::string Amount(std::int64_t ten_thousandths) {
  const bool is_negative = ten_thousandths < 0;
  const auto bits = static_cast<std::uint64_t>(ten_thousandths);
  const std::uint64_t size = is_negative ? 0 - bits : bits;
  std::string text = (is_negative ? "-" : "") + std::to_string(size / 10000);
  std::string decimals = std::to_string(10000 + size % 10000);
  decimals.erase(decimals.find_last_not_of('0') + 1);
  return decimals.size() > 1 ? text + '.' + decimals.substr(1) : text;
}

std::string_view WordOf(std::uint16_t type) {
  for (const auto& words :
       {std::span<const Word>(kNumberTypes), std::span<const Word>(kOtherElements)}) {
    for (const Word& known : words) {
      if (known.number == type) return known.word;
    }
  }
  return {};
}

void AppendUtf8(std::string& text, char32_t point) {
  const auto add = [&text](char32_t bits) { text += static_cast<char>(bits); };
  if (point < 0x80) {
    add(point);
    return;
  }
  if (point < 0x800) {
    add(0xC0U | point >> 6U);
  } else if (point < 0x10000) {
    add(0xE0U | point >> 12U);
    add(0x80U | (point >> 6U & 0x3FU));
  } else {
    add(0xF0U | point >> 18U);
    add(0x80U | (point >> 12U & 0x3FU));
    add(0x80U | (point >> 6U & 0x3FU));
  }
  add(0x80U | (point & 0x3FU));
}

bool IsHigh(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsLow(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

// Controls, what ends a line somewhere, half a pair, marks of byte order: nothing that is lost or
// changed when a log is shown, sent or edited.
bool IsEscaped(char16_t unit) {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029 ||
         IsHigh(unit) || IsLow(unit) || unit == 0xFEFF || unit >= 0xFFFE;
}

// The content of a number without the name of its type.
std::string Number(const Value& value) {
  if (const double* real = value.If<double>()) {
    return value.type == VT_R4 ? Shortest(static_cast<float>(*real)) : Shortest(*real);
  }
  const std::int64_t whole = *value.If<std::int64_t>();
  if (value.type == VT_CY) return Amount(whole);
  if (value.type == VT_ERROR) return Hex(static_cast<std::uint32_t>(whole), kHexOfCode);
  return std::to_string(whole);
}

std::string ObjectText(const ObjectValue& object) {
  if (object.number == ObjectValue::kUnknown) return "Object ?";
  return object.number == 0 ? "Nothing" : "Object " + std::to_string(object.number);
}

std::string Bounds(const Array& array) {
  std::string text;
  for (const QuorlBound& bound : array.bounds) {
    const std::int64_t upper = std::int64_t{bound.lower} + bound.count - 1;
    text += (text.empty() ? "[" : ",") + std::to_string(bound.lower) + ".." + std::to_string(upper);
  }
  return std::string(WordOf(array.type)) + text + ']';
}

// Numbers in an array of their type stand without its name.
std::string ArrayText(const Array& array) {
  std::string text;
  for (const Value& element : array.elements) {
    const bool is_number =
        array.type != VT_VARIANT && !element.If<std::u16string>() && !element.If<ObjectValue>();
    text += (text.empty() ? "" : " ") + (is_number ? Number(element) : Written(element));
  }
  return Bounds(array) + " (" + text + ')';
}

std::string SingleText(const Value& value) {
  if (value.type == VT_EMPTY) return "Empty";
  if (value.type == VT_NULL) return "Null";
  const std::int64_t* const whole = value.If<std::int64_t>();
  if (value.type == VT_ERROR && *whole == DISP_E_PARAMNOTFOUND) return "Missing";
  if (value.type == VT_BOOL && *whole == -1) return "True";
  if (value.type == VT_BOOL && *whole == 0) return "False";
  return std::string(WordOf(value.type)) + ' ' + Number(value);
}

std::string CallKind(std::uint16_t flags) {
  std::string text;
  for (const Word& kind : kCallKinds) {
    if ((flags & kind.number) != 0) text += (text.empty() ? "" : "+") + std::string(kind.word);
  }
  return text;
}

std::string ShapeOf(const Value& value) {
  if (const auto* array = value.If<Array>()) return Bounds(*array);
  if (const auto* reference = value.If<ReferenceValue>()) return ShapeOf(reference->target.front());
  const std::string text = Written(value);
  return value.type == VT_BSTR ? "String" : text.substr(0, text.find(' '));
}

}  // namespace

std::string WrittenText(std::u16string_view text) {
  std::string written = "\"";
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    const char16_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
    if (IsHigh(unit) && IsLow(next)) {
      AppendUtf8(written, 0x10000U + ((unit & 0x3FFU) << 10U | (next & 0x3FFU)));
      ++i;
    } else if (IsEscaped(unit)) {
      written += "\\u" + Hex(unit, kHexOfUnit);
    } else {
      if (unit == u'"' || unit == u'\\') written += '\\';
      AppendUtf8(written, unit);
    }
  }
  return written + '"';
}

std::string WrittenName(const Name& name) {
  const bool is_plain = !name.empty() && std::ranges::all_of(name, [](char16_t unit) {
    return unit == u'_' || (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'a' && unit <= u'z');
  });
  const bool is_identifier =
      name.size() > 1 && name[0] == u'#' && name.find_first_not_of(u"-0123456789", 1) == Name::npos;
  if (!is_plain && !is_identifier) return WrittenText(name);
  std::string written;
  for (const char16_t unit : name) written += static_cast<char>(unit);
  return written;
}

std::string Written(const Value& value) {
  if (const auto* text = value.If<std::u16string>()) return WrittenText(*text);
  if (const auto* array = value.If<Array>()) return ArrayText(*array);
  if (const auto* object = value.If<ObjectValue>()) return ObjectText(*object);
  if (const auto* unknown = value.If<UnknownValue>()) {
    return "Unknown " + Hex(unknown->vt, kHexOfUnit);
  }
  if (const auto* reference = value.If<ReferenceValue>()) {
    return (reference->is_variant ? "&Variant " : "&") + Written(reference->target.front());
  }
  return SingleText(value);
}

std::string Written(const Header& header) {
  std::string lines;
  if (!header.locale.empty()) lines += "locale " + header.locale + '\n';
  const bool has_screen = header.screen_width != 0 || header.screen_height != 0;
  if (has_screen) {
    lines +=
        "screen " + Shortest(header.screen_width) + ' ' + Shortest(header.screen_height) + '\n';
  }
  for (const std::string& member : header.differs) lines += "differs " + member + '\n';
  return lines;
}

std::string Written(const Entry& entry) {
  const std::string number = ' ' + std::to_string(entry.object);
  switch (entry.kind) {
    case Entry::Kind::kObject:
      return "object" + number + ' ' + WrittenName(entry.name);
    case Entry::Kind::kHost:
      return "host" + number;
    case Entry::Kind::kRelease:
      return "release" + number;
    default:
      break;
  }
  const bool is_call = entry.kind == Entry::Kind::kCall;
  std::string line =
      (is_call ? CallKind(entry.flags) : "find") + number + ' ' + WrittenName(entry.name);
  for (const Argument& argument : entry.arguments) {
    if (argument.name && *argument.name != kPutValue) line += ' ' + WrittenName(*argument.name);
    if (argument.name && is_call) line += " :=";
    if (is_call) line += ' ' + Written(argument.value);
  }
  return line;
}

std::string Written(const Outcome& outcome) {
  std::string line;
  switch (outcome.kind) {
    case Outcome::Kind::kGives:
      line = "gives " + (outcome.result ? Written(*outcome.result) : "-");
      break;
    case Outcome::Kind::kFails:
      line = "fails " + std::to_string(outcome.number) + ' ' + WrittenText(outcome.source) + ' ' +
             WrittenText(outcome.description);
      break;
    case Outcome::Kind::kRefused:
      line = "refused " + Hex(static_cast<std::uint32_t>(outcome.number), kHexOfCode);
      if (outcome.number == DISP_E_PARAMNOTFOUND) {
        line += " argument " + std::to_string(outcome.wrong_argument);
      }
      break;
  }
  for (const Value& value : outcome.written_back) line += ' ' + Written(value);
  return line;
}

std::string Shape(const Outcome& outcome) {
  if (outcome.kind == Outcome::Kind::kFails) return "fails " + std::to_string(outcome.number);
  if (outcome.kind == Outcome::Kind::kRefused) return Written(outcome);
  std::string shape = "gives " + (outcome.result ? ShapeOf(*outcome.result) : "-");
  for (const Value& value : outcome.written_back) shape += ' ' + ShapeOf(value);
  return shape;
}

}  // namespace parity
