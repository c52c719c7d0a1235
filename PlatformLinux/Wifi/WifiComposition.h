// Composes what the kernel answered into the seam's record and the richer report. Pure.
//
// Read by: `LinuxWifiClient`.
#pragma once

#include <vector>

#include "PlatformLinux/Wifi/WifiFacts.h"
#include "PlatformLinux/Wifi/WifiReport.h"

namespace lanternfold {

/// Whether the report may tell what the network and its cells are called.
enum class WifiNameDisclosure { withheld, told };

/// Whether the station is the access point of one of the cells, by the address of the cell or,
/// under multi-link, by that of the whole peer.
[[nodiscard]] bool isPeerOf(const std::vector<WifiBssMessage>& cells,
                            const WifiStationMessage& station);

/// A figure that was not answered is absent, or 0 in the seam's record.
[[nodiscard]] WifiReport wifiReportOf(const WifiFacts& facts, WifiNameDisclosure names);

}  // namespace lanternfold
