// Settings through `Registry` over the persistent store, and growth of the operations underneath.
#include <filesystem>
#include <map>
#include <memory>

#include "bench/store/inputs.hpp"
#include "quorl/registry/registry.hpp"
#include "quorl/registry/text/export.hpp"
#include "quorl/registry/text/reader.hpp"
#include "quorl/registry/text/writer.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "Quorl";
const char* const kBytes = "bytes a value";

Registry HostSettings() {
  Registry settings;
  settings.InitApp(u"Maison", u"Caisse");
  return settings;
}

// A store on the disk with a value of each name in one key, written in one change.
class FilledStore {
 public:
  explicit FilledStore(const std::vector<std::string>& names) { Write(names); }

  void Write(const std::vector<std::string>& names) {
    std::vector<StoreChange> changes;
    for (const std::string& name : names) {
      changes.push_back({.kind = StoreChange::Kind::kSetValue,
                         .root = kCurrentUser,
                         .path = kKey,
                         .name = name,
                         .type = 1,
                         .data = std::string(kData) + '\0'});
    }
    if (store_.Commit(changes) != kDone) std::abort();
  }
  PersistentStore& Get() { return store_; }
  StoreFolders Folders() const { return folder_.Folders(); }
  double FileBytes() const {
    return static_cast<double>(std::filesystem::file_size(folder_.UserHive()));
  }

 private:
  TemporaryFolder folder_;
  PersistentStore store_{folder_.Folders()};
};

// One for each size and order, for rows that leave it as it is.
FilledStore& Filled(std::size_t values, bool shuffled = false) {
  static std::map<std::pair<std::size_t, bool>, std::unique_ptr<FilledStore>> all;
  auto& filled = all[{values, shuffled}];
  if (filled == nullptr) {
    filled = std::make_unique<FilledStore>(shuffled ? ShuffledNamesOf(values) : NamesOf(values));
  }
  return *filled;
}

// Registers calls on the settings of a store with so many values.
template <class Call>
void MeasureSettings(const char* work, std::size_t values, Call call) {
  Row(work, AtSize(kWho, values), [=](benchmark::State& state) {
    const ScopedStore guard(Filled(values).Get());
    const Registry settings = HostSettings();
    const auto names =
        Turned(ShuffledNamesOf(values), [](const auto& name) { return Utf16(name); });
    std::size_t at = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(call(settings, names[at]));
      if (++at == names.size()) at = 0;
    }
  });
}

// The file has been written twice over, so that it is soon to be written afresh.
void SaveDurably(std::size_t values) {
  const auto run = [=](benchmark::State& state) {
    const std::vector<std::string> names = ShuffledNamesOf(values);
    FilledStore filled(names);
    filled.Write(names);
    const ScopedStore guard(filled.Get());
    Registry settings = HostSettings();
    TimeEachSave(state, names, [&](const std::string& name, const std::string& data) {
      settings.SaveValue(u"", Utf16(name), Utf16(data));
    });
  };
  SaveRow(kWho, values, run);
}

void FirstOpen(const char* work, std::size_t values, bool shuffled) {
  Row(work, AtSize(kWho, values), [=](benchmark::State& state) {
    const StoreFolders folders = Filled(values, shuffled).Folders();
    const Registry settings = HostSettings();
    for (auto _ : state) {
      PersistentStore store(folders);
      const ScopedStore guard(store);
      benchmark::DoNotOptimize(settings.GetValue(u"", u"Valeur 1", Variant()));
    }
  });
}

double BytesSavedOneByOne(std::size_t values) {
  const TemporaryFolder folder;
  PersistentStore store(folder.Folders());
  const ScopedStore guard(store);
  Registry settings = HostSettings();
  for (const std::string& name : NamesOf(values)) {
    settings.SaveValue(u"", Utf16(name), Utf16(kData));
  }
  return static_cast<double>(std::filesystem::file_size(folder.UserHive())) /
         static_cast<double>(values);
}

void CopyDurably(std::size_t values) {
  Row(kCopy, AtSize(kWho, values), [=](benchmark::State& state) {
    FilledStore filled(NamesOf(values));
    const ScopedStore guard(filled.Get());
    Registry settings;
    settings.InitAbsolute(HKEY_CURRENT_USER, u"Software\\Maison");
    for (auto _ : state) {
      settings.CopyKey(u"Caisse", u"Copie");
      state.PauseTiming();
      settings.DeleteKey(u"Copie");
      state.ResumeTiming();
    }
  });
}

