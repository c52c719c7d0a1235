// The program of the long runs; Scripts/simulate builds and starts it.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <iostream>
#include <thread>

#include <CLI/CLI.hpp>

#include "Tests/Simulation/EventLog.h"
#include "Tests/Simulation/LongRun.h"

namespace {

namespace simulation = lanternfold::simulation;

/// A run of fewer seeds may miss a rare fault by chance.
constexpr std::uint64_t seedsThatMeetEverything = 200;

int tellEnd(const simulation::LongRunOptions& options, const simulation::LongRunResult& result,
            std::chrono::duration<double> took) {
  std::cout << "How often what happened:\n"
            << describe(result.counts) << result.seedsRun << " seeds from " << options.firstSeed
            << " on in " << took.count() << " s; the longest simulated "
            << simulation::spanText(result.longest) << ", all together "
            << simulation::spanText(result.altogether) << ".\n";
  for (const auto& violation : result.violations) std::cout << report(violation, options.length);
  if (!result.violations.empty()) return 1;
  if (options.seeds < seedsThatMeetEverything || result.missing().empty()) return 0;
  for (const auto happening : result.missing()) {
    std::cout << "Never met: " << describe(happening) << "\n";
  }
  return 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  simulation::LongRunOptions options{.threads = std::max(1U, std::thread::hardware_concurrency())};
  std::uint64_t weeks = 3;
  std::uint64_t seed = 0;
  CLI::App app("Runs simulated weeks of sampling, each from a seed, and checks its invariants.");
  app.add_option("--seeds", options.seeds, "How many seeds (100)");
  app.add_option("--from", options.firstSeed, "The first of them (1)");
  app.add_option("--weeks", weeks, "How long each one is (3)")->check(CLI::Range(1, 520));
  app.add_option("--threads", options.threads, "How many at once (as many as there are cores)")
      ->check(CLI::Range(1, 256));
  const auto* single = app.add_option("--seed", seed, "Replay this one only, and tell its story");
  CLI11_PARSE(app, argumentCount, arguments);
  options.length = std::chrono::weeks(weeks);
  if (!single->empty()) {
    options.firstSeed = seed;
    options.seeds = options.threads = 1;
  }

  const auto begin = std::chrono::steady_clock::now();
  std::uint64_t told = 0;
  const auto result = runSeeds(options, [&](const simulation::SimulationResult& one) {
    if (!single->empty()) std::cout << one.story;
    if (one.violation) std::cerr << "seed " << one.seed << ": " << *one.violation << "\n";
    if (++told % 100 == 0) std::cerr << told << " seeds\n";
  });
  return tellEnd(options, result, std::chrono::steady_clock::now() - begin);
}
