// The members of Registry that work on a key as a whole.
#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "quorl/registry/internal/key_reader.hpp"
#include "quorl/registry/internal/store_failure.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/store/open_key.hpp"
#include "quorl/store/operations.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr Int32 kColumns = 3;

// The last subscript is counted in 16 bits.
String BytesToStr(std::span<const Byte> bytes, Int32 length) {
  const Int16 limit = CheckedInt16(std::int64_t{length} - 1);
  String text;
  for (Int32 i = 0; i <= limit && bytes[static_cast<std::size_t>(i)] != 0; ++i) {
    text.push_back(FromAnsi(bytes[static_cast<std::size_t>(i)]));
  }
  return text;
}

Int32 BytesToLong(std::span<const Byte> bytes) {
  Int32 number = 0;
  if (bytes.size() < sizeof(number)) Raise(FailureNumber::kSubscriptOutOfRange);
  std::memcpy(&number, bytes.data(), sizeof(number));
  return number;
}

Variant ContentOf(const ValueRow& row) {
  const std::vector<Byte>& bytes = row.Buffer();
  switch (row.Type()) {
    case REG_SZ:
      return BytesToStr(bytes, row.Size());
    case REG_DWORD:
      return BytesToLong(bytes);
    default:
      return Array::OfBytes({bytes.begin(), bytes.begin() + row.Size()});
  }
}

bool IsKnown(Int32 type) { return type == REG_SZ || type == REG_BINARY || type == REG_DWORD; }

Variant ArrayOf(std::vector<String> texts) {
  Array array(VariantType::kString, {{0, static_cast<std::uint32_t>(texts.size())}});
  std::ranges::move(texts, array.WritableElements().begin());
  return array;
}

}  // namespace

Variant Registry::GetAllValues(StringView KeyName) {
  return WithinMemory([&]() -> Variant {
    call_text_ = CallTextOf(u"GetAllValues", KeyName);
    const OpenKey key = Open(KeyName, kReadValues);
    KeyCounts counts;
    RequireDone(QueryCounts(key.Handle(), counts));
    if (counts.values < 1) return Empty;
    const auto rows = static_cast<std::size_t>(counts.values);
    Array table(VariantType::kVariant, {{0, static_cast<std::uint32_t>(rows)}, {0, kColumns}});
    const std::span<Variant> cells = table.WritableElements();
    ValueRow row(counts);
    for (std::size_t i = 0; i < rows; ++i) {
      RequireDone(row.Read(key.Handle(), static_cast<Int32>(i)));
      cells[i] = FromAnsi(row.Name());
      cells[i + rows] = ContentOf(row);
      cells[i + 2 * rows] = IsKnown(row.Type()) ? row.Type() : Int32{REG_NONE};
    }
    return table;
  });
}

// The walk keeps its own stack, so that its depth is limited by memory alone.
struct Registry::Walk {
  struct Level {
    OpenKey key;
    std::size_t place;  ///< Of the key's name in `names`.
    KeyCounts counts;
    Int32 next = 0;
  };

  explicit Walk(Int32 depth) : levels(depth) {}
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  ~Walk() {
    while (!open.empty()) open.pop_back();
  }

  // Whether the subkeys of a key entered now are looked at.
  bool GoesBelow() const {
    return levels == 0 || static_cast<std::int64_t>(open.size()) < std::int64_t{levels};
  }

  Int32 levels;
  std::vector<String> names;
  std::vector<Level> open;
};

Variant Registry::GetSubKeys(StringView KeyName, Int32 Levels) {
  return WithinMemory([&] {
    Walk walk(Levels);
    Enter(walk, String(KeyName));
    while (!walk.open.empty()) {
      const Walk::Level& level = walk.open.back();
      if (level.next < level.counts.subkeys) {
        Enter(walk, NextSubKey(walk));
      } else {
        walk.open.pop_back();
      }
    }
    return ArrayOf(std::move(walk.names));
  });
}

void Registry::Enter(Walk& walk, String key_name) {
  call_text_ = CallTextOf(u"doGetSubKeys", key_name);
  OpenKey key = Open(key_name, kReadValues | kListSubkeys);
  const std::size_t place = walk.names.size();
  walk.names.push_back(std::move(key_name));
  KeyCounts counts;
  if (walk.GoesBelow()) RequireDone(QueryCounts(key.Handle(), counts));
  walk.open.push_back({std::move(key), place, counts});
}

String Registry::NextSubKey(Walk& walk) const {
  Walk::Level& level = walk.open.back();
  std::string name(static_cast<std::size_t>(level.counts.longest_subkey) + 1, '\0');
  std::array<char, 1000> key_class;
  auto name_size = static_cast<Int32>(name.size());
  Int32 class_size = 100;
  FileTime time;
  RequireDone(RegEnumKeyExA(level.key.Handle(), level.next, name.data(), &name_size, nullptr,
                            key_class.data(), &class_size, &time));
  ++level.next;
  return walk.names[level.place] + u'\\' +
         FromAnsi(std::string_view(name).substr(0, static_cast<std::size_t>(name_size)));
}

void Registry::DeleteKey(StringView KeyName) {
  WithinMemory([&] {
    call_text_ = CallTextOf(u"DeleteKey", KeyName);
    const Int32 code = SHDeleteKeyA(hkey_, ToAnsi(KeyFullName(KeyName)));
    if (code != kAbsent) RequireDone(code);
  });
}

void Registry::CopyKey(StringView SourceKeyName, StringView DestinationKeyName) {
  WithinMemory([&] {
    call_text_ = CallTextOf(u"CopyKey", SourceKeyName, DestinationKeyName);
    const OpenKey destination = Create(DestinationKeyName, kAllAccess);
    RequireDone(SHCopyKeyA(hkey_, ToAnsi(KeyFullName(SourceKeyName)), destination.Handle(), 0));
  });
}

}  // namespace quorl
