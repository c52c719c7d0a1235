#include "CommandLine/AdapterEntry.h"

#include <optional>
#include <utility>

#include "CommandLine/KernelAccess.h"
#include "CommandLine/MonitorGraph.h"
#include "NetworkWidgetVexExtension/Providers/NetworkAdapterProvider.h"

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

std::expected<DrawableAdapterEntry, CommandFailure> entryOfThisMachine(
    const NetworkAdapterProvider& provider, const AdapterConfigurationIntent& configuration,
    const Machine& machine) {
  DrawableAdapterEntry drawable;
  provider.getTimeline(configuration, {}, [&](Timeline<NetworkAdapterEntry> timeline) {
    drawable.entry = std::move(timeline.entries.front());
  });
  if (drawable.entry.networkState.others.empty()) {
    if (auto access = requireReadableKernel(machine); !access) {
      return std::unexpected(access.error());
    }
  }
  drawable.preferredInterfaceNames = interfacesOfBestRoute(currentPath(machine));
  return drawable;
}

}  // namespace

std::expected<DrawableAdapterEntry, CommandFailure> drawableAdapterEntry(
    EntrySource source, const AdapterConfigurationIntent& configuration, const Machine& machine) {
  const NetworkAdapterProvider provider(machine.platform.clock, machine.platform.strings,
                                        [&machine](const std::optional<std::string>&, bool) {
                                          // This widget belongs to no application group.
                                          return makeNetworkStateMonitor(
                                              machine, {.bundle = widgetExtensionBundle()});
                                        });
  switch (source) {
    case EntrySource::placeholder:
      return DrawableAdapterEntry{.entry = provider.placeholder({})};
    case EntrySource::snapshot: {
      DrawableAdapterEntry drawable;
      provider.getSnapshot(configuration, {}, [&drawable](NetworkAdapterEntry entry) {
        drawable.entry = std::move(entry);
      });
      return drawable;
    }
    case EntrySource::timeline:
      break;
  }
  return entryOfThisMachine(provider, configuration, machine);
}

}  // namespace lanternfold
