// What a storage holds: for each type the records by interface name.
//
// Made by: the storages and the decoders of what they wrote. Read by: the same and their encoders.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"

namespace lanternfold {

/// In ascending order of the names' bytes.
using ConnectionMetricsByName = std::map<std::string, ConnectionMetrics, std::less<>>;
/// A type may be absent, or there without a record.
using ConnectionMetricsData = std::map<ConnectionMetricsType, ConnectionMetricsByName>;

/// Stores a record in the place of an earlier one.
void setMetrics(ConnectionMetricsData& data, std::string_view interfaceName,
                ConnectionMetricsType type, const ConnectionMetrics& metrics);
/// None when the type or the name is missing.
[[nodiscard]] std::optional<ConnectionMetrics> metricsIn(const ConnectionMetricsData& data,
                                                         std::string_view interfaceName,
                                                         ConnectionMetricsType type);
/// Empty when the type is missing.
[[nodiscard]] ConnectionMetricsMap allMetricsIn(const ConnectionMetricsData& data,
                                                ConnectionMetricsType type);

}  // namespace lanternfold
