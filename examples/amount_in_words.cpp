// A host of the library: writes amounts in words, from the command line or from a CSV file of
// invoices. `--help` says how. Everything that is written is UTF-8.

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cwchar>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "examples/amount_in_words_messages.hpp"
#include "examples/command/output.hpp"
#include "examples/command/printable.hpp"
#include "examples/command/system_error.hpp"
#include "quorl/money/money.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/runtime/text_case.hpp"
#include "quorl/runtime/utf.hpp"

namespace {

using command::Print;
using command::Printable;
using quorl::Currency;
using quorl::Int16;
using quorl::Locale;
using quorl::Money;
using quorl::String;
using quorl::StringView;
using quorl::Utf16;
using quorl::Utf8;

// --- Languages and currencies ---

struct Language {
  StringView code;
  Locale locale;
};

const std::array<Language, 4>& Languages() {
  static const std::array<Language, 4> all{{
      {u"FR", *Locale::Named(u"fr-FR")},
      {u"UK", *Locale::Named(u"en-GB")},
      {u"NL", *Locale::Named(u"nl-NL")},
      {u"DE", *Locale::Named(u"de-DE")},
  }};
  return all;
}

// A currency in a language; each currency has a row for every language, in their order.
struct Names {
  StringView currency, language;
  StringView unit, units, sub_unit, sub_units;
  Int16 decimals, unit_kind, sub_unit_kind;
};

constexpr auto kNames = std::to_array<Names>({
    {u"EUR", u"FR", u"euro", u"euros", u"cent", u"cents", 2, 0, 0},
    {u"EUR", u"UK", u"euro", u"euros", u"cent", u"cents", 2, 0, 0},
    {u"EUR", u"NL", u"euro", u"euro", u"cent", u"cent", 2, 0, 0},
    {u"EUR", u"DE", u"Euro", u"Euro", u"Cent", u"Cent", 2, 1, 1},
    {u"CHF", u"FR", u"franc", u"francs", u"centime", u"centimes", 2, 0, 0},
    {u"CHF", u"UK", u"franc", u"francs", u"centime", u"centimes", 2, 0, 0},
    {u"CHF", u"NL", u"frank", u"frank", u"rappen", u"rappen", 2, 0, 0},
    {u"CHF", u"DE", u"Franken", u"Franken", u"Rappen", u"Rappen", 2, 1, 1},
    {u"GBP", u"FR", u"livre", u"livres", u"penny", u"pence", 2, 1, 0},
    {u"GBP", u"UK", u"pound", u"pounds", u"penny", u"pence", 2, 0, 0},
    {u"GBP", u"NL", u"pond", u"pond", u"penny", u"pence", 2, 0, 0},
    {u"GBP", u"DE", u"Pfund", u"Pfund", u"Penny", u"Pence", 2, 1, 1},
    {u"USD", u"FR", u"dollar", u"dollars", u"cent", u"cents", 2, 0, 0},
    {u"USD", u"UK", u"dollar", u"dollars", u"cent", u"cents", 2, 0, 0},
    {u"USD", u"NL", u"dollar", u"dollar", u"cent", u"cent", 2, 0, 0},
    {u"USD", u"DE", u"Dollar", u"Dollar", u"Cent", u"Cent", 2, 1, 1},
    {u"JPY", u"FR", u"yen", u"yens", u"", u"", 0, 0, 0},
    {u"JPY", u"UK", u"yen", u"yen", u"", u"", 0, 0, 0},
    {u"JPY", u"NL", u"yen", u"yen", u"", u"", 0, 0, 0},
    {u"JPY", u"DE", u"Yen", u"Yen", u"", u"", 0, 1, 1},
    {u"TND", u"FR", u"dinar", u"dinars", u"millime", u"millimes", 3, 0, 0},
    {u"TND", u"UK", u"dinar", u"dinars", u"millime", u"millimes", 3, 0, 0},
    {u"TND", u"NL", u"dinar", u"dinar", u"millime", u"millime", 3, 0, 0},
    {u"TND", u"DE", u"Dinar", u"Dinar", u"Millime", u"Millime", 3, 1, 1},
});

// --- Problems: of one amount or line, and of the command line ---

struct Problem : std::runtime_error {
  using runtime_error::runtime_error;
};
struct WrongUsage : std::runtime_error {
  using runtime_error::runtime_error;
};

template <class Kind = Problem>
[[noreturn]] void Refuse(const command::Message<1>& what, StringView text) {
  throw Kind(what(Utf8(text)));
}

// What kept `work` from being done, empty when nothing did.
template <class Work>
std::string ProblemOf(Work work) {
  try {
    work();
  } catch (const Problem& problem) {
    return problem.what();
  } catch (const quorl::RaisedError& error) {
    return messages::kQuoted(std::to_string(error.Number()), Utf8(error.Description()));
  }
  return {};
}

template <class Kind>
const Language& LanguageOf(StringView code) {
  for (const Language& language : Languages()) {
    if (language.code == code) return language;
  }
  Refuse<Kind>(messages::kUnknownLanguage, code);
}

template <class Kind>
const Names& NamesOf(StringView currency, const Language& language) {
  const auto first = static_cast<std::size_t>(&language - Languages().data());
  for (std::size_t at = first; at < kNames.size(); at += Languages().size()) {
    if (kNames[at].currency == currency) return kNames[at];
  }
  Refuse<Kind>(messages::kUnknownCurrency, currency);
}

// --- Amounts as people write them ---

constexpr bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }

