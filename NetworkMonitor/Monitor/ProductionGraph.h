// The one place where a monitor is wired to the pieces that ask the real machine.
//
// Called by: the composition of every program, for each request for a state.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "NetworkMonitor/Metrics/RememberingMetricsReader.h"
#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"
#include "NetworkMonitor/PublicInfo/ServiceUrls.h"
#include "Platform/BundleInformation.h"
#include "Platform/Platform.h"

namespace lanternfold {

/// What the graph is built over. All that `platform` refers to outlives the monitor.
struct ProductionSurroundings {
  Platform platform;
  /// Counters of 64 bits, which need no carrying forward.
  std::shared_ptr<ConnectionMetricsReader> metricsReader;
  ServiceUrls serviceUrls = {};
  /// An extension has less time to ask the services.
  BundleInformation bundle = {};
  WhileLocked whileLocked = WhileLocked::kernelCounters;
  std::shared_ptr<HeldLockMemory> heldLocks = nullptr;  ///< of all requests of a program
};

/// A monitor of this machine, not yet started, everything in it made afresh; only what the pieces
/// keep on the disk, and in `heldLocks`, outlives it. `appGroupId` is the group whose folder and
/// settings they share, none for those that belong to no group. `skipGeoIP` switches the look-up of
/// provider and country off. There is no cellular provider. A service that gives no answer is a
/// line among the diagnostics. Main queue.
[[nodiscard]] std::shared_ptr<NetworkStateMonitor> makeNetworkStateMonitor(
    const std::optional<std::string>& appGroupId, bool skipGeoIP,
    const ProductionSurroundings& surroundings);

/// A resolver of the machine's interfaces with the counters of `metricsReader`.
[[nodiscard]] std::shared_ptr<InterfaceResolver> makePosixInterfaceResolver(
    const Platform& platform, std::shared_ptr<ConnectionMetricsReader> metricsReader);

}  // namespace lanternfold
