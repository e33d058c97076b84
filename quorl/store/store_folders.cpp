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
  if (data.empty()) {
    data = Setting("HOME");
    if (!data.empty()) data += kDataBelowHome;
  }
  if (!data.empty()) data += kBelowData;
  return {data, kMachineFolder};
}

}  // namespace quorl
