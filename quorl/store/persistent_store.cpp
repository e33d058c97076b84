#include "quorl/store/persistent_store.hpp"

#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include "quorl/store/journal_hive.hpp"
#include "quorl/store/memory_store.hpp"

namespace quorl {
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

}  // namespace

PersistentStore::PersistentStore(const StoreFolders& folders, FileSystem& files)
    : HiveStore([&] {
        Hives hives;
        for (std::size_t i = 0; i < kHives.size(); ++i) {
          if (kHives[i].kept == Kept::InMemory) {
            hives[i] = std::make_unique<MemoryHive>();
          } else {
            hives[i] = std::make_unique<JournalHive>(files, PlaceOf(kHives[i], folders));
          }
        }
        return hives;
      }()),
      files_(files) {}

std::string PersistentStore::HivePath(StoreRoot root) const {
  const auto* hive = dynamic_cast<JournalHive*>(&HiveOf(root));
  return hive == nullptr ? std::string() : hive->Path();
}

JournalReport PersistentStore::Verify(StoreRoot root) const {
  auto* hive = dynamic_cast<JournalHive*>(&HiveOf(root));
  return hive == nullptr ? JournalReport{.status = kAbsent} : hive->Verify();
}

std::vector<JournalReport> PersistentStore::VerifyKeptAside(StoreRoot root) const {
  std::vector<JournalReport> reports;
  const std::string path = HivePath(root);
  std::string target;
  if (path.empty() || FollowLinks(files_, path, target) != kDone) return reports;
  FileInfo info;
  for (int number = 1; files_.Describe(AsideName(target, number), info) == 0; ++number) {
    reports.push_back(ExamineFile(files_, AsideName(target, number)));
  }
  return reports;
}

std::vector<JournalReport> PersistentStore::TakeReports() {
  std::vector<JournalReport> reports;
  for (const HiveRow& row : kHives) {
    auto* hive = dynamic_cast<JournalHive*>(&HiveOf(row.root));
    if (hive == nullptr) continue;
    for (auto& report : hive->TakeReports()) reports.push_back(std::move(report));
  }
  return reports;
}

}  // namespace quorl
