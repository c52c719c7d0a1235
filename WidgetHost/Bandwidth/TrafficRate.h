// How fast bytes go through an adapter, and what is known of one adapter's last minute.
//
// Made by: the history of the bandwidth monitor. Read by: its texts and its graph.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "NetworkMonitor/Metrics/ConnectionBandwidthClass.h"
#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

/// Bytes per second, finite and not below zero.
struct TrafficRate {
  double received = 0;
  double sent = 0;
  friend bool operator==(const TrafficRate&, const TrafficRate&) = default;
};

inline constexpr std::size_t secondsShown = 60;
/// A second each, the oldest first; absent where nothing was measured.
using TrafficMinute = std::array<std::optional<TrafficRate>, secondsShown>;

struct AdapterTraffic {
  /// All that has gone through since the adapter came up; absent while the adapter is not there.
  std::optional<ConnectionMetrics> totals;
  TrafficMinute minute;
  /// Of the last seconds together, so that it does not change with every one of them; absent until
  /// there are two readings.
  std::optional<ConnectionBandwidthClass> bandwidthClass;

  /// The last second's.
  [[nodiscard]] const std::optional<TrafficRate>& now() const { return minute.back(); }
  friend bool operator==(const AdapterTraffic&, const AdapterTraffic&) = default;
};

}  // namespace lanternfold