// --- Growth ---

constexpr std::array<std::size_t, 3> kGrowth{1'000, 10'000, 100'000};

// Registers what `change` does to the key of a root in memory that `prepare` has filled.
template <class Prepare, class Change>
void MeasureInMemory(const char* work, std::size_t values, Prepare prepare, Change change) {
  Row(work, AtSize(kWho, values), [=](benchmark::State& state) {
    const ScopedStore guard(Filled(values, true).Get());
    const std::vector<std::string> names = ShuffledNamesOf(values);
    for (auto _ : state) {
      state.PauseTiming();
      SHDeleteKeyA(kDynData, "");
      KeyHandle key = 0;
      RegCreateKeyExA(kDynData, "Copie", 0, "", 0, kAllAccess, nullptr, &key, nullptr);
      prepare(key);
      state.ResumeTiming();
      change(key, names);
      state.PauseTiming();
      RegCloseKey(key);
      state.ResumeTiming();
    }
  });
}

void CopyIn(KeyHandle key) { SHCopyKeyA(kCurrentUser, kKey, key, 0); }
void KeepEmpty(KeyHandle /*key*/) {}

void ManyValues(std::size_t values) {
  FirstOpen("First open, N values in any order", values, true);
  MeasureInMemory("SHCopyKeyA of N values in any order", values, KeepEmpty,
                  [](KeyHandle key, const auto& /*names*/) { CopyIn(key); });
  MeasureInMemory("RegSetValueExA of N values in any order", values, KeepEmpty,
                  [](KeyHandle key, const auto& names) {
                    for (const auto& name : names) RegSetValueExA(key, name, 0, 1, "12", 3);
                  });
  MeasureInMemory("RegDeleteValueA of N values in any order", values, CopyIn,
                  [](KeyHandle key, const auto& names) {
                    for (const auto& name : names) RegDeleteValueA(key, name);
                  });
  MeasureInMemory(
      "SHDeleteKeyA of N values", values, CopyIn,
      [](KeyHandle /*key*/, const auto& /*names*/) { SHDeleteKeyA(kDynData, "Copie"); });
}

void Text(std::size_t values) {
  const KeyPlace place{HKEY_CURRENT_USER, Utf16(kKey)};
  Row("Export of N values as text", AtSize(kWho, values), [=](benchmark::State& state) {
    const ScopedStore guard(Filled(values).Get());
    for (auto _ : state) benchmark::DoNotOptimize(WriteRegistryText(ExportRegistry(place)));
  });
  Row("Reading of a text of N values", AtSize(kWho, values), [=](benchmark::State& state) {
    const ScopedStore guard(Filled(values).Get());
    const std::string bytes = WriteRegistryText(ExportRegistry(place));
    for (auto _ : state) benchmark::DoNotOptimize(ReadRegistryText(bytes, u"settings.reg"));
  });
}

void Depth(std::size_t levels) {
  Row("RegOpenKeyExA, N levels deep", AtSize(kWho, levels), [=](benchmark::State& state) {
    const ScopedStore guard(Filled(1'000).Get());
    std::string path;
    for (std::size_t i = 0; i < levels; ++i) path += "niveau\\";
    KeyHandle key = 0;
    RegCreateKeyExA(kDynData, path, 0, "", 0, kAllAccess, nullptr, &key, nullptr);
    RegCloseKey(key);
    for (auto _ : state) {
      RegOpenKeyExA(kDynData, path, 0, kReadValues, &key);
      RegCloseKey(key);
    }
  });
}

const AtStart rows([] {
  for (const std::size_t values : kStoreSizes) {
    MeasureSettings(kGet, values, [](const Registry& settings, const String& name) {
      return settings.GetValue(u"", name, Variant());
    });
    SaveDurably(values);
    FirstOpen(kOpen, values, false);
    Figure(kDisk, AtSize(kWho, values), kBytes,
           [=] { return Filled(values).FileBytes() / static_cast<double>(values); });
  }
  Figure("On disk, N values saved one by one", AtSize(kWho, 1'000), kBytes,
         [] { return BytesSavedOneByOne(1'000); });
  MeasureSettings(kGetAll, kListSize, [](const Registry& settings, const String& /*name*/) {
    return settings.GetAllValues(u"");
  });
  CopyDurably(kListSize);
  for (const std::size_t values : kGrowth) {
    ManyValues(values);
    Text(values);
  }
  for (const std::size_t levels : {10U, 100U, 1000U}) Depth(levels);
});

}  // namespace
