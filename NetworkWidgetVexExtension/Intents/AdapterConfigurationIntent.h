// The adapter widget's configuration, as the user left it.
#pragma once

#include <optional>

#include "NetworkWidgetVexExtension/Intents/NetworkAdapter.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct AdapterConfigurationIntent {
  std::optional<NetworkAdapter> adapter;
  std::optional<bool> showTimestamp;  ///< absent counts as false

  /// Of what a host remembers.
  [[nodiscard]] static AdapterConfigurationIntent from(const ConfigurationParameters& parameters);

  friend bool operator==(const AdapterConfigurationIntent&,
                         const AdapterConfigurationIntent&) = default;
};

}  // namespace lanternfold