constexpr StringView kMarks = u",.";
constexpr std::size_t kMostDecimals = 4;

constexpr bool IsBlank(char16_t unit) {
  return unit == u' ' || unit == u'\u00A0' || unit == u'\u202F';
}

// The mark that a unit stands for as a separator of thousands, 0 if it is none.
constexpr char16_t GroupMark(char16_t unit) {
  if (IsBlank(unit)) return u' ';
  if (unit == u'\'' || unit == u'\u2019') return u'\u2019';
  return kMarks.find(unit) != StringView::npos ? unit : u'\0';
}

StringView WithoutBlanks(StringView text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::size_t DecimalMarkAt(StringView number) {
  const std::size_t last = number.find_last_of(kMarks);
  if (last == StringView::npos) return last;
  const bool both = number.find(number[last] == u',' ? u'.' : u',') != StringView::npos;
  return both || number.find(number[last]) == last ? last : StringView::npos;
}

// The one mark between groups of three digits, 0 without groups; none for anything else.
std::optional<char16_t> GroupMarkOf(StringView whole) {
  char16_t mark = u'\0';
  std::size_t run = 0;
  for (const char16_t unit : whole) {
    if (IsDigit(unit)) {
      ++run;
      continue;
    }
    const char16_t next = GroupMark(unit);
    const bool fits = mark == u'\0' ? run >= 1 && run <= 3 : next == mark && run == 3;
    if (next == u'\0' || !fits) return std::nullopt;
    mark = next;
    run = 0;
  }
  return mark == u'\0' || run == 3 ? std::optional(mark) : std::nullopt;
}

Currency ReadUnsigned(StringView number, StringView shown) {
  const std::size_t at = DecimalMarkAt(number);
  const bool has_decimals = at != StringView::npos;
  const StringView decimals = has_decimals ? number.substr(at + 1) : StringView();
  const auto group = GroupMarkOf(number.substr(0, at));
  const bool all_digits = std::ranges::all_of(decimals, IsDigit);
  if (!group || !all_digits || number.empty() || has_decimals == decimals.empty()) {
    Refuse(messages::kNoAmount, shown);
  }
  if (decimals.size() > kMostDecimals) Refuse(messages::kTooManyDecimals, shown);
  static Locale locale;  // made once: of an amount only the separators are its own
  locale.decimal_separator = has_decimals ? number[at] : *group == u'.' ? u',' : u'.';
  locale.thousand_separator.assign(*group != u'\0' ? 1 : 0, *group);
  Currency amount;
  const auto reading = quorl::ReadCurrency(number, locale, amount);
  if (reading == quorl::NumberReading::kOutOfRange) Refuse(messages::kOutOfRange, shown);
  if (reading != quorl::NumberReading::kGood) Refuse(messages::kNoAmount, shown);
  return amount;
}

Currency ReadAmount(StringView text) {
  StringView number = WithoutBlanks(text);
  const bool negative = number.starts_with(u'-') || number.starts_with(u'\u2212');
  if (negative || number.starts_with(u'+')) number.remove_prefix(1);
  const Currency amount = ReadUnsigned(number, text);
  return negative ? -amount : amount;
}

// --- Amounts in words ---

struct Wording {
  Money money;
  const Locale* locale;
  bool whole_only;  // the currency has no sub-units
};

Wording WordingOf(const Names& names, const Language& language) {
  Money money;
  money.Unit = names.unit;
  money.Units = names.units;
  money.SubUnit = names.sub_unit;
  money.SubUnits = names.sub_units;
  money.UnitKind = names.unit_kind;
  money.SubUnitKind = names.sub_unit_kind;
  money.SubUnitRow = names.decimals;
  money.Language = language.code;
  return {std::move(money), &language.locale, names.decimals == 0};
}

String WordsOf(const Wording& wording, Currency amount) {
  if (wording.whole_only && amount.TenThousandths() % Currency::kScale != 0) {
    throw Problem(messages::kWholeOnly());
  }
  return wording.money.ToText(amount);
}

// The wording of a known currency, each made once.
template <class Kind>
const Wording& WordingOf(StringView currency, const Language& language) {
  static const std::vector<Wording> all = [] {
    std::vector<Wording> made;
    made.reserve(kNames.size());
    for (const Names& names : kNames) {
      made.push_back(WordingOf(names, LanguageOf<Kind>(names.language)));
    }
    return made;
  }();
  return all[static_cast<std::size_t>(&NamesOf<Kind>(currency, language) - kNames.data())];
}

// All decimals of the sub-unit, and any beyond them that are not zero.
String FiguresOf(const Wording& wording, Currency amount) {
  constexpr std::array<StringView, kMostDecimals + 1> kFormats{
      u"#,##0.####", u"#,##0.0###", u"#,##0.00##", u"#,##0.000#", u"#,##0.0000"};
  const auto places = static_cast<std::size_t>(wording.money.SubUnitRow);
  const StringView format = kFormats[std::min(places, kMostDecimals)];
  return quorl::FormatNumber(amount, format, *wording.locale);
}

// --- Output ---

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

enum class Side { kLeft, kRight };

void AddCell(String& row, StringView content, std::size_t width, Side side = Side::kLeft) {
  const bool plain = IsPlain(content);
  const String printable = plain ? String() : Printable(content);
  const StringView text = plain ? content : printable;
  const std::size_t blanks = width - std::min(plain ? text.size() : WidthOf(text), width);
  if (side == Side::kRight) row.append(blanks, u' ');
  row += text;
  if (side == Side::kLeft) row.append(blanks, u' ');
}

// Shown while a terminal waits; taken away before anything else is written to it.
class Progress {
 public:
  void At(std::size_t line) {
    constexpr std::size_t kEvery = 10000;
    if (shown_ && command::IsTerminal(STDOUT_FILENO)) Hide();
    if (line % kEvery != 0 || !terminal_) return;
    command::Flush();
    std::cerr << '\r' << messages::kLines(line);
    shown_ = true;
  }
  void Hide() {
    if (shown_) std::cerr << "\r\033[K";
    shown_ = false;
  }

 private:
  bool terminal_ = command::IsTerminal(STDERR_FILENO);
  bool shown_ = false;
};

// --- Files of text ---

// Reads a file of any length line by line. It is UTF-16 if it begins with a mark, else UTF-8, else
// from its first line that is no UTF-8 on Windows-1252, unless it has shown itself UTF-8 before.
class TextFile {
 public:
  explicit TextFile(std::FILE* file) : file_(fileno(file)) {
    while (end_ < 3 && Fill()) {
    }
    for (const auto& [mark, encoding] : kMarks) {
      if (!std::string_view(bytes_.data(), end_).starts_with(mark)) continue;
      at_ = mark.size();
      encoding_ = encoding;
      break;
    }
  }

  // Why it cannot be read further, empty when it can.
  std::string Failure() const {
    return error_ == 0 ? std::string() : command::SystemErrorText(error_);
  }

  // The next line without its end, LF, CR LF or CR; false at the end. Throws a Problem for a line
  // that cannot be read; those after it still can.
  bool Next(String& line) {
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

 private:
  enum class Encoding { kUnknown, kUtf8, kWindows1252, kUtf16, kSwappedUtf16 };
  static constexpr std::array<std::pair<std::string_view, Encoding>, 3> kMarks{
      {{"\xEF\xBB\xBF", Encoding::kUtf8},
       {"\xFF\xFE", Encoding::kUtf16},
       {"\xFE\xFF", Encoding::kSwappedUtf16}}};
  static constexpr std::size_t kLongestLine = 65536;

  std::size_t UnitSize() const { return encoding_ >= Encoding::kUtf16 ? 2 : 1; }

  // Reads what there is, which of a terminal is a line; false at the end.
  bool Fill() {
    if (ended_) return false;
    if (at_ == end_) at_ = end_ = 0;
    const ssize_t count = read(file_, bytes_.data() + end_, bytes_.size() - end_);
    if (count < 0) error_ = errno;
    ended_ = count <= 0;
    if (!ended_) end_ += static_cast<std::size_t>(count);
    return !ended_;
  }
  int NextByte() {
    if (at_ == end_ && !Fill()) return EOF;
    return static_cast<unsigned char>(bytes_[at_++]);
  }
  // Takes at once what was read already of a line of bytes.
  void TakeBytes(String& line) {
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
  int NextUnit() {
    const int first = NextByte();
    if (first == EOF || UnitSize() == 1) return first;
    const int second = NextByte();
    half_ = second == EOF;
    if (half_) return 0;
    return encoding_ == Encoding::kUtf16 ? first | second << 8 : first << 8 | second;
  }

  // Of a line of bytes, its text.
  void Decode(String& line) {
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

// --- Files of invoices ---

constexpr std::size_t kFields = 5;
// Fixed, so that a file of any length streams through; the widest amount fits.
constexpr std::size_t kReferenceWidth = 10;
constexpr std::size_t kDateWidth = 10;
constexpr std::size_t kFiguresWidth = 25;
constexpr std::size_t kCodeWidth = 3;

// The fields of a line; one in quotes may hold the separator, and a quote written twice. Each is
// put together where it stands in the line, since it is no longer there than it was.
void FieldsOf(String& line, char16_t separator, std::vector<StringView>& fields) {
  fields.clear();
  bool quoted = false;
  char16_t* begin = line.data();
  char16_t* end = begin;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char16_t unit = line[at];
    if (unit != u'"' && (unit != separator || quoted)) {
      *end++ = unit;
    } else if (unit == separator) {
      fields.emplace_back(begin, end);
      begin = end = line.data() + at + 1;
    } else if (quoted && at + 1 < line.size() && line[at + 1] == u'"') {
      *end++ = line[++at];
    } else {
      quoted = !quoted;
    }
  }
  if (quoted) throw Problem(messages::kOpenQuote());
  fields.emplace_back(begin, end);
}

constexpr StringView kSeparators = u"\t;,";

// The first of the separators that stands outside quotes.
char16_t SeparatorOf(StringView first_line) {
  String outside;
  bool quoted = false;
  for (const char16_t unit : first_line) {
    if (unit == u'"') quoted = !quoted;
    if (!quoted) outside += unit;
  }
  for (const char16_t separator : kSeparators) {
    if (outside.find(separator) != String::npos) return separator;
  }
  return u',';
}

// Of a line such as "sep=;", 0 for any other.
char16_t NamedSeparator(StringView line) {
  constexpr StringView kName = u"sep=";
  if (!quorl::EqualsIgnoringCase(line.substr(0, kName.size()), kName)) return u'\0';
  const StringView named = line.substr(kName.size());
  if (named.size() != 1 || kSeparators.find(named) == StringView::npos) {
    Refuse(messages::kUnknownSeparator, named);
  }
  return named.front();
}

struct Row {
  StringView reference, date, figures, currency, language, words;
};

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
  Print(Utf8(line));
}

void PrintInvoice(std::vector<StringView>& fields) {
  if (fields.size() != kFields) {
    throw Problem(messages::kOtherFields(kFields, fields.size()));
  }
  for (StringView& field : fields) field = WithoutBlanks(field);
  const Currency amount = ReadAmount(fields[2]);
  const Language& language = LanguageOf<Problem>(fields[4]);
  const Wording& wording = WordingOf<Problem>(fields[3], language);
  PrintRow({fields[0], fields[1], FiguresOf(wording, amount), fields[3], fields[4],
            WordsOf(wording, amount)});
}

bool IsHeading(const std::vector<StringView>& fields) {
  const auto is_currency = [&](const Names& names) { return names.currency == fields[3]; };
  return fields.size() == kFields && std::ranges::none_of(fields[2], IsDigit) &&
         std::ranges::none_of(kNames, is_currency);
}

// Reads a file line by line; what is wrong with one line leaves the others as they are.
class InvoiceFile {
 public:
  InvoiceFile(std::FILE* file, std::string name) : file_(file), name_(std::move(name)) {}

  // True if every line was written.
  bool Print() {
    if (!file_.Failure().empty()) return Tell(file_.Failure());
    PrintHeading();
    for (bool more = true; more;) {
      ++number_;
      progress_.At(number_);
      const std::string problem = ProblemOf([&] { more = PrintNext(); });
      if (!problem.empty()) Tell(problem);
    }
    progress_.Hide();
    command::Flush();
    return file_.Failure().empty() ? good_ : Tell(file_.Failure());
  }

 private:
  static void PrintHeading() {
    const String reference = Utf16(messages::kReference());
    const String date = Utf16(messages::kDate());
    const String amount = Utf16(messages::kAmount());
    const String words = Utf16(messages::kInWords());
    PrintRow({reference, date, amount, u"", u"", words});
    const String rule(kFiguresWidth, u'-');
    const StringView all = rule;
    PrintRow({all.substr(0, kReferenceWidth), all.substr(0, kDateWidth), all,
              all.substr(0, kCodeWidth), all.substr(0, kCodeWidth), all});
  }

  bool PrintNext() {
    if (!file_.Next(line_)) return false;
    if (WithoutBlanks(line_).empty()) return true;
    if (number_ == 1) separator_ = NamedSeparator(line_);
    if (number_ == 1 && separator_ != u'\0') return true;
    if (separator_ == u'\0') separator_ = SeparatorOf(line_);
    FieldsOf(line_, separator_, fields_);
    const bool may_be_heading = std::exchange(is_first_, false);
    if (!may_be_heading || !IsHeading(fields_)) PrintInvoice(fields_);
    return true;
  }

  bool Tell(const std::string& message) {
    progress_.Hide();
    std::string place = name_;
    if (number_ > 0) place.append(":").append(std::to_string(number_));
    command::Tell(place + ": " + message);
    return good_ = false;
  }

  TextFile file_;
  std::string name_;
  String line_;
  std::vector<StringView> fields_;
  std::size_t number_ = 0;
  char16_t separator_ = u'\0';
  bool is_first_ = true;
  bool good_ = true;
  Progress progress_;
};

bool PrintFile(const std::string& name) {
  if (name == "-") return InvoiceFile(stdin, name).Print();
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                             std::fclose);
  if (file != nullptr) return InvoiceFile(file.get(), name).Print();
  command::Tell(command::ProgramName() + ": " + name + ": " + command::SystemErrorText(errno));
  return false;
}

// --- The command line ---

class Options {
 public:
  explicit Options(const std::vector<std::string>& arguments) {
    for (auto at = arguments.begin(); at != arguments.end(); ++at) {
      if (*at == "--help" || *at == "-h") {
        help_ = true;
      } else if (*at == "--") {
        amounts_.insert(amounts_.end(), at + 1, arguments.end());
        break;
      } else if (*at == "-") {
        SetValue("--file", *at);
      } else if (IsAmount(*at)) {
        amounts_.push_back(*at);
      } else if (const std::size_t equals = at->find('='); equals != std::string::npos) {
        SetValue(at->substr(0, equals), at->substr(equals + 1));
      } else if (at + 1 != arguments.end() || !IsNamed(*at)) {
        SetValue(*at, at + 1 == arguments.end() ? "" : *(at + 1));
        ++at;
      } else {
        Refuse<WrongUsage>(messages::kValueMissing, Utf16(*at));
      }
    }
  }

  bool Help() const { return help_; }
  const std::vector<std::string>& Amounts() const { return amounts_; }
  std::size_t Count() const { return values_.size(); }
  bool Has(const char* name) const { return values_.contains(name); }
  // As it was typed.
  const std::string& File() const { return values_.at("--file"); }
  String Value(const char* name, StringView otherwise = u"") const {
    const auto found = values_.find(name);
    if (found == values_.end()) return String(otherwise);
    String text = Utf16(found->second);
    if (Utf8(text) != found->second) throw WrongUsage(messages::kValueNoUtf8(name, Utf8(text)));
    return text;
  }
  // A value of one digit from 0 to `highest`.
  Int16 Digit(const char* name, char16_t highest) const {
    const String text = Value(name);
    if (text.size() != 1 || text[0] < u'0' || text[0] > highest) {
      throw WrongUsage(messages::kWrongValue(name, Utf8(text)));
    }
    return static_cast<Int16>(text[0] - u'0');
  }

 private:
  static constexpr std::array<std::string_view, 9> kNamed{"--file",     "--language", "--currency",
                                                          "--unit",     "--units",    "--subunit",
                                                          "--subunits", "--kind",     "--decimals"};

  static bool IsNamed(std::string_view name) {
    return std::ranges::find(kNamed, name) != kNamed.end();
  }

  // "-5" and "-,50" are amounts, "-five" is an option.
  static bool IsAmount(std::string_view argument) {
    return !argument.starts_with('-') ||
           (argument.size() > 1 &&
            std::string_view("0123456789,.").find(argument[1]) != std::string_view::npos);
  }

  void SetValue(const std::string& name, const std::string& value) {
    if (!IsNamed(name)) Refuse<WrongUsage>(messages::kUnknownOption, Utf16(name));
    if (!values_.emplace(name, value).second) Refuse<WrongUsage>(messages::kTwice, Utf16(name));
  }

  std::map<std::string, std::string, std::less<>> values_;
  std::vector<std::string> amounts_;
  bool help_ = false;
};

// The currency's names, unless the options bring some of their own.
Wording WordingOf(const Options& options, const Language& language) {
  Wording wording =
      WordingOf(NamesOf<WrongUsage>(options.Value("--currency", u"EUR"), language), language);
  Money& money = wording.money;
  const bool own = options.Has("--unit") || options.Has("--units") || options.Has("--subunit") ||
                   options.Has("--subunits");
  if (own) {
    money.Unit = options.Value("--unit");
    money.Units = options.Value("--units", money.Unit);
    money.SubUnit = options.Value("--subunit");
    money.SubUnits = options.Value("--subunits", money.SubUnit);
    money.UnitKind = money.SubUnitKind = 0;
    money.SubUnitRow = 2;
  }
  if (options.Has("--kind")) {
    money.UnitKind = money.SubUnitKind = options.Digit("--kind", u'2');
  }
  if (options.Has("--decimals")) money.SubUnitRow = options.Digit("--decimals", u'9');
  wording.whole_only = wording.whole_only && !own && !options.Has("--decimals");
  return wording;
}

std::vector<Wording> WordingsOf(const Options& options) {
  if (options.Has("--language")) {
    return {WordingOf(options, LanguageOf<WrongUsage>(options.Value("--language")))};
  }
  std::vector<Wording> wordings;
  for (const Language& language : Languages()) wordings.push_back(WordingOf(options, language));
  return wordings;
}

// Every row or, with a Problem, none.
void PrintAmount(const std::vector<Wording>& wordings, Currency amount) {
  if (wordings.size() == 1) return Print(Utf8(WordsOf(wordings[0], amount)) + "\n");
  String rows;
  for (const Wording& wording : wordings) {
    AddCell(rows, wording.money.Language, kCodeWidth);
    AddCell(rows, FiguresOf(wording, amount), kFiguresWidth, Side::kRight);
    rows += u"  " + WordsOf(wording, amount) + u"\n";
  }
  Print(Utf8(rows));
}

bool PrintAmounts(const Options& options) {
  const std::vector<Wording> wordings = WordingsOf(options);
  bool good = true;
  for (const std::string& text : options.Amounts()) {
    const std::string problem = ProblemOf([&] { PrintAmount(wordings, ReadAmount(Utf16(text))); });
    if (problem.empty()) continue;
    command::Tell(command::ProgramName() + ": " + problem);
    good = false;
  }
  return good;
}

// The invoices that come with the program, at their place beside it.
std::string OwnInvoices() {
  std::error_code ignored;
  return std::filesystem::canonical("/proc/self/exe", ignored).parent_path() / QUORL_INVOICES;
}

bool Run(const Options& options) {
  if (options.Help()) {
    Print(messages::kHelp(command::ProgramName()));
    return true;
  }
  if (!options.Has("--file")) {
    if (!options.Amounts().empty()) return PrintAmounts(options);
    if (options.Count() != 0) throw WrongUsage(messages::kAmountMissing());
    return PrintFile(OwnInvoices());
  }
  if (options.Count() != 1 || !options.Amounts().empty()) {
    throw WrongUsage(messages::kFileHasAll());
  }
  return PrintFile(options.File());
}

}  // namespace

int main(int count, char** values) {
  command::PrepareOutput();
  static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));  // for the widths of characters alone
  try {
    const bool good = Run(Options({values + std::min(count, 1), values + count}));
    command::Flush();
    return good ? 0 : 1;
  } catch (const WrongUsage& wrong) {
    command::Tell(command::ProgramName() + ": " + messages::kSeeHelp(wrong.what()));
    return 2;
  }
}
