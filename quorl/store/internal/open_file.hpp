// An open file of a FileSystem that closes itself, with reading and writing to the end of what is
// asked. Not for several threads at once.
#pragma once

#include <cstdint>
#include <string_view>
#include <utility>

#include "quorl/store/file_system.hpp"
#include "quorl/store/status.hpp"

namespace quorl::internal {

/// The code of a FileSystem's result.
StoreStatus CodeOfResult(std::int64_t result) noexcept;

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
  /// Whether the descriptor is open and still that of the file `identity`: the host may have closed
  /// it and opened something else.
  bool IsStill(const FileInfo& identity) const noexcept;
  /// Leaves the descriptor as it is, because it is not ours any more.
  void Forget() noexcept { descriptor_ = -1; }

  /// Reads up to `size` bytes, fewer only at the file's end; `got` says how many.
  StoreStatus Read(char* bytes, std::size_t size, std::uint64_t offset, std::size_t& got) const;
  /// Writes all of `bytes`.
  StoreStatus Write(std::string_view bytes, std::uint64_t offset) const;
  /// Writes `count` zeros.
  StoreStatus WriteZeros(std::uint64_t count, std::uint64_t offset) const;
  StoreStatus Truncate(std::uint64_t size) const;
  StoreStatus Sync() const;
  /// Begins to write out a part of the file, without waiting.
  void StartSync(std::uint64_t offset, std::uint64_t count) const noexcept {
    files_->StartSync(descriptor_, offset, count);
  }
  StoreStatus Describe(FileInfo& info) const;
  StoreStatus DescribeWithTime(FileInfo& info) const;

 private:
  FileSystem* files_ = nullptr;
  int descriptor_ = -1;
};

}  // namespace quorl::internal
