// A key and all below it, as a tree.
#include <optional>
#include <string>
#include <vector>

#include "examples/command/output.hpp"
#include "examples/command/printable.hpp"
#include "examples/settings/commands.hpp"
#include "examples/settings/failure.hpp"
#include "examples/settings/keys.hpp"
#include "examples/settings/messages.hpp"
#include "examples/settings/shown.hpp"
#include "examples/settings/value_text.hpp"
#include "quorl/runtime/utf.hpp"

namespace settings {

using namespace quorl;
namespace {

// For each key whether another one follows below the same key.
std::vector<bool> HaveNextSiblings(const std::vector<std::size_t>& depths) {
  std::vector<bool> have(depths.size());
  std::vector<bool> is_open;  // By depth: a key of this depth was seen below the same key.
  for (std::size_t i = depths.size(); i-- > 0;) {
    is_open.resize(depths[i] + 1);
    have[i] = is_open[depths[i]];
    is_open[depths[i]] = true;
  }
  return have;
}

// The lines of the tree on the left of what stands in it.
class Guides {
 public:
  std::string To(std::size_t depth, bool is_last) const {
    std::string line;
    for (std::size_t level = 1; level < depth; ++level) line += goes_on_[level] ? "│  " : "   ";
    return line + (is_last ? "└─ " : "├─ ");
  }
  void Enter(std::size_t depth, bool is_last) {
    goes_on_.resize(depth + 1);
    goes_on_[depth] = !is_last;
  }

 private:
  std::vector<bool> goes_on_;  // By depth.
};

std::string LastLevel(const KeyPlace& place) {
  const String path = TidyPath(place.path);
  return Utf8(command::Printable(path.substr(path.rfind(u'\\') + 1)));
}

void PrintTree(const RegistryText& keys) {
  std::vector<std::size_t> depths;
  const std::size_t top = DepthOf(keys.front().place);
  for (const RegistryTextKey& key : keys) depths.push_back(DepthOf(key.place) - top);
  const std::vector<bool> have_next = HaveNextSiblings(depths);
  Guides guides;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::size_t depth = depths[i];
    if (depth == 0) {
      const std::string name = Utf8(command::Printable(NameOf(keys[i].place)));
      command::Print(Painted(Paint::kKey, name) + '\n');
    } else {
      command::Print(guides.To(depth, !have_next[i]) +
                     Painted(Paint::kKey, LastLevel(keys[i].place) + '\\') + '\n');
    }
    guides.Enter(depth, !have_next[i]);
    const bool has_subkeys = i + 1 < keys.size() && depths[i + 1] > depth;
    for (const RegistryTextValue& value : keys[i].values) {
      const bool is_last = !has_subkeys && &value == &keys[i].values.back();
      command::Print(guides.To(depth + 1, is_last) + LineOf(value) + '\n');
    }
  }
}

void PrintJson(const RegistryText& keys) {
  JsonRows rows;
  for (const RegistryTextKey& key : keys) {
    JsonArray values;
    for (const RegistryTextValue& value : key.values) values.Add(JsonOf(value));
    JsonObject object;
    object.Add("key", Utf8(NameOf(key.place))).AddRaw("values", values.Text());
    rows.Print(object.Text());
  }
  rows.End();
}

}  // namespace

int List(const Request& request) {
  const std::string& name = request.arguments[0];
  const KeyPlace place = PlaceOf(name);
  const auto keys = OnStore(name, [&] { return KeysOf(place); });
  if (!keys) throw Refusal(messages::kNoKey(name));
  if (request.Has("--json")) {
    PrintJson(*keys);
  } else {
    PrintTree(*keys);
  }
  return kSuccess;
}

}  // namespace settings
