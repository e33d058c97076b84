#include "examples/settings/difference.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "examples/command/printable.hpp"
#include "examples/settings/keys.hpp"
#include "examples/settings/value_text.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/key_name.hpp"

namespace settings {

using namespace quorl;
namespace {

using Kind = Difference::Kind;

// Goes through two lists that are sorted alike, and calls `each` with what belongs together; null
// stands for what one of them lacks.
template <class Item, class Compare, class Each>
void Merge(const std::vector<const Item*>& before, const std::vector<const Item*>& after,
           Compare compare, Each each) {
  auto left = before.begin();
  auto right = after.begin();
  while (left != before.end() || right != after.end()) {
    const auto order = left == before.end()   ? std::strong_ordering::greater
                       : right == after.end() ? std::strong_ordering::less
                                              : compare(**left, **right);
    each(order <= 0 ? *left++ : nullptr, order >= 0 ? *right++ : nullptr);
  }
}

std::vector<const RegistryTextKey*> KeysIn(const RegistryText& text) {
  std::vector<const RegistryTextKey*> keys;
  for (const RegistryTextKey& key : text) keys.push_back(&key);
  return keys;
}

std::strong_ordering CompareValues(const RegistryTextValue& left, const RegistryTextValue& right) {
  return CompareNames(ToAnsi(left.name), ToAnsi(right.name));
}

std::vector<const RegistryTextValue*> ValuesIn(const RegistryTextKey* key) {
  std::vector<const RegistryTextValue*> values;
  if (key == nullptr) return values;
  for (const RegistryTextValue& value : key->values) values.push_back(&value);
  std::ranges::sort(
      values, [](const auto* left, const auto* right) { return CompareValues(*left, *right) < 0; });
  return values;
}

Kind KindOf(bool was_there, bool is_there) {
  if (was_there && is_there) return Kind::kChanged;
  return was_there ? Kind::kRemoved : Kind::kAdded;
}

void AddDifferences(const RegistryTextKey* before, const RegistryTextKey* after,
                    std::vector<Difference>& differences) {
  const Kind kind = KindOf(before != nullptr, after != nullptr);
  const RegistryTextKey* const key = after != nullptr ? after : before;
  if (kind != Kind::kChanged) differences.push_back({kind, key});
  Merge(ValuesIn(before), ValuesIn(after), CompareValues,
        [&](const RegistryTextValue* old, const RegistryTextValue* fresh) {
          const bool both = old != nullptr && fresh != nullptr;
          if (both && old->type == fresh->type && old->data == fresh->data) return;
          differences.push_back({KindOf(old != nullptr, fresh != nullptr), key, old, fresh});
        });
}

std::string Line(Paint paint, char sign, const Difference& difference,
                 const RegistryTextValue* value) {
  std::string line = Painted(paint, std::string(1, sign)) + ' ' +
                     Painted(Paint::kKey, Utf8(command::Printable(NameOf(difference.key->place))));
  if (value != nullptr) line += ' ' + LineOf(*value);
  return line + '\n';
}

}  // namespace

std::vector<Difference> DifferencesBetween(const RegistryText& before, const RegistryText& after) {
  std::vector<Difference> differences;
  Merge(
      KeysIn(before), KeysIn(after),
      [](const RegistryTextKey& left, const RegistryTextKey& right) {
        return CompareKeys(left.place, right.place);
      },
      [&](const RegistryTextKey* old, const RegistryTextKey* fresh) {
        AddDifferences(old, fresh, differences);
      });
  return differences;
}

std::string LinesOf(const Difference& difference, const std::string& lead) {
  std::string lines;
  if (difference.kind != Kind::kAdded) {
    lines += lead + Line(Paint::kRemoved, '-', difference, difference.before);
  }
  if (difference.kind != Kind::kRemoved) {
    lines += lead + Line(Paint::kAdded, '+', difference, difference.after);
  }
  return lines;
}

JsonObject JsonOf(const Difference& difference) {
  constexpr std::array<std::string_view, 3> kKinds{"added", "removed", "changed"};
  JsonObject object;
  object.Add("change", kKinds[static_cast<std::size_t>(difference.kind)]);
  object.Add("key", Utf8(NameOf(difference.key->place)));
  const auto* const value = difference.after != nullptr ? difference.after : difference.before;
  if (value != nullptr) object.Add("name", Utf8(value->name));
  if (difference.before != nullptr) object.AddRaw("before", JsonOfContent(*difference.before));
  if (difference.after != nullptr) object.AddRaw("after", JsonOfContent(*difference.after));
  return object;
}

}  // namespace settings
