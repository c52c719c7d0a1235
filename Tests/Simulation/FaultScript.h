// Brings about what goes wrong with a machine's disk, lock, clock and counters.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Tests/Simulation/Installation.h"
#include "Tests/Simulation/Profile.h"

namespace lanternfold::simulation {

class FaultScript {
 public:
  /// Both outlive it.
  FaultScript(Installation& installation, const Profile& profile);

 private:
  void faultsOfDisk(const Profile& profile);
  void fillDisk();
  void losePermission();
  void slowDisk();
  void tamper();
  void restoreOlderCopy();
  void leaveLock();
  void stepClock();
  void stepBack(std::chrono::nanoseconds step);
  void sleepOfProgram(std::chrono::nanoseconds duration, bool stepsClock);
  /// A fault that lasts.
  void during(std::chrono::nanoseconds longest, std::function<void()> end);
  [[nodiscard]] Disk::Extent drawExtent();

  Installation& installation_;
  RunContext& run_;
  std::string olderCopy_;
};

}  // namespace lanternfold::simulation
