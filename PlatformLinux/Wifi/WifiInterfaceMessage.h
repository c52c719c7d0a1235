// One Wi-Fi interface as nl80211 describes it: what it is, on which channels, in which network.
//
// Made by: `decodeWifiInterface` from the answers to `wirelessInterfaceDumpRequest`. Read by: the
// choice of the default interface and the report.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Wifi/HardwareAddress.h"

namespace lanternfold {

/// The channel that is used, as the kernel defines it.
struct WifiChannelDefinition {
  /// Of the primary 20 MHz; absent while there is no channel, and always at the top of a multi-link
  /// interface.
  std::optional<std::uint32_t> frequencyMegahertz;
  std::optional<std::uint32_t> width;  ///< NL80211_CHAN_WIDTH_*
  std::optional<std::uint32_t> center1Megahertz;
  std::optional<std::uint32_t> center2Megahertz;  ///< of the second half of 80+80 MHz
  friend bool operator==(const WifiChannelDefinition&, const WifiChannelDefinition&) = default;
};

/// One link of a multi-link interface.
struct WifiInterfaceLink {
  std::uint8_t linkId = 0;  ///< 0 to 14
  WifiChannelDefinition channel;
  std::optional<std::int32_t> transmitPowerMillibels;  ///< 0.01 dBm
  friend bool operator==(const WifiInterfaceLink&, const WifiInterfaceLink&) = default;
};

struct WifiInterfaceMessage {
  std::uint32_t index = 0;  ///< 0 for a use of the radio that has no network interface
  std::string name;         ///< empty without a network interface
  std::uint32_t radioIndex = 0;
  std::uint32_t interfaceType = 0;  ///< NL80211_IFTYPE_*
  std::optional<HardwareAddress> address;
  /// The name's raw bytes, 1 to 32, of the network that was joined, or that an access point
  /// offers. Kernels 5.19.2 to 6.0 leave it out.
  std::optional<std::vector<std::uint8_t>> ssid;
  WifiChannelDefinition channel;
  std::optional<std::int32_t> transmitPowerMillibels;  ///< 0.01 dBm
  /// By ascending numbers; empty unless the connection is of the multi-link kind.
  std::vector<WifiInterfaceLink> links;
  friend bool operator==(const WifiInterfaceMessage&, const WifiInterfaceMessage&) = default;
};

/// A name of a network, an address, a figure or a link that makes no sense is left out. Errors:
/// truncated "genlmsghdr"; those of the attributes that say which interface it is (kind, index,
/// name, radio). Nothing is nested deeper than the tables say, however deep the bytes are.
[[nodiscard]] std::expected<WifiInterfaceMessage, DecodeError> decodeWifiInterface(
    const NetlinkMessage& message);

}  // namespace lanternfold
