// A simulated program that takes one sample, as a command does, and ends.
#pragma once

#include "Tests/Simulation/ProgramParts.h"

namespace lanternfold::simulation {

class OneShotProgram {
 public:
  /// `installation` outlives it.
  explicit OneShotProgram(Installation& installation)
      : installation_(installation), turn_(installation.run, ++installation.programsSoFar) {}

  void begin();
  [[nodiscard]] Turn& turn() { return turn_; }

 private:
  void live();

  Installation& installation_;
  Turn turn_;
};

}  // namespace lanternfold::simulation
