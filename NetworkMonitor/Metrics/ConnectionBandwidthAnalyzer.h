// What tells how busy an interface was between two samples.
//
// Made by: the composition, for a recorder. Read by: the recorder's sampling step.
#pragma once

#include <chrono>

#include "NetworkMonitor/Metrics/ConnectionBandwidthClass.h"
#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

/// Called on the recorder queue.
class ConnectionBandwidthAnalyzer {
 public:
  virtual ~ConnectionBandwidthAnalyzer() = default;

  /// `interval` is the time from the old record to the new one; the wall clock, which it is
  /// measured by, may have stepped, so it may be zero or negative.
  [[nodiscard]] virtual ConnectionBandwidthClass evaluate(
      const ConnectionMetrics& oldMetrics, const ConnectionMetrics& newMetrics,
      std::chrono::duration<double> interval) const = 0;
};

}  // namespace lanternfold
