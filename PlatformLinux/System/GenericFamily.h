// Asks the kernel for a family of generic netlink: its message type, and the groups it reports to.
//
// Read by: whoever speaks to a family or listens to one: `LinkSpeeds`, `WirelessRoles`,
// `LinuxWifiClient`, `GenericEventSocket`.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string_view>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// None for a family that this kernel does not have. Errors: those of `NetlinkSocket::dump`;
/// malformed for an answer that names no type. `socket` is of NETLINK_GENERIC.
[[nodiscard]] std::expected<std::optional<GenericFamilyMessage>, NetworkKernelError>
findGenericFamily(NetlinkSocket& socket, std::string_view familyName);

/// The message type alone, for those to whom a family that cannot be asked for is as good as none.
[[nodiscard]] std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket,
                                                             std::string_view familyName);

}  // namespace lanternfold
