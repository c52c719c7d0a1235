// One sample of the counters as the recorder has taken and kept it.
//
// Made by: `record`. Read by: `SampleText.h`, `SampleJson.h`.
#pragma once

#include <chrono>

#include "NetworkMonitor/Metrics/ConnectionBandwidthClass.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"

namespace lanternfold {

struct RecordedSample {
  std::chrono::system_clock::time_point date;
  std::chrono::steady_clock::time_point moment;  ///< the same, on the clock that never steps
  ConnectionBandwidthClass bandwidthClass = ConnectionBandwidthClass::idle;
  double intervalSeconds = 0;    ///< until the next one
  ConnectionMetricsMap metrics;  ///< adjusted, of the interfaces that were there
};

}  // namespace lanternfold
