// Settings through `Registry` over the persistent store, beside SQLite with a write-ahead log and
// full sync: durable changes, reads, the first opening, and listing. SQLite is looked for when the
// program starts; where it is not installed, its rows are missing.
#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "quorl/registry/registry.hpp"
#include "quorl/runtime/utf.hpp"
#include "quorl/store/operations.hpp"
#include "quorl/store/persistent_store.hpp"
#include "tests/support/store_temporary_folder.hpp"

#if __has_include(<sqlite3.h>)
#include <sqlite3.h>
#define QUORL_BENCH_HAS_SQLITE 1
#endif

namespace quorl {
namespace {

std::string NameOf(std::int64_t number) {
  return std::string("Valeur ").append(std::to_string(number));
}

Registry HostSettings() {
  Registry settings;
  settings.InitApp(u"Maison", u"Caisse");
  return settings;
}

// A persistent store whose one key has so many values, or subkeys, written in one change, the
// values in the order of their numbers or in another one.
class FilledStore {
 public:
  FilledStore(std::int64_t values, std::int64_t subkeys = 0, bool shuffled = false) {
    const std::string key = "Software\\Maison\\Caisse";
    std::vector<StoreChange> changes;
    const auto add = [&](const std::string& path, const std::string& name, std::string data) {
      changes.push_back({.kind = StoreChange::Kind::kSetValue,
                         .root = kCurrentUser,
                         .path = path,
                         .name = name,
                         .type = 1,
                         .data = std::move(data)});
    };
    for (std::int64_t i = 0; i < values; ++i) {
      add(key, NameOf(shuffled ? i * 7919 % values : i), std::string("une valeur", 11));
    }
    for (std::int64_t i = 0; i < subkeys; ++i)
      add(key + '\\' + NameOf(i), "v", std::string(4, '\1'));
    if (store_.Commit(changes) != kDone) std::abort();
  }
  StoreFolders Folders() const { return folder_.Folders(); }
  double FileBytes() const {
    return static_cast<double>(std::filesystem::file_size(folder_.UserHive()));
  }

