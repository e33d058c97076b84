// A folder of a test's own on the disk, gone with the object.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "quorl/store/store_folders.hpp"

namespace quorl {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    path_ = (std::filesystem::temp_directory_path() / "quorl-store-XXXXXX").string();
    if (mkdtemp(path_.data()) == nullptr) std::abort();
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& Path() const { return path_; }
  StoreFolders Folders() const { return {path_ + "/user", path_ + "/machine"}; }
  /// The file of HKEY_CURRENT_USER.
  std::string UserHive() const { return path_ + "/user/HKEY_CURRENT_USER.journal"; }

 private:
  std::string path_;
};

}  // namespace quorl
