#include "quorl/regional/guids.hpp"

#include <pthread.h>
#include <sys/random.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <utility>

#include "quorl/runtime/internal/guid_text.hpp"
#include "quorl/runtime/internal/join.hpp"
#include "quorl/runtime/internal/within_memory.hpp"
#include "quorl/runtime/number_text.hpp"

namespace quorl {

using namespace internal;
namespace {

constexpr StringView kAllOnesGuid = u"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}";
constexpr StringView kEightDigits = u"00000000";

// Random bytes of one thread for many GUIDs, drawn with one system call, which costs more than all
// the rest. Without a destructor, so that GUIDs can be made until the thread's last moment.
struct Stock {
  std::array<GuidBytes, 64> guids;
  std::size_t left;
};
constinit thread_local Stock stock{};

// The stock stays empty if the system gives no randomness. It gives a part only to a call that a
// signal interrupts.
void FillStock() noexcept {
  ssize_t given = -1;
  do {
    given = getrandom(&stock.guids, sizeof(stock.guids), 0);
  } while (given < 0 && errno == EINTR);
  stock.left = given > 0 ? static_cast<std::size_t>(given) / sizeof(GuidBytes) : 0;
}

}  // namespace

String GUIDs::CreateGUID() {
  // The one thread of a forked child starts with a stock that is its parent's too.
  static const bool empties_in_child =
      pthread_atfork(nullptr, nullptr, [] { stock.left = 0; }) == 0;
  if (stock.left == 0 || !empties_in_child) FillStock();
  if (stock.left == 0) return {};
  // What is given out must not be found in memory again.
  GuidBytes guid = std::exchange(stock.guids[--stock.left], {});
  guid[6] = static_cast<Byte>((guid[6] & 0x0F) | 0x40);  // version 4: random
  guid[8] = static_cast<Byte>((guid[8] & 0x3F) | 0x80);  // the common variant
  return WithinMemory([&] { return WriteGuid(guid); });
}

String GUIDs::GetNullGUID() { return CopyOf(kAllOnesGuid); }

String GUIDs::GetZeroGUID() { return CopyOf(kZeroGuidText); }

String GUIDs::GetNumGUID(Int32 Number) {
  return Joined(u"{", FormatNumber(Number, kEightDigits),
                kZeroGuidText.substr(1 + kEightDigits.size()));
}

}  // namespace quorl
