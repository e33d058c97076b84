#include "examples/parity/read_log.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <map>
#include <span>
#include <utility>

#include "examples/parity/log_text.hpp"

namespace parity {

namespace {

constexpr std::size_t kMostNestedCalls = 64;

constexpr Message<> kNoLog{"this is no parity log: its first line is not 'quorl-parity 1'",
                           "ceci n'est pas un journal de parité : sa première ligne n'est pas "
                           "« quorl-parity 1 »"};
constexpr Message<> kUnknownLine{"no line begins with this word",
                                 "aucune ligne ne commence par ce mot"};
constexpr Message<> kLateHeader{"this belongs before the first call",
                                "ceci se place avant le premier appel"};
constexpr Message<> kMoreOnLine{"there is more on the line than belongs there",
                                "la ligne contient plus que ce qui lui revient"};
constexpr Message<> kNoName{"a name is expected here", "un nom est attendu ici"};
constexpr Message<> kNoNumber{"a number is expected here, within the range of its type",
                              "un nombre est attendu ici, dans les limites de son type"};
constexpr Message<> kNoValue{"a value is expected here", "une valeur est attendue ici"};
constexpr Message<> kBadText{
    "this text is damaged: a text ends with a quote, is UTF-8 and has no control "
    "characters but as \\uXXXX",
    "ce texte est endommagé : un texte se termine par un guillemet, est en UTF-8 "
    "et n'a de caractères de contrôle que sous la forme \\uXXXX"};
constexpr Message<> kBadArray{
    "this array is damaged: its elements are not those of its bounds",
    "ce tableau est endommagé : ses éléments ne sont pas ceux de ses bornes"};
constexpr Message<> kTooDeep{"values or calls are nested more than 64 deep",
                             "des valeurs ou des appels sont imbriqués à plus de 64 niveaux"};
constexpr Message<> kNoReference{"this value cannot be passed by reference",
                                 "cette valeur ne peut pas être passée par référence"};
constexpr Message<> kUnknownObject{"no object of this number was made before",
                                   "aucun objet de ce numéro n'a été créé auparavant"};
constexpr Message<> kKnownObject{"there is an object of this number already",
                                 "il existe déjà un objet de ce numéro"};
constexpr Message<> kWrongSide{
    "within a call stand calls of the host's objects, elsewhere those of the "
    "component's",
    "dans un appel se trouvent ceux des objets de l'hôte, ailleurs ceux du "
    "composant"};
constexpr Message<> kWithinCall{"this cannot stand within a call",
                                "ceci ne se place pas dans un appel"};
constexpr Message<> kNoCall{"there is no call that this could be the outcome of",
                            "il n'y a pas d'appel dont ceci serait l'issue"};
constexpr Message<> kAfterEnd{"nothing follows the line 'end'", "rien ne suit la ligne « end »"};

// One line, read from left to right.
class Line {
 public:
  Line(std::string_view text, std::size_t number) : rest_(text), number_(number) {}

  [[noreturn]] void Refuse(const Message<>& what) const { throw Unreadable{number_, what}; }

  bool AtEnd() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t"), rest_.size()));
    return rest_.empty();
  }
  void RequireEnd() {
    if (!AtEnd()) Refuse(kMoreOnLine);
  }
  bool Take(std::string_view sign) {
    AtEnd();
    if (!rest_.starts_with(sign)) return false;
    rest_.remove_prefix(sign.size());
    return true;
  }
  char Next() { return AtEnd() ? '\0' : rest_.front(); }
  bool IsBefore(char sign) const { return rest_.starts_with(sign); }

  // What stands up to a blank or one of the signs of values; may be empty.
  std::string_view Word() {
    AtEnd();
    const std::size_t end = std::min(rest_.find_first_of(" \t()[],\"&"), rest_.size());
    const std::string_view word = rest_.substr(0, end);
    rest_.remove_prefix(end);
    return word;
  }

  template <class Number>
  Number TakeNumber(int base = 10) {
    AtEnd();
    Number number{};
    const char* const end = rest_.data() + rest_.size();
    std::from_chars_result read{};
    if constexpr (std::is_integral_v<Number>) {
      read = std::from_chars(rest_.data(), end, number, base);
    } else {
      read = std::from_chars(rest_.data(), end, number);
    }
    if (read.ec != std::errc()) Refuse(kNoNumber);
    rest_.remove_prefix(static_cast<std::size_t>(read.ptr - rest_.data()));
    return number;
  }
  // A number with nothing behind it but a blank or a bracket.
  template <class Number>
  Number TakeWholeNumber(int base = 10) {
    const auto number = TakeNumber<Number>(base);
    if (!rest_.empty() && std::string_view(" \t)").find(rest_.front()) == std::string_view::npos) {
      Refuse(kNoNumber);
    }
    return number;
  }
  std::uint32_t TakeCode() {
    if (Next() == '-') Refuse(kNoNumber);
    return TakeWholeNumber<std::uint32_t>(16);
  }

