// Settings files: export, import and diff.
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>

#include "examples/command/output.hpp"
#include "examples/command/printable.hpp"
#include "examples/settings/commands.hpp"
#include "examples/settings/difference.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/keys.hpp"
#include "examples/settings/messages.hpp"
#include "examples/settings/text_file.hpp"
#include "quorl/registry/text/import.hpp"
#include "quorl/registry/text/writer.hpp"
#include "quorl/runtime/utf.hpp"

namespace settings {

using namespace quorl;
namespace {

RegistryText ReadForImport(const std::string& path, ForeignCharacters foreign) {
  try {
    return ReadSettingsFile(path, foreign);
  } catch (const Refusal& refusal) {
    throw Refusal(messages::kNothingChanged(refusal.what()));
  }
}

// The lines of a text that the person reads: a key's or value's name may hold anything.
void ShowLines(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find("\r\n"), text.size());
    command::Print(command::Printable(std::string(text.substr(0, end))) + '\n');
    text.remove_prefix(std::min(end + 2, text.size()));
  }
}

void PrintDifferences(const std::vector<Difference>& differences, bool is_json) {
  JsonRows rows;
  for (const Difference& difference : differences) {
    if (is_json) {
      rows.Print(JsonOf(difference).Text());
    } else {
      command::Print(LinesOf(difference));
    }
  }
  if (is_json) rows.End();
}

}  // namespace

int Export(const Request& request) {
  const std::string& name = request.arguments[0];
  const std::string& path = request.arguments[1];
  const KeyPlace place = PlaceOf(name);
  const bool is_shown = path == "-" && command::IsTerminal(STDOUT_FILENO);
  const auto encoding = request.Has("--utf8") || is_shown ? RegistryTextEncoding::kUtf8
                                                          : RegistryTextEncoding::kUtf16;
  const auto bytes = OnStore(name, [&]() -> std::optional<std::string> {
    const auto keys = KeysOf(place);
    if (!keys) return std::nullopt;
    return WriteRegistryText(*keys, encoding);
  });
  if (!bytes) throw Refusal(messages::kNoKey(name));
  if (is_shown) {
    ShowLines(*bytes);
  } else if (path == "-") {
    command::Print(*bytes);
  } else {
    WriteFile(path, *bytes);
  }
  return kSuccess;
}

int Import(const Request& request) {
  const std::string& path = request.arguments[0];
  const auto foreign =
      request.Has("--replace") ? ForeignCharacters::kReplace : ForeignCharacters::kRefuse;
  const RegistryText text = ReadForImport(path, foreign);
  OnStore(path, [&] { ImportRegistry(text); });
  std::size_t values = 0;
  for (const RegistryTextKey& key : text) values += key.values.size();
  command::Print(messages::kApplied(text.size(), values) + '\n');
  return kSuccess;
}

int Diff(const Request& request) {
  const std::string& path = request.arguments[0];
  const bool has_second = request.arguments.size() > 1;
  if (has_second && path == "-" && request.arguments[1] == "-") {
    throw WrongUse(messages::kInputTwice());
  }
  const RegistryText first = ReadSettingsFile(path);
  const RegistryText second = has_second ? ReadSettingsFile(request.arguments[1]) : RegistryText();
  RegistryText both = first;
  both.insert(both.end(), second.begin(), second.end());
  const auto tops = TopKeysOf(both);
  const RegistryText before = OnStore(path, [&] { return KeysMadeBy(first, tops); });
  const RegistryText after = OnStore(request.arguments.back(), [&] {
    return has_second ? KeysMadeBy(second, tops) : KeysOf(tops);
  });
  const auto differences = DifferencesBetween(before, after);
  PrintDifferences(differences, request.Has("--json"));
  return differences.empty() ? kSuccess : kFailure;
}

}  // namespace settings
