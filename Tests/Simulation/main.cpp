#include <iostream>
#include <string>

#include "Tests/Simulation/SimulationRun.h"

int main(int c, char** v) {
  using namespace lanternfold::simulation;
  (void)c;
  const auto from = std::stoull(v[1]), count = std::stoull(v[2]);
  const auto length = std::chrono::hours(24 * std::stoi(v[3]));
  HappeningCounts counts;
  int failures = 0;
  for (auto seed = from; seed < from + count; ++seed) {
    const auto result = simulate(seed, length);
    counts.add(result.counts);
    if (result.violation && failures++ < 2) std::cout << report(result, length);
    else if (result.violation) std::cout << seed << " " << *result.violation << "\n";
  }
  std::cout << failures << " failures\n";
  for (std::size_t i = 0; i < happeningCount; ++i)
    std::cout << counts.of(static_cast<Happening>(i)) << " " << describe(static_cast<Happening>(i)) << "\n";
}
