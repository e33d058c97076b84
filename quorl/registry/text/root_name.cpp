#include "quorl/registry/text/root_name.hpp"

#include <algorithm>
#include <array>

#include "quorl/registry/internal/key_path.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/text_case.hpp"

namespace quorl {

using namespace internal;
namespace {

struct Root {
  HKeyEnum key;
  StringView name;
  StringView short_name;
};

constexpr std::array kRoots{
    Root{HKEY_CLASSES_ROOT, u"HKEY_CLASSES_ROOT", u"HKCR"},
    Root{HKEY_CURRENT_USER, u"HKEY_CURRENT_USER", u"HKCU"},
    Root{HKEY_LOCAL_MACHINE, u"HKEY_LOCAL_MACHINE", u"HKLM"},
    Root{HKEY_USERS, u"HKEY_USERS", u"HKU"},
    Root{HKEY_PERFORMANCE_DATA, u"HKEY_PERFORMANCE_DATA", u""},
    Root{HKEY_CURRENT_CONFIG, u"HKEY_CURRENT_CONFIG", u"HKCC"},
    Root{HKEY_DYN_DATA, u"HKEY_DYN_DATA", u""},
};

bool IsCalled(const Root& root, StringView name) {
  return EqualsIgnoringCase(root.name, name) ||
         (!root.short_name.empty() && EqualsIgnoringCase(root.short_name, name));
}

}  // namespace

StringView RootName(HKeyEnum root) noexcept {
  const auto* found = std::ranges::find(kRoots, root, &Root::key);
  return found == kRoots.end() ? StringView() : found->name;
}

std::optional<KeyPlace> PlaceNamed(StringView text) {
  const std::size_t end = std::min(text.find(u'\\'), text.size());
  const StringView name = text.substr(0, end);
  const auto* found =
      std::ranges::find_if(kRoots, [&](const Root& root) { return IsCalled(root, name); });
  if (found == kRoots.end()) return std::nullopt;
  text.remove_prefix(std::min(end + 1, text.size()));
  return KeyPlace{found->key, CopyOf(text)};
}

String TidyPath(StringView path) {
  return WithinMemory([&] {
    String tidy;
    for (const char16_t unit : path) {
      if (unit != u'\\' || (!tidy.empty() && tidy.back() != u'\\')) tidy += unit;
    }
    if (tidy.ends_with(u'\\')) tidy.pop_back();
    return tidy;
  });
}

String NameOf(const KeyPlace& place) {
  const String path = TidyPath(place.path);
  return Joined(RootName(place.root), SeparatorBefore(path), path);
}

}  // namespace quorl
