#include "quorl/store/internal/open_file.hpp"

#include <cerrno>

namespace quorl::internal {
namespace {

template <class Call>
Int32 Uninterrupted(Call call) {
  std::int64_t result = call();
  while (result == -EINTR) result = call();
  return CodeOfResult(result);
}

}  // namespace

Int32 CodeOfResult(std::int64_t result) noexcept {
  return result < 0 ? StatusOf(static_cast<int>(-result)) : kDone;
}

Int32 OpenFile::Read(char* bytes, std::size_t size, std::uint64_t offset, std::size_t& got) const {
  got = 0;
  while (got < size) {
    const auto read = files_->ReadAt(descriptor_, bytes + got, size - got, offset + got);
    if (read == -EINTR) continue;
    if (read <= 0) return CodeOfResult(read);
    got += static_cast<std::size_t>(read);
  }
  return kDone;
}

Int32 OpenFile::Write(std::string_view bytes, std::uint64_t offset) const {
  while (!bytes.empty()) {
    const auto written = files_->WriteAt(descriptor_, bytes.data(), bytes.size(), offset);
    if (written == -EINTR) continue;
    if (written <= 0)
      return written == 0 ? static_cast<Int32>(kInputOutputFailed) : CodeOfResult(written);
    bytes.remove_prefix(static_cast<std::size_t>(written));
    offset += static_cast<std::uint64_t>(written);
  }
  return kDone;
}

Int32 OpenFile::Truncate(std::uint64_t size) const {
  return Uninterrupted([&] { return files_->Truncate(descriptor_, size); });
}

Int32 OpenFile::Sync() const {
  return Uninterrupted([&] { return files_->Sync(descriptor_); });
}

Int32 OpenFile::Describe(FileInfo& info) const {
  return Uninterrupted([&] { return files_->DescribeOpen(descriptor_, info); });
}

}  // namespace quorl::internal
