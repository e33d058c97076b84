// Makes the calls of a parity log again and tells what is otherwise now.
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "examples/command/system_error.hpp"
#include "examples/parity/host.hpp"
#include "examples/parity/log_text.hpp"
#include "examples/parity/read_log.hpp"
#include "examples/parity/recorder.h"
#include "examples/parity/replay.hpp"

namespace {

using namespace parity;

constexpr int kSame = 0;
constexpr int kDifferent = 1;
constexpr int kWrongUse = 2;

constexpr Message<> kHelp{R"(usage: parity [OPTION]... LOG

Makes the calls of a parity log again, of the component that is here, and tells
each that ends otherwise now. LOG is a file, or - for standard input.
  --table           through the tables of the classes, as a compiled host calls;
                    what needs a conversion is called by name all the same
  --record FILE     records the calls anew in a file, which has what is now
  --store FOLDER    the settings that the calls begin with, and change: a copy
                    of yours; without it they begin with none, in memory
  --component FILE  another libquorl.so

Exit status: 0 all is the same, 1 something is not, 2 wrong command line, or a
log that cannot be read.
)",
                          R"(usage : parity [OPTION]... JOURNAL

Refait les appels d'un journal de parité sur le composant présent et signale
chacun de ceux qui finissent autrement. JOURNAL est un fichier, ou - pour
l'entrée standard.
  --table            par les tables des classes, comme un hôte compilé ; ce qui
                     demande une conversion est quand même appelé par le nom
  --record FICHIER   enregistre à nouveau les appels, tels qu'ils sont à présent
  --store DOSSIER    les paramètres que les appels trouvent et modifient : une
                     copie des vôtres ; sans cela aucun, en mémoire
  --component FICHIER  un autre libquorl.so

Code de sortie : 0 tout est pareil, 1 il y a une différence, 2 mauvaise ligne de
commande ou journal illisible.
)"};

struct Options {
  bool is_help = false;
  bool through_table = false;
  std::string record;
  std::string store;
  std::string component = QUORL_COMPONENT;
  std::string log;
};

int Fail(const std::string& what) {
  std::cerr << "parity: " << what << '\n';
  return kWrongUse;
}

// Empty for a command line that makes no sense.
std::optional<Options> OptionsFrom(const std::vector<std::string>& arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    std::string* const taken = argument == "--record"      ? &options.record
                               : argument == "--store"     ? &options.store
                               : argument == "--component" ? &options.component
                                                           : nullptr;
    if (taken != nullptr) {
      if (++i == arguments.size() || arguments[i].empty()) return std::nullopt;
      *taken = arguments[i];
    } else if (argument == "--table") {
      options.through_table = true;
    } else if (argument == "--help" || argument == "-h") {
      options.is_help = true;
    } else if (options.log.empty() && (argument == "-" || !argument.starts_with('-'))) {
      options.log = argument;
    } else {
      return std::nullopt;
    }
  }
  if (options.log.empty() && !options.is_help) return std::nullopt;
  return options;
}

// Empty where it cannot be read; errno then says why.
std::optional<std::string> FileText(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      path == "-" ? fdopen(STDIN_FILENO, "rb") : std::fopen(path.c_str(), "rbe"), std::fclose);
  if (file == nullptr) return std::nullopt;
  std::string text;
  std::vector<char> buffer(1 << 16);
  while (const std::size_t read = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    text.append(buffer.data(), read);
  }
  if (std::ferror(file.get()) != 0) return std::nullopt;
  return text;
}

// How far a long log is, on a terminal alone, some times a second.
class Progress {
 public:
  explicit Progress(std::size_t calls) : calls_(calls), is_shown_(isatty(STDERR_FILENO) == 1) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { Clear(); }

  void Show(std::size_t calls) {
    constexpr Message<2> kReached{"\r{0} of {1} calls", "\r{0} appels sur {1}"};
    constexpr auto kPause = std::chrono::milliseconds(200);
    const auto now = std::chrono::steady_clock::now();
    if (!is_shown_ || now - shown_at_ < kPause) return;
    shown_at_ = now;
    is_visible_ = true;
    std::cerr << kReached(calls, calls_) << std::flush;
  }
  void Clear() {
    if (is_visible_) std::cerr << "\r\x1B[K" << std::flush;
    is_visible_ = false;
  }

