// The Wi-Fi network that an interface has joined.
//
// Made by: a Wi-Fi resolver. Read by: the Wi-Fi's list representation, the command line.
#pragma once

#include <optional>
#include <string>

#include "NetworkMonitor/Model/WlanMetrics.h"

namespace lanternfold {

struct WlanNetwork {
  std::string ssid;
  std::string bssid;  ///< colon-separated hex
  std::optional<WlanMetrics> metrics;

  friend bool operator==(const WlanNetwork&, const WlanNetwork&) = default;
};

}  // namespace lanternfold
