// What every part of one simulated run shares: time, chance, the log, and the first broken rule.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Tests/Simulation/EventLog.h"
#include "Tests/Simulation/Scheduler.h"
#include "Tests/Simulation/SeededRandom.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold::simulation {

class Turn;

class RunContext {
 public:
  explicit RunContext(std::uint64_t seed) : random(seed) {}

  SimulatedClock clock;
  SeededRandom random;
  EventLog log{clock};
  Scheduler scheduler{clock, random};
  /// The program whose turn it is, or was last.
  Turn* running = nullptr;
  /// When the machine booted last.
  Scheduler::TimePoint bootedAt = clock.steadyNow();

  /// Notes that an invariant does not hold. Only the first one counts; the run then ends soon.
  void broken(std::uint32_t program, std::string sentence) {
    if (!violation_) violation_ = "program " + std::to_string(program) + ": " + std::move(sentence);
  }
  [[nodiscard]] const std::optional<std::string>& violation() const { return violation_; }

 private:
  std::optional<std::string> violation_;
};

}  // namespace lanternfold::simulation