 private:
  std::size_t calls_;
  bool is_shown_;
  bool is_visible_ = false;
  std::chrono::steady_clock::time_point shown_at_ = std::chrono::steady_clock::now();
};

void Tell(const Difference& difference) {
  constexpr Message<2> kLine{"line {0}: {1}\n", "ligne {0} : {1}\n"};
  constexpr Message<2> kBoth{"  log: {0}\n  now: {1}\n", "  journal : {0}\n  présent : {1}\n"};
  std::cout << kLine(difference.line, difference.what) << kBoth(difference.logged, difference.now);
}

void Tell(const Summary& summary) {
  constexpr Message<2> kMember{": calls {0}, differences {1}\n",
                               " : appels {0}, différences {1}\n"};
  constexpr Message<2> kAll{"calls: {0}, through the tables: {1}, ",
                            "appels : {0}, par les tables : {1}, "};
  constexpr Message<1> kDifferences{"differences: {0}\n", "différences : {0}\n"};
  for (const auto& [member, tally] : summary.members) {
    if (tally.calls == 0 && tally.differences == 0) continue;  // a name that was not found
    std::cout << member << kMember(tally.calls, tally.differences);
  }
  std::cout << kAll(summary.all.calls, summary.through_table)
            << kDifferences(summary.all.differences);
}

using Recorder = std::unique_ptr<ParityRecorder, void (*)(ParityRecorder*)>;

Counted<> Recorded(ParityRecorder* recorder, const Name& class_name, Counted<> object) {
  QuorlDispatch* recorded = nullptr;
  if (recorder == nullptr || !object) return object;
  ParityRecord(recorder, class_name.c_str(), object.Get(), &recorded);
  return Counted<>::Adopt(recorded);
}

int Compare(const Log& log, const Options& options) {
  Recorder recorder(nullptr, ParityClose);
  if (!options.record.empty()) {
    ParityRecorder* made = nullptr;
    ParityOpen(options.record.c_str(), Written(log.header).c_str(), &made);
    recorder.reset(made);
  }
  Progress progress(log.calls);
  Replaying how;
  how.make = [&](const Name& name) { return Recorded(recorder.get(), name, NewObject(name)); };
  how.differs = [&](const Difference& difference) {
    progress.Clear();
    Tell(difference);
  };
  how.progress = [&](std::size_t calls) { progress.Show(calls); };
  // A recorded call is one by name.
  how.through_table = options.through_table && recorder == nullptr;
  const Summary summary = Replay(log, how);
  progress.Clear();
  Tell(summary);
  return summary.all.differences == 0 ? kSame : kDifferent;
}

int Run(const std::vector<std::string>& arguments) {
  constexpr Message<> kMisuse{"wrong arguments; see parity --help",
                              "mauvais arguments ; voir parity --help"};
  constexpr Message<2> kUnreadable{"'{0}' cannot be read: {1}", "« {0} » ne peut être lu : {1}"};
  constexpr Message<1> kLine{"line {0}: ", "ligne {0} : "};
  constexpr Message<1> kRefused{"'{0}' cannot be used here", "« {0} » ne peut servir ici"};
  const auto options = OptionsFrom(arguments);
  if (!options) return Fail(kMisuse());
  if (options->is_help) {
    std::cout << kHelp();
    return kSame;
  }
  const auto text = FileText(options->log);
  if (!text) return Fail(kUnreadable(options->log, command::SystemErrorText(errno)));
  try {
    const Log log = ReadLog(*text);
    std::string refused;
    if (!SetUp(log.header, options->component, options->store, refused)) {
      return Fail(kRefused(refused));
    }
    return Compare(log, *options);
  } catch (const Unreadable& error) {
    return Fail(options->log + ": " + kLine(error.line) + error.what());
  }
}

}  // namespace

int main(int count, char** values) {
  try {
    const int status = Run({values + (count > 0 ? 1 : 0), values + count});
    constexpr Message<> kNotWritten{"the output could not be written",
                                    "la sortie n'a pu être écrite"};
    return std::cout.flush() ? status : Fail(kNotWritten());
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
}