  std::u16string TakeText() {
    std::u16string text;
    if (!Take("\"")) Refuse(kBadText);
    while (!rest_.empty() && rest_.front() != '"') TakeCharacter(text);
    if (rest_.empty()) Refuse(kBadText);
    rest_.remove_prefix(1);
    return text;
  }

 private:
  void TakeCharacter(std::u16string& text) {
    const auto first = static_cast<unsigned char>(rest_.front());
    if (first < 0x20) Refuse(kBadText);
    if (first == '\\') {
      TakeEscape(text);
    } else if (first < 0x80) {
      text += static_cast<char16_t>(first);
      rest_.remove_prefix(1);
    } else {
      TakeUtf8(text, first);
    }
  }

  void TakeEscape(std::u16string& text) {
    rest_.remove_prefix(1);
    if (rest_.starts_with('"') || rest_.starts_with('\\')) {
      text += static_cast<char16_t>(rest_.front());
      rest_.remove_prefix(1);
      return;
    }
    std::uint16_t unit = 0;
    const char* const begin = rest_.data() + 1;
    if (rest_.size() < 5 || rest_.front() != 'u' ||
        std::from_chars(begin, begin + 4, unit, 16).ptr != begin + 4) {
      Refuse(kBadText);
    }
    text += static_cast<char16_t>(unit);
    rest_.remove_prefix(5);
  }

  void TakeUtf8(std::u16string& text, unsigned char first) {
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || rest_.size() < length) Refuse(kBadText);
    char32_t point = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
      const auto next = static_cast<unsigned char>(rest_[i]);
      if ((next & 0xC0U) != 0x80) Refuse(kBadText);
      point = point << 6U | (next & 0x3FU);
    }
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    if (point < kLeast[length] || point > 0x10FFFF || (point >= 0xD800 && point < 0xE000)) {
      Refuse(kBadText);
    }
    if (point >= 0x10000) {
      text += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10U));
      point = 0xDC00 + ((point - 0x10000) & 0x3FFU);
    }
    text += static_cast<char16_t>(point);
    rest_.remove_prefix(length);
  }

  std::string_view rest_;
  std::size_t number_;
};

// ---------------------------------------------------------------------------------------- values

const Word* FindWord(std::span<const Word> words, std::string_view word) {
  const auto found = std::ranges::find(words, word, &Word::word);
  return found == words.end() ? nullptr : &*found;
}

// Whole units and at most four decimals, as ten-thousandths.
std::int64_t TakeAmount(Line& line) {
  const std::string_view word = line.Word();
  const bool is_negative = word.starts_with('-');
  std::string digits(word.substr(is_negative ? 1 : 0));
  const std::size_t point = std::min(digits.find('.'), digits.size());
  const std::size_t decimals = digits.size() - std::min(point + 1, digits.size());
  if (point != digits.size()) digits.erase(point, 1);
  if (digits.empty() || decimals > 4 ||
      digits.find_first_not_of("0123456789") != std::string::npos) {
    line.Refuse(kNoNumber);
  }
  digits.append(4 - decimals, '0');
  if (is_negative) digits.insert(0, 1, '-');
  std::int64_t amount = 0;
  const char* const end = digits.data() + digits.size();
  const auto [read, error] = std::from_chars(digits.data(), end, amount);
  if (error != std::errc() || read != end) line.Refuse(kNoNumber);
  return amount;
}

Value TakeNumberOf(std::uint16_t type, Line& line) {
  switch (type) {
    case VT_I2:
    case VT_BOOL:
      return {type, std::int64_t{line.TakeWholeNumber<std::int16_t>()}};
    case VT_I4:
      return {type, std::int64_t{line.TakeWholeNumber<std::int32_t>()}};
    case VT_UI1:
      return {type, std::int64_t{line.TakeWholeNumber<std::uint8_t>()}};
    case VT_ERROR:
      return {type, std::int64_t{static_cast<std::int32_t>(line.TakeCode())}};
    case VT_CY:
      return {type, TakeAmount(line)};
    case VT_R4:
      return {type, double{line.TakeWholeNumber<float>()}};
    default:
      return {type, line.TakeWholeNumber<double>()};
  }
}

