// How one sampling step ended, as its observers saw it.
#pragma once

#include <optional>

#include "Tests/Simulation/BandwidthClassRule.h"

namespace lanternfold::simulation {

struct SampleOutcome {
  bool isComplete = false;
  /// Nobody came in between, and the disk refused no look: what was saved follows from the reading.
  bool isUndisturbed = false;
  /// Of a complete step; none when it cannot be told, because time passed between the reading and
  /// the save or somebody came in between.
  std::optional<BandwidthClassValue> bandwidthClass;
};

}  // namespace lanternfold::simulation
