// What each Wi-Fi interface does, as nl80211 (generic netlink) tells: the requests and the answers.
//
// Read by: `WirelessRoles`.
#pragma once

#include <cstdint>
#include <expected>

#include "PlatformLinux/Adapters/LinkFacts.h"
#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/DumpRequest.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

/// NL80211_CMD_GET_INTERFACE for every interface; needs no privilege. `messageType` is that of
/// nl80211.
[[nodiscard]] NetlinkRequest wirelessInterfaceDumpRequest(std::uint16_t messageType);

struct WirelessInterfaceMessage {
  /// 0 for a use of the radio that has no network interface.
  std::uint32_t index = 0;
  WirelessRole role = WirelessRole::auxiliary;
  friend bool operator==(const WirelessInterfaceMessage&,
                         const WirelessInterfaceMessage&) = default;
};

/// Errors: truncated "genlmsghdr"; those of the attributes.
[[nodiscard]] std::expected<WirelessInterfaceMessage, DecodeError> decodeWirelessInterface(
    const NetlinkMessage& message);

}  // namespace lanternfold
