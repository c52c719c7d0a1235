// Asks the kernel which message type a family of generic netlink has.
//
// Read by: `LinkSpeeds` and `WirelessRoles`.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// None for a family that this kernel does not have. `socket` is of NETLINK_GENERIC.
[[nodiscard]] std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket,
                                                             std::string_view familyName);

}  // namespace lanternfold
