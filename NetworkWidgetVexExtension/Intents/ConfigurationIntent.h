// The configuration of the widgets that show the network's state, as the user left it.
#pragma once

#include <optional>

namespace lanternfold {

struct ConfigurationIntent {
  std::optional<bool> showTimestamp;  ///< absent counts as false

  friend bool operator==(const ConfigurationIntent&, const ConfigurationIntent&) = default;
};

}  // namespace lanternfold
