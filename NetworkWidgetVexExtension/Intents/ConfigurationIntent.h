// The configuration of the widgets that show the network's state, as the user left it.
#pragma once

#include <optional>

#include "WidgetService/Widget.h"

namespace lanternfold {

struct ConfigurationIntent {
  std::optional<bool> showTimestamp;  ///< absent counts as false

  /// Of what a host remembers.
  [[nodiscard]] static ConfigurationIntent from(const ConfigurationParameters& parameters) {
    return {.showTimestamp = parameters.showTimestamp};
  }

  friend bool operator==(const ConfigurationIntent&, const ConfigurationIntent&) = default;
};

}  // namespace lanternfold
