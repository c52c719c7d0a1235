// The names of networks and cells as text that can be shown.
//
// Read by: the report, if the user consents. Pure.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "PlatformLinux/Wifi/HardwareAddress.h"

namespace lanternfold {

/// UTF-8. Bytes that are not, and those of control characters and of characters that end a line,
/// are written as \xNN with lower-case digits. Everything else stays as it is, a backslash too:
/// the text is for readers, and cannot be turned back into the bytes. Markup is the reader's
/// concern.
[[nodiscard]] std::string ssidText(std::span<const std::uint8_t> ssid);

/// Lower-case pairs with colons.
[[nodiscard]] std::string hardwareAddressText(const HardwareAddress& address);

}  // namespace lanternfold
