// An open file of a FileSystem that closes itself, with reading and writing to the end of what is
// asked. Codes are those of status.hpp. Not for several threads at once.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "quorl/store/file_system.hpp"
#include "quorl/store/status.hpp"

namespace quorl::internal {

/// The code of a FileSystem's result.
Int32 CodeOfResult(std::int64_t result) noexcept;

class OpenFile {
 public:
  OpenFile() = default;
  OpenFile(FileSystem& files, int descriptor) noexcept : files_(&files), descriptor_(descriptor) {}
  OpenFile(OpenFile&& other) noexcept { *this = std::move(other); }
  OpenFile& operator=(OpenFile&& other) noexcept {
    std::swap(files_, other.files_);
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  ~OpenFile() {
    if (IsOpen()) files_->Close(descriptor_);
  }

  bool IsOpen() const noexcept { return descriptor_ >= 0; }
  int Descriptor() const noexcept { return descriptor_; }

  /// Reads up to `size` bytes, fewer only at the file's end; `got` says how many.
  Int32 Read(char* bytes, std::size_t size, std::uint64_t offset, std::size_t& got) const;
  /// Writes all of `bytes`.
  Int32 Write(std::string_view bytes, std::uint64_t offset) const;
  Int32 Truncate(std::uint64_t size) const;
  Int32 Sync() const;
  Int32 Describe(FileInfo& info) const;

 private:
  FileSystem* files_ = nullptr;
  int descriptor_ = -1;
};

}  // namespace quorl::internal
