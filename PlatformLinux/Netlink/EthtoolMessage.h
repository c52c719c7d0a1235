// The speeds of links, as the kernel's ethtool family tells them over generic netlink.
//
// Made by: the decoders below from answers about link modes.
// Read by: the kernel tables; link messages themselves carry no speed.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string_view>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/DumpRequest.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

/// The family's name; a kernel before 5.6 or without ethtool has none.
inline constexpr std::string_view ethtoolFamilyName = "ethtool";

/// ETHTOOL_MSG_LINKMODES_GET for one link.
[[nodiscard]] NetlinkRequest linkSpeedRequest(std::uint16_t family, std::uint32_t interfaceIndex);

/// ETHTOOL_MSG_LINKMODES_GET for every link.
[[nodiscard]] NetlinkRequest linkSpeedDumpRequest(std::uint16_t family);

struct LinkSpeed {
  std::uint32_t interfaceIndex = 0;  ///< never 0
  /// Absent when the driver does not know it, as without a cable.
  std::optional<std::uint64_t> bitsPerSecond;
  friend bool operator==(const LinkSpeed&, const LinkSpeed&) = default;
};

[[nodiscard]] std::expected<LinkSpeed, DecodeError> decodeLinkSpeed(const NetlinkMessage& message);

}  // namespace lanternfold
