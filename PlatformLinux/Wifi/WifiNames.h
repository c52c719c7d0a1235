// The names of networks and cells as text that can be shown.
//
// Read by: the report, if the user consents. Pure.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "PlatformLinux/Wifi/HardwareAddress.h"

namespace lanternfold {

/// UTF-8, with everything that is not, and that a reader could be deceived by, escaped as
/// `escapedText` does.
[[nodiscard]] std::string ssidText(std::span<const std::uint8_t> ssid);

/// Lower-case pairs with colons.
[[nodiscard]] std::string hardwareAddressText(const HardwareAddress& address);

}  // namespace lanternfold
