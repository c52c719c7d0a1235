// Where counters come from.
//
// Made by: the composition. Read by: the interface resolver and the recorder.
#pragma once

#include <expected>

#include "NetworkMonitor/Metrics/ConnectionMetricsError.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"

namespace lanternfold {

/// Any thread.
class ConnectionMetricsReader {
 public:
  virtual ~ConnectionMetricsReader() = default;

  /// Whether the counters are 32-bit ones that wrap at 2^32 and need carrying forward.
  [[nodiscard]] virtual bool is32bitCapped() const = 0;

  /// The counters of every interface as they are now; nothing partial on failure.
  [[nodiscard]] virtual std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() = 0;
};

}  // namespace lanternfold
