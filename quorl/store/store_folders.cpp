#include "quorl/store/store_folders.hpp"

#include <cstdlib>
#include <string_view>

namespace quorl {
namespace {

constexpr std::string_view kBelowData = "/quorl/registry";
constexpr std::string_view kDataBelowHome = "/.local/share";
constexpr const char* kMachineFolder = "/var/lib/quorl/registry";

std::string Setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

}  // namespace

StoreFolders StoreFolders::Usual() {
  std::string data = Setting("XDG_DATA_HOME");
  const std::string home = Setting("HOME");
  // The desktop's convention: a relative path is invalid and ignored.
  const bool is_ignored = data.empty() || (!data.starts_with('/') && !home.empty());
  if (is_ignored) data = home.empty() ? home : home + std::string(kDataBelowHome);
  if (!data.empty()) data += kBelowData;
  return {data, kMachineFolder};
}

}  // namespace quorl
