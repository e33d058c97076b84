// A host: looks at the settings that programs keep in the registry, and repairs them. `--help` says
// how.
#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <new>

#include "examples/command/output.hpp"
#include "examples/settings/commands.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/messages.hpp"
#include "quorl/store/operations.hpp"

namespace settings {
namespace {

using namespace quorl;

constexpr std::size_t kAnyNumber = SIZE_MAX;

struct Command {
  std::string_view name;
  std::size_t least;
  std::size_t most;
  std::string_view option;  ///< Empty: an argument may begin with "--".
  int (*run)(const Request&);
};

constexpr auto kCommands = std::to_array<Command>({
    {"list", 1, 1, "--json", List},
    {"get", 2, 2, "", Get},
    {"set", 3, 4, "", Set},
    {"delete", 1, 2, "", Delete},
    {"copy", 2, 2, "", Copy},
    {"export", 2, 2, "--utf8", Export},
    {"import", 1, 1, "--replace", Import},
    {"diff", 1, 2, "--json", Diff},
    {"watch", 1, 1, "--json", Watch},
    {"verify", 0, kAnyNumber, "--json", Verify},
    {"repair", 0, kAnyNumber, "--yes", Repair},
});

using Words = std::vector<std::string>;

bool AsksForHelp(const Words& words) {
  const auto asks = [](const std::string& word) { return word == "--help" || word == "-h"; };
  return !words.empty() && (asks(words[0]) || (words.size() == 2 && asks(words[1])));
}

Request RequestOf(const Command& command, const Words& words, PersistentStore& store) {
  Request request{{}, {}, store};
  for (auto word = words.begin() + 1; word != words.end(); ++word) {
    const bool is_option = !command.option.empty() && word->starts_with("--");
    if (is_option && *word != command.option) {
      throw WrongUse(messages::kUnknownOption(command.name, *word));
    }
    (is_option ? request.options : request.arguments).push_back(*word);
  }
  const std::size_t count = request.arguments.size();
  if (count < command.least || count > command.most || request.options.size() > 1) {
    throw WrongUse(messages::kWrongArguments(command.name));
  }
  return request;
}

int Run(const Words& words, PersistentStore& store) {
  if (words.empty()) throw WrongUse(messages::kNoCommand());
  if (AsksForHelp(words)) {
    command::Print(messages::kHelp(command::ProgramName()));
    return kSuccess;
  }
  const auto* const command = std::ranges::find(kCommands, words[0], &Command::name);
  if (command == kCommands.end()) throw WrongUse(messages::kUnknownCommand(words[0]));
  return command->run(RequestOf(*command, words, store));
}

int Fail(int status, const std::string& what) {
  command::Tell(command::ProgramName() + ": " + what);
  return status;
}

int RunReported(const Words& words, PersistentStore& store) {
  try {
    return Run(words, store);
  } catch (const WrongUse& error) {
    return Fail(kWrongUse, messages::kSeeHelp(error.what(), command::ProgramName()));
  } catch (const RaisedError& error) {
    return Fail(kFailure, SentenceOfFailure(error));
  } catch (const std::bad_alloc&) {
    return Fail(kFailure, SentenceOfCode(kOutOfMemory));
  } catch (const std::exception& error) {
    return Fail(kFailure, error.what());
  }
}

}  // namespace
}  // namespace settings

int main(int count, char** values) {
  command::PrepareOutput();
  auto owned = std::make_unique<quorl::PersistentStore>(quorl::StoreFolders::Usual());
  quorl::PersistentStore& store = *owned;
  quorl::ChooseStore(std::move(owned));
  const int status = settings::RunReported({values + std::min(count, 1), values + count}, store);
  settings::TellOfDamage(store);
  command::Flush();
  return status;
}
