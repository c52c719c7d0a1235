// What kind of world a seed stands for: its storage, its programs, and which faults it has.
#pragma once

#include <array>
#include <string>

#include "Tests/Simulation/Installation.h"
#include "Tests/Simulation/SeededRandom.h"

namespace lanternfold::simulation {

struct Profile {
  StorageKind storage = StorageKind::file;
  bool is32bitCapped = false;
  SimulatedMachine::BootDate bootDate = SimulatedMachine::BootDate::remembered;
  std::uint64_t interfaces = 3;
  /// Rates at which a 32-bit counter turns over more than once between two samples, which no reader
  /// of 32-bit counters can know. Without it the rates let it turn over once at most, as long as no
  /// sample is missed.
  bool isFast = false;
  bool hasSecondRecorder = false;
  bool hasOneShots = false;
  bool isSetByHand = false;
  /// How probably a program loses its turn before a step on the disk.
  double interruptions = 0;

  // Faults.
  bool kills = false;
  bool reboots = false;
  bool stepsClock = false;
  bool fillsDisk = false;
  bool losesPermission = false;
  bool slowsDisk = false;
  bool tampersWithData = false;
  bool leavesLocks = false;
  bool failsReader = false;
  bool changesInterfaces = false;
  /// A new file takes the number of one that is gone, as many file systems do.
  bool reusesFileNumbers = false;

  /// Nothing lets two programs hold the lock at once: no sample may be disturbed.
  [[nodiscard]] bool isOrderly() const {
    return interruptions == 0 && !stepsClock && !slowsDisk && !leavesLocks && !losesPermission &&
           !fillsDisk && !kills && !reboots && !failsReader && !tampersWithData;
  }
};

[[nodiscard]] Profile drawProfile(SeededRandom& random);

/// On one line.
[[nodiscard]] std::string describe(const Profile& profile);

}  // namespace lanternfold::simulation