 private:
  TemporaryFolder folder_;
  PersistentStore store_{folder_.Folders()};
  ScopedStore guard_{store_};
};

// Runs `save` for each iteration and shows the median and the slowest call.
template <class Save>
void TimeEachCall(benchmark::State& state, Save save) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> times;
  for (auto _ : state) {
    const auto start = Clock::now();
    save();
    times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
  }
  std::ranges::sort(times);
  state.counters["median_us"] = times[times.size() / 2];
  state.counters["slowest_us"] = times.back();
}

void SaveValueDurably(benchmark::State& state) {
  const FilledStore filled(state.range(0));
  Registry settings = HostSettings();
  std::int64_t number = 0;
  TimeEachCall(state, [&] {
    ++number;
    settings.SaveValue(u"", Utf16(NameOf(number % 100)), static_cast<Int32>(number));
  });
}
BENCHMARK(SaveValueDurably)->Arg(100)->Arg(1000)->Arg(100000)->UseRealTime();

// One key with so many values, in the order of their names or in another one.
void CopyKey(benchmark::State& state) {
  const FilledStore filled(state.range(0), 0, state.range(1) != 0);
  KeyHandle root = 0;
  RegOpenKeyExA(kDynData, "", 0, kAllAccess, &root);
  for (auto _ : state) {
    SHCopyKeyA(kCurrentUser, "Software", root, 0);
    state.PauseTiming();
    SHDeleteKeyA(kDynData, "");
    state.ResumeTiming();
  }
  RegCloseKey(root);
}
BENCHMARK(CopyKey)
    ->Args({1000, 0})
    ->Args({1000, 1})
    ->Args({100000, 0})
    ->Args({100000, 1})
    ->Unit(benchmark::kMillisecond);

void GetValueHit(benchmark::State& state) {
  const FilledStore filled(state.range(0));
  Registry settings = HostSettings();
  std::int64_t number = 0;
  for (auto _ : state) {
    const String name = Utf16(NameOf(number++ % state.range(0)));
    benchmark::DoNotOptimize(settings.GetValue(u"", name, Variant()));
  }
}
BENCHMARK(GetValueHit)->Arg(100)->Arg(1000)->Arg(100000);

void GetValueMiss(benchmark::State& state) {
  const FilledStore filled(state.range(0));
  Registry settings = HostSettings();
  for (auto _ : state) benchmark::DoNotOptimize(settings.GetValue(u"", u"absente", Variant()));
}
BENCHMARK(GetValueMiss)->Arg(100)->Arg(1000)->Arg(100000);

void FirstOpen(benchmark::State& state) {
  const FilledStore filled(state.range(0));
  Registry settings = HostSettings();
  for (auto _ : state) {
    PersistentStore store(filled.Folders());
    const ScopedStore guard(store);
    benchmark::DoNotOptimize(settings.GetValue(u"", u"Valeur 1", Variant()));
  }
  state.counters["bytes_a_value"] = filled.FileBytes() / static_cast<double>(state.range(0));
}
BENCHMARK(FirstOpen)->Arg(1000)->Arg(100000)->Unit(benchmark::kMillisecond);

void GetSubKeys(benchmark::State& state) {
  const FilledStore filled(0, state.range(0));
  Registry settings = HostSettings();
  for (auto _ : state) benchmark::DoNotOptimize(settings.GetSubKeys(u""));
}
BENCHMARK(GetSubKeys)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

#ifdef QUORL_BENCH_HAS_SQLITE

// The calls of the peer's library that are used, found at run time.
struct Peer {
  void* handle = dlopen("libsqlite3.so.0", RTLD_NOW);
#define QUORL_PEER(name) \
  decltype(&sqlite3_##name) name = Find<decltype(&sqlite3_##name)>("sqlite3_" #name)
  QUORL_PEER(open);
  QUORL_PEER(close);
  QUORL_PEER(exec);
  QUORL_PEER(prepare_v2);
  QUORL_PEER(bind_text);
  QUORL_PEER(step);
  QUORL_PEER(reset);
  QUORL_PEER(finalize);
  QUORL_PEER(column_bytes);
#undef QUORL_PEER

  template <class Function>
  Function Find(const char* name) const {
    return handle == nullptr ? nullptr : reinterpret_cast<Function>(dlsym(handle, name));
  }
};

const Peer& Sqlite() {
  static const Peer peer;
  return peer;
}

// The same settings in one table, a row for each value.
class Database {
 public:
  explicit Database(std::int64_t values) {
    Sqlite().open((folder_.Path() + "/settings.db").c_str(), &database_);
    Run("PRAGMA journal_mode=WAL");
    Run("CREATE TABLE settings (path TEXT, name TEXT, data TEXT, PRIMARY KEY (path, name))");
    Prepare();
    Run("BEGIN");
    for (std::int64_t i = 0; i < values; ++i) Save(NameOf(i), "une valeur");
    Run("COMMIT");
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() { Close(); }

  void Reopen() {
    Close();
    Sqlite().open((folder_.Path() + "/settings.db").c_str(), &database_);
    Prepare();
  }
  void Save(const std::string& name, const std::string& data) {
    Bind(save_, name);
    Sqlite().bind_text(save_, 3, data.data(), static_cast<int>(data.size()), SQLITE_STATIC);
    if (Sqlite().step(save_) != SQLITE_DONE) std::abort();
    Sqlite().reset(save_);
  }
  int Get(const std::string& name) {
    Bind(get_, name);
    const bool found = Sqlite().step(get_) == SQLITE_ROW;
    const int size = found ? Sqlite().column_bytes(get_, 0) : 0;
    Sqlite().reset(get_);
    return size;
  }

 private:
  static void Bind(sqlite3_stmt* statement, const std::string& name) {
    Sqlite().bind_text(statement, 1, "Software\\Maison\\Caisse", -1, SQLITE_STATIC);
    Sqlite().bind_text(statement, 2, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
  }
  void Run(const char* sql) {
    if (Sqlite().exec(database_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
  }
  void Prepare() {
    Run("PRAGMA synchronous=FULL");
    Sqlite().prepare_v2(database_, "INSERT OR REPLACE INTO settings VALUES (?1, ?2, ?3)", -1,
                        &save_, nullptr);
    Sqlite().prepare_v2(database_, "SELECT data FROM settings WHERE path = ?1 AND name = ?2", -1,
                        &get_, nullptr);
  }
  void Close() {
    Sqlite().finalize(save_);
    Sqlite().finalize(get_);
    Sqlite().close(database_);
  }

  TemporaryFolder folder_;
  sqlite3* database_ = nullptr;
  sqlite3_stmt* save_ = nullptr;
  sqlite3_stmt* get_ = nullptr;
};

void SqliteSaveDurably(benchmark::State& state) {
  Database database(state.range(0));
  std::int64_t number = 0;
  TimeEachCall(state, [&] {
    ++number;
    database.Save(NameOf(number % 100), std::to_string(number));
  });
}

void SqliteGetHit(benchmark::State& state) {
  Database database(state.range(0));
  std::int64_t number = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(database.Get(NameOf(number++ % state.range(0))));
  }
}

void SqliteGetMiss(benchmark::State& state) {
  Database database(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(database.Get("absente"));
}

void SqliteFirstOpen(benchmark::State& state) {
  Database database(state.range(0));
  for (auto _ : state) {
    database.Reopen();
    benchmark::DoNotOptimize(database.Get("Valeur 1"));
  }
}

bool RegisterPeer() {
  if (Sqlite().handle == nullptr) return false;
  using benchmark::RegisterBenchmark;
  RegisterBenchmark("SqliteSaveDurably", SqliteSaveDurably)
      ->Arg(100)
      ->Arg(1000)
      ->Arg(100000)
      ->UseRealTime();
  RegisterBenchmark("SqliteGetHit", SqliteGetHit)->Arg(100)->Arg(1000)->Arg(100000);
  RegisterBenchmark("SqliteGetMiss", SqliteGetMiss)->Arg(100)->Arg(1000)->Arg(100000);
  RegisterBenchmark("SqliteFirstOpen", SqliteFirstOpen)
      ->Arg(1000)
      ->Arg(100000)
      ->Unit(benchmark::kMillisecond);
  return true;
}

#else

bool RegisterPeer() { return false; }

#endif

const bool peer_registered = [] {
  const bool registered = RegisterPeer();
  if (!registered) std::fputs("SQLite is not installed: its rows are missing.\n", stderr);
  return registered;
}();

}  // namespace
}  // namespace quorl
