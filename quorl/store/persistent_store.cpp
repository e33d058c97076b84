#include "quorl/store/persistent_store.hpp"

#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include "quorl/store/internal/hive_store.hpp"
#include "quorl/store/internal/journal_hive.hpp"
#include "quorl/store/internal/memory_hive.hpp"

namespace quorl {

using namespace internal;
namespace {

enum class Kept : std::uint8_t { kWithUser, kWithMachine, kInMemory };

struct HiveRow {
  StoreRoot root;
  std::string_view name;
  Kept kept;
};

constexpr std::array<HiveRow, kRootCount> kHives{{
    {kClassesRoot, "HKEY_CLASSES_ROOT", Kept::kWithUser},
    {kCurrentUser, "HKEY_CURRENT_USER", Kept::kWithUser},
    {kLocalMachine, "HKEY_LOCAL_MACHINE", Kept::kWithMachine},
    {kUsers, "HKEY_USERS", Kept::kWithMachine},
    {kPerformanceData, "HKEY_PERFORMANCE_DATA", Kept::kInMemory},
    {kCurrentConfig, "HKEY_CURRENT_CONFIG", Kept::kWithMachine},
    {kDynData, "HKEY_DYN_DATA", Kept::kInMemory},
}};

constexpr bool RowsFollowRoots() {
  for (int i = 0; i < kRootCount; ++i) {
    if (kHives[static_cast<std::size_t>(i)].root != kClassesRoot + i) return false;
  }
  return true;
}
static_assert(RowsFollowRoots());

StoreStatus StatusOfFolder(const std::string& folder) noexcept {
  if (folder.empty()) return kFolderNotFound;
  return folder.starts_with('/') ? kDone : kWrongFolder;
}

JournalPlace PlaceOf(const HiveRow& row, const StoreFolders& folders) {
  const bool is_users = row.kept == Kept::kWithUser;
  const std::string& folder = is_users ? folders.user : folders.machine;
  return {.folder = folder,
          .file_name = std::string(row.name) + ".journal",
          .folder_mode = is_users ? 0700U : 0755U,
          .file_mode = is_users ? 0600U : 0644U,
          .is_private = is_users,
          .status = StatusOfFolder(folder)};
}

// The hives that are kept in files; null for the others, which are in memory only.
using Journals = std::array<JournalHive*, kRootCount>;

HiveStore::Hives MakeHives(const StoreFolders& folders, FileSystem& files, Journals& journals) {
  HiveStore::Hives hives;
  for (std::size_t i = 0; i < kHives.size(); ++i) {
    if (kHives[i].kept == Kept::kInMemory) {
      hives[i] = std::make_unique<MemoryHive>();
      continue;
    }
    auto journal = std::make_unique<JournalHive>(files, PlaceOf(kHives[i], folders));
    journals[i] = journal.get();
    hives[i] = std::move(journal);
  }
  return hives;
}

}  // namespace

struct PersistentStore::Engine {
  Engine(const StoreFolders& folders, FileSystem& lent_files)
      : files(lent_files), store(MakeHives(folders, lent_files, journals)) {}

  /// Null for a root key that is in memory only, and for what is no root key.
  JournalHive* JournalOf(StoreRoot root) const noexcept {
    const auto index = static_cast<std::size_t>(root - kClassesRoot);
    return index < journals.size() ? journals[index] : nullptr;
  }

  FileSystem& files;
  Journals journals{};
  HiveStore store;
};

PersistentStore::PersistentStore(const StoreFolders& folders, FileSystem& files)
    : engine_(std::make_unique<Engine>(folders, files)) {}

PersistentStore::~PersistentStore() = default;

Store& PersistentStore::Next() const noexcept { return engine_->store; }

Int32 PersistentStore::ReadShortValue(KeyHandle root, std::string_view path, std::string_view name,
                                      ShortValue* value) noexcept {
  return engine_->store.ReadShortValue(root, path, name, value);
}

std::string PersistentStore::HivePath(StoreRoot root) const {
  const JournalHive* journal = engine_->JournalOf(root);
  return journal == nullptr ? std::string() : journal->Path();
}

JournalReport PersistentStore::Verify(StoreRoot root) const {
  JournalHive* journal = engine_->JournalOf(root);
  return journal == nullptr ? JournalReport{.status = kAbsent} : journal->Verify();
}

std::vector<JournalReport> PersistentStore::VerifyQuarantined(StoreRoot root) const {
  std::vector<JournalReport> reports;
  const std::string path = HivePath(root);
  std::string target;
  if (path.empty() || FollowLinks(engine_->files, path, target) != kDone) return reports;
  FileInfo info;
  for (int number = 1; engine_->files.Describe(QuarantineName(target, number), info) == 0;
       ++number) {
    reports.push_back(ExamineFile(engine_->files, QuarantineName(target, number)));
  }
  return reports;
}

JournalReport PersistentStore::VerifyFile(const std::string& path, FileSystem& files) {
  return ExamineFile(files, path);
}

JournalReport PersistentStore::RepairFile(const std::string& path, FileSystem& files) {
  const std::size_t name = path.rfind('/') + 1;
  JournalHive hive(files, {.folder = name == 0 ? "." : FolderOf(path),
                           .file_name = path.substr(name),
                           .is_private = true});
  JournalReport report = hive.RepairDamage();
  report.path = path;
  return report;
}

Int32 PersistentStore::Mark(StoreRoot root, HiveMark& mark) const {
  JournalHive* journal = engine_->JournalOf(root);
  return journal == nullptr ? kDone : journal->Mark(mark);
}

std::vector<JournalReport> PersistentStore::TakeReports() {
  std::vector<JournalReport> reports;
  for (JournalHive* journal : engine_->journals) {
    if (journal == nullptr) continue;
    for (auto& report : journal->TakeReports()) reports.push_back(std::move(report));
  }
  return reports;
}

}  // namespace quorl
