// Wires a network state monitor over a machine's seams, with the resolvers that exist so far.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "CommandLine/Machine.h"
#include "NetworkMonitor/Monitor/NetworkStateMonitor.h"

namespace lanternfold {

/// The resolver of this machine's interfaces, with the kernel's own counters; touches no file.
[[nodiscard]] std::shared_ptr<InterfaceResolver> makeInterfaceResolver(const Machine& machine);

/// A monitor of this machine, not yet started. It resolves the cellular category and that of the
/// other interfaces; asking it for Wi-Fi or the internet side answers that there is none. The
/// counters are recorded in the group's folder, or in that of no group.
[[nodiscard]] std::shared_ptr<NetworkStateMonitor> makeNetworkStateMonitor(
    const Machine& machine, const std::optional<std::string>& appGroupId);

/// The state once every one of `categories` has been resolved, or after half a minute the state as
/// it then is, not complete.
struct ResolvedState {
  NetworkState state;
  bool complete = false;
};
[[nodiscard]] ResolvedState resolveOnce(const Machine& machine,
                                        const std::optional<std::string>& appGroupId,
                                        NetworkSourceCategory categories);

}  // namespace lanternfold
