// One snapshot of the machine's network.
//
// Made by: the network state monitor, field by field. Read by: the widget views, the command line.
#pragma once

#include <optional>
#include <vector>

#include "NetworkMonitor/Model/AnyNetworkSource.h"
#include "NetworkMonitor/Model/BasicInterface.h"
#include "NetworkMonitor/Model/CellularProvider.h"
#include "NetworkMonitor/Model/InternetInfo.h"
#include "NetworkMonitor/Model/WlanInterface.h"

namespace lanternfold {

struct NetworkState {
  InternetInfo internet;
  std::optional<WlanInterface> wlan;
  std::optional<CellularProvider> cellular;
  /// Every interface that the fields above do not cover.
  std::vector<BasicInterface> others;
  bool cellularEnabled = false;
  bool multipleSim = false;

  /// The state before anything is resolved.
  [[nodiscard]] static NetworkState initial(const StringTable& strings);
  /// Sample content, shown while a widget is drawn as a placeholder or in the gallery.
  [[nodiscard]] static NetworkState placeholder(bool withGeo, const StringTable& strings);

  /// Internet, then Wi-Fi and cellular when present, then the others in their order.
  [[nodiscard]] std::vector<AnyNetworkSource> allNetworkSources() const;

  friend bool operator==(const NetworkState&, const NetworkState&) = default;
};

}  // namespace lanternfold
