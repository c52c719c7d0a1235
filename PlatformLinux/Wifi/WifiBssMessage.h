// One network's cell (BSS) that the radio has joined.
//
// Made by: `decodeJoinedBss` from the answers to `wifiScanDumpRequest`. Read by: the report.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <vector>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Wifi/HardwareAddress.h"
#include "PlatformLinux/Wifi/InformationElements.h"

namespace lanternfold {

struct WifiBssMessage {
  HardwareAddress bssid{};
  std::optional<std::uint32_t> frequencyMegahertz;
  /// Of the last beacon or probe response, in 0.01 dBm; absent for a driver that only knows a
  /// strength without a unit.
  std::optional<std::int32_t> signalMillibels;
  /// Whether the cell's traffic is encrypted, by whatever means.
  bool hasPrivacy = false;
  /// Of the latest probe response or beacon. A name that it hides is that of the beacon, where that
  /// has one.
  InformationElements elements;
  /// Which link of a multi-link connection the cell is, 0 to 14, and who the whole peer is.
  std::optional<std::uint8_t> linkId;
  std::optional<HardwareAddress> peerAddress;
  friend bool operator==(const WifiBssMessage&, const WifiBssMessage&) = default;
};

/// The cell, if the radio is associated with it or has joined its ad hoc network; none for all
/// others, whose elements are not even looked at. Under multi-link several cells are associated.
/// A frequency or a signal that makes no sense is left out. Errors: truncated "genlmsghdr"; those
/// of the other attributes, nested ones too.
[[nodiscard]] std::expected<std::optional<WifiBssMessage>, DecodeError> decodeJoinedBss(
    const NetlinkMessage& message);

/// Whether elements tell a name: one that is there, not empty and not all zero bytes.
[[nodiscard]] bool tellsName(const InformationElements& elements);

}  // namespace lanternfold
