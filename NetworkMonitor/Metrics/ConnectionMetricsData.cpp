#include "NetworkMonitor/Metrics/ConnectionMetricsData.h"

#include <memory>
#include <utility>
#include <vector>

namespace lanternfold {

void setMetrics(ConnectionMetricsData& data, std::string_view interfaceName,
                ConnectionMetricsType type, const ConnectionMetrics& metrics) {
  ConnectionMetricsByName& records = data[type];
  if (const auto existing = records.find(interfaceName); existing != records.end()) {
    existing->second = metrics;
  } else {
    records.emplace(interfaceName, metrics);
  }
}

std::optional<ConnectionMetrics> metricsIn(const ConnectionMetricsData& data,
                                           std::string_view interfaceName,
                                           ConnectionMetricsType type) {
  const auto records = data.find(type);
  if (records == data.end()) return std::nullopt;
  const auto found = records->second.find(interfaceName);
  if (found == records->second.end()) return std::nullopt;
  return found->second;
}

ConnectionMetricsMap allMetricsIn(const ConnectionMetricsData& data, ConnectionMetricsType type) {
  const auto records = data.find(type);
  if (records == data.end()) return {};
  auto names = std::make_shared<ConnectionMetricsMap::Names>();
  std::vector<ConnectionMetrics> values;
  names->reserve(records->second.size());
  values.reserve(records->second.size());
  for (const auto& [name, metrics] : records->second) {
    names->push_back(name);
    values.push_back(metrics);
  }
  return {std::move(names), std::move(values)};
}

}  // namespace lanternfold
