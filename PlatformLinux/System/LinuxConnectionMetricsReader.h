// The production counter reader: 64-bit counters, so that nothing ever needs carrying forward.
//
// Made by: the Linux composition. Read by: the interface resolver and, later, the recorder.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "PlatformLinux/System/CounterSource.h"

namespace lanternfold {

/// Tries its sources in order at each reading and takes the first answer. Any thread; readings wait
/// for each other.
class LinuxConnectionMetricsReader final : public ConnectionMetricsReader {
 public:
  using Sources = std::vector<std::unique_ptr<CounterSource>>;

  /// With the sources of this system: the statistics dump, the dump of links, /proc/net/dev.
  LinuxConnectionMetricsReader();
  explicit LinuxConnectionMetricsReader(Sources sources);

  /// False, always.
  [[nodiscard]] bool is32bitCapped() const override { return false; }

  /// Fails when every source did.
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override;

 private:
  std::mutex mutex_;  // guards what the sources hold
  Sources sources_;
};

}  // namespace lanternfold
