// Many seeds, on all cores.
//
// Made by: the program of the long runs. What it needs besides `simulate` is said here: which
// seeds, how long, and what a run of many has to have met.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Tests/Simulation/SimulationRun.h"

namespace lanternfold::simulation {

struct LongRunOptions {
  std::uint64_t firstSeed = 1;
  std::uint64_t seeds = 100;
  std::chrono::nanoseconds length = defaultLength;
  unsigned threads = 1;
};

struct LongRunResult {
  std::uint64_t seedsRun = 0;
  std::chrono::nanoseconds longest{};
  std::chrono::nanoseconds altogether{};
  HappeningCounts counts;
  /// In the order in which they were found.
  std::vector<SimulationResult> violations;

  /// The happenings that no seed has met.
  [[nodiscard]] std::vector<Happening> missing() const;
};

/// Calls `tell` after each seed, on any of the threads but one at a time. Seeds that are left when
/// the tenth one breaks a rule are not run.
[[nodiscard]] LongRunResult runSeeds(const LongRunOptions& options,
                                     const std::function<void(const SimulationResult&)>& tell);

/// A line a happening, with how often it was met.
[[nodiscard]] std::string describe(const HappeningCounts& counts);

}  // namespace lanternfold::simulation
