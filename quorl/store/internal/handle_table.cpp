#include "quorl/store/internal/handle_table.hpp"

#include <cstdint>
#include <utility>

namespace quorl::internal {

KeyHandle HandleTable::Add(std::shared_ptr<OpenedKey> opened) {
  const std::lock_guard lock(mutex_);
  if (2 * (count_ + 1) > rows_.size()) Grow();
  KeyHandle handle = last_;
  std::size_t row = 0;
  do {
    handle = handle == INT32_MAX ? 1 : handle + 1;
    row = RowOf(handle);
  } while (rows_[row].handle != 0);
  rows_[row] = {handle, std::move(opened)};
  ++count_;
  last_ = handle;
  return handle;
}

std::shared_ptr<OpenedKey> HandleTable::Find(KeyHandle handle) const noexcept {
  const std::lock_guard lock(mutex_);
  return rows_[RowOf(handle)].opened;
}

bool HandleTable::Remove(KeyHandle handle) noexcept {
  std::shared_ptr<OpenedKey> removed;  // Ends when the table is not locked any more.
  const std::lock_guard lock(mutex_);
  std::size_t free = RowOf(handle);
  if (rows_[free].handle == 0) return false;
  removed = std::move(rows_[free].opened);
  // Rows behind it that would not be found from their own place on any more move up.
  for (std::size_t row = After(free); rows_[row].handle != 0; row = After(row)) {
    const std::size_t mask = rows_.size() - 1;
    const std::size_t own = static_cast<std::size_t>(rows_[row].handle) & mask;
    if (((row - own) & mask) < ((row - free) & mask)) continue;
    rows_[free] = std::exchange(rows_[row], Row());
    free = row;
  }
  rows_[free] = Row();
  --count_;
  return true;
}

std::size_t HandleTable::Count() const noexcept {
  const std::lock_guard lock(mutex_);
  return count_;
}

// The handle's row, or the free one where it would be. A free row has the handle 0 and no key.
std::size_t HandleTable::RowOf(KeyHandle handle) const noexcept {
  std::size_t row = static_cast<std::size_t>(handle) & (rows_.size() - 1);
  while (rows_[row].handle != handle && rows_[row].handle != 0) row = After(row);
  return row;
}

void HandleTable::Grow() {
  std::vector<Row> former(2 * rows_.size());
  former.swap(rows_);
  for (Row& row : former) {
    if (row.handle != 0) rows_[RowOf(row.handle)] = std::move(row);
  }
}

}  // namespace quorl::internal
