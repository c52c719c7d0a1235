// Counters remembered as long as the program runs.
//
// Made by: the composition of a recorder that counts from its own start, and by the file storage,
// which keeps in one what it loaded. Read by: the recorder.
#pragma once

#include <optional>

#include "NetworkMonitor/Metrics/ConnectionMetricsData.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "Platform/Clock.h"

namespace lanternfold {

class InMemoryConnectionMetricsStorage final : public ConnectionMetricsStorage {
 public:
  /// `clock` outlives the storage and gives the date of each registration.
  explicit InMemoryConnectionMetricsStorage(const Clock& clock) : clock_(&clock) {}
  /// One that holds `data` already, registered at `date`.
  InMemoryConnectionMetricsStorage(const Clock& clock, ConnectionMetricsData data, Date date);

  [[nodiscard]] std::optional<Date> lastRegisterDate() const override { return lastRegisterDate_; }
  void registerMetrics(const ConnectionMetrics& metrics, std::string_view interfaceName,
                       ConnectionMetricsType type) override;
  [[nodiscard]] std::optional<ConnectionMetrics> metrics(std::string_view interfaceName,
                                                         ConnectionMetricsType type) override;
  [[nodiscard]] ConnectionMetricsMap allMetrics(ConnectionMetricsType type) override;
  void reset() override;

  [[nodiscard]] const ConnectionMetricsData& data() const { return data_; }

 private:
  const Clock* clock_;  // never null; a pointer so that the storage can be replaced as a value
  ConnectionMetricsData data_;
  std::optional<Date> lastRegisterDate_;
};

}  // namespace lanternfold
