// Where sampled counters are remembered: two records an interface name, one of each type.
//
// Made by: the composition, as one of the storages beside this file. Read by: the recorder.
#pragma once

#include <chrono>
#include <expected>
#include <optional>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"
#include "NetworkMonitor/Metrics/Lock.h"
#include "NetworkMonitor/Metrics/MetricsSaveError.h"

namespace lanternfold {

/// Not shared between threads: the recorder serialises all access on its queue.
class ConnectionMetricsStorage {
 public:
  using Date = std::chrono::system_clock::time_point;

  virtual ~ConnectionMetricsStorage() = default;

  /// Of the last registration, or, of a file, of the last save; none when there was none.
  [[nodiscard]] virtual std::optional<Date> lastRegisterDate() const = 0;

  /// Stores a record in the place of an earlier one.
  virtual void registerMetrics(const ConnectionMetrics& metrics, std::string_view interfaceName,
                               ConnectionMetricsType type) = 0;

  /// The stored record, or none.
  [[nodiscard]] virtual std::optional<ConnectionMetrics> metrics(std::string_view interfaceName,
                                                                 ConnectionMetricsType type) = 0;

  /// What a sampling step asks of one interface.
  struct Remembered {
    std::optional<Date> lastRegisterDate;
    std::optional<ConnectionMetrics> original;
    std::optional<ConnectionMetrics> adjusted;

    friend bool operator==(const Remembered&, const Remembered&) = default;
  };

  /// The date and both records, as one after another would give them. A storage that looks at the
  /// disk for each of them looks once here.
  [[nodiscard]] virtual Remembered remembered(std::string_view interfaceName);

  /// All stored records of a type; empty when there are none.
  [[nodiscard]] virtual ConnectionMetricsMap allMetrics(ConnectionMetricsType type) = 0;

  /// Forgets everything, the date of the last registration included.
  virtual void reset() = 0;

  /// Whether there was no registration, or one later than `date`.
  [[nodiscard]] bool isChanged(Date date) const;

  /// Whether this is a `ConnectionMetricsPersistentStorage`.
  [[nodiscard]] bool isPersistent() const;
};

/// One that outlives the program once `save` succeeded.
class ConnectionMetricsPersistentStorage : public virtual ConnectionMetricsStorage {
 public:
  [[nodiscard]] virtual std::expected<void, MetricsSaveError> save() = 0;
};

/// One that several programs share.
class ConnectionMetricsLockingStorage : public virtual ConnectionMetricsStorage {
 public:
  [[nodiscard]] virtual std::expected<void, LockError> lock() = 0;
  [[nodiscard]] virtual std::expected<void, LockError> unlock() = 0;
};

}  // namespace lanternfold
