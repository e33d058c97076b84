#include "quorl/store/internal/open_file.hpp"

#include <algorithm>
#include <array>

namespace quorl::internal {

StoreStatus CodeOfResult(std::int64_t result) noexcept {
  return result < 0 ? StatusOf(static_cast<int>(-result)) : kDone;
}

bool OpenFile::IsStill(const FileInfo& identity) const noexcept {
  FileInfo info;
  return IsOpen() && files_->DescribeOpen(descriptor_, info) == 0 && info.SameFile(identity);
}

StoreStatus OpenFile::Read(char* bytes, std::size_t size, std::uint64_t offset,
                           std::size_t& got) const {
  got = 0;
  while (got < size) {
    const auto read = files_->ReadAt(descriptor_, bytes + got, size - got, offset + got);
    if (read <= 0) return CodeOfResult(read);
    got += static_cast<std::size_t>(read);
  }
  return kDone;
}

StoreStatus OpenFile::Write(std::string_view bytes, std::uint64_t offset) const {
  while (!bytes.empty()) {
    const auto written = files_->WriteAt(descriptor_, bytes.data(), bytes.size(), offset);
    if (written <= 0) return written == 0 ? kInputOutputFailed : CodeOfResult(written);
    bytes.remove_prefix(static_cast<std::size_t>(written));
    offset += static_cast<std::uint64_t>(written);
  }
  return kDone;
}

StoreStatus OpenFile::WriteZeros(std::uint64_t count, std::uint64_t offset) const {
  static constexpr std::array<char, 16384> kZeros{};
  while (count != 0) {
    const auto now = static_cast<std::size_t>(std::min<std::uint64_t>(count, kZeros.size()));
    const StoreStatus status = Write({kZeros.data(), now}, offset);
    if (status != kDone) return status;
    count -= now;
    offset += now;
  }
  return kDone;
}

StoreStatus OpenFile::Truncate(std::uint64_t size) const {
  return CodeOfResult(files_->Truncate(descriptor_, size));
}

StoreStatus OpenFile::Sync() const { return CodeOfResult(files_->Sync(descriptor_)); }

StoreStatus OpenFile::Describe(FileInfo& info) const {
  return CodeOfResult(files_->DescribeOpen(descriptor_, info));
}

StoreStatus OpenFile::DescribeWithTime(FileInfo& info) const {
  return CodeOfResult(files_->DescribeWithTime(descriptor_, info));
}

}  // namespace quorl::internal
