// The same settings in a file of QSettings, which sees no change of another process and waits for
// no disk.
#include <QSettings>
#include <chrono>
#include <filesystem>
#include <map>

#include "bench/store/inputs.hpp"
#include "tests/support/store_temporary_folder.hpp"

namespace {

using namespace quorl;
using namespace quorl::bench;

constexpr const char* kWho = "QSettings";

class FilledFile {
 public:
  explicit FilledFile(std::size_t values) {
    QSettings settings(QtPath(), QSettings::IniFormat);
    for (const std::string& name : NamesOf(values)) {
      settings.setValue(QString::fromStdString(name), QString::fromLatin1(kData.data()));
    }
  }
  std::string Path() const { return folder_.Path() + "/settings.ini"; }
  QString QtPath() const { return QString::fromStdString(Path()); }
  double Bytes() const { return static_cast<double>(std::filesystem::file_size(Path())); }

 private:
  TemporaryFolder folder_;
};

const FilledFile& Filled(std::size_t values) {
  static std::map<std::size_t, FilledFile> all;
  return all.try_emplace(values, values).first->second;
}

void Get(std::size_t values) {
  Row(kGet, AtSize(kWho, values), [=](benchmark::State& state) {
    const QSettings settings(Filled(values).QtPath(), QSettings::IniFormat);
    const auto names = Turned(ShuffledNamesOf(values),
                              [](const auto& name) { return QString::fromStdString(name); });
    benchmark::DoNotOptimize(settings.value(names[0]));  // Reads the file.
    std::size_t at = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(settings.value(names[at]).toString());
      if (++at == names.size()) at = 0;
    }
  });
}

// The file counts as changed each time: Qt would give what it has in memory otherwise.
void FirstOpen(std::size_t values) {
  Row(kOpen, AtSize(kWho, values), [=](benchmark::State& state) {
    const FilledFile& file = Filled(values);
    const QString name = QStringLiteral("Valeur 1");
    for (auto _ : state) {
      using namespace std::chrono_literals;
      std::filesystem::last_write_time(file.Path(),
                                       std::filesystem::last_write_time(file.Path()) - 1s);
      const QSettings settings(file.QtPath(), QSettings::IniFormat);
      benchmark::DoNotOptimize(settings.value(name).toString());
    }
  });
}

const AtStart rows([] {
  for (const std::size_t values : kStoreSizes) {
    Get(values);
    FirstOpen(values);
    Figure(kDisk, AtSize(kWho, values), "bytes a value",
           [=] { return Filled(values).Bytes() / static_cast<double>(values); });
  }
});

}  // namespace
