// New GUIDs: form, bits and distinctness, also across fork, threads and a system that fails.
#include "quorl/regional/guids.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/random.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <functional>
#include <limits>
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
  const int call = ++random_calls;
  switch (randomness.load()) {
    case System::kGivesNothing:
      errno = ENOSYS;
      return -1;
    case System::kGivesSevenBytesAtATime:
      size = std::min<size_t>(size, 7);
      break;
    case System::kIsInterruptedEveryOtherTime:
      if (call % 2 != 0) {
        errno = EINTR;
        return -1;
      }
      break;
    case System::kWorks:
      break;
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
std::pair<std::uint64_t, std::uint64_t> BitsOf(const String& guid) {
  std::string digits;
  for (const char16_t unit : guid) {
    if (unit != u'{' && unit != u'-' && unit != u'}') digits += static_cast<char>(unit);
  }
  return {std::strtoull(digits.substr(0, 16).c_str(), nullptr, 16),
          std::strtoull(digits.substr(16).c_str(), nullptr, 16)};
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

// Runs `work` in a forked child and gives what it returns.
std::vector<String> InChild(const std::function<std::vector<String>()>& work) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const pid_t child = fork();
  if (child == 0) {
    for (const String& guid : work()) {
      if (write(ends[1], guid.data(), 76) != 76) _exit(1);
    }
    _exit(0);
  }
  close(ends[1]);
  std::vector<String> guids;
  for (String guid(38, u' '); read(ends[0], guid.data(), 76) == 76;) guids.push_back(guid);
  close(ends[0]);
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  return guids;
}

class GuidsTest : public testing::Test {
 protected:
  void TearDown() override {
    randomness = System::kWorks;
    clears_on_fork = true;
  }
};

TEST_F(GuidsTest, AMillionAreDistinctAndEveryFreeBitVaries) {
  constexpr std::size_t kMany = 1'000'000;
  std::vector<std::pair<std::uint64_t, std::uint64_t>> seen(kMany);
  std::vector<int> ones(128);
  for (auto& bits : seen) {
    const String guid = GUIDs::CreateGUID();
    ASSERT_EQ(guid.size(), 38U);
    bits = BitsOf(guid);
    ASSERT_EQ(bits.first >> 12 & 0xF, 4U) << Utf8(guid);
    ASSERT_EQ(bits.second >> 62, 2U) << Utf8(guid);
    for (std::size_t i = 0; i < 64; ++i) {
      ones[i] += static_cast<int>(bits.first >> i & 1);
      ones[64 + i] += static_cast<int>(bits.second >> i & 1);
    }
  }
  std::ranges::sort(seen);
  EXPECT_EQ(std::ranges::adjacent_find(seen), seen.end());
  // Ten standard deviations around one half, the six fixed bits apart.
  int fixed = 0;
  for (const int count : ones) fixed += std::abs(count - 500'000) > 5'000;
  EXPECT_EQ(fixed, 6);
}

TEST_F(GuidsTest, EachHasTheForm) {
  for (const String& guid : Some(2'000)) ASSERT_TRUE(HasForm(guid)) << Utf8(guid);
}

TEST_F(GuidsTest, ParentAndChildrenGiveDifferentOnes) {
  for (const bool cleared : {true, false}) {
    clears_on_fork = cleared;
    // A thread of its own begins without a stock; the fork comes when the stock is half used.
    std::thread([] {
      std::vector<String> all = Some(100);
      const auto add = [&](const std::vector<String>& more) {
        EXPECT_EQ(more.size(), 600U);
        all.insert(all.end(), more.begin(), more.end());
      };
      add(InChild([] { return Some(600); }));
      add(InChild([] { return Some(600); }));
      add(InChild([] { return InChild([] { return Some(600); }); }));
      add(Some(600));
      ExpectDistinct(all);
    }).join();
  }
}

TEST_F(GuidsTest, ThreadsGiveDifferentOnes) {
  std::vector<std::vector<String>> given(8);
  std::vector<std::thread> threads;
  for (auto& some : given) threads.emplace_back([&some] { some = Some(5'000); });
  for (std::thread& thread : threads) thread.join();
  std::vector<String> all;
  for (const auto& some : given) all.insert(all.end(), some.begin(), some.end());
  ExpectDistinct(all);
}

TEST_F(GuidsTest, OneSystemCallServesManyWhereThatIsSafe) {
  for (const bool cleared : {true, false}) {
    clears_on_fork = cleared;
    std::thread([cleared] {
      const int before = random_calls;
      ExpectDistinct(Some(1'000));
      const int calls = random_calls - before;
      EXPECT_TRUE(cleared ? calls <= 4 : calls == 1'000) << calls;
    }).join();
  }
}

TEST_F(GuidsTest, WhatWasGivenOutIsNoLongerInMemory) {
  std::thread([] {
    const std::vector<String> guids = Some(100);
    const std::string_view stock(latest_stock, 4096);
    EXPECT_GT(std::ranges::count_if(stock, [](char byte) { return byte != 0; }), 2'000);
    for (const String& guid : guids) {
      std::string first_bytes;
      for (int shift = 56; shift >= 16; shift -= 8) {
        first_bytes += static_cast<char>(BitsOf(guid).first >> shift & 0xFF);
      }
      ASSERT_EQ(stock.find(first_bytes), std::string_view::npos) << Utf8(guid);
    }
  }).join();
}

TEST_F(GuidsTest, ASystemThatGivesLittleAtATimeIsAskedAgain) {
  for (const System system :
       {System::kGivesSevenBytesAtATime, System::kIsInterruptedEveryOtherTime}) {
    randomness = system;
    std::thread([] {
      const std::vector<String> guids = Some(1'000);
      for (const String& guid : guids) ASSERT_TRUE(HasForm(guid)) << Utf8(guid);
      ExpectDistinct(guids);
    }).join();
  }
}

TEST_F(GuidsTest, WithoutRandomnessTheTextIsEmptyUntilThereIsSome) {
  for (const bool cleared : {true, false}) {
    clears_on_fork = cleared;
    std::thread([] {
      randomness = System::kGivesNothing;
      EXPECT_EQ(GUIDs::CreateGUID(), u"");
      randomness = System::kWorks;
      EXPECT_TRUE(HasForm(GUIDs::CreateGUID()));
    }).join();
  }
}

// Destroyed after everything that belongs to the thread.
struct AsksAtTheVeryEnd {
  ~AsksAtTheVeryEnd() { _exit(HasForm(GUIDs::CreateGUID()) ? 0 : 1); }
};

TEST_F(GuidsTest, OneCanBeMadeWhileTheProgramEnds) {
  const auto end_program = [] {
    static const AsksAtTheVeryEnd last;
    GUIDs::CreateGUID();
    std::exit(1);
  };
  EXPECT_EXIT(end_program(), testing::ExitedWithCode(0), "");
}

TEST_F(GuidsTest, FixedAndNumbered) {
  EXPECT_EQ(GUIDs::GetNullGUID(), u"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}");
  EXPECT_EQ(GUIDs::GetZeroGUID(), u"{00000000-0000-0000-0000-000000000000}");
  const std::pair<Int32, std::string> cases[] = {
      {0, "00000000"},
      {42, "00000042"},
      {255, "00000255"},
      {-42, "-00000042"},
      {12345678, "12345678"},
      {99999999, "99999999"},
      {100000000, "100000000"},
      {123456789, "123456789"},
      {std::numeric_limits<Int32>::max(), "2147483647"},
      {std::numeric_limits<Int32>::min(), "-2147483648"}};
  for (const auto& [number, first_group] : cases) {
    EXPECT_EQ(Utf8(GUIDs::GetNumGUID(number)), "{" + first_group + "-0000-0000-0000-000000000000}");
  }
}

}  // namespace
}  // namespace quorl
