// Joins the counters of a dump, which go by index, with the names of the links.
//
// Made by: `StatisticsCounterSource`. Pure.
#pragma once

#include <span>

#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"
#include "PlatformLinux/Netlink/LinkDirectory.h"
#include "PlatformLinux/Netlink/StatisticsMessage.h"

namespace lanternfold {

struct StatisticsMapping {
  ConnectionMetricsMap metrics;
  /// Whether there were counters of a link that the directory does not know; they are left out.
  bool hasUnknownLinks = false;
};

/// Counters of links without a name and names of links without counters are left out. While both
/// lists agree, as nearly always, the map shares the directory's names and nothing is searched or
/// copied.
[[nodiscard]] StatisticsMapping mapStatistics(std::span<const StatisticsMessage> statistics,
                                              LinkDirectory& directory);

}  // namespace lanternfold
