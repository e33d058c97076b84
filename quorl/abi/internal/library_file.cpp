#include "quorl/abi/internal/library_file.hpp"

#include <dlfcn.h>

#include <cstdlib>
#include <memory>

namespace quorl::abi {

std::string LibraryFileOf(const void* address) {
  Dl_info info{};
  if (dladdr(address, &info) == 0) return {};
  const std::unique_ptr<char, decltype(&std::free)> path(realpath(info.dli_fname, nullptr),
                                                         &std::free);
  return path == nullptr ? std::string() : path.get();
}

}  // namespace quorl::abi
