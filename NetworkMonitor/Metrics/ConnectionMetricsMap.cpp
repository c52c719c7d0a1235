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

ConnectionMetricsMap ConnectionMetricsMap::of(std::vector<Entry> entries) {
  // Stable and from behind: of equal names the one that was last comes first and is kept.
  std::ranges::reverse(entries);
  std::ranges::stable_sort(entries, {}, &Entry::name);
  const auto surplus = std::ranges::unique(entries, {}, &Entry::name);
  entries.erase(surplus.begin(), surplus.end());

  auto names = std::make_shared<Names>();
  std::vector<ConnectionMetrics> values;
  names->reserve(entries.size());
  values.reserve(entries.size());
  for (Entry& entry : entries) {
    names->push_back(std::move(entry.name));
    values.push_back(entry.metrics);
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
