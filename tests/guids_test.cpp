// New GUIDs: form, bits and distinctness, also across fork, threads and a system that fails.
#include "quorl/regional/guids.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <latch>
#include <thread>
#include <utility>
#include <vector>

#include "quorl/runtime/utf.hpp"

namespace {

// How the system behaves for the rest of a test.
enum class System { kWorks, kGivesNothing, kGivesSevenBytesAtATime, kIsInterruptedEveryOtherTime };

std::atomic<System> randomness = System::kWorks;
std::atomic<int> random_calls = 0;
std::atomic<bool> clears_on_fork = true;
std::atomic<const char*> latest_stock = nullptr;

}  // namespace

// In front of the system's own, so that a test can count its calls and make it fail.
extern "C" ssize_t getrandom(void* buffer, size_t size, unsigned flags) {
  const bool odd_call = ++random_calls % 2 != 0;
  if (randomness == System::kGivesSevenBytesAtATime) size = std::min<size_t>(size, 7);
  const bool is_interrupted = randomness == System::kIsInterruptedEveryOtherTime && odd_call;
  if (is_interrupted || randomness == System::kGivesNothing) {
    errno = is_interrupted ? EINTR : ENOSYS;
    return -1;
  }
  return syscall(SYS_getrandom, buffer, size, flags);
}

extern "C" int madvise(void* at, size_t size, int advice) noexcept {
  if (advice == MADV_WIPEONFORK && !clears_on_fork) {
    errno = EINVAL;
    return -1;
  }
  if (advice == MADV_WIPEONFORK) latest_stock = static_cast<const char*>(at);
  return static_cast<int>(syscall(SYS_madvise, at, size, advice));
}

