// What the kernel answered about one Wi-Fi interface, decoded and not yet judged.
//
// Made by: `LinuxWifiClient`. Read by: `wifiReportOf`. It holds names whatever the user's consent
// is, and never leaves the client.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "PlatformLinux/Wifi/WifiBssMessage.h"
#include "PlatformLinux/Wifi/WifiInterfaceMessage.h"
#include "PlatformLinux/Wifi/WifiStationMessage.h"
#include "PlatformLinux/Wifi/WifiSurveyMessage.h"

namespace lanternfold {

struct WifiFacts {
  WifiInterfaceMessage interface;
  bool isPoweredOn = false;
  std::vector<WifiBssMessage> joinedCells;   ///< several under multi-link
  std::vector<WifiStationMessage> stations;  ///< the access point, and direct peers
  std::vector<WifiSurveyMessage> survey;     ///< empty for a driver without one
  std::optional<std::string> countryCode;
};

}  // namespace lanternfold
