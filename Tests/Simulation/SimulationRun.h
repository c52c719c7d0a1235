// One seed from its beginning to its end.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "Tests/Simulation/Happenings.h"
#include "Tests/Simulation/Profile.h"

namespace lanternfold::simulation {

/// Of a run whose length nobody gives.
inline constexpr std::chrono::weeks defaultLength{3};

struct SimulationResult {
  std::uint64_t seed = 0;
  std::chrono::nanoseconds simulated{};
  /// The first invariant that did not hold, as a sentence; none when all did.
  std::optional<std::string> violation;
  /// For who looks into a violation: the world and its last events.
  std::string story;
  /// Equal for equal runs.
  std::uint64_t fingerprint = 0;
  HappeningCounts counts;
};

/// The world that a seed stands for, for so long.
[[nodiscard]] SimulationResult simulate(std::uint64_t seed, std::chrono::nanoseconds length);
/// A world of another profile.
[[nodiscard]] SimulationResult simulate(std::uint64_t seed, std::chrono::nanoseconds length,
                                        const Profile& profile);

/// A violation, its story, and the command that replays it.
[[nodiscard]] std::string report(const SimulationResult& result, std::chrono::nanoseconds length);

}  // namespace lanternfold::simulation
