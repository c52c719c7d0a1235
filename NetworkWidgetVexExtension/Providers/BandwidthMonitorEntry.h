// The one entry of the bandwidth monitor widget: a tile that shows no figures of its own.
//
// Made by: `BandwidthMonitorProvider`. Read by: `BandwidthMonitorEntryView`.
#pragma once

#include <chrono>

namespace lanternfold {

struct BandwidthMonitorEntry {
  std::chrono::system_clock::time_point date;

  friend bool operator==(const BandwidthMonitorEntry&, const BandwidthMonitorEntry&) = default;
};

}  // namespace lanternfold
