#include "CommandLine/ObservedMetricsStorage.h"

#include <string>

namespace lanternfold {

std::optional<ConnectionMetricsStorage::Date> ObservedMetricsStorage::lastRegisterDate() const {
  return persistent_->lastRegisterDate();
}

void ObservedMetricsStorage::registerMetrics(const ConnectionMetrics& metrics,
                                             std::string_view interfaceName,
                                             ConnectionMetricsType type) {
  persistent_->registerMetrics(metrics, interfaceName, type);
  if (type == ConnectionMetricsType::adjusted) {
    sampled_.push_back({.name = std::string(interfaceName), .metrics = metrics});
  }
}

std::optional<ConnectionMetrics> ObservedMetricsStorage::metrics(std::string_view interfaceName,
                                                                 ConnectionMetricsType type) {
  return persistent_->metrics(interfaceName, type);
}

ConnectionMetricsMap ObservedMetricsStorage::allMetrics(ConnectionMetricsType type) {
  return persistent_->allMetrics(type);
}

void ObservedMetricsStorage::reset() { persistent_->reset(); }

std::expected<void, MetricsSaveError> ObservedMetricsStorage::save() { return persistent_->save(); }

std::expected<void, LockError> ObservedMetricsStorage::lock() {
  // What a step that failed has left behind is not part of this one.
  sampled_.clear();
  return locking_->lock();
}

std::expected<void, LockError> ObservedMetricsStorage::unlock() {
  auto unlocked = locking_->unlock();
  if (unlocked) handler_(ConnectionMetricsMap::of(std::move(sampled_)));
  sampled_.clear();
  return unlocked;
}

}  // namespace lanternfold
