// A storage that tells when a sampling step over it has come to its end, and what it has sampled.
//
// Made by: `record`. Read by: the recorder, as its storage.
#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"

namespace lanternfold {

/// A step locks, registers, saves and unlocks, and leaves the lock alone when it fails: an unlock
/// that succeeds is the mark of a step that has. On the recorder's queue, as every storage.
class ObservedMetricsStorage final : public ConnectionMetricsPersistentStorage,
                                     public ConnectionMetricsLockingStorage {
 public:
  /// Gets the adjusted counters that the step has registered. Called within the step, after its
  /// last operation on the storage.
  using StepHandler = std::function<void(ConnectionMetricsMap sampled)>;

  /// `Storage` saves and locks.
  template <typename Storage>
  ObservedMetricsStorage(std::shared_ptr<Storage> storage, StepHandler handler)
      : persistent_(storage), locking_(std::move(storage)), handler_(std::move(handler)) {}

  [[nodiscard]] std::optional<Date> lastRegisterDate() const override;
  void registerMetrics(const ConnectionMetrics& metrics, std::string_view interfaceName,
                       ConnectionMetricsType type) override;
  [[nodiscard]] std::optional<ConnectionMetrics> metrics(std::string_view interfaceName,
                                                         ConnectionMetricsType type) override;
  [[nodiscard]] ConnectionMetricsMap allMetrics(ConnectionMetricsType type) override;
  void reset() override;
  [[nodiscard]] std::expected<void, MetricsSaveError> save() override;
  [[nodiscard]] std::expected<void, LockError> lock() override;
  [[nodiscard]] std::expected<void, LockError> unlock() override;

 private:
  std::shared_ptr<ConnectionMetricsPersistentStorage> persistent_;
  std::shared_ptr<ConnectionMetricsLockingStorage> locking_;  ///< the same one
  StepHandler handler_;
  std::vector<ConnectionMetricsMap::Entry> sampled_;
};

}  // namespace lanternfold
