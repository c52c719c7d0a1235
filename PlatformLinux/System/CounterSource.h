// One way to read the counters of every link; there are three, of which the first that is allowed
// serves.
//
// Made by: the Linux composition. Read by: `LinuxConnectionMetricsReader`.
#pragma once

#include <expected>

#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"
#include "Platform/NetworkKernel.h"

namespace lanternfold {

/// Threads: one at a time.
class CounterSource {
 public:
  virtual ~CounterSource() = default;

  /// The 64-bit counters of every link as they are now. After an error the next call starts anew.
  [[nodiscard]] virtual std::expected<ConnectionMetricsMap, NetworkKernelError> read() = 0;
};

}  // namespace lanternfold
