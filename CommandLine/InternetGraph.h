// Wires the public side of a monitor: who is asked for what, and in which order.
#pragma once

#include <memory>

#include "CommandLine/Machine.h"
#include "CommandLine/MonitorGraph.h"

namespace lanternfold {

/// What the public side shares with the rest of its monitor.
struct InternetParts {
  std::shared_ptr<InterfaceResolver> interfaceResolver;
  std::shared_ptr<ConnectionMetricsReader> metricsReader;
};

/// Built at its first resolution: a monitor that is not asked for the internet side opens no
/// settings for it. Main thread only; reports those of the last resolution, on the main queue.
[[nodiscard]] std::shared_ptr<InternetInfoResolver> makeInternetInfoResolver(
    const Machine& machine, const MonitorOptions& options, InternetParts parts);

}  // namespace lanternfold
