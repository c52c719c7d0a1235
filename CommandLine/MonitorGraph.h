// Wires a network state monitor over a machine's seams.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "CommandLine/Machine.h"
#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"
#include "NetworkMonitor/PublicInfo/ServiceUrls.h"
#include "Platform/BundleInformation.h"

namespace lanternfold {

/// The resolver of this machine's interfaces, with the kernel's own counters; touches no file.
[[nodiscard]] std::shared_ptr<InterfaceResolver> makeInterfaceResolver(const Machine& machine);

/// What a monitor is to be like.
struct MonitorOptions {
  /// The group in whose folder the traffic and the provider are remembered; none for the folder
  /// without a group.
  std::optional<std::string> appGroupId = std::nullopt;
  bool skipGeoIP = false;  ///< ask nobody for the provider and the country
  ServiceUrls serviceUrls = {};
  /// An extension has less time to ask the services.
  BundleInformation bundle = {};
};

/// A monitor of this machine, not yet started. There is no cellular provider. A service that gives
/// no answer is a line among the diagnostics.
[[nodiscard]] std::shared_ptr<NetworkStateMonitor> makeNetworkStateMonitor(
    const Machine& machine, const MonitorOptions& options);

/// The state once every one of `categories` has been resolved, or after half a minute the state as
/// it then is, not complete.
struct ResolvedState {
  NetworkState state;
  bool complete = false;
};
[[nodiscard]] ResolvedState resolveOnce(const Machine& machine, const MonitorOptions& options,
                                        NetworkSourceCategory categories);

}  // namespace lanternfold
