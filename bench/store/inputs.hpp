// Settings: values of one key with one text each, and what is done to them.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "bench/measure.hpp"

namespace quorl::bench {

inline constexpr const char* kGet = "Registry.GetValue, N values";
inline constexpr const char* kSave = "SaveValue, durable, N values";
inline constexpr const char* kOpen = "First open, N values";
inline constexpr const char* kDisk = "On disk, N values written at once";
inline constexpr const char* kGetAll = "GetAllValues of N";
inline constexpr const char* kCopy = "CopyKey of N values, durable";
inline constexpr std::array<std::size_t, 2> kStoreSizes{1'000, 100'000};
inline constexpr std::size_t kListSize = 10'000;

inline constexpr const char* kKey = "Software\\Maison\\Caisse";
inline constexpr std::string_view kData = "une valeur";

inline std::vector<std::string> NamesOf(std::size_t count) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < count; ++i) names.push_back("Valeur " + std::to_string(i));
  return names;
}
inline std::vector<std::string> ShuffledNamesOf(std::size_t count) {
  std::vector<std::string> names = NamesOf(count);
  Seeded(16).Shuffle(names);
  return names;
}

/// So many calls that rewriting the file falls among them, each timed by the clock on the wall: a
/// durable change waits for the disk.
inline constexpr std::int64_t kSaves = 3000;
template <class Save>
void TimeEachSave(benchmark::State& state, const std::vector<std::string>& names, Save save) {
  using Clock = std::chrono::steady_clock;
  std::vector<double> times;
  for (auto _ : state) {
    const std::string& name = names[times.size() % names.size()];
    const auto start = Clock::now();
    save(name, std::to_string(times.size()));
    times.push_back(std::chrono::duration<double, std::nano>(Clock::now() - start).count());
  }
  std::ranges::sort(times);
  const double median = times[times.size() / 2];
  state.counters["1. median ns"] = median;
  state.counters["2. slowest in medians"] = times.back() / median;
}

/// Registers a run of `TimeEachSave`. In each of three there is a rewriting; what only one of them
/// met is not the work's but the machine's.
template <class Run>
void SaveRow(const std::string& who, std::size_t values, Run run) {
  Row(kSave, AtSize(who, values), run, kSaves)->Repetitions(3);
}

/// Registers a work that is worth a single run, of which `measure` gives one figure.
template <class MeasureOnce>
void Figure(const std::string& work, const std::string& who, const char* figure,
            MeasureOnce measure) {
  const auto run = [=](benchmark::State& state) {
    for (auto _ : state) state.counters[figure] = measure();
  };
  Row(work, who, run, 1);
}

}  // namespace quorl::bench
