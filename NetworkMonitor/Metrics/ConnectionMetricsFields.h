// The eight fields of the counter record with their names, in the order of the record.
//
// Read by: the JSON form, whose keys are these names.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

struct ConnectionMetricsField {
  std::string_view key;
  std::uint64_t ConnectionMetrics::* member;
};

inline constexpr std::array connectionMetricsFields{
    ConnectionMetricsField{"sentBytes", &ConnectionMetrics::sentBytes},
    ConnectionMetricsField{"recvBytes", &ConnectionMetrics::recvBytes},
    ConnectionMetricsField{"sentError", &ConnectionMetrics::sentError},
    ConnectionMetricsField{"recvError", &ConnectionMetrics::recvError},
    ConnectionMetricsField{"sentPacket", &ConnectionMetrics::sentPacket},
    ConnectionMetricsField{"recvPacket", &ConnectionMetrics::recvPacket},
    ConnectionMetricsField{"collisions", &ConnectionMetrics::collisions},
    ConnectionMetricsField{"mtu", &ConnectionMetrics::mtu},
};

}  // namespace lanternfold
