// Everything the kernel tells of the Wi-Fi, as JSON for `wifi --json`.
//
// One line without an end of line. Units stand at the ends of the names; what is not known is null;
// enumerations are case names. Docs/formats/wifi-json.md tells of every member.
#pragma once

#include <optional>
#include <string>

#include "PlatformLinux/Wifi/WifiReport.h"

namespace lanternfold {

/// {"interface":…,"links":[…]}, or null on a machine without Wi-Fi.
[[nodiscard]] std::string wifiJson(const std::optional<WifiReport>& report);

}  // namespace lanternfold
