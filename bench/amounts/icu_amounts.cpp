// The table that `amount_in_words --file FILE` writes, by a host of ICU that keeps its texts in
// ICU's own form as that one does in Quorl's: reference, date, the amount in figures by the
// language's locale, currency, language, and the amount in words by ICU's spell-out rules. A line
// has five fields with commas between, quotes around one that needs them, and euros; it is UTF-8,
// and an amount has a point and two decimals. Of any other line the program tells the number.
#include <unicode/decimfmt.h>
#include <unicode/rbnf.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

using icu::DecimalFormat;
using icu::RuleBasedNumberFormat;
using icu::UnicodeString;

// What one language needs, made once.
class Writer {
 public:
  Writer(const char* language, const char* locale, std::array<const char16_t*, 4> names)
      : language_(language), names_{names[0], names[1], names[2], names[3]} {
    UErrorCode status = U_ZERO_ERROR;
    words_ =
        std::make_unique<RuleBasedNumberFormat>(icu::URBNF_SPELLOUT, icu::Locale(locale), status);
    figures_.reset(dynamic_cast<DecimalFormat*>(
        icu::NumberFormat::createInstance(icu::Locale(locale), status)));
    if (U_FAILURE(status) != 0 || figures_ == nullptr) std::exit(2);
    figures_->setMinimumFractionDigits(2);
    figures_->setMaximumFractionDigits(2);
  }

  const UnicodeString& Language() const { return language_; }
  UnicodeString Figures(std::int64_t hundredths) const {
    UnicodeString figures;
    // A Double holds every amount of such a file to the hundredth.
    return figures_->format(static_cast<double>(hundredths) / 100, figures);
  }
  UnicodeString Words(std::int64_t hundredths) const {
    const std::int64_t whole = hundredths / 100;
    const std::int64_t rest = hundredths % 100;
    UnicodeString words;
    words_->format(whole, words).append(u' ').append(names_[whole > 1 ? 1 : 0]);
    if (rest == 0) return words;
    words_->format(rest, words.append(u' ')).append(u' ').append(names_[rest > 1 ? 3 : 2]);
    return words;
  }

 private:
  UnicodeString language_;
  std::unique_ptr<RuleBasedNumberFormat> words_;
  std::unique_ptr<DecimalFormat> figures_;
  std::array<UnicodeString, 4> names_;
};

const Writer* WriterOf(const UnicodeString& language) {
  static const std::array<Writer, 4> writers{{
      {"FR", "fr_FR", {u"euro", u"euros", u"cent", u"cents"}},
      {"UK", "en_GB", {u"euro", u"euros", u"cent", u"cents"}},
      {"NL", "nl_NL", {u"euro", u"euro", u"cent", u"cent"}},
      {"DE", "de_DE", {u"Euro", u"Euro", u"Cent", u"Cent"}},
  }};
  for (const Writer& writer : writers) {
    if (writer.Language() == language) return &writer;
  }
  return nullptr;
}

std::vector<UnicodeString> FieldsOf(const UnicodeString& line) {
  std::vector<UnicodeString> fields(1);
  bool quoted = false;
  for (std::int32_t at = 0; at < line.length(); ++at) {
    if (line[at] == u'"') {
      quoted = !quoted;
    } else if (line[at] == u',' && !quoted) {
      fields.emplace_back();
    } else {
      fields.back().append(line[at]);
    }
  }
  return fields;
}

std::optional<std::int64_t> HundredthsOf(const UnicodeString& amount) {
  const std::int32_t point = amount.length() - 3;
  if (point < 1 || point > 14) return std::nullopt;
  std::int64_t hundredths = 0;
  for (std::int32_t at = 0; at < amount.length(); ++at) {
    const bool is_digit = amount[at] >= u'0' && amount[at] <= u'9';
    if (at == point ? amount[at] != u'.' : !is_digit) return std::nullopt;
    if (is_digit) hundredths = hundredths * 10 + (amount[at] - u'0');
  }
  return hundredths;
}

bool WriteRow(const std::string& line) {
  std::vector<UnicodeString> fields = FieldsOf(UnicodeString::fromUTF8(line));
  if (fields.size() != 5 || fields[3] != u"EUR") return false;
  const std::optional<std::int64_t> hundredths = HundredthsOf(fields[2]);
  const Writer* const writer = WriterOf(fields[4]);
  if (!hundredths || writer == nullptr) return false;
  UnicodeString figures = writer->Figures(*hundredths);
  figures.padLeading(25);
  for (const int left : {0, 1}) fields[static_cast<std::size_t>(left)].padTrailing(10);
  for (const int left : {3, 4}) fields[static_cast<std::size_t>(left)].padTrailing(3);
  UnicodeString row = fields[0];
  for (const UnicodeString& cell :
       {fields[1], figures, fields[3], fields[4], writer->Words(*hundredths)}) {
    row.append(u' ').append(cell);
  }
  std::string bytes;
  std::cout << row.append(u'\n').toUTF8String(bytes);
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  std::ifstream file(count == 2 ? arguments[1] : "");
  if (!file) {
    std::cerr << "usage: icu_amounts FILE\n";
    return 2;
  }
  std::ios::sync_with_stdio(false);
  std::string line;
  std::getline(file, line);  // The heading.
  bool good = true;
  for (int number = 2; std::getline(file, line); ++number) {
    if (WriteRow(line)) continue;
    std::cerr << "line " << number << " cannot be read\n";
    good = false;
  }
  return good && std::cout.flush() ? 0 : 1;
}
