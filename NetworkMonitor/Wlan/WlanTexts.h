// The texts of the Wi-Fi figures, one table a figure.
//
// Made for: `CoreWlanInterfaceResolver`. Only "None", the interface modes and "N/A" are looked up
// in the string table; a value that a table does not know is "N/A".
#pragma once

#include <optional>
#include <string>

#include "Platform/StringTable.h"
#include "Platform/WifiClient.h"

namespace lanternfold {

/// For example "Station".
[[nodiscard]] std::string interfaceModeText(WifiInterfaceMode mode, const StringTable& strings);

/// For example "802.11ac", the latest mode that has a text.
[[nodiscard]] std::string phyModeText(WifiPhyMode mode, const StringTable& strings);

/// For example "WPA 2 Personal".
[[nodiscard]] std::string securityText(WifiSecurity security, const StringTable& strings);

/// Number, band and width, for example "44 (5GHz, 80MHz)"; "N/A" alone without a channel.
[[nodiscard]] std::string channelText(const std::optional<WifiChannel>& channel,
                                      const StringTable& strings);

/// What stands for a figure that is not known.
[[nodiscard]] std::string notAvailableText(const StringTable& strings);

}  // namespace lanternfold
