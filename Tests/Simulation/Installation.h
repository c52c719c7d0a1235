// What all programs of one simulated machine share: the machine, the disk, and which storage they
// are set up with.
#pragma once

#include <memory>

#include "Tests/Simulation/Disk.h"
#include "Tests/Simulation/RunContext.h"
#include "Tests/Simulation/SimulatedMachine.h"
#include "Tests/Support/FakeUserDefaults.h"

namespace lanternfold::simulation {

enum class StorageKind { file, userDefaults, memory };

struct Installation {
  RunContext& run;
  SimulatedMachine machine;
  Disk disk;
  StorageKind storage = StorageKind::file;
  bool is32bitCapped = false;

  bool readerFails = false;
  std::shared_ptr<FakeUserDefaultsDisk> defaults = std::make_shared<FakeUserDefaultsDisk>();
  std::uint32_t programsSoFar = 0;
  /// How often the data file became unreadable, for which each program may print one line.
  std::uint64_t faultsOfReading = 0;
};

}  // namespace lanternfold::simulation
