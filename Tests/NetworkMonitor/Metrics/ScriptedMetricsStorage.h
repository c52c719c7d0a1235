// A storage that persists and locks, writes down what is done to it, and fails where a test says.
#pragma once

#include <optional>
#include <string>

#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/InMemoryConnectionMetricsStorage.h"
#include "Platform/Clock.h"

namespace lanternfold {

/// Its date moves with `save`, as a file's does.
class ScriptedMetricsStorage final : public ConnectionMetricsPersistentStorage,
                                     public ConnectionMetricsLockingStorage {
 public:
  explicit ScriptedMetricsStorage(const Clock& clock) : clock_(clock), inner_(clock) {}

  std::string diary;  ///< a word for each operation that changes something
  std::optional<Date> date;
  std::optional<LockError> lockFailure;
  std::optional<LockError> unlockFailure;
  std::optional<MetricsSaveError> saveFailure;

  [[nodiscard]] std::optional<Date> lastRegisterDate() const override { return date; }
  void registerMetrics(const ConnectionMetrics& metrics, std::string_view interfaceName,
                       ConnectionMetricsType type) override {
    const char* const name = type == ConnectionMetricsType::original ? "original" : "adjusted";
    write(std::string(interfaceName) + "." + name);
    inner_.registerMetrics(metrics, interfaceName, type);
  }
  [[nodiscard]] std::optional<ConnectionMetrics> metrics(std::string_view interfaceName,
                                                         ConnectionMetricsType type) override {
    return inner_.metrics(interfaceName, type);
  }
  [[nodiscard]] ConnectionMetricsMap allMetrics(ConnectionMetricsType type) override {
    return inner_.allMetrics(type);
  }
  void reset() override {
    write("reset");
    inner_.reset();
    date.reset();
  }
  [[nodiscard]] std::expected<void, MetricsSaveError> save() override {
    write("save");
    if (saveFailure) return std::unexpected(*saveFailure);
    date = clock_.now();
    return {};
  }
  [[nodiscard]] std::expected<void, LockError> lock() override {
    write("lock");
    if (lockFailure) return std::unexpected(*lockFailure);
    return {};
  }
  [[nodiscard]] std::expected<void, LockError> unlock() override {
    write("unlock");
    if (unlockFailure) return std::unexpected(*unlockFailure);
    return {};
  }

  void write(const std::string& word) { diary += diary.empty() ? word : " " + word; }

 private:
  const Clock& clock_;
  InMemoryConnectionMetricsStorage inner_;
};

}  // namespace lanternfold
