// The product's own objects in one simulated program, wired as in the real one, over simulated
// seams.
#pragma once

#include <memory>

#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "Tests/Simulation/ProgramSeams.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold::simulation {

/// Lives on the program's own stack: a killed program destroys it on its way out.
class ProgramParts {
 public:
  /// Both outlive it.
  ProgramParts(Installation& installation, Turn& program);

  SimulatedDispatch dispatch;
  ProgramFiles files;
  std::unique_ptr<SampleObserver> observer;
  ProgramKernel kernel;
  ProgramLog log;
  std::shared_ptr<ConnectionMetricsStorage> storage;
  std::shared_ptr<ConnectionMetricsRecorder> recorder;

 private:
  [[nodiscard]] std::shared_ptr<ConnectionMetricsStorage> makeStorage(Installation& installation);
};

/// How the readers of an installation count.
[[nodiscard]] inline Counting countingOf(bool is32bitCapped) {
  return is32bitCapped ? Counting::capped : Counting::uncapped;
}

}  // namespace lanternfold::simulation
