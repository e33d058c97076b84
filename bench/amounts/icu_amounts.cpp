// The table that `amount_in_words --file FILE` writes, by a host of ICU: reference, date, the
// amount in figures by the language's locale, currency, language, and the amount in words by ICU's
// spell-out rules. It takes files of the common form alone: UTF-8, commas, no quotes, an amount
// with a point and two decimals, euros.
#include <unicode/decimfmt.h>
#include <unicode/rbnf.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace {

using icu::DecimalFormat;
using icu::RuleBasedNumberFormat;
using icu::UnicodeString;

// What one language needs, made once.
class Writer {
 public:
  Writer(const char* locale, std::string_view unit, std::string_view units,
         std::string_view sub_unit, std::string_view sub_units)
      : names_{unit, units, sub_unit, sub_units} {
    UErrorCode status = U_ZERO_ERROR;
    words_ =
        std::make_unique<RuleBasedNumberFormat>(icu::URBNF_SPELLOUT, icu::Locale(locale), status);
    figures_.reset(dynamic_cast<DecimalFormat*>(
        icu::NumberFormat::createInstance(icu::Locale(locale), status)));
    if (U_FAILURE(status) != 0 || figures_ == nullptr) std::exit(2);
    figures_->setMinimumFractionDigits(2);
    figures_->setMaximumFractionDigits(2);
  }

  std::string Figures(std::string_view amount) const {
    UErrorCode status = U_ZERO_ERROR;
    UnicodeString text;
    const icu::StringPiece digits(amount.data(), static_cast<std::int32_t>(amount.size()));
    std::string figures;
    figures_->format(digits, text, nullptr, status).toUTF8String(figures);
    return figures;
  }
  std::string Words(std::int64_t hundredths) const {
    const std::int64_t whole = hundredths / 100;
    const std::int64_t rest = hundredths % 100;
    std::string words;
    Append(whole, names_[whole > 1 ? 1 : 0], words);
    if (rest != 0) Append(rest, names_[rest > 1 ? 3 : 2], words.append(" "));
    return words;
  }

 private:
  void Append(std::int64_t number, std::string_view name, std::string& words) const {
    UnicodeString text;
    words_->format(number, text).toUTF8String(words);
    words.append(" ").append(name);
  }

  std::unique_ptr<RuleBasedNumberFormat> words_;
  std::unique_ptr<DecimalFormat> figures_;
  std::array<std::string_view, 4> names_;
};

const Writer& WriterOf(std::string_view language) {
  static const std::map<std::string_view, Writer> writers = [] {
    std::map<std::string_view, Writer> made;
    made.try_emplace("FR", "fr_FR", "euro", "euros", "cent", "cents");
    made.try_emplace("UK", "en_GB", "euro", "euros", "cent", "cents");
    made.try_emplace("NL", "nl_NL", "euro", "euro", "cent", "cent");
    made.try_emplace("DE", "de_DE", "Euro", "Euro", "Cent", "Cent");
    return made;
  }();
  const auto found = writers.find(language);
  if (found == writers.end()) std::exit(2);
  return found->second;
}

// Characters of a UTF-8 text.
std::size_t LengthOf(std::string_view text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
}

void Cell(std::string_view content, std::size_t width, bool right, std::string& row) {
  const std::size_t length = LengthOf(content);
  const std::size_t blanks = length < width ? width - length : 0;
  if (right) row.append(blanks, ' ');
  row.append(content);
  if (!right) row.append(blanks, ' ');
  row += ' ';
}

std::int64_t HundredthsOf(std::string_view amount) {
  std::string digits(amount);
  std::erase(digits, '.');
  std::int64_t hundredths = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), hundredths);
  return hundredths;
}

void WriteRow(std::string_view line, std::string& row) {
  std::array<std::string_view, 5> fields;
  for (std::string_view& field : fields) {
    const std::size_t end = line.find(',');
    field = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
  }
  const Writer& writer = WriterOf(fields[4]);
  row.clear();
  Cell(fields[0], 10, false, row);
  Cell(fields[1], 10, false, row);
  Cell(writer.Figures(fields[2]), 25, true, row);
  Cell(fields[3], 3, false, row);
  Cell(fields[4], 3, false, row);
  row += writer.Words(HundredthsOf(fields[2]));
  row += '\n';
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
  std::string row;
  std::getline(file, line);  // The heading.
  while (std::getline(file, line)) {
    WriteRow(line, row);
    std::cout << row;
  }
}
