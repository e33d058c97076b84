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

enum class Kept : std::uint8_t { WithUser, WithMachine, InMemory };

struct HiveRow {
  StoreRoot root;
  std::string_view name;
  Kept kept;
};

constexpr std::array<HiveRow, kRootCount> kHives{{
    {kClassesRoot, "HKEY_CLASSES_ROOT", Kept::WithUser},
    {kCurrentUser, "HKEY_CURRENT_USER", Kept::WithUser},
    {kLocalMachine, "HKEY_LOCAL_MACHINE", Kept::WithMachine},
    {kUsers, "HKEY_USERS", Kept::WithMachine},
    {kPerformanceData, "HKEY_PERFORMANCE_DATA", Kept::InMemory},
    {kCurrentConfig, "HKEY_CURRENT_CONFIG", Kept::WithMachine},
    {kDynData, "HKEY_DYN_DATA", Kept::InMemory},
}};

constexpr bool RowsFollowRoots() {
  for (int i = 0; i < kRootCount; ++i) {
    if (kHives[static_cast<std::size_t>(i)].root != kClassesRoot + i) return false;
  }
  return true;
}
static_assert(RowsFollowRoots());

Int32 StatusOfFolder(const std::string& folder) noexcept {
  if (folder.empty()) return kFolderNotFound;
  return folder.starts_with('/') ? kDone : kWrongFolder;
}

JournalPlace PlaceOf(const HiveRow& row, const StoreFolders& folders) {
  const bool user = row.kept == Kept::WithUser;
  const std::string& folder = user ? folders.user : folders.machine;
  return {.folder = folder,
          .file_name = std::string(row.name) + ".journal",
          .folder_mode = user ? 0700U : 0755U,
          .file_mode = user ? 0600U : 0644U,
          .status = StatusOfFolder(folder)};
}

HiveStore::Hives MakeHives(const StoreFolders& folders, FileSystem& files) {
  HiveStore::Hives hives;
  for (std::size_t i = 0; i < kHives.size(); ++i) {
    if (kHives[i].kept == Kept::InMemory) {
      hives[i] = std::make_unique<MemoryHive>();
    } else {
      hives[i] = std::make_unique<JournalHive>(files, PlaceOf(kHives[i], folders));
    }
  }
  return hives;
}

}  // namespace

struct PersistentStore::Engine {
  /// The hive of a root key that is kept in a file; null for one in memory only.
  JournalHive* JournalOf(StoreRoot root) const noexcept {
    return dynamic_cast<JournalHive*>(&store.HiveOf(root));
  }

  FileSystem& files;
  HiveStore store;
};

PersistentStore::PersistentStore(const StoreFolders& folders, FileSystem& files)
    : engine_(new Engine{files, HiveStore(MakeHives(folders, files))}) {}

PersistentStore::~PersistentStore() = default;

Store& PersistentStore::Next() const noexcept { return engine_->store; }

std::string PersistentStore::HivePath(StoreRoot root) const {
  const auto* hive = engine_->JournalOf(root);
  return hive == nullptr ? std::string() : hive->Path();
}

JournalReport PersistentStore::Verify(StoreRoot root) const {
  auto* hive = engine_->JournalOf(root);
  return hive == nullptr ? JournalReport{.status = kAbsent} : hive->Verify();
}

std::vector<JournalReport> PersistentStore::VerifyKeptAside(StoreRoot root) const {
  std::vector<JournalReport> reports;
  const std::string path = HivePath(root);
  std::string target;
  if (path.empty() || FollowLinks(engine_->files, path, target) != kDone) return reports;
  FileInfo info;
  for (int number = 1; engine_->files.Describe(AsideName(target, number), info) == 0; ++number) {
    reports.push_back(ExamineFile(engine_->files, AsideName(target, number)));
  }
  return reports;
}

std::vector<JournalReport> PersistentStore::TakeReports() {
  std::vector<JournalReport> reports;
  for (const HiveRow& row : kHives) {
    auto* hive = engine_->JournalOf(row.root);
    if (hive == nullptr) continue;
    for (auto& report : hive->TakeReports()) reports.push_back(std::move(report));
  }
  return reports;
}

}  // namespace quorl
