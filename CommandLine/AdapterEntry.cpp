#include "CommandLine/AdapterEntry.h"

#include "CommandLine/KernelAccess.h"
#include "CommandLine/MonitorGraph.h"

namespace lanternfold {
namespace {

/// The path as the system first reports it; without an answer in a second, one without a way out.
NetworkPath currentPath(const Machine& machine) {
  constexpr std::chrono::seconds limit{1};
  NetworkPath current;
  const auto monitor = machine.platform.pathMonitors.makePathMonitor(std::nullopt);
  monitor->setPathUpdateHandler([&](const NetworkPath& path) {
    current = path;
    machine.mainLoop.stop();
  });
  monitor->start(machine.platform.dispatch.mainQueue());
  machine.mainLoop.runFor(limit);
  monitor->cancel();
  return current;
}

std::vector<std::string> interfacesOfBestRoute(const NetworkPath& path) {
  if (path.status != PathStatus::satisfied || path.availableInterfaces.empty()) return {};
  return {path.availableInterfaces.front().name};
}

}  // namespace

std::expected<DrawableAdapterEntry, CommandFailure> drawableAdapterEntry(
    EntrySource source, const AdapterConfigurationIntent& configuration, const Machine& machine) {
  const auto now = machine.platform.clock.now();
  const StringTable& strings = machine.platform.strings;
  switch (source) {
    case EntrySource::placeholder:
      return DrawableAdapterEntry{
          .entry = {.date = now,
                    .networkState = NetworkState::placeholder(true, strings),
                    .configuration = {.showTimestamp = configuration.showTimestamp}}};
    case EntrySource::snapshot:
      return DrawableAdapterEntry{
          .entry = {.date = now,
                    .networkState = NetworkState::placeholder(true, strings),
                    .configuration = configuration}};
    case EntrySource::timeline:
      break;
  }
  const ResolvedState resolved = resolveOnce(machine, NetworkSourceCategory::other());
  if (resolved.state.others.empty()) {
    if (auto access = requireReadableKernel(machine); !access) {
      return std::unexpected(access.error());
    }
  }
  return DrawableAdapterEntry{
      .entry = {.date = now, .networkState = resolved.state, .configuration = configuration},
      .preferredInterfaceNames = interfacesOfBestRoute(currentPath(machine))};
}

}  // namespace lanternfold
