#include "PlatformLinux/Netlink/LinkMetrics.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace lanternfold {

NamedMetrics namedMetricsOf(const LinkMessage& link) {
  return {link.name, connectionMetricsOf(widestCountersOf(link), link.mtu.value_or(0))};
}

ConnectionMetricsMap metricsMapOf(std::vector<NamedMetrics> links) {
  std::ranges::reverse(links);
  std::ranges::stable_sort(links, {}, &NamedMetrics::name);
  const auto surplus = std::ranges::unique(links, {}, &NamedMetrics::name);
  links.erase(surplus.begin(), surplus.end());
  auto names = std::make_shared<ConnectionMetricsMap::Names>();
  std::vector<ConnectionMetrics> values;
  names->reserve(links.size());
  values.reserve(links.size());
  for (NamedMetrics& link : links) {
    names->push_back(std::move(link.name));
    values.push_back(link.metrics);
  }
  return {std::move(names), std::move(values)};
}

}  // namespace lanternfold