namespace quorl {
namespace {

// x is any digit, v one that begins with the bits 10.
bool HasForm(const String& guid) {
  const auto fits = [](char16_t unit, char16_t place) {
    constexpr StringView kDigits = u"0123456789ABCDEF";
    if (place == u'x') return kDigits.find(unit) != StringView::npos;
    if (place == u'v') return kDigits.substr(8, 4).find(unit) != StringView::npos;
    return unit == place;
  };
  return std::ranges::equal(guid, StringView(u"{xxxxxxxx-xxxx-4xxx-vxxx-xxxxxxxxxxxx}"), fits);
}

// The 128 bits of a GUID, two numbers.
std::array<std::uint64_t, 2> BitsOf(const String& guid) {
  std::string digits = Utf8(guid);
  std::erase_if(digits, [](char unit) { return unit == '{' || unit == '-' || unit == '}'; });
  return {std::stoull(digits.substr(0, 16), nullptr, 16),
          std::stoull(digits.substr(16), nullptr, 16)};
}

std::vector<String> Some(std::size_t count) {
  std::vector<String> guids(count);
  for (String& guid : guids) guid = GUIDs::CreateGUID();
  return guids;
}

void ExpectDistinct(std::vector<String> guids) {
  std::ranges::sort(guids);
  EXPECT_EQ(std::ranges::adjacent_find(guids), guids.end());
}

// Runs `work`, which gives 600, in a forked child.
std::vector<String> InChild(const std::function<std::vector<String>()>& work) {
  std::vector<String> guids(600, String(38, u' '));
  void* const mapped = mmap(nullptr, 600 * 38 * sizeof(char16_t), PROT_READ | PROT_WRITE,
                            MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  auto* at = static_cast<char16_t*>(mapped);
  const pid_t child = fork();
  if (child == 0) {
    for (const String& guid : work()) at = std::ranges::copy(guid, at).out;
    _exit(0);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  for (String& guid : guids) guid.assign(std::exchange(at, at + 38), 38);
  munmap(mapped, 600 * 38 * sizeof(char16_t));
  return guids;
}

// Runs `work` in threads of their own, which begin without a stock, where the system clears a stock
// on fork and where it cannot.
void InFreshThreads(const std::function<void()>& work) {
  for (const bool cleared : {true, false}) {
    clears_on_fork = cleared;
    std::thread(work).join();
    randomness = System::kWorks;
  }
  clears_on_fork = true;
}

TEST(Guids, AMillionAreDistinctAndEveryFreeBitVaries) {
  constexpr std::size_t kMany = 1'000'000;
  std::vector<std::array<std::uint64_t, 2>> seen(kMany);
  std::array<int, 128> ones{};
  for (auto& bits : seen) {
    const String guid = GUIDs::CreateGUID();
    ASSERT_TRUE(HasForm(guid)) << Utf8(guid);
    bits = BitsOf(guid);
    for (std::size_t i = 0; i < 128; ++i) ones[i] += static_cast<int>(bits[i / 64] >> i % 64 & 1);
  }
  std::ranges::sort(seen);
  EXPECT_EQ(std::ranges::adjacent_find(seen), seen.end());
  // Ten standard deviations around one half, the six fixed bits apart.
  EXPECT_EQ(std::ranges::count_if(ones, [](int n) { return std::abs(n - 500'000) > 5'000; }), 6);
}

TEST(Guids, ParentAndChildrenGiveDifferentOnes) {
  // The fork comes when the stock is half used.
  InFreshThreads([] {
    std::vector<String> all = Some(100);
    const auto some = [] { return Some(600); };
    const auto grandchild = [&] { return InChild(some); };
    for (const auto& more : {InChild(some), InChild(some), InChild(grandchild), some()}) {
      all.insert(all.end(), more.begin(), more.end());
    }
    ExpectDistinct(all);
  });
}

TEST(Guids, ThreadsGiveDifferentOnes) {
  std::array<std::vector<String>, 8> given;
  std::latch start(8);
  std::vector<std::thread> threads;
  for (auto& guids : given) {
    threads.emplace_back([&] {
      start.arrive_and_wait();
      guids = Some(50'000);
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<String> all;
  for (const auto& guids : given) all.insert(all.end(), guids.begin(), guids.end());
  ExpectDistinct(all);
}

TEST(Guids, OneSystemCallServesManyWhereThatIsSafe) {
  InFreshThreads([] {
    const int before = random_calls;
    ExpectDistinct(Some(1'000));
    const int calls = random_calls - before;
    EXPECT_TRUE(clears_on_fork ? calls <= 4 : calls == 1'000) << calls;
  });
}

TEST(Guids, WhatWasGivenOutIsNoLongerInMemory) {
  std::thread([] {
    const std::vector<String> guids = Some(100);
    const std::string_view stock(latest_stock, 4096);
    EXPECT_GT(std::ranges::count_if(stock, [](char byte) { return byte != 0; }), 2'000);
    for (const String& guid : guids) {
      std::string first_bytes;
      for (int shift = 56; shift >= 16; shift -= 8) {
        first_bytes += static_cast<char>(BitsOf(guid)[0] >> shift & 0xFF);
      }
      ASSERT_EQ(stock.find(first_bytes), std::string_view::npos) << Utf8(guid);
    }
  }).join();
}

TEST(Guids, ASystemThatGivesLittleAtATimeIsAskedAgain) {
  for (const System system :
       {System::kGivesSevenBytesAtATime, System::kIsInterruptedEveryOtherTime}) {
    InFreshThreads([system] {
      randomness = system;
      const std::vector<String> guids = Some(1'000);
      EXPECT_TRUE(std::ranges::all_of(guids, HasForm));
      ExpectDistinct(guids);
    });
  }
}

TEST(Guids, WithoutRandomnessTheTextIsEmptyUntilThereIsSome) {
  InFreshThreads([] {
    randomness = System::kGivesNothing;
    EXPECT_EQ(GUIDs::CreateGUID(), u"");
    randomness = System::kWorks;
    EXPECT_TRUE(HasForm(GUIDs::CreateGUID()));
  });
}

// Destroyed after everything that belongs to the thread.
struct AsksAtTheVeryEnd {
  ~AsksAtTheVeryEnd() { _exit(HasForm(GUIDs::CreateGUID()) ? 0 : 1); }
};

TEST(Guids, OneCanBeMadeWhileTheProgramEnds) {
  const auto end_program = [] {
    static const AsksAtTheVeryEnd last;
    GUIDs::CreateGUID();
    std::exit(1);
  };
  EXPECT_EXIT(end_program(), testing::ExitedWithCode(0), "");
}

TEST(Guids, FixedAndNumbered) {
  EXPECT_EQ(GUIDs::GetNullGUID(), u"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}");
  EXPECT_EQ(GUIDs::GetZeroGUID(), u"{00000000-0000-0000-0000-000000000000}");
  const std::pair<Int32, std::string> cases[] = {
      {0, "00000000"},        {42, "00000042"},         {-42, "-00000042"},
      {99999999, "99999999"}, {100000000, "100000000"}, {-2147483648, "-2147483648"}};
  for (const auto& [number, first_group] : cases) {
    EXPECT_EQ(Utf8(GUIDs::GetNumGUID(number)), "{" + first_group + "-0000-0000-0000-000000000000}");
  }
}

}  // namespace
}  // namespace quorl
