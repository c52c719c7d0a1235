#include "Tests/Simulation/LongRun.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <mutex>
#include <thread>

namespace lanternfold::simulation {
namespace {

constexpr std::size_t mostViolations = 10;

thread_local std::uint64_t seedOfThisThread = 0;

/// The product stops the program over a broken rule of its own; which seed did it has to be known.
void tellSeed(int) {
  std::fprintf(stderr, "Seed %llu stopped the program. Replay: Scripts/simulate --seed %llu\n",
               static_cast<unsigned long long>(seedOfThisThread),
               static_cast<unsigned long long>(seedOfThisThread));
}

}  // namespace

std::vector<Happening> LongRunResult::missing() const {
  std::vector<Happening> missing;
  for (std::size_t index = 0; index < happeningCount; ++index) {
    const auto happening = static_cast<Happening>(index);
    if (counts.of(happening) == 0) missing.push_back(happening);
  }
  return missing;
}

LongRunResult runSeeds(const LongRunOptions& options,
                       const std::function<void(const SimulationResult&)>& tell) {
  std::signal(SIGABRT, tellSeed);
  LongRunResult all;
  std::mutex mutex;  // guards `all`
  std::atomic<std::uint64_t> next = options.firstSeed;
  const auto work = [&] {
    while (true) {
      const std::uint64_t seed = next++;
      if (seed >= options.firstSeed + options.seeds) return;
      seedOfThisThread = seed;
      SimulationResult result = simulate(seed, options.length);
      const std::lock_guard lock(mutex);
      ++all.seedsRun;
      all.longest = std::max(all.longest, result.simulated);
      all.altogether += result.simulated;
      all.counts.add(result.counts);
      tell(result);
      if (!result.violation) continue;
      all.violations.push_back(std::move(result));
      if (all.violations.size() >= mostViolations) next = options.firstSeed + options.seeds;
    }
  };
  {
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < options.threads; ++thread) threads.emplace_back(work);
  }
  return all;
}

std::string describe(const HappeningCounts& counts) {
  std::string text;
  for (std::size_t index = 0; index < happeningCount; ++index) {
    const auto happening = static_cast<Happening>(index);
    std::string number = std::to_string(counts.of(happening));
    number.insert(0, number.size() < 12 ? 12 - number.size() : 0, ' ');
    text += number + "  " + std::string(describe(happening)) + "\n";
  }
  return text;
}

}  // namespace lanternfold::simulation
