#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"

#include <algorithm>
#include <map>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {

ConnectionMetricsMap::ConnectionMetricsMap() : names_(std::make_shared<const Names>()) {}

ConnectionMetricsMap::ConnectionMetricsMap(std::shared_ptr<const Names> sortedNames,
                                           std::vector<ConnectionMetrics> values)
    : names_(std::move(sortedNames)), values_(std::move(values)) {
  if (names_->size() != values_.size()) {
    fatalError("a map of counters was given a different number of names and records");
  }
}

ConnectionMetricsMap ConnectionMetricsMap::of(std::vector<Entry> entries) {
  std::map<std::string, ConnectionMetrics> byName;
  for (Entry& entry : entries) byName.insert_or_assign(std::move(entry.name), entry.metrics);
  auto names = std::make_shared<Names>();
  std::vector<ConnectionMetrics> values;
  names->reserve(byName.size());
  values.reserve(byName.size());
  for (const auto& [name, metrics] : byName) {
    names->push_back(name);
    values.push_back(metrics);
  }
  return {std::move(names), std::move(values)};
}

const ConnectionMetrics* ConnectionMetricsMap::find(std::string_view name) const {
  const auto position = std::ranges::lower_bound(*names_, name);
  if (position == names_->end() || *position != name) return nullptr;
  return &values_[static_cast<std::size_t>(position - names_->begin())];
}

bool operator==(const ConnectionMetricsMap& left, const ConnectionMetricsMap& right) {
  return left.values_ == right.values_ && *left.names_ == *right.names_;
}

}  // namespace lanternfold
