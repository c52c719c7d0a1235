// Asks the kernel for a family of generic netlink: its message type, and the groups it reports to.
//
// Read by: `LinkSpeeds`, `WirelessRoles`, `LinuxWifiClient` and `GenericEventSocket`.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// None for a family that this kernel does not have. `socket` is of NETLINK_GENERIC.
[[nodiscard]] std::optional<GenericFamilyMessage> genericFamily(NetlinkSocket& socket,
                                                                std::string_view familyName);

/// Of the same, the message type alone.
[[nodiscard]] std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket,
                                                             std::string_view familyName);

}  // namespace lanternfold
