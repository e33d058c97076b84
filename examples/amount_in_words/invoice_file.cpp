#include "examples/amount_in_words/invoice_file.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <memory>
#include <utility>
#include <vector>

#include "examples/amount_in_words/amount.hpp"
#include "examples/amount_in_words/fields.hpp"
#include "examples/amount_in_words/table.hpp"
#include "examples/amount_in_words/text_file.hpp"
#include "examples/amount_in_words/wording.hpp"
#include "examples/command/output.hpp"
#include "examples/command/system_error.hpp"

namespace amounts {

using quorl::Currency;
using quorl::String;
using quorl::StringView;
using quorl::Utf16;

namespace {

constexpr std::size_t kFields = 5;

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

void PrintInvoice(std::vector<StringView>& fields) {
  if (fields.size() != kFields) {
    throw Problem(messages::kOtherFields(kFields, fields.size()));
  }
  for (StringView& field : fields) field = WithoutBlanks(field);
  const Currency amount = ReadAmount(fields[2]);
  const Language& language = LanguageOf<Problem>(fields[4]);
  const Wording& wording = KnownWording(NamesOf<Problem>(fields[3], language));
  PrintRow({fields[0], fields[1], FiguresOf(wording, amount), fields[3], fields[4],
            WordsOf(wording, amount)});
}

bool IsHeading(const std::vector<StringView>& fields) {
  const auto is_currency = [&](const Names& names) { return names.currency == fields[3]; };
  return fields.size() == kFields && std::ranges::none_of(fields[2], IsDigit) &&
         std::ranges::none_of(AllNames(), is_currency);
}

// Reads a file line by line; what is wrong with one line leaves the others as they are.
class InvoiceFile {
 public:
  InvoiceFile(std::FILE* file, std::string name) : file_(fileno(file)), name_(std::move(name)) {}

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

}  // namespace

bool PrintFile(const std::string& name) {
  if (name == "-") return InvoiceFile(stdin, name).Print();
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"),
                                                             std::fclose);
  if (file != nullptr) return InvoiceFile(file.get(), name).Print();
  command::Tell(command::ProgramName() + ": " + name + ": " + command::SystemErrorText(errno));
  return false;
}

}  // namespace amounts
