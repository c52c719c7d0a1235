// Everything the kernel tells of the Wi-Fi, as text for people.
//
// Read by: `wifi`.
#pragma once

#include "Platform/StringTable.h"
#include "PlatformLinux/Wifi/WifiReport.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// The interface as a heading and its figures; the links of a multi-link connection each below a
/// heading of their own. What is not known has no line; a withheld name has one that says so.
void writeWifiText(const WifiReport& report, const StringTable& strings, const Console& console);

}  // namespace lanternfold
