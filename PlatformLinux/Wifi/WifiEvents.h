// What nl80211's reports mean: which are news of the machine's Wi-Fi, and which only say that the
// list of cells is another one. Pure.
//
// Read by: the path monitor, and the Wi-Fi client, which keeps the joined cells between readings.
#pragma once

#include <string>
#include <vector>

#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

/// Each includes the ones before it.
enum class WifiNews {
  none,
  cells,  ///< the radio has looked around: the list of cells may tell more, or other things
  state,  ///< which interfaces there are, what they have joined, on which channel, by which rules
};

/// What nl80211 is called among the families of generic netlink.
inline constexpr const char* wifiFamilyName = "nl80211";

/// The groups whose reports may be `state`.
[[nodiscard]] std::vector<std::string> wifiStateGroups();

/// The groups whose reports may touch the joined cells: those of the state, without the rules of
/// the country, and the scans.
[[nodiscard]] std::vector<std::string> wifiCellGroups();

/// What a report of nl80211 says. One that cannot be decoded is `state`.
///
/// A finished scan is no `state`: a desktop scans every minute, and more often while it looks for a
/// better cell, and what a scan finds out about the joined cell the next reading tells in any case.
/// Neither are frames that anybody can forge (unprotected farewells), the steps on the way to a
/// connection (authentication), and the comings and goings at an access point of this machine's
/// own.
[[nodiscard]] WifiNews newsOfWifiEvent(const NetlinkMessage& message);

}  // namespace lanternfold
