#include "quorl/store/status.hpp"

#include <algorithm>
#include <cerrno>

namespace quorl {

StringView SentenceOf(Int32 code) noexcept {
  const auto* row = std::ranges::find(kStatusRows, code, &StatusRow::code);
  return row == kStatusRows.end() ? StringView{} : row->sentence;
}

StoreStatus StatusOf(int error) noexcept {
  switch (error) {
    case 0:
      return kDone;
    case ENOENT:
    case ENOTDIR:
      return kFolderNotFound;
    case EMFILE:
    case ENFILE:
      return kTooManyFiles;
    case EACCES:
    case EPERM:
    case EROFS:
      return kAccessDenied;
    case ENOMEM:
      return kOutOfMemory;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kDiskFull;
    case ELOOP:
    case ENAMETOOLONG:
      return kWrongFolder;
    case EISDIR:
    case ENXIO:
    case ENODEV:
      return kNotAHive;
    default:
      return kInputOutputFailed;
  }
}

}  // namespace quorl
