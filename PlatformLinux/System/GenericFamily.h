// Asks the kernel which message type a family of generic netlink has.
//
// Read by: whoever speaks to a family: `LinkSpeeds`, `WirelessRoles`, `LinuxWifiClient`.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string_view>

#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// None for a family that this kernel does not have. Errors: those of `NetlinkSocket::dump`;
/// malformed for an answer that names no type. `socket` is of NETLINK_GENERIC.
[[nodiscard]] std::expected<std::optional<std::uint16_t>, NetworkKernelError> findGenericFamily(
    NetlinkSocket& socket, std::string_view familyName);

/// The same for those to whom a family that cannot be asked for is as good as none.
[[nodiscard]] std::optional<std::uint16_t> genericFamilyType(NetlinkSocket& socket,
                                                             std::string_view familyName);

}  // namespace lanternfold
