// The example amount_in_words, run as a program: what it writes where, and its exit status.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "quorl/runtime/utf.hpp"
#include "tests/support/cells.hpp"

namespace {

namespace fs = std::filesystem;

struct Outcome {
  int status;
  std::string out, err;
};

class AmountInWords : public testing::Test {
 protected:
  AmountInWords() {
    std::string pattern = (fs::temp_directory_path() / "amount_in_words.XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  ~AmountInWords() override { fs::remove_all(folder_); }

  void Write(const std::string& text) const {
    std::ofstream(folder_ / "X.csv", std::ios::binary) << text;
  }
  std::string Read(const std::string& name) const {
    std::ifstream in(folder_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }

  // `arguments` as a shell reads them; `behind` is what its output is led to.
  Outcome Run(const std::string& arguments, const std::string& behind = "> out") const {
    const std::string program = QUORL_BINARY_DIR "/examples/amount_in_words ";
    const std::string line = "cd " + folder_.string() + " && ( " + program + arguments +
                             " 2> err; echo $? > status ) " + behind;
    EXPECT_EQ(std::system(line.c_str()), 0) << line;
    return {std::stoi(Read("status")), Read("out"), Read("err")};
  }

  fs::path folder_;
};

std::ptrdiff_t LinesOf(const std::string& text) {
  return std::count(text.begin(), text.end(), '\n');
}

TEST_F(AmountInWords, WritesTheInvoicesThatComeWithIt) {
  const Outcome all = Run("");
  EXPECT_EQ(all.status, 0);
  EXPECT_EQ(all.err, "");
  EXPECT_EQ(LinesOf(all.out), 42);
  for (const char* row : {
           "F-2024-003 2024-01-08                  1\u202F234,56 EUR FR  "
           "mille-deux-cent-trente-quatre euros cinquante-six cents\n",
           "F-2024-016 2024-02-23                     -0,50 EUR NL  minder nul euro vijftig cent\n",
           "F-2024-024 2024-03-22              1.000.000,00 CHF DE  eine Million Franken\n",
           "F-2024-036 2024-05-03             1,200,000,000 JPY UK  "
           "one milliard and two hundred million yen\n",
       }) {
    EXPECT_NE(all.out.find(row), std::string::npos) << row << all.out;
  }
}

TEST_F(AmountInWords, ReadsAmountsByTheStatedRule) {
  const auto cases = quorl::Rows(
      u"1234.56|1.234,56;1 234,56|1.234,56;1.234,56|1.234,56;1,234.56|1.234,56;1'234.56|1.234,56;"
      u"1.234.567|1.234.567,00;1\u2019234\u2019567|1.234.567,00;1\u202F234\u00A0567,8|1.234.567,80;"
      u"1,234|1,234; -0,50 |-0,50;\u22127|-7,00;+.5|0,50;"
      u"922337203685477.5807|922.337.203.685.477,5807;"
      u"-922337203685477.5807|-922.337.203.685.477,5807");
  std::string file;
  for (const auto& row : cases) file += "a;b;\"" + quorl::Utf8(row[0]) + "\";EUR;DE\n";
  Write(file);
  const Outcome read = Run("--file X.csv");
  EXPECT_EQ(read.status, 0) << read.err;
  std::istringstream lines(read.out.substr(read.out.find("\na ") + 1));
  for (const auto& row : cases) {
    std::string line;
    std::getline(lines, line);
    EXPECT_NE(line.find(" " + quorl::Utf8(row[1]) + " EUR"), line.npos) << line;
  }
}

TEST_F(AmountInWords, RefusesWhatIsNoAmount) {
  const std::pair<const char*, std::vector<const char*>> cases[] = {
      {"amount out of range", {"922337203685477.5808", "99999999999999999999999"}},
      {"more than four decimals", {"1.23456"}},
      {"not an amount",
       {"12abc", "", "-", "--5", "5-", "1.", "1.2.3", "1,2,3.4", "1.234,567.8", "1234 567",
        "1 234'567", "1  234", "1e3", "\u0661"}}};
  std::string file = "Reference;Date;Amount;Currency;Language\n", err;
  int line = 1;
  for (const auto& [message, texts] : cases) {
    for (const std::string text : texts) {
      file += "a;1;\"" + text + "\";EUR;DE\n";
      err += "X.csv:" + std::to_string(++line) + ": " + message + ": \"" + text + "\"\n";
    }
  }
  Write(file);
  const Outcome refused = Run("--file X.csv");
  EXPECT_EQ(refused.status, 1);
  EXPECT_EQ(LinesOf(refused.out), 2);
  EXPECT_EQ(refused.err, err);
}

TEST_F(AmountInWords, TellsWhatIsWrongAndWritesTheOtherLines) {
  Write(
      "\xEF\xBB\xBFreference,date,amount,currency,language\r\n"
      "A1,2024-01-01,1.01,EUR,DE\r\n"
      "\r\n"
      "A2,2024-01-02,1,234.56,EUR,DE\r\n"
      "A3,2024-01-03,5,XXX,DE\n"
      "A4,2024-01-04,5,EUR,de\n"
      "A5,2024-01-05,5.5,JPY,DE\n"
      "A6,2024-01-06,-922337203685477.5808,EUR,DE\n"
      "\"A7,2024-01-07,5,EUR,DE\n" +
      std::string(70'000, 'x') +
      "\n"
      "\"A\"\"9\",\x1B[31m,7,EUR,DE");
  for (const char* arguments : {"--file X.csv", "- < X.csv", "--file=- < X.csv"}) {
    const Outcome mixed = Run(arguments);
    const std::string name = mixed.err.substr(0, mixed.err.find(':'));
    EXPECT_EQ(mixed.status, 1);
    EXPECT_EQ(LinesOf(mixed.out), 4) << mixed.out;
    EXPECT_NE(mixed.out.find(" 1,01 EUR DE  ein Euro ein Cent\n"), std::string::npos);
    EXPECT_NE(mixed.out.find("A\"9        \uFFFD[31m"), std::string::npos) << mixed.out;
    EXPECT_EQ(mixed.err,
              name + ":4: 5 fields expected, 6 found\n" +  //
                  name + ":5: unknown currency \"XXX\"\n" + name + ":6: unknown language \"de\"\n" +
                  name + ":7: this currency has no sub-units, the amount has decimals\n" + name +
                  ":8: amount out of range: \"-922337203685477.5808\"\n" + name +
                  ":9: a quote has no end\n" + name + ":10: line longer than 65536 bytes\n");
  }
}

TEST_F(AmountInWords, TakesOptionsForOneAmount) {
  const struct {
    const char* arguments;
    int status;
    const char* out;
  } cases[] = {
      {"--language FR --unit livre --units livres --subunit pièce --subunits pièces --kind 1 21.21",
       0, "vingt-et-une livres vingt-et-une pièces\n"},
      {"--language UK --currency TND -1.005", 0, "minus one dinar five millimes\n"},
      {"-7 --language=NL --unit= --decimals 0", 0, "minder zeven\n"},
      {"--language UK --unit inch --units inches --decimals 4 1.0002", 0, "one inch two\n"},
      {"--language FR 1 x 2", 1, "un euro\ndeux euros\n"},
      {"--file missing.csv", 1, ""}};
  for (const auto& row : cases) {
    const Outcome outcome = Run(row.arguments);
    EXPECT_EQ(outcome.status, row.status) << row.arguments;
    EXPECT_EQ(outcome.err.empty(), row.status == 0) << row.arguments;
    EXPECT_EQ(outcome.out, row.out) << row.arguments;
  }
  EXPECT_EQ(Run("--file .").status, 1);
  for (const char* wrong :
       {"--colour 1", "--language", "--language EN 1", "--currency XYZ 1", "--kind 3 1",
        "--decimals 10 1", "--language FR", "--file X.csv 1", "--file X.csv --language FR"}) {
    const Outcome outcome = Run(wrong);
    EXPECT_EQ(outcome.status, 2) << wrong;
    EXPECT_NE(outcome.err, "") << wrong;
    EXPECT_EQ(outcome.out, "") << wrong;
  }
}

TEST_F(AmountInWords, HelpFitsAScreen) {
  const std::string help = Run("--help").out;
  EXPECT_LE(LinesOf(help), 24);
  for (std::size_t at = 0, end; (end = help.find('\n', at)) != help.npos; at = end + 1) {
    EXPECT_LT(end - at, 80U) << help.substr(at, end - at);
  }
}

TEST_F(AmountInWords, AReaderThatGoesAwayIsNoErrorAFullDiskIs) {
  std::string file;
  for (int line = 0; line < 100'000; ++line) file += "a,b,1234.56,EUR,FR\n";
  Write(file);
  const Outcome cut = Run("--file X.csv", "| head -n 3 > out");
  EXPECT_EQ(cut.status, 0);
  EXPECT_EQ(cut.err, "");
  EXPECT_EQ(LinesOf(cut.out), 3);
  const Outcome full = Run("1", "> /dev/full");
  EXPECT_EQ(full.status, 1);
  EXPECT_NE(full.err, "");
}

}  // namespace