Value TakeValue(Line& line, int depth);

Value TakeObject(Line& line) {
  if (line.Take("?")) return {VT_DISPATCH, ObjectValue{ObjectValue::kUnknown, nullptr}};
  return {VT_DISPATCH, ObjectValue{line.TakeWholeNumber<std::uint32_t>(), nullptr}};
}

Value TakeElement(std::uint16_t type, Line& line, int depth) {
  if (type == VT_BSTR) return {VT_BSTR, line.TakeText()};
  if (type != VT_VARIANT && type != VT_DISPATCH) return TakeNumberOf(type, line);
  Value value = TakeValue(line, depth);
  if (type == VT_DISPATCH && !value.If<ObjectValue>()) line.Refuse(kNoValue);
  return value;
}

// "0..2": both bounds are included; an empty dimension ends one below its beginning.
QuorlBound TakeBound(Line& line) {
  const auto lower = line.TakeNumber<std::int32_t>();
  if (!line.Take("..")) line.Refuse(kBadArray);
  const auto upper = line.TakeNumber<std::int64_t>();
  if (upper < std::int64_t{lower} - 1 || upper > std::numeric_limits<std::int32_t>::max()) {
    line.Refuse(kBadArray);
  }
  return {static_cast<std::uint32_t>(upper - lower + 1), lower};
}

bool Fits(const Array& array) {
  std::size_t expected = 1;
  for (const QuorlBound& bound : array.bounds) {
    if (bound.count == 0) return array.elements.empty();
    if (expected > array.elements.size() / bound.count) return false;
    expected *= bound.count;
  }
  return expected == array.elements.size();
}

Value TakeArray(std::uint16_t type, Line& line, int depth) {
  constexpr std::size_t kMostDimensions = 60;
  Array array{type, {}, {}};
  if (!line.Take("[")) line.Refuse(kBadArray);
  do {
    array.bounds.push_back(TakeBound(line));
  } while (line.Take(","));
  if (array.bounds.size() > kMostDimensions || !line.Take("]") || !line.Take("(")) {
    line.Refuse(kBadArray);
  }
  while (!line.Take(")")) {
    if (line.AtEnd()) line.Refuse(kBadArray);
    array.elements.push_back(TakeElement(type, line, depth + 1));
  }
  if (!Fits(array)) line.Refuse(kBadArray);
  return {type, std::move(array)};
}

Value TakeNamed(std::string_view word, Line& line, int depth) {
  const Word* type = FindWord(kNumberTypes, word);
  if (type == nullptr) type = FindWord(kOtherElements, word);
  if (type != nullptr && line.IsBefore('[')) return TakeArray(type->number, line, depth);
  if (word == "Object") return TakeObject(line);
  if (type != nullptr && FindWord(kNumberTypes, word) != nullptr) {
    return TakeNumberOf(type->number, line);
  }
  if (word == "Empty") return {};
  if (word == "Null") return {VT_NULL, std::int64_t{0}};
  if (word == "Missing") return {VT_ERROR, std::int64_t{DISP_E_PARAMNOTFOUND}};
  if (word == "True") return {VT_BOOL, std::int64_t{-1}};
  if (word == "False") return {VT_BOOL, std::int64_t{0}};
  if (word == "Nothing") return {VT_DISPATCH, ObjectValue{}};
  if (word == "Unknown") {
    const std::uint32_t vt = line.TakeCode();
    if (vt > std::numeric_limits<std::uint16_t>::max()) line.Refuse(kNoNumber);
    return {VT_EMPTY, UnknownValue{static_cast<std::uint16_t>(vt)}};
  }
  line.Refuse(kNoValue);
}

Value TakeReference(Line& line, int depth) {
  std::string_view word = line.Next() == '"' ? std::string_view() : line.Word();
  ReferenceValue reference;
  reference.is_variant = word == "Variant" && !line.IsBefore('[');
  if (reference.is_variant || word.empty()) {
    reference.target.push_back(TakeValue(line, depth + 1));
  } else {
    reference.target.push_back(TakeNamed(word, line, depth + 1));
  }
  const Value& target = reference.target.front();
  const bool is_typed = target.type > VT_NULL && !target.If<ReferenceValue>();
  if (!reference.is_variant && !is_typed) line.Refuse(kNoReference);
  const std::uint16_t type = target.type;
  return {reference.is_variant ? std::uint16_t{VT_VARIANT} : type, std::move(reference)};
}

