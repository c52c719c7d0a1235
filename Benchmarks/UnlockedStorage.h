// The file storage as one that cannot be locked, to tell what its lock costs.
//
// Made by: the benchmarks of the sampling step.
#pragma once

#include <memory>
#include <utility>

#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"

namespace lanternfold {

class UnlockedStorage final : public ConnectionMetricsPersistentStorage {
 public:
  /// `storage` is not null.
  explicit UnlockedStorage(std::shared_ptr<FileConnectionMetricsStorage> storage)
      : storage_(std::move(storage)) {}

  [[nodiscard]] std::optional<Date> lastRegisterDate() const override {
    return storage_->lastRegisterDate();
  }
  void registerMetrics(const ConnectionMetrics& metrics, std::string_view interfaceName,
                       ConnectionMetricsType type) override {
    storage_->registerMetrics(metrics, interfaceName, type);
  }
  [[nodiscard]] std::optional<ConnectionMetrics> metrics(std::string_view interfaceName,
                                                         ConnectionMetricsType type) override {
    return storage_->metrics(interfaceName, type);
  }
  [[nodiscard]] Remembered remembered(std::string_view interfaceName) override {
    return storage_->remembered(interfaceName);
  }
  [[nodiscard]] ConnectionMetricsMap allMetrics(ConnectionMetricsType type) override {
    return storage_->allMetrics(type);
  }
  void reset() override { storage_->reset(); }
  [[nodiscard]] std::expected<void, MetricsSaveError> save() override { return storage_->save(); }

 private:
  std::shared_ptr<FileConnectionMetricsStorage> storage_;
};

}  // namespace lanternfold
