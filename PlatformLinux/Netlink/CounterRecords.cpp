#include "PlatformLinux/Netlink/CounterRecords.h"

#include <map>
#include <memory>
#include <utility>

namespace lanternfold {

NamedMetrics namedMetricsOf(const LinkMessage& link) {
  return {link.name, connectionMetricsOf(widestCountersOf(link), link.mtu.value_or(0))};
}

ConnectionMetricsMap metricsMapOf(std::vector<NamedMetrics> links) {
  std::map<std::string, ConnectionMetrics> byName;
  for (NamedMetrics& link : links) byName.insert_or_assign(std::move(link.name), link.metrics);
  auto names = std::make_shared<ConnectionMetricsMap::Names>();
  std::vector<ConnectionMetrics> values;
  names->reserve(byName.size());
  values.reserve(byName.size());
  for (const auto& [name, metrics] : byName) {
    names->push_back(name);
    values.push_back(metrics);
  }
  return {std::move(names), std::move(values)};
}

}  // namespace lanternfold
