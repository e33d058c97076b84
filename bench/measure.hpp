// What the programs of this folder share: how a row is registered, and seeded inputs.
//
// A row is one work done by one of several: Quorl, a peer, or plain C++ "by hand". Its name is
// WORK/WHO, or WORK/WHO/SIZE where one work is measured at several sizes; an N in WORK stands for
// the size. WORK/WHO/SIZE/CASE is one case among several of which the slowest counts. measure.py
// reads these names, and goals.txt says what is wanted of which work.
//
// The folder of a subject holds a file for each of those who do its work, and becomes one program,
// in which all of them work on the inputs of `inputs.hpp`.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "quorl/runtime/types.hpp"

#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define RUNNING_ON_VALGRIND 0
#define CALLGRIND_TOGGLE_COLLECT
#define CALLGRIND_DUMP_STATS_AT(name) static_cast<void>(name)
#endif

namespace quorl::bench {

/// Inputs of a row, so many that no branch predictor learns them.
inline constexpr std::size_t kInputs = 1000;

/// Registers a row, of whose repetitions the fastest counts, or with `iterations` a single run of
/// so many.
template <class Run>
benchmark::internal::Benchmark* Row(const std::string& work, const std::string& who, Run run,
                                    std::int64_t iterations = 0) {
  auto* row = benchmark::RegisterBenchmark((work + "/" + who).c_str(), run);
  return iterations == 0 ? row->Repetitions(5)->MinTime(0.03) : row->Iterations(iterations);
}

inline std::string AtSize(const std::string& who, std::size_t size) {
  return who + "/" + std::to_string(size);
}

/// Between these two instructions are counted, where callgrind watches. The count goes out under
/// the row's name and the number of its calls.
class Counted {
 public:
  Counted() { CALLGRIND_TOGGLE_COLLECT; }
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  void End(const std::string& name, std::int64_t calls) const {
    CALLGRIND_TOGGLE_COLLECT;
    const std::string row_and_calls = name + "@" + std::to_string(calls);
    CALLGRIND_DUMP_STATS_AT(row_and_calls.c_str());
  }
};

/// Registers a row that gives `call` one of the inputs after the other. `make` gives the inputs, a
/// container or a reference to one; it is called before the clock runs.
template <class Make, class Call>
void Measure(const std::string& work, const std::string& who, Make make, Call call) {
  auto run = [=](benchmark::State& state) mutable {
    const auto& inputs = make();
    auto first = call(inputs[0]);  // What only a first call does is done.
    benchmark::DoNotOptimize(first);
    std::size_t at = 0;
    const Counted counted;
    for (auto _ : state) {
      benchmark::DoNotOptimize(inputs[at]);
      auto result = call(inputs[at]);
      benchmark::DoNotOptimize(result);
      if (++at == inputs.size()) at = 0;
    }
    counted.End(work + "/" + who, state.iterations());
  };
  // Where instructions are counted, the same calls each time.
  Row(work, who, run, RUNNING_ON_VALGRIND != 0 ? kInputs : 0);
}

/// Runs the registrations of a file when the program starts.
struct AtStart {
  template <class Registrations>
  explicit AtStart(Registrations registrations) {
    registrations();
  }
};

/// Numbers and texts that are the same in each run.
class Seeded {
 public:
  explicit Seeded(std::uint64_t seed) : engine_(seed) {}

  /// From `low` to `high`, each as likely as any other.
  std::int64_t Whole(std::int64_t low, std::int64_t high) {
    const auto count = static_cast<std::uint64_t>(high - low) + 1;
    return low + static_cast<std::int64_t>(engine_() % count);
  }
  /// From `low` to `high`, each number of digits as likely as any other.
  double Scaled(double low, double high) {
    const double share = static_cast<double>(Whole(0, 999'999)) / 1e6;
    return low * std::pow(high / low, share);
  }
  /// So many units of `alphabet`.
  String Text(std::size_t units, StringView alphabet) {
    String text(units, u'\0');
    for (char16_t& unit : text) {
      unit = alphabet[static_cast<std::size_t>(Whole(0, std::ssize(alphabet) - 1))];
    }
    return text;
  }
  template <class Sequence>
  void Shuffle(Sequence& sequence) {
    for (std::size_t i = sequence.size(); i > 1; --i) {
      std::swap(sequence[i - 1], sequence[engine_() % i]);
    }
  }

  /// What `make` gives, so many times.
  template <class Make>
  static auto List(std::uint64_t seed, Make make, std::size_t count = kInputs) {
    Seeded seeded(seed);
    std::vector<decltype(make(seeded))> list;
    for (std::size_t i = 0; i < count; ++i) list.push_back(make(seeded));
    return list;
  }

 private:
  std::mt19937_64 engine_;
};

/// Each input in a peer's own form.
template <class Inputs, class Turn>
auto Turned(const Inputs& inputs, Turn turn) {
  std::vector<decltype(turn(inputs[0]))> turned;
  for (const auto& input : inputs) turned.push_back(turn(input));
  return turned;
}

}  // namespace quorl::bench
