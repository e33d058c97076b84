// A host of the library: writes amounts in words, from the command line or from a CSV file of
// invoices. `--help` says how. Everything that is written is UTF-8.

#include <algorithm>
#include <clocale>
#include <filesystem>
#include <system_error>

#include "examples/amount_in_words/amount.hpp"
#include "examples/amount_in_words/invoice_file.hpp"
#include "examples/amount_in_words/options.hpp"
#include "examples/amount_in_words/table.hpp"
#include "examples/amount_in_words/wording.hpp"
#include "examples/command/output.hpp"
#include "quorl/runtime/utf.hpp"

namespace amounts {
namespace {

using command::Print;
using quorl::Currency;
using quorl::Money;
using quorl::String;
using quorl::Utf16;
using quorl::Utf8;

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
}  // namespace amounts

int main(int count, char** values) {
  command::PrepareOutput();
  static_cast<void>(std::setlocale(LC_CTYPE, "C.UTF-8"));  // for the widths of characters alone
  try {
    const bool good = amounts::Run(amounts::Options({values + std::min(count, 1), values + count}));
    command::Flush();
    return good ? 0 : 1;
  } catch (const amounts::WrongUsage& wrong) {
    command::Tell(command::ProgramName() + ": " + messages::kSeeHelp(wrong.what()));
    return 2;
  }
}
