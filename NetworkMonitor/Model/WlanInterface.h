// The machine's Wi-Fi: its interface and the network it has joined.
//
// Made by: a Wi-Fi resolver. Read by: the monitor, the widget views, the command line.
#pragma once

#include <optional>
#include <string>

#include "NetworkMonitor/Model/BasicInterface.h"
#include "NetworkMonitor/Model/WlanNetwork.h"

namespace lanternfold {

struct WlanInterface {
  bool active = false;
  std::string displayName;
  std::optional<std::string> mode;  ///< the interface mode's description
  BasicInterface interface;
  std::optional<WlanNetwork> currentNetwork;

  [[nodiscard]] static constexpr NetworkSourceCategory category() {
    return NetworkSourceCategory::wlan();
  }
  [[nodiscard]] SourceList listRepresentation(const StringTable& strings) const;
  [[nodiscard]] SourceList compressedListRepresentation(const StringTable& strings) const;

  friend bool operator==(const WlanInterface&, const WlanInterface&) = default;
};

/// A Wi-Fi interface's counters are those of the interface below it.
[[nodiscard]] inline const ConnectionMetrics& metricsOf(const WlanInterface& wlan) {
  return wlan.interface.metrics;
}

/// What stands in place of a network's name that may not be shown.
[[nodiscard]] std::string withheldNameText(const StringTable& strings);

static_assert(NetworkSource<WlanInterface>);

}  // namespace lanternfold
