// From the kernel's counters to the system's counter records. Pure.
//
// Made by: the counter sources. Read by: whoever asked for counters.
#pragma once

#include <cstdint>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"
#include "PlatformLinux/Netlink/LinkCounters.h"
#include "PlatformLinux/Netlink/LinkMessage.h"

namespace lanternfold {

/// `mtu` is in bytes.
[[nodiscard]] inline ConnectionMetrics connectionMetricsOf(const LinkCounters64& counters,
                                                           std::uint64_t mtu) {
  return {.sentBytes = counters.sentBytes,
          .recvBytes = counters.receivedBytes,
          .sentError = counters.sentErrors,
          .recvError = counters.receivedErrors,
          .sentPacket = counters.sentPackets,
          .recvPacket = counters.receivedPackets,
          .collisions = counters.collisions,
          .mtu = mtu};
}

/// The link's 64-bit counters, else its 32-bit ones widened, else zeros.
[[nodiscard]] ConnectionMetricsMap::Entry namedMetricsOf(const LinkMessage& link);

}  // namespace lanternfold
