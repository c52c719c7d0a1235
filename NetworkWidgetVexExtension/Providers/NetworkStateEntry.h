// One entry of the timeline of a widget that shows the network's state.
//
// Made by: `NetworkStateProvider`. Read by: `NetworkStateWidgetEntryView`.
#pragma once

#include <chrono>

#include "NetworkMonitor/Model/NetworkState.h"
#include "NetworkWidgetVexExtension/Intents/ConfigurationIntent.h"

namespace lanternfold {

struct NetworkStateEntry {
  std::chrono::system_clock::time_point date;
  NetworkState networkState;
  ConfigurationIntent configuration;
  bool isSnapshot = false;  ///< sample content: a placeholder or a snapshot
  bool isPreview = false;   ///< for the gallery of widgets

  friend bool operator==(const NetworkStateEntry&, const NetworkStateEntry&) = default;
};

}  // namespace lanternfold
