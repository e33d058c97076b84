#include "quorl/regional/guids.hpp"

#include <sys/mman.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <span>

#include "quorl/runtime/internal/guid_text.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr StringView kAllOnesGuid = u"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}";
constexpr StringView kEightDigits = u"00000000";

// False if the system gives no randomness; `bytes` is then of no use.
bool FillFromSystem(std::span<Byte> bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t given = getrandom(bytes.data(), bytes.size(), 0);
    if (given > 0) {
      bytes = bytes.subspan(static_cast<std::size_t>(given));
    } else if (given == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

// A thread's stock of random bytes, one system call for a page of them. All zero, as the kernel
// makes and clears a page, is an empty stock.
struct Stock {
  std::size_t left;
  std::size_t unused;
  std::array<Byte, 4080> bytes;
};
static_assert(sizeof(Stock) == 4096 && Stock{}.bytes.size() % GuidBytes{}.size() == 0);

// A page that the kernel clears in a forked child, however the child was made: it finds the stock
// empty and asks for its own. Null where the kernel cannot do that.
Stock* MapStock() noexcept {
  void* const mapped =
      mmap(nullptr, sizeof(Stock), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (mapped == MAP_FAILED) return nullptr;
  if (madvise(mapped, sizeof(Stock), MADV_WIPEONFORK) == 0) return static_cast<Stock*>(mapped);
  munmap(mapped, sizeof(Stock));
  return nullptr;
}

// A plain pointer, good to the thread's last moment: destructors that run after the owner's find
// no stock, and their GUIDs cost a call each.
constinit thread_local Stock* stock = nullptr;

struct StockOwner {
  StockOwner() noexcept { stock = MapStock(); }
  ~StockOwner() {
    if (stock != nullptr) munmap(stock, sizeof(Stock));
    stock = nullptr;
  }
  StockOwner(const StockOwner&) = delete;
  StockOwner& operator=(const StockOwner&) = delete;
};

// Random bytes that nobody was given before; false if there are none.
bool TakeRandom(GuidBytes& taken) noexcept {
  thread_local const StockOwner owner;
  if (stock == nullptr) return FillFromSystem(taken);
  if (stock->left == 0) {
    if (!FillFromSystem(stock->bytes)) return false;
    stock->left = stock->bytes.size();
  }
  stock->left -= taken.size();
  const auto source = std::span(stock->bytes).subspan(stock->left, taken.size());
  std::ranges::copy(source, taken.begin());
  // What was given out must not be found in memory again.
  std::ranges::fill(source, Byte{0});
  return true;
}

std::optional<GuidBytes> NewGuid() noexcept {
  GuidBytes guid;
  if (!TakeRandom(guid)) return std::nullopt;
  guid[6] = static_cast<Byte>((guid[6] & 0x0F) | 0x40);  // version 4: random
  guid[8] = static_cast<Byte>((guid[8] & 0x3F) | 0x80);  // the common variant
  return guid;
}

}  // namespace

String GUIDs::CreateGUID() {
  const std::optional<GuidBytes> guid = NewGuid();
  if (!guid) return {};
  return WithinMemory([&] { return WriteGuid(*guid); });
}

String GUIDs::GetNullGUID() {
  return WithinMemory([] { return String(kAllOnesGuid); });
}

String GUIDs::GetZeroGUID() {
  return WithinMemory([] { return String(kZeroGuidText); });
}

String GUIDs::GetNumGUID(Int32 Number) {
  return WithinMemory([&] {
    String text(u"{");
    text.append(FormatNumber(Number, kEightDigits));
    return text.append(kZeroGuidText.substr(1 + kEightDigits.size()));
  });
}

}  // namespace quorl
