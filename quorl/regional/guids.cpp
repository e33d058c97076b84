#include "quorl/regional/guids.hpp"

#include <pthread.h>
#include <sys/random.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <span>

#include "quorl/runtime/internal/guid_text.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr StringView kAllOnesGuid = u"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}";
constexpr StringView kEightDigits = u"00000000";

// Random bytes of one thread, drawn for many GUIDs with one system call, which costs more than all
// the rest. Without a destructor, so that GUIDs can be made until the thread's last moment.
struct Stock {
  std::array<Byte, 64 * GuidBytes{}.size()> bytes;
  std::size_t left;
  unsigned forks;  // how many there had been when it was drawn
};
constinit thread_local Stock stock{};

// Counted in each child: a stock drawn before the fork is its parent's too.
std::atomic<unsigned> forks = 0;

// 0 if the system gives no randomness. It gives a part only to a call that a signal interrupts.
std::size_t DrawRandom(std::span<Byte> bytes) noexcept {
  ssize_t given = -1;
  do {
    given = getrandom(bytes.data(), bytes.size(), 0);
  } while (given < 0 && errno == EINTR);
  const std::size_t usable = given > 0 ? static_cast<std::size_t>(given) : 0;
  return usable - usable % GuidBytes{}.size();
}

// Bytes that nobody was given before; false if there are none.
bool TakeRandom(GuidBytes& taken) noexcept {
  static const bool counts_forks = pthread_atfork(nullptr, nullptr, [] { ++forks; }) == 0;
  if (!counts_forks) return DrawRandom(taken) != 0;
  if (stock.left == 0 || stock.forks != forks) {
    stock.forks = forks;
    stock.left = DrawRandom(stock.bytes);
    if (stock.left == 0) return false;
  }
  stock.left -= taken.size();
  const auto source = std::span(stock.bytes).subspan(stock.left, taken.size());
  std::ranges::copy(source, taken.begin());
  // What was given out must not be found in memory again.
  std::ranges::fill(source, Byte{0});
  return true;
}

}  // namespace

String GUIDs::CreateGUID() {
  GuidBytes guid;
  if (!TakeRandom(guid)) return {};
  guid[6] = static_cast<Byte>((guid[6] & 0x0F) | 0x40);  // version 4: random
  guid[8] = static_cast<Byte>((guid[8] & 0x3F) | 0x80);  // the common variant
  return WithinMemory([&] { return WriteGuid(guid); });
}

String GUIDs::GetNullGUID() { return CopyOf(kAllOnesGuid); }

String GUIDs::GetZeroGUID() { return CopyOf(kZeroGuidText); }

String GUIDs::GetNumGUID(Int32 Number) {
  return Joined(
      {u"{", FormatNumber(Number, kEightDigits), kZeroGuidText.substr(1 + kEightDigits.size())});
}

}  // namespace quorl
