// The same settings in one table of SQLite, a row for each value, with a write-ahead log and full
// sync.
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <tuple>

#include "bench/store/inputs.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "SQLite";

// A prepared statement.
class Statement {
 public:
  Statement(sqlite3* database, const char* sql) {
    if (sqlite3_prepare_v2(database, sql, -1, &handle_, nullptr) != SQLITE_OK) std::abort();
  }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement() { sqlite3_finalize(handle_); }

  // `text` is lent until the statement is reset.
  void Bind(int place, std::string_view text) {
    sqlite3_bind_text(handle_, place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
  }
  bool Step() { return sqlite3_step(handle_) == SQLITE_ROW; }
  void Reset() { sqlite3_reset(handle_); }
  String Text(int column) {
    const void* units = sqlite3_column_text16(handle_, column);
    const int bytes = sqlite3_column_bytes16(handle_, column);
    return {static_cast<const char16_t*>(units), static_cast<std::size_t>(bytes) / 2};
  }

 private:
  sqlite3_stmt* handle_ = nullptr;
};

class Database {
 public:
  explicit Database(const std::string& path) {
    if (sqlite3_open(path.c_str(), &database_) != SQLITE_OK) std::abort();
    Run("PRAGMA journal_mode=WAL");
    Run("PRAGMA synchronous=FULL");
    Run("CREATE TABLE IF NOT EXISTS settings (path TEXT, name TEXT, data TEXT, "
        "PRIMARY KEY (path, name)) WITHOUT ROWID");
    save_ =
        std::make_unique<Statement>(database_, "INSERT OR REPLACE INTO settings VALUES (?, ?, ?)");
    get_ = std::make_unique<Statement>(database_,
                                       "SELECT data FROM settings WHERE path = ? AND name = ?");
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;
  ~Database() {
    save_.reset();
    get_.reset();
    sqlite3_close(database_);
  }

  sqlite3* Handle() const { return database_; }
  void Run(const char* sql) {
    if (sqlite3_exec(database_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
  }
  void Save(std::string_view name, std::string_view data) {
    save_->Bind(1, kKey);
    save_->Bind(2, name);
    save_->Bind(3, data);
    save_->Step();
    save_->Reset();
  }
  String Get(std::string_view name) {
    get_->Bind(1, kKey);
    get_->Bind(2, name);
    String data = get_->Step() ? get_->Text(0) : String();
    get_->Reset();
    return data;
  }

 private:
  sqlite3* database_ = nullptr;
  std::unique_ptr<Statement> save_;
  std::unique_ptr<Statement> get_;
};

// A file with the values, closed.
class FilledFile {
 public:
  explicit FilledFile(std::size_t values) {
    Database database(Path());
    database.Run("BEGIN");
    for (const std::string& name : NamesOf(values)) database.Save(name, kData);
    database.Run("COMMIT");
  }
  std::string Path() const { return folder_.Path() + "/settings.db"; }
  double Bytes() const { return static_cast<double>(std::filesystem::file_size(Path())); }

 private:
  TemporaryFolder folder_;
};

std::string PathOf(std::size_t values) {
  static std::map<std::size_t, FilledFile> all;
  return all.try_emplace(values, values).first->second.Path();
}

void Get(std::size_t values) {
  Row(kGet, AtSize(kWho, values), [=](benchmark::State& state) {
    Database database(PathOf(values));
    const std::vector<std::string> names = ShuffledNamesOf(values);
    std::size_t at = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(database.Get(names[at]));
      if (++at == names.size()) at = 0;
    }
  });
}

void SaveDurably(std::size_t values) {
  const auto run = [=](benchmark::State& state) {
    const FilledFile file(values);
    Database database(file.Path());
    TimeEachSave(
        state, ShuffledNamesOf(values),
        [&](const std::string& name, const std::string& data) { database.Save(name, data); });
  };
  SaveRow(kWho, values, run);
}

void FirstOpen(std::size_t values) {
  Row(kOpen, AtSize(kWho, values), [=](benchmark::State& state) {
    for (auto _ : state) {
      Database database(PathOf(values));
      benchmark::DoNotOptimize(database.Get("Valeur 1"));
    }
  });
}

void GetAll(std::size_t values) {
  Row(kGetAll, AtSize(kWho, values), [=](benchmark::State& state) {
    Database database(PathOf(values));
    Statement all(database.Handle(),
                  "SELECT name, data, typeof(data) FROM settings WHERE path = ?");
    for (auto _ : state) {
      all.Bind(1, kKey);
      std::vector<std::tuple<String, String, String>> list;
      while (all.Step()) list.emplace_back(all.Text(0), all.Text(1), all.Text(2));
      all.Reset();
      benchmark::DoNotOptimize(list);
    }
  });
}

void CopyDurably(std::size_t values) {
  Row(kCopy, AtSize(kWho, values), [=](benchmark::State& state) {
    const FilledFile file(values);
    Database database(file.Path());
    for (auto _ : state) {
      database.Run("INSERT INTO settings SELECT 'Copie', name, data FROM settings");
      state.PauseTiming();
      database.Run("DELETE FROM settings WHERE path = 'Copie'");
      state.ResumeTiming();
    }
  });
}

const AtStart rows([] {
  for (const std::size_t values : kStoreSizes) {
    Get(values);
    SaveDurably(values);
    FirstOpen(values);
    Figure(kDisk, AtSize(kWho, values), "bytes a value",
           [=] { return FilledFile(values).Bytes() / static_cast<double>(values); });
  }
  GetAll(kListSize);
  CopyDurably(kListSize);
});

}  // namespace
