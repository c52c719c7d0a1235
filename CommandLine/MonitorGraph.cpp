#include "CommandLine/MonitorGraph.h"

#include "NetBase/NetUtils.h"
#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"
#include "NetworkMonitor/Monitor/NullResolvers.h"

namespace lanternfold {

std::shared_ptr<InterfaceResolver> makeInterfaceResolver(const Machine& machine) {
  const Platform& platform = machine.platform;
  return std::make_shared<PosixInterfaceResolver>(
      machine.metricsReader,
      NetUtils(SNUtils(platform.kernel, platform.resolverConfiguration, platform.interfaceNaming,
                       platform.diagnostics)),
      platform.networkConfiguration, platform.strings);
}

std::shared_ptr<NetworkStateMonitor> makeNetworkStateMonitor(const Machine& machine) {
  const Platform& platform = machine.platform;
  return std::make_shared<NetworkStateMonitor>(
      std::make_shared<NullInternetInfoResolver>(platform.strings), makeInterfaceResolver(machine),
      std::make_shared<NullWlanInterfaceResolver>(), nullptr,
      NetworkStateMonitor::Environment{.pathMonitors = platform.pathMonitors,
                                       .mainQueue = platform.dispatch.mainQueue(),
                                       .strings = platform.strings});
}

ResolvedState resolveOnce(const Machine& machine, NetworkSourceCategory categories) {
  constexpr std::chrono::seconds limit{30};
  ResolvedState resolved{.state = NetworkState::initial(machine.platform.strings)};
  bool running = false;
  const auto monitor = makeNetworkStateMonitor(machine);
  monitor->setActiveCategories(categories);
  monitor->setStateUpdateHandler([&](const NetworkState& state, bool complete, std::error_code) {
    if (resolved.complete) return;
    resolved = {.state = state, .complete = complete};
    if (complete && running) machine.mainLoop.stop();
  });
  monitor->refresh();
  running = true;
  if (!resolved.complete) machine.mainLoop.runFor(limit);
  // What still answers later must not reach into this function.
  monitor->setStateUpdateHandler(nullptr);
  return resolved;
}

}  // namespace lanternfold
