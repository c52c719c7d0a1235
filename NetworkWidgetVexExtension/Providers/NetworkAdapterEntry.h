// One entry of the adapter widget's timeline.
//
// Made by: the adapter provider. Read by: `NetworkAdapterWidgetEntryView`.
#pragma once

#include <chrono>

#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntent.h"

namespace lanternfold {

struct NetworkAdapterEntry {
  std::chrono::system_clock::time_point date;
  NetworkState networkState;
  AdapterConfigurationIntent configuration;

  friend bool operator==(const NetworkAdapterEntry&, const NetworkAdapterEntry&) = default;
};

}  // namespace lanternfold
