// One route as RTM_NEWROUTE describes it, or its end by RTM_DELROUTE.
//
// Made by: `decodeRouteMessage` from a dump or an event. Read by: the kernel tables and the path
// monitor.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <vector>

#include "Platform/SocketAddress.h"
#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

/// One way out of a route.
struct RouteHop {
  /// Absent when the destination is reached directly. May be of another family than the
  /// destination's.
  std::optional<SocketAddress> gateway;
  /// The outgoing interface; 0 when the kernel sent none.
  std::uint32_t interfaceIndex = 0;
  friend bool operator==(const RouteHop&, const RouteHop&) = default;
};

struct RouteMessage {
  /// RTM_DELROUTE instead of RTM_NEWROUTE.
  bool isRemoval = false;
  std::uint8_t family = 0;  ///< AF_INET, AF_INET6 or another
  std::uint32_t table = 0;  ///< RT_TABLE_*
  std::uint8_t type = 0;    ///< RTN_*
  /// A copy that the kernel keeps of another route for one destination (RTM_F_CLONED).
  bool isCloned = false;
  std::uint8_t destinationLength = 0;  ///< bits, at most those of the family
  /// All zero bytes when the kernel sent none; `OtherAddress` for another family.
  SocketAddress destination;
  std::uint32_t priority = 0;  ///< the metric; the smallest wins
  /// One for an ordinary route, several for a multipath one, in the kernel's order.
  std::vector<RouteHop> hops;

  /// Whether this is a unicast route of the main table that takes every destination.
  [[nodiscard]] bool isDefault() const;
  /// Whether it is an ordinary unicast route of the main table.
  [[nodiscard]] bool isMainUnicast() const;

  friend bool operator==(const RouteMessage&, const RouteMessage&) = default;
};

/// Errors name the header, field or attribute; a message of another type is wrongMessage
/// "nlmsg_type".
[[nodiscard]] std::expected<RouteMessage, DecodeError> decodeRouteMessage(
    const NetlinkMessage& message);

}  // namespace lanternfold
