#include "tests/fuzz/targets.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "examples/amount_in_words/amount.hpp"
#include "examples/amount_in_words/fields.hpp"
#include "examples/amount_in_words/problem.hpp"
#include "examples/amount_in_words/text_file.hpp"
#include "examples/parity/log_text.hpp"
#include "examples/parity/read_log.hpp"
#include "quorl/registry/text/reader.hpp"
#include "quorl/registry/text/root_name.hpp"
#include "quorl/registry/text/writer.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/date_text.hpp"
#include "quorl/runtime/locale.hpp"
#include "quorl/runtime/number_text.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/store_content.hpp"
#include "tests/support/store_simulated_files.hpp"

namespace quorl {
namespace {

void Promise(bool kept, const char* promise) {
  if (kept) return;
  std::fprintf(stderr, "broken: %s\n", promise);
  std::abort();
}

// The first byte picks the locale; the rest is text, two bytes a unit.
struct Localised {
  explicit Localised(std::string_view bytes)
      : scope(*Locale::Named(std::array{u"en-GB", u"fr-BE", u"de-CH", u"nl-NL"}.at(
            bytes.empty() ? 0 : static_cast<unsigned char>(bytes[0]) % 4))),
        text(bytes.size() / 2, u' ') {
    if (!text.empty()) std::memcpy(text.data(), bytes.data() + 1, (bytes.size() - 1) / 2 * 2);
  }
  LocaleScope scope;
  String text;
};

void FeedNumbers(std::string_view bytes) {
  const Localised given(bytes);
  const Locale& locale = Locale::Current();
  Double number = 0;
  if (ReadDouble(given.text, locale, number) == NumberReading::kGood) {
    Double again = 0;
    const String written = ToString(Variant(number));
    Promise(ReadDouble(written, locale, again) == NumberReading::kGood && again == number,
            "a number that is written is read as the same");
  }
  Currency amount;
  if (ReadCurrency(given.text, locale, amount) == NumberReading::kGood) {
    Promise(ToCurrency(Variant(ToString(Variant(amount)))) == amount,
            "an amount that is written is read as the same");
  }
  try {
    ReadLeadingNumber(given.text);
    FormatNumber(number, given.text);
  } catch (const RaisedError& error) {
    Promise(error.Number() == 5 || error.Number() == 6, "a bad format or number has its failure");
  }
}

void FeedDates(std::string_view bytes) {
  const Localised given(bytes);
  const auto date = ReadDate(given.text);
  Promise(date.has_value() == IsDate(given.text), "what is read as a date is one");
  if (!date) return;
  const String written = WriteDate(*date);
  Promise(ReadDate(written) == date, "a date that is written is read as the same");
}

void FeedSettingsText(std::string_view bytes) {
  for (const auto foreign : {ForeignCharacters::kRefuse, ForeignCharacters::kReplace}) {
    try {
      RegistryText text = ReadRegistryText(bytes, u"file", foreign);
      for (RegistryTextKey& key : text) key.place.path = TidyPath(key.place.path);
      const std::string written = WriteRegistryText(text, RegistryTextEncoding::kUtf16);
      Promise(ReadRegistryText(written, u"file", foreign) == text,
              "settings that are written are read as the same");
    } catch (const RaisedError& error) {
      Promise(error.Number() == kFailedCheck, "a bad file is refused with its own number");
    }
  }
}

void FeedJournal(std::string_view bytes) {
  SimulatedFiles files;
  {
    PersistentStore made(SimulatedFolders(), files);
    Save(made, kCurrentUser, "A\\B", "first", "1");
  }
  files.Bytes() = bytes;
  PersistentStore store(SimulatedFolders(), files);
  const JournalReport before = store.Verify(kCurrentUser);
  const Int32 status = Save(store, kCurrentUser, "A\\B", "later", "2");
  Promise(status == kDone || status == kNewerFormat, "what is no journal is set aside");
  if (status != kDone) {
    Promise(files.Bytes() == bytes, "a newer journal is left alone");
    return;
  }
  PersistentStore again(SimulatedFolders(), files);
  Promise(!again.Verify(kCurrentUser).Damaged(), "a journal that was written to is sound");
  Promise(!before.Damaged() || !store.VerifyQuarantined(kCurrentUser).empty(),
          "a damaged journal is kept");
}

// A file of invoices, as amount_in_words reads it.
void FeedInvoices(std::string_view bytes) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
  Promise(std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(),
          "a file is there");
  std::rewind(file.get());
  amounts::TextFile lines(fileno(file.get()));
  String line;
  std::vector<StringView> fields;
  for (bool more = true; more;) {
    try {
      more = lines.Next(line);
      amounts::FieldsOf(line, amounts::SeparatorOf(line), fields);
      for (const StringView field : fields) amounts::ReadAmount(field);
    } catch (const amounts::Problem&) {
      // Said of the line; the next one is read all the same.
    }
  }
}

void FeedParityLog(std::string_view bytes) {
  try {
    parity::ReadLog(bytes);
  } catch (const parity::Unreadable& unreadable) {
    Promise(unreadable.line >= 1, "a log is refused by its line");
  }
}

constexpr std::array kTargets{
    FuzzTarget{"numbers", FeedNumbers},
    FuzzTarget{"dates", FeedDates},
    FuzzTarget{"settings_text", FeedSettingsText},
    FuzzTarget{"journal", FeedJournal},
    FuzzTarget{"invoices", FeedInvoices},
    FuzzTarget{"parity_log", FeedParityLog},
};

}  // namespace

const FuzzTarget* FindFuzzTarget(std::string_view name) {
  const auto* found = std::ranges::find(kTargets, name, &FuzzTarget::name);
  return found == kTargets.end() ? nullptr : found;
}

}  // namespace quorl
