#include "examples/settings/keys.hpp"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "quorl/registry/text/export.hpp"
#include "quorl/registry/text/import.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/raised_error.hpp"
#include "quorl/store/key_name.hpp"
#include "quorl/store/memory_store.hpp"
#include "quorl/store/operations.hpp"

namespace settings {

using namespace quorl;
namespace {

// A key below `place` that goes while it is read makes the reading begin anew.
constexpr int kMostAttempts = 100;

bool IsThere(const KeyPlace& place) {
  Registry registry;
  registry.InitAbsolute(place.root, place.path);
  return registry.KeyExists(u"");
}

bool IsWithin(const KeyPlace& place, const KeyPlace& top) {
  const std::string path = ToAnsi(place.path);
  const std::string top_path = ToAnsi(top.path);
  std::string_view levels = path;
  std::string_view top_levels = top_path;
  for (std::string_view level = TakeLevel(top_levels); !level.empty();
       level = TakeLevel(top_levels)) {
    if (CompareNames(TakeLevel(levels), level) != 0) return false;
  }
  return place.root == top.root;
}

}  // namespace

std::strong_ordering CompareKeys(const KeyPlace& left, const KeyPlace& right) {
  if (left.root != right.root) return left.root <=> right.root;
  const std::string left_path = ToAnsi(left.path);
  const std::string right_path = ToAnsi(right.path);
  std::string_view left_levels = left_path;
  std::string_view right_levels = right_path;
  for (;;) {
    const std::string_view left_level = TakeLevel(left_levels);
    const std::string_view right_level = TakeLevel(right_levels);
    const std::strong_ordering order = CompareNames(left_level, right_level);
    if (order != 0 || left_level.empty()) return order;
  }
}

std::size_t DepthOf(const KeyPlace& place) {
  const String path = TidyPath(place.path);
  return path.empty() ? 0 : 1 + static_cast<std::size_t>(std::ranges::count(path, u'\\'));
}

std::optional<RegistryText> KeysOf(const KeyPlace& place) {
  for (int attempt = 1;; ++attempt) {
    try {
      return ExportRegistry(place);
    } catch (const RaisedError& error) {
      const bool is_gone = error.Number() == kAbsent || error.Number() == kKeyDeleted;
      if (!is_gone || attempt == kMostAttempts) throw;
      if (!IsThere(place)) return std::nullopt;
    }
  }
}

RegistryText KeysOf(const std::vector<KeyPlace>& places) {
  RegistryText all;
  for (const KeyPlace& place : places) {
    std::optional<RegistryText> keys = KeysOf(place);
    if (keys) std::ranges::move(*keys, std::back_inserter(all));
  }
  return all;
}

RegistryText KeysMadeBy(const RegistryText& file, const std::vector<KeyPlace>& places) {
  MemoryStore store;
  const ScopedStore guard(store);
  ImportRegistry(file);
  return KeysOf(places);
}

std::vector<KeyPlace> TopKeysOf(const RegistryText& file) {
  std::vector<KeyPlace> places;
  for (const RegistryTextKey& key : file) places.push_back(key.place);
  std::ranges::sort(places, [](const KeyPlace& left, const KeyPlace& right) {
    return CompareKeys(left, right) < 0;
  });
  std::vector<KeyPlace> tops;
  for (KeyPlace& place : places) {
    if (tops.empty() || !IsWithin(place, tops.back())) tops.push_back(std::move(place));
  }
  return tops;
}

}  // namespace settings
