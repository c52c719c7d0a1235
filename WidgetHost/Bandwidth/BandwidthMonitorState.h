// What the bandwidth monitor shows at one moment, as a plain value.
//
// Made by: `BandwidthMonitorModel`. Read by: `BandwidthMonitorView` and the window around it.
#pragma once

#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Intents/NetworkAdapter.h"
#include "WidgetHost/Bandwidth/TrafficRate.h"

namespace lanternfold {

/// Whether there is something to measure.
enum class BandwidthAvailability {
  unknown,    ///< the system has not yet been asked
  noAdapter,  ///< the machine has none
  gone,       ///< the chosen adapter is not there, or its counters cannot be read
  present,
};

struct BandwidthMonitorState {
  /// What the user may choose from, the automatic choice first; empty before it is known. What is
  /// chosen is among them, also while it is gone.
  std::vector<NetworkAdapter> adapters;
  std::string chosenIdentifier = automaticAdapterIdentifier;
  /// What is measured, as a user knows it; empty when nothing is.
  std::string adapterName;
  BandwidthAvailability availability = BandwidthAvailability::unknown;
  AdapterTraffic traffic;

  friend bool operator==(const BandwidthMonitorState&, const BandwidthMonitorState&) = default;
};

}  // namespace lanternfold
