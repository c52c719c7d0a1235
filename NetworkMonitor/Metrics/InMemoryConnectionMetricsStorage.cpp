#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"

#include <utility>

namespace lanternfold {

InMemoryConnectionMetricsStorage::InMemoryConnectionMetricsStorage(const Clock& clock,
                                                                   ConnectionMetricsData data,
                                                                   Date date)
    : clock_(&clock), data_(std::move(data)), lastRegisterDate_(date) {}

void InMemoryConnectionMetricsStorage::registerMetrics(const ConnectionMetrics& metrics,
                                                       std::string_view interfaceName,
                                                       ConnectionMetricsType type) {
  setMetrics(data_, interfaceName, type, metrics);
  lastRegisterDate_ = clock_->now();
}

std::optional<ConnectionMetrics> InMemoryConnectionMetricsStorage::metrics(
    std::string_view interfaceName, ConnectionMetricsType type) {
  return metricsIn(data_, interfaceName, type);
}

ConnectionMetricsMap InMemoryConnectionMetricsStorage::allMetrics(ConnectionMetricsType type) {
  return allMetricsIn(data_, type);
}

void InMemoryConnectionMetricsStorage::reset() {
  data_.clear();
  lastRegisterDate_.reset();
}

}  // namespace lanternfold
