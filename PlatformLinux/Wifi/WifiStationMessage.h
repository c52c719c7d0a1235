// One peer of a Wi-Fi interface: how it is heard, and at which rates.
//
// Made by: `decodeWifiStation` from the answers to `wifiStationDumpRequest`. Read by: the report.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <vector>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Wifi/HardwareAddress.h"
#include "PlatformLinux/Wifi/WifiRate.h"

namespace lanternfold {

/// What is measured of a peer. A driver may leave any of it out.
struct WifiStationFigures {
  std::optional<std::int8_t> signalDbm;         ///< of the last frame
  std::optional<std::int8_t> signalAverageDbm;  ///< of the last frames
  std::optional<WifiRate> transmitRate;
  std::optional<WifiRate> receiveRate;
  std::optional<std::uint32_t> expectedThroughputKilobits;  ///< kbit/s
  std::optional<std::uint32_t> connectedSeconds;
  friend bool operator==(const WifiStationFigures&, const WifiStationFigures&) = default;
};

/// The peer's side of one link of a multi-link connection.
struct WifiStationLink {
  std::uint8_t linkId = 0;  ///< 0 to 14
  WifiStationFigures figures;
  friend bool operator==(const WifiStationLink&, const WifiStationLink&) = default;
};

struct WifiStationMessage {
  HardwareAddress address{};  ///< of the whole peer, over all its links
  WifiStationFigures figures;
  /// By ascending numbers; empty unless the kernel tells the links apart (Linux 6.17 and later).
  std::vector<WifiStationLink> links;
  friend bool operator==(const WifiStationMessage&, const WifiStationMessage&) = default;
};

/// A figure, a rate or a link that makes no sense is left out. Errors: truncated "genlmsghdr";
/// those of the outer attributes.
[[nodiscard]] std::expected<WifiStationMessage, DecodeError> decodeWifiStation(
    const NetlinkMessage& message);

}  // namespace lanternfold
