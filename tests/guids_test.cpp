// New GUIDs: form, bits and distinctness, also across fork, threads and a system that fails.
#include "quorl/regional/guids.hpp"

#include <gtest/gtest.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <set>
#include <thread>

#include "tests/support/cells.hpp"

namespace {
enum class System { kWorks, kGivesNothing, kIsInterruptedOnce, kGivesPart } randomness;
}  // namespace

extern "C" ssize_t getrandom(void* buffer, size_t size, unsigned flags) {
  const System system = randomness;
  if (system == System::kIsInterruptedOnce) randomness = System::kGivesPart;
  errno = system == System::kGivesNothing ? ENOSYS : EINTR;
  if (system == System::kGivesNothing || system == System::kIsInterruptedOnce) return -1;
  return syscall(SYS_getrandom, buffer, system == System::kGivesPart ? 260 : size, flags);
}

namespace quorl {
namespace {

std::string New() { return Utf8(GUIDs::CreateGUID()); }
// So many new ones, each for the first time.
void AddTo(std::set<std::string>& seen, int count) {
  for (int i = 0; i < count; ++i) {
    const auto [guid, is_new] = seen.insert(New());
    ASSERT_TRUE(is_new && guid->size() == 38) << *guid;
  }
}

TEST(Guids, EveryDigitTakesEachOfItsValuesAndNoOther) {
  std::set<char16_t> seen[38];
  for (int i = 0; i < 20'000; ++i) {
    const String guid = GUIDs::CreateGUID();
    ASSERT_EQ(guid.size(), 38U);
    for (std::size_t at = 0; at < guid.size(); ++at) seen[at].insert(guid[at]);
  }
  const StringView form = u"{xxxxxxxx-xxxx-4xxx-vxxx-xxxxxxxxxxxx}", digits = u"0123456789ABCDEF";
  for (std::size_t at = 0; at < form.size(); ++at) {
    const StringView fixed = form.substr(at, 1);
    const StringView values = fixed == u"x" ? digits : fixed == u"v" ? digits.substr(8, 4) : fixed;
    EXPECT_EQ(String(seen[at].begin(), seen[at].end()), values) << at;
  }
}

TEST(Guids, ProcessesAndThreadsGiveDifferentOnes) {
  std::set<std::string> seen, of_thread[4];
  AddTo(seen, 100);
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  // Two children, of which the second has a child of its own.
  for (const bool is_parent : {false, true}) {
    if (fork() != 0) continue;
    if (is_parent) static_cast<void>(fork());
    for (int i = 0; i < 100; ++i) {
      if (write(ends[1], New().data(), 38) != 38) _exit(1);
    }
    _exit(0);
  }
  close(ends[1]);
  for (std::string guid(38, ' '); read(ends[0], guid.data(), 38) == 38;) seen.insert(guid);
  AddTo(seen, 100);
  std::vector<std::thread> threads;
  for (auto& given : of_thread) threads.emplace_back([&] { AddTo(given, 20'000); });
  for (std::thread& thread : threads) thread.join();
  for (auto& given : of_thread) seen.merge(given);
  EXPECT_EQ(seen.size(), 500U + 80'000);
}

TEST(Guids, OfASystemThatGivesPartOrNothing) {
  std::thread([] {
    randomness = System::kGivesNothing;
    EXPECT_EQ(New(), "");
    randomness = System::kIsInterruptedOnce;
    std::set<std::string> seen;
    AddTo(seen, 1'000);
  }).join();
}

TEST(Guids, FixedAndNumbered) {
  EXPECT_EQ(GUIDs::GetNullGUID(), u"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}");
  EXPECT_EQ(GUIDs::GetZeroGUID(), u"{00000000-0000-0000-0000-000000000000}");
  for (const auto& row : Rows(u"42|00000042;-42|-00000042;100000000|100000000;0|00000000")) {
    EXPECT_EQ(GUIDs::GetNumGUID(std::stoi(Utf8(row[0]))),
              u"{" + row[1] + u"-0000-0000-0000-000000000000}");
  }
}

}  // namespace
}  // namespace quorl