Value TakeValue(Line& line, int depth) {
  if (depth > kMostNesting) line.Refuse(kTooDeep);
  if (line.Next() == '"') return {VT_BSTR, line.TakeText()};
  if (line.Take("&")) return TakeReference(line, depth);
  return TakeNamed(line.Word(), line, depth);
}

// --------------------------------------------------------------------------------------- entries

Name TakeName(Line& line) {
  if (line.Next() == '"') return line.TakeText();
  const std::string_view word = line.Word();
  const bool is_name = std::ranges::all_of(word, [](char unit) {
    return unit == '_' || (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'Z') ||
           (unit >= 'a' && unit <= 'z');
  });
  std::int32_t id = 0;
  const bool is_identifier = word.starts_with('#') &&
                             std::from_chars(word.data() + 1, word.data() + word.size(), id).ptr ==
                                 word.data() + word.size();
  if (word.empty() || (!is_name && !is_identifier)) line.Refuse(kNoName);
  return {word.begin(), word.end()};
}

class Reader {
 public:
  explicit Reader(std::string_view text) : rest_(text) {}

  Log Read() {
    if (TakeLine() != kFirstLine) throw Unreadable{1, kNoLog};
    while (!rest_.empty()) ReadLine();
    return std::move(log_);
  }

 private:
  enum class Side { kComponent, kHost };

  // Without its end; a carriage return belongs to that.
  std::string_view TakeLine() {
    const std::size_t end = std::min(rest_.find('\n'), rest_.size());
    std::string_view line = rest_.substr(0, end);
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    ++log_.lines;
    return line;
  }

  void ReadLine() {
    const bool is_cut = rest_.find('\n') == std::string_view::npos;
    const std::string_view text = TakeLine();
    Line line(text, log_.lines);
    if (line.AtEnd() || line.Next() == '#') return;
    if (log_.ended_with) line.Refuse(kAfterEnd);
    if (is_cut) return;  // the rest of it may be lost
    ReadKnown(line.Word(), line);
    line.RequireEnd();
  }

  void ReadKnown(std::string_view word, Line& line) {
    if (word == "locale" || word == "screen" || word == "differs") return ReadHeader(word, line);
    if (word == "object" || word == "host") return ReadObject(word, line);
    if (word == "release") return ReadRelease(line);
    if (word == "find") return ReadCall(0, line);
    if (word == "gives" || word == "fails" || word == "refused") return ReadOutcome(word, line);
    if (word == "end") {
      if (!open_.empty()) line.Refuse(kWithinCall);
      log_.ended_with = line.TakeWholeNumber<std::size_t>();
      return;
    }
    ReadCall(FlagsOf(word, line), line);
  }

  static std::uint16_t FlagsOf(std::string_view words, const Line& line) {
    unsigned flags = 0;
    while (!words.empty()) {
      const std::size_t end = std::min(words.find('+'), words.size());
      const Word* kind = FindWord(kCallKinds, words.substr(0, end));
      if (kind == nullptr) line.Refuse(kUnknownLine);
      flags |= kind->number;
      words.remove_prefix(std::min(end + 1, words.size()));
    }
    if (flags == 0) line.Refuse(kUnknownLine);
    return static_cast<std::uint16_t>(flags);
  }

  void ReadHeader(std::string_view word, Line& line) {
    Header& header = log_.header;
    if (!log_.entries.empty() || !open_.empty()) line.Refuse(kLateHeader);
    if (word == "screen") {
      header.screen_width = line.TakeWholeNumber<double>();
      header.screen_height = line.TakeWholeNumber<double>();
      return;
    }
    const std::string_view name = line.Word();
    if (name.empty()) line.Refuse(kNoName);
    if (word == "locale") {
      header.locale = name;
    } else {
      header.differs.emplace_back(name);
    }
  }

  // The outermost is the component's call; in that the host's objects are called, and so on.
  bool InCallOfComponent() const { return open_.size() % 2 == 1; }

  void Add(Entry entry) {
    (open_.empty() ? log_.entries : open_.back().body).push_back(std::move(entry));
  }

  Entry Begin(Entry::Kind kind, Line& line) const {
    Entry entry;
    entry.kind = kind;
    entry.line = log_.lines;
    entry.object = line.TakeWholeNumber<std::uint32_t>();
    return entry;
  }

