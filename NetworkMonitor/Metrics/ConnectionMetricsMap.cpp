#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"

#include <algorithm>
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

const ConnectionMetrics* ConnectionMetricsMap::find(std::string_view name) const {
  const auto position = std::ranges::lower_bound(*names_, name);
  if (position == names_->end() || *position != name) return nullptr;
  return &values_[static_cast<std::size_t>(position - names_->begin())];
}

void ConnectionMetricsMap::insertOrAssign(std::string_view name, const ConnectionMetrics& metrics) {
  const auto position = std::ranges::lower_bound(*names_, name);
  const auto offset = position - names_->begin();
  if (position != names_->end() && *position == name) {
    values_[static_cast<std::size_t>(offset)] = metrics;
    return;
  }
  auto names = std::make_shared<Names>(*names_);
  names->insert(names->begin() + offset, std::string(name));
  names_ = std::move(names);
  values_.insert(values_.begin() + offset, metrics);
}

bool operator==(const ConnectionMetricsMap& left, const ConnectionMetricsMap& right) {
  return left.values_ == right.values_ && *left.names_ == *right.names_;
}

}  // namespace lanternfold
