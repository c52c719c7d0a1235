// One sample: the counters are read, carried forward, stored and judged.
//
// Made by: the recorder, for each sample, on its queue. The order of the operations is part of what
// it promises: a step that fails leaves whatever was done before the failure.
#pragma once

#include <expected>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionBandwidthAnalyzer.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsError.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/DateUtils.h"

namespace lanternfold {

class SamplingStep {
 public:
  /// What a step takes part with; all outlive it.
  struct Parts {
    ConnectionMetricsStorage& storage;
    ConnectionMetricsReader& reader;
    const DateUtils& dateUtils;
    const ConnectionBandwidthAnalyzer& analyzer;
  };

  /// Whether an earlier step of the same recorder was completed: a recorder whose storage does not
  /// outlive the program counts from its own first one.
  enum class Position { first, later };

  struct Outcome {
    ConnectionMetricsMap adjusted;  ///< of the interfaces that were read
    /// The highest of all interfaces.
    ConnectionBandwidthClass bandwidthClass = ConnectionBandwidthClass::idle;
  };

  SamplingStep(const Parts& parts, Position position);

  /// A step that fails after the storage was locked does not unlock it: the lock lapses.
  [[nodiscard]] std::expected<Outcome, ConnectionMetricsError> take();

 private:
  [[nodiscard]] bool predatesLastBoot() const;
  [[nodiscard]] Outcome registerReading(const ConnectionMetricsMap& reading);
  [[nodiscard]] ConnectionMetrics adjusted(
      const ConnectionMetrics& current, const std::optional<ConnectionMetrics>& previousOriginal,
      const std::optional<ConnectionMetrics>& previousAdjusted) const;

  Parts parts_;
  Position position_;
  // The storage again, where it can do more; otherwise null.
  ConnectionMetricsPersistentStorage* persistent_;
  ConnectionMetricsLockingStorage* locking_;
};

}  // namespace lanternfold
