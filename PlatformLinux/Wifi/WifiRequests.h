// The questions that nl80211 (generic netlink) is asked about one Wi-Fi interface. None needs a
// privilege.
//
// Made by: `LinuxWifiClient`. Read by: `NetlinkSocket`. The question for the list of interfaces is
// `wirelessInterfaceDumpRequest`. `messageType` is that of nl80211 in this kernel.
#pragma once

#include <cstdint>

#include "PlatformLinux/Netlink/RequestBuilder.h"

namespace lanternfold {

/// NL80211_CMD_GET_STATION for every peer of the interface: for a joined network its access point,
/// and whoever else is talked to directly.
[[nodiscard]] NetlinkRequest wifiStationDumpRequest(std::uint16_t messageType,
                                                    std::uint32_t interfaceIndex);

/// NL80211_CMD_GET_SCAN for what the radio has seen; scans nothing itself.
[[nodiscard]] NetlinkRequest wifiScanDumpRequest(std::uint16_t messageType,
                                                 std::uint32_t interfaceIndex);

/// NL80211_CMD_GET_SURVEY for every channel. A driver without one refuses.
[[nodiscard]] NetlinkRequest wifiSurveyDumpRequest(std::uint16_t messageType,
                                                   std::uint32_t interfaceIndex);

/// NL80211_CMD_GET_REG for the rules that the radio of this index obeys: its own, or else those of
/// the system. Answered by one message and an acknowledgment.
[[nodiscard]] NetlinkRequest wifiRegulatoryRequest(std::uint16_t messageType,
                                                   std::uint32_t radioIndex);

}  // namespace lanternfold
