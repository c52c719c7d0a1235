// One link as RTM_NEWLINK describes it, or its end by RTM_DELLINK.
//
// Made by: `decodeLinkMessage` from a dump or an event. Read by: the kernel tables, the interface
// naming, the adapter list and the path monitor.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>

#include "Platform/SocketAddress.h"
#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/LinkCounters.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

struct LinkMessage {
  /// RTM_DELLINK instead of RTM_NEWLINK.
  bool isRemoval = false;
  /// AF_UNSPEC for the link itself; AF_BRIDGE or AF_INET6 when the message only speaks of the
  /// link's membership of a bridge or of its IPv6 settings.
  std::uint8_t family = 0;
  std::uint32_t index = 0;         ///< never 0
  std::string name;                ///< 1 to 15 bytes of visible UTF-8
  std::uint16_t hardwareType = 0;  ///< ARPHRD_*
  std::uint32_t flags = 0;         ///< IFF_*
  /// IF_OPER_*; absent in messages that do not describe the link.
  std::optional<std::uint8_t> operationalState;
  /// Whether a cable or a peer is there; absent in messages that do not describe the link.
  std::optional<bool> carrier;
  std::optional<std::uint32_t> mtu;  ///< bytes; absent in messages that do not describe the link
  LinkAddressBytes address;          ///< hardware address; empty for none
  std::optional<LinkCounters32> counters32;
  std::optional<LinkCounters64> counters64;
  /// The link's kind ("veth", "bridge", "vxlan"); absent for hardware.
  std::optional<std::string> kind;
  /// The kind of the link this one is a port of ("bridge", "bond").
  std::optional<std::string> portKind;
  /// Index of the link this one is a port of.
  std::optional<std::uint32_t> masterIndex;
  /// The device behind the link ("0000:00:1f.6", "virtio0"); absent for links without hardware.
  std::optional<std::string> parentDeviceName;
  /// The bus of that device ("pci", "virtio", "usb").
  std::optional<std::string> parentDeviceBus;
  /// The message carries a wireless event and says nothing new of the link.
  bool hasWirelessEvent = false;

  /// Whether the message says how the link itself is, or that it is gone. Others are to be ignored:
  /// an RTM_DELLINK of the family AF_BRIDGE means only that the link left its bridge.
  [[nodiscard]] bool describesLink() const;

  friend bool operator==(const LinkMessage&, const LinkMessage&) = default;
};

/// The link's counters as they came in 64 bits, else those of 32 bits widened, else zeros.
[[nodiscard]] LinkCounters64 widestCountersOf(const LinkMessage& link);
/// The counters as they came in 32 bits, else those of 64 bits modulo 2^32, else zeros.
[[nodiscard]] LinkCounters32 narrowCountersOf(const LinkMessage& link);

/// Errors name the header or attribute; a message of another type is wrongMessage "nlmsg_type".
[[nodiscard]] std::expected<LinkMessage, DecodeError> decodeLinkMessage(
    const NetlinkMessage& message);

}  // namespace lanternfold
