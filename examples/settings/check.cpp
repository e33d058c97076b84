// The registry's files record by record: verify and repair, of those in use and of copies.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "examples/command/output.hpp"
#include "examples/command/printable.hpp"
#include "examples/command/system_error.hpp"
#include "examples/settings/commands.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/messages.hpp"
#include "examples/settings/shown.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/utf.hpp"

namespace settings {

using namespace quorl;
namespace {

constexpr std::array kRoots{kClassesRoot, kCurrentUser, kLocalMachine, kUsers, kCurrentConfig};

enum class State : std::uint8_t { kIntact, kDamaged, kAbsent, kUnreadable, kForeign };
constexpr std::array<std::string_view, 5> kStateNames{"intact", "damaged", "absent", "unreadable",
                                                      "no registry file"};

struct LossKind {
  std::string_view name;  ///< For programs.
  command::Message<> text;
};
constexpr std::array<LossKind, 5> kLossKinds{{
    {"header", messages::kLostHeader},
    {"value", messages::kLostValue},
    {"key", messages::kLostKey},
    {"changes", messages::kLostChanges},
    {"bytes", messages::kStrayBytes},
}};

static_assert(kLossKinds.size() == 1 + static_cast<std::size_t>(JournalLoss::Kind::kBytes));

const LossKind& KindOf(const JournalLoss& loss) {
  return kLossKinds[static_cast<std::size_t>(loss.kind)];
}

// One file: where it is, whether it is one of the registry's own, and what reading it told.
struct Examined {
  JournalReport report;
  bool is_copy = false;
  bool is_quarantined = false;
};

State StateOf(const Examined& file) {
  const JournalReport& report = file.report;
  if (report.status == kAbsent) return State::kAbsent;
  if (report.status != kDone) return State::kUnreadable;
  if (!report.Damaged()) return State::kIntact;
  // A copy of which nothing at all is intact was never a registry file.
  const bool has_header = std::ranges::none_of(
      report.losses, [](const auto& loss) { return loss.kind == JournalLoss::Kind::kHeader; });
  const bool may_be_ours = has_header || report.records > 0 || !file.is_copy;
  return may_be_ours ? State::kDamaged : State::kForeign;
}

bool IsGood(const Examined& file) {
  const State state = StateOf(file);
  return state == State::kIntact || (state == State::kAbsent && !file.is_copy) ||
         file.is_quarantined;
}

std::string TextOf(const std::string& bytes) { return Utf8(command::Printable(FromAnsi(bytes))); }

std::string LineOf(const JournalLoss& loss) {
  std::string line = "  " + messages::kLoss(loss.offset, loss.bytes, KindOf(loss).text());
  if (loss.records > 1) line += " (" + std::to_string(loss.records) + ")";
  if (!loss.key.empty()) line += messages::kOfKey(TextOf(loss.key));
  if (!loss.value.empty()) line += messages::kOfValue(TextOf(loss.value));
  return line + '\n';
}

std::string HeadOf(const Examined& file) {
  const JournalReport& report = file.report;
  const std::string path = command::Printable(report.path);
  switch (StateOf(file)) {
    case State::kIntact:
      return messages::kIntactFile(path, report.records);
    case State::kDamaged:
      return messages::kDamagedFile(path, report.records,
                                    Painted(Paint::kAlarm, messages::kDamaged()));
    case State::kForeign:
      return messages::kForeignFile(path);
    case State::kAbsent:
      return messages::kNotRead(path, command::SystemErrorText(ENOENT));
    default:
      return messages::kAbout(path, SentenceOfCode(report.status));
  }
}

std::string LinesOf(const Examined& file) {
  const JournalReport& report = file.report;
  std::string lines = (file.is_quarantined ? messages::kQuarantined() : "") + HeadOf(file) + '\n';
  if (StateOf(file) != State::kDamaged) return lines;
  for (const JournalLoss& loss : report.losses) lines += LineOf(loss);
  return lines;
}

std::string JsonOf(const JournalLoss& loss) {
  JsonObject object;
  object.Add("kind", KindOf(loss).name).AddNumber("offset", loss.offset);
  object.AddNumber("bytes", loss.bytes).AddNumber("changes", loss.records);
  return object.Add("key", Utf8(FromAnsi(loss.key)))
      .Add("value", Utf8(FromAnsi(loss.value)))
      .Text();
}

std::string JsonOf(const Examined& file) {
  const JournalReport& report = file.report;
  JsonArray losses;
  for (const JournalLoss& loss : report.losses) losses.Add(JsonOf(loss));
  JsonObject object;
  object.Add("file", report.path)
      .Add("state", kStateNames[static_cast<std::size_t>(StateOf(file))]);
  object.AddRaw("quarantined", file.is_quarantined ? "true" : "false");
  object.AddRaw("code", std::to_string(report.status));
  object.AddNumber("bytes", report.bytes).AddNumber("records", report.records);
  object.AddNumber("unfinished_bytes", report.unfinished_bytes);
  return object.AddRaw("losses", losses.Text()).Text();
}

// The copies that the person names, else the registry's own files.
std::vector<Examined> Examine(const Request& request) {
  std::vector<Examined> files;
  for (const std::string& path : request.arguments) {
    files.push_back({PersistentStore::VerifyFile(path), true});
  }
  if (!request.arguments.empty()) return files;
  for (const StoreRoot root : kRoots) files.push_back({request.store.Verify(root)});
  return files;
}

void AddQuarantined(const PersistentStore& store, std::vector<Examined>& files) {
  for (const StoreRoot root : kRoots) {
    for (JournalReport& report : store.VerifyQuarantined(root)) {
      files.push_back({std::move(report), false, true});
    }
  }
}

void PrintLines(const std::vector<Examined>& files) {
  for (const Examined& file : files) {
    const bool is_told = file.is_copy || StateOf(file) != State::kAbsent;
    if (is_told) command::Print(LinesOf(file));
  }
}

void PrintJson(const std::vector<Examined>& files) {
  JsonRows rows;
  for (const Examined& file : files) rows.Print(JsonOf(file));
  rows.End();
}

bool AsksConsent() {
  if (!command::IsTerminal(STDIN_FILENO) || !command::IsTerminal(STDOUT_FILENO)) return false;
  command::Print(messages::kMayRepair() + ' ');
  command::Flush();
  std::array<char, 16> answer{};
  if (std::fgets(answer.data(), answer.size(), stdin) == nullptr) return false;
  // Whatever language the person thinks in: yes, oui.
  return std::string_view("yYoO").find(answer[0]) != std::string_view::npos;
}

bool RepairOne(const std::string& path) {
  const JournalReport done = PersistentStore::RepairFile(path);
  const std::string shown = command::Printable(path);
  if (done.status != kDone) {
    command::Tell(messages::kNotRepaired(path, SentenceOfCode(done.status)));
  } else if (done.kept_as.empty()) {
    command::Print(messages::kIntactFile(shown, done.records) + '\n');
  } else {
    command::Print(messages::kRepaired(shown, command::Printable(done.kept_as)) + '\n');
  }
  return done.status == kDone;
}

}  // namespace

int Verify(const Request& request) {
  std::vector<Examined> files = Examine(request);
  if (request.arguments.empty()) AddQuarantined(request.store, files);
  const bool all_good = std::ranges::all_of(files, IsGood);
  if (request.Has("--json")) {
    PrintJson(files);
  } else {
    PrintLines(files);
    if (all_good) command::Print(messages::kNoDamage() + '\n');
  }
  return all_good ? kSuccess : kFailure;
}

int Repair(const Request& request) {
  const std::vector<Examined> files = Examine(request);
  PrintLines(files);
  std::vector<std::string> paths;
  for (const Examined& file : files) {
    if (StateOf(file) != State::kDamaged) continue;
    paths.push_back(file.report.path);
    command::Print(messages::kPlan(command::Printable(paths.back()), file.report.records) + '\n');
  }
  bool all_good = std::ranges::all_of(
      files, [](const Examined& file) { return IsGood(file) || StateOf(file) == State::kDamaged; });
  if (paths.empty()) {
    if (all_good) command::Print(messages::kNothingToRepair() + '\n');
    return all_good ? kSuccess : kFailure;
  }
  if (!request.Has("--yes") && !AsksConsent()) throw Refusal(messages::kNoConsent());
  for (const std::string& path : paths) all_good = RepairOne(path) && all_good;
  return all_good ? kSuccess : kFailure;
}

void TellOfDamage(PersistentStore& store) {
  for (const JournalReport& report : store.TakeReports()) {
    if (report.rewriting != kDone) {
      command::Tell(messages::kGrows(report.path, SentenceOfCode(report.rewriting)));
      continue;
    }
    command::Tell(messages::kDamagedFile(report.path, report.records, messages::kDamaged()));
    for (const JournalLoss& loss : report.losses) {
      const std::string line = LineOf(loss);
      command::Tell(line.substr(0, line.size() - 1));
    }
    if (!report.kept_as.empty()) command::Tell("  " + messages::kKeptAs(report.kept_as));
  }
}

}  // namespace settings
