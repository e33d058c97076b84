// One value or one key: get, set, delete and copy.
#include <unistd.h>

#include <string>

#include "examples/command/output.hpp"
#include "examples/command/printable.hpp"
#include "examples/settings/commands.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/keys.hpp"
#include "examples/settings/messages.hpp"
#include "examples/settings/value_text.hpp"
#include "quorl/registry/text/export.hpp"
#include "quorl/registry/text/import.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/key_name.hpp"

namespace settings {

using namespace quorl;
namespace {

Registry RegistryAt(const KeyPlace& place) {
  Registry registry;
  registry.InitAbsolute(place.root, place.path);
  return registry;
}

void DeleteValue(const std::string& key, const std::string& name) {
  Registry registry = RegistryAt(PlaceOf(key));
  OnStore(key, [&] { registry.DeleteValue(u"", Utf16(name)); });
}

void DeleteKey(const std::string& key) {
  const KeyPlace place = PlaceOf(key);
  if (DepthOf(place) == 0) throw Refusal(messages::kRootNotDeleted());
  Registry registry = RegistryAt(place);
  OnStore(key, [&] {
    if (!registry.KeyExists(u"")) throw Refusal(messages::kNoKey(key));
    registry.DeleteKey(u"");
  });
}

}  // namespace

KeyPlace PlaceOf(const std::string& text) {
  std::optional<KeyPlace> place = PlaceNamed(Utf16(text));
  if (!place) throw WrongUse(messages::kNoRoot(text));
  return *std::move(place);
}

int Get(const Request& request) {
  const std::string& key = request.arguments[0];
  const KeyPlace place = PlaceOf(key);
  const std::string name = ToAnsi(Utf16(request.arguments[1]));
  for (const RegistryTextValue& value : OnStore(key, [&] { return ExportKey(place); }).values) {
    if (CompareNames(ToAnsi(value.name), name) != 0) continue;
    const std::string content = ContentOf(value);
    // Another program gets every byte, a terminal none that would command it.
    const bool is_shown = command::IsTerminal(STDOUT_FILENO);
    command::Print((is_shown ? command::Printable(content) : content) + '\n');
    return kSuccess;
  }
  throw Refusal(messages::kNoValue(key, request.arguments[1]));
}

int Set(const Request& request) {
  const std::string& key = request.arguments[0];
  const KeyPlace place = PlaceOf(key);
  const Variant value =
      ValueFrom(request.arguments[2], request.arguments.size() > 3 ? request.arguments[3] : "sz");
  const String name = Storable(request.arguments[1]);
  Storable(key);
  OnStore(key, [&] { RegistryAt(place).SaveValue(u"", name, value); });
  return kSuccess;
}

int Delete(const Request& request) {
  if (request.arguments.size() == 2) {
    DeleteValue(request.arguments[0], request.arguments[1]);
  } else {
    DeleteKey(request.arguments[0]);
  }
  return kSuccess;
}

int Copy(const Request& request) {
  const std::string& source = request.arguments[0];
  const std::string& target = request.arguments[1];
  const KeyPlace from = PlaceOf(source);
  const KeyPlace to = PlaceOf(target);
  Storable(target);
  auto keys = OnStore(source, [&] { return KeysOf(from); });
  if (!keys) throw Refusal(messages::kNoKey(source));
  const std::size_t common = keys->front().place.path.size();
  for (RegistryTextKey& key : *keys) {
    key.place = {to.root, to.path + u'\\' + key.place.path.substr(common)};
  }
  OnStore(target, [&] { ImportRegistry(*keys); });
  return kSuccess;
}

}  // namespace settings
