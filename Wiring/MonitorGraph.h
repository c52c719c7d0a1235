// A monitor of a program's machine, as the user's options want it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "NetworkMonitor/Monitor/ProductionGraph.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// The resolver of this machine's interfaces, with the kernel's own counters; touches no file.
[[nodiscard]] std::shared_ptr<InterfaceResolver> makeInterfaceResolver(const Machine& machine);

/// What the options of every command say of its monitor.
struct MonitorOptions {
  /// The group in whose folder the traffic and the provider are remembered; none for the folder
  /// without a group.
  std::optional<std::string> appGroupId = std::nullopt;
  bool skipGeoIP = false;  ///< ask nobody for the provider and the country
  ServiceUrls serviceUrls = {};
};

/// As an ordinary program has it: as much time for the services as they need, and traffic that
/// cannot be sampled is shown nevertheless. Not yet started.
[[nodiscard]] std::shared_ptr<NetworkStateMonitor> makeProgramMonitor(
    const Machine& machine, const MonitorOptions& options);

}  // namespace lanternfold
