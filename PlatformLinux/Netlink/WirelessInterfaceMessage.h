// What each Wi-Fi interface does, as nl80211 (generic netlink) tells: the requests and the answers.
//
// Read by: `WirelessRoles`.
#pragma once

#include <cstdint>
#include <expected>
#include <string_view>

#include "PlatformLinux/Adapters/LinkFacts.h"
#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/DumpRequest.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

/// CTRL_CMD_GETFAMILY: which message type a generic netlink family ("nl80211") has in this kernel.
[[nodiscard]] NetlinkRequest genericFamilyRequest(std::string_view familyName);

/// The message type in the answer. Errors: truncated "genlmsghdr"; those of the attributes.
[[nodiscard]] std::expected<std::uint16_t, DecodeError> decodeGenericFamily(
    const NetlinkMessage& message);

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
