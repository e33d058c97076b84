// The members of Registry that work on a key as a whole.
#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "quorl/registry/internal/key_reader.hpp"
#include "quorl/registry/internal/registry_call.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/runtime/ansi.hpp"
#include "quorl/runtime/convert.hpp"
#include "quorl/runtime/internal/join.hpp"
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
  const auto text = bytes.first(static_cast<std::size_t>(limit + 1));
  const auto end = std::ranges::find(text, Byte{0});
  const auto count = static_cast<std::size_t>(end - text.begin());
  return FromAnsi({reinterpret_cast<const char*>(text.data()), count});
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

// The walk keeps its own stack, so that its depth is limited by memory alone.
class Walk {
 public:
  Walk(HKeyEnum hkey, StringView root_key_name, Int32 levels)
      : hkey_(hkey), root_key_name_(root_key_name), levels_(levels) {}
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  // The deepest key is closed first.
  ~Walk() {
    while (!open_.empty()) open_.pop_back();
  }

  std::vector<String> NamesFrom(StringView key_name) {
    Enter(String(key_name));
    while (!open_.empty()) {
      if (open_.back().next < open_.back().info.subkeys) {
        Enter(NextSubKey());
      } else {
        open_.pop_back();
      }
    }
    return std::move(names_);
  }

 private:
  struct Level {
    OpenKey key;
    std::size_t place;  ///< Of the key's name in `names_`.
    KeyInfo info;
    Int32 next = 0;
  };

  void Enter(String key_name) {
    const std::size_t place = names_.size();
    names_.push_back(std::move(key_name));
    const RegistryCall call = CallUnderWay();
    OpenKey key = call.Open(PathBelow(root_key_name_, names_.back()), kReadValues | kListSubkeys);
    KeyInfo info;
    if (GoesBelow()) call.RequireDone(QueryInfo(key.Handle(), info));
    open_.push_back({std::move(key), place, info});
  }

  String NextSubKey() {
    Level& level = open_.back();
    std::string name(static_cast<std::size_t>(level.info.longest_subkey) + 1, '\0');
    std::array<char, 1000> key_class;
    auto name_size = static_cast<Int32>(name.size());
    Int32 class_size = 100;
    FileTime time;
    CallUnderWay().RequireDone(RegEnumKeyExA(level.key.Handle(), level.next, name.data(),
                                             &name_size, nullptr, key_class.data(), &class_size,
                                             &time));
    ++level.next;
    return Joined(names_[level.place], u"\\",
                  FromAnsi(std::string_view(name).substr(0, static_cast<std::size_t>(name_size))));
  }

  // Whether the subkeys of a key entered now are looked at.
  bool GoesBelow() const {
    return levels_ == 0 || static_cast<std::int64_t>(open_.size()) < std::int64_t{levels_};
  }

  // Each key entered is a call of its own, and a failure names the last one, that of a key above it
  // included.
  RegistryCall CallUnderWay() const { return {hkey_, u"doGetSubKeys", {names_.back()}}; }

  HKeyEnum hkey_;
  StringView root_key_name_;
  Int32 levels_;
  std::vector<String> names_;
  std::vector<Level> open_;
};

}  // namespace

Variant Registry::GetAllValues(StringView KeyName) const {
  return WithinMemory([&]() -> Variant {
    const RegistryCall call(hkey_, u"GetAllValues", {KeyName});
    const OpenKey key = call.Open(PathBelow(root_key_name_, KeyName), kReadValues);
    KeyInfo info;
    call.RequireDone(QueryInfo(key.Handle(), info));
    if (info.values < 1) return Empty;
    const auto rows = static_cast<std::size_t>(info.values);
    Array table(VariantType::kVariant, {{0, static_cast<std::uint32_t>(rows)}, {0, kColumns}});
    const std::span<Variant> cells = table.WritableElements();
    ValueRow row(info);
    for (std::size_t i = 0; i < rows; ++i) {
      call.RequireDone(row.Read(key.Handle(), static_cast<Int32>(i)));
      cells[i] = FromAnsi(row.Name());
      cells[i + rows] = ContentOf(row);
      cells[i + 2 * rows] = IsKnown(row.Type()) ? row.Type() : Int32{REG_NONE};
    }
    return table;
  });
}

Variant Registry::GetSubKeys(StringView KeyName, Int32 Levels) const {
  return WithinMemory(
      [&] { return ArrayOf(Walk(hkey_, root_key_name_, Levels).NamesFrom(KeyName)); });
}

void Registry::DeleteKey(StringView KeyName) {
  WithinMemory([&] {
    const RegistryCall call(hkey_, u"DeleteKey", {KeyName});
    const Int32 code = SHDeleteKeyA(hkey_, PathBelow(root_key_name_, KeyName));
    if (code != kAbsent) call.RequireDone(code);
  });
}

void Registry::CopyKey(StringView SourceKeyName, StringView DestinationKeyName) {
  WithinMemory([&] {
    const RegistryCall call(hkey_, u"CopyKey", {SourceKeyName, DestinationKeyName});
    const OpenKey destination =
        call.Create(PathBelow(root_key_name_, DestinationKeyName), kAllAccess);
    call.RequireDone(
        SHCopyKeyA(hkey_, PathBelow(root_key_name_, SourceKeyName), destination.Handle(), 0));
  });
}

}  // namespace quorl