  void ReadObject(std::string_view word, Line& line) {
    const bool is_host = word == "host";
    if (InCallOfComponent()) line.Refuse(kWithinCall);
    Entry entry = Begin(is_host ? Entry::Kind::kHost : Entry::Kind::kObject, line);
    if (entry.object == 0 ||
        !objects_.emplace(entry.object, is_host ? Side::kHost : Side::kComponent).second) {
      line.Refuse(kKnownObject);
    }
    if (!is_host) entry.name = TakeName(line);
    Add(std::move(entry));
  }

  void ReadRelease(Line& line) {
    Entry entry = Begin(Entry::Kind::kRelease, line);
    if (!open_.empty()) line.Refuse(kWithinCall);
    if (objects_.erase(entry.object) == 0) line.Refuse(kUnknownObject);
    Add(std::move(entry));
  }

  // Without flags: the search for a name that the object lacks.
  void ReadCall(std::uint16_t flags, Line& line) {
    if (open_.size() == kMostNestedCalls) line.Refuse(kTooDeep);
    Entry entry = Begin(flags == 0 ? Entry::Kind::kFind : Entry::Kind::kCall, line);
    const auto object = objects_.find(entry.object);
    if (object == objects_.end()) line.Refuse(kUnknownObject);
    if ((object->second == Side::kHost) != InCallOfComponent()) line.Refuse(kWrongSide);
    entry.flags = flags;
    entry.name = TakeName(line);
    while (!line.AtEnd()) {
      entry.arguments.push_back(flags == 0 ? Argument{TakeName(line), {}} : TakeArgument(line));
    }
    log_.calls += flags != 0;
    open_.push_back(std::move(entry));
  }

  Argument TakeArgument(Line& line) {
    if (line.Take(":=")) return {kPutValue, KnownValue(line)};
    Line ahead = line;
    const std::string_view word = ahead.Next() == '"' ? std::string_view() : ahead.Word();
    if (ahead.Next() == '"') ahead.TakeText();
    if (word.empty() && line.Next() != '"') return {std::nullopt, KnownValue(line)};
    if (!ahead.Take(":=")) return {std::nullopt, KnownValue(line)};
    Name name = TakeName(line);
    line.Take(":=");
    return {std::move(name), KnownValue(line)};
  }

  Value KnownValue(Line& line) {
    Value value = TakeValue(line, 0);
    ForEachObject(value, [&](const ObjectValue& object) {
      const bool is_free = object.number == 0 || object.number == ObjectValue::kUnknown;
      if (!is_free && !objects_.contains(object.number)) line.Refuse(kUnknownObject);
    });
    return value;
  }

  void ReadOutcome(std::string_view word, Line& line) {
    if (open_.empty()) line.Refuse(kNoCall);
    Entry entry = std::move(open_.back());
    open_.pop_back();
    Outcome& outcome = entry.outcome;
    outcome.line = log_.lines;
    if (word == "gives") {
      if (!line.Take("-")) outcome.result = KnownValue(line);
    } else if (word == "fails") {
      outcome.kind = Outcome::Kind::kFails;
      outcome.number = line.TakeWholeNumber<std::int32_t>();
      outcome.source = line.TakeText();
      outcome.description = line.TakeText();
    } else {
      outcome.kind = Outcome::Kind::kRefused;
      outcome.number = static_cast<std::int32_t>(line.TakeCode());
      if (line.Take("argument ")) outcome.wrong_argument = line.TakeWholeNumber<std::uint32_t>();
    }
    while (!line.AtEnd()) outcome.written_back.push_back(KnownValue(line));
    Add(std::move(entry));
  }

  std::string_view rest_;
  Log log_;
  std::map<std::uint32_t, Side> objects_;
  std::vector<Entry> open_;  // calls whose outcome is still to come, the innermost last
};

}  // namespace

Log ReadLog(std::string_view text) { return Reader(text).Read(); }

Value ReadValue(std::string_view text) {
  Line line(text, 1);
  Value value = TakeValue(line, 0);
  line.RequireEnd();
  return value;
}

void ForEachObject(Value& value, const std::function<void(ObjectValue&)>& work) {
  if (auto* object = value.If<ObjectValue>()) work(*object);
  if (auto* array = value.If<Array>()) {
    for (Value& element : array->elements) ForEachObject(element, work);
  }
  if (auto* reference = value.If<ReferenceValue>()) ForEachObject(reference->target.front(), work);
}

}  // namespace parity
