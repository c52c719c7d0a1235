// Counters from the link entries of the kernel's address list, which are 32 bits wide.
//
// Made by: a composition without a better reader. Read by: the interface resolver, the recorder.
#pragma once

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "Platform/NetworkKernel.h"

namespace lanternfold {

/// Stateless; any thread. `kernel` outlives it.
class BsdConnectionMetricsReader final : public ConnectionMetricsReader {
 public:
  explicit BsdConnectionMetricsReader(const NetworkKernel& kernel) : kernel_(kernel) {}

  [[nodiscard]] bool is32bitCapped() const override { return true; }

  /// Fails with `failedGetIf` when the address list cannot be read. Stops the program on an entry
  /// without a name or without an address: whoever fills the list must not let one through.
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override;

 private:
  const NetworkKernel& kernel_;
};

}  // namespace lanternfold
