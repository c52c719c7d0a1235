#include "CommandLine/StateEntry.h"

#include <memory>
#include <optional>
#include <utility>

#include "CommandLine/KernelAccess.h"
#include "CommandLine/UnaskedConsent.h"
#include "NetworkWidgetVexExtension/Bundle/AppGroupIdEnvironmentKey.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateProvider.h"

namespace lanternfold {
namespace {

/// `consent` and the machine outlive the provider.
NetworkStateProvider makeProvider(const StateEntryRequest& request, const Machine& machine,
                                  LocationConsent& consent) {
  const Platform& platform = machine.platform;
  EnvironmentValues values;
  values.set<AppGroupIdEnvironmentKey>(request.monitor.appGroupId);
  return {{.categoryFilter = request.categories, .skipGeoIp = request.monitor.skipGeoIP},
          std::make_shared<LocationAuthorizationObserver>(consent),
          {.clock = platform.clock,
           .strings = platform.strings,
           .mainQueue = platform.dispatch.mainQueue(),
           .makeMonitor =
               [&machine, options = request.monitor](const std::optional<std::string>& appGroupId,
                                                     bool skipGeoIP) {
                 MonitorOptions chosen = options;
                 chosen.appGroupId = appGroupId;
                 chosen.skipGeoIP = skipGeoIP;
                 chosen.bundle = widgetExtensionBundle();
                 return makeNetworkStateMonitor(machine, chosen);
               },
           .values = std::move(values)}};
}

std::expected<NetworkStateEntry, CommandFailure> entryOfThisMachine(
    const NetworkStateProvider& provider, const ConfigurationIntent& configuration,
    const Machine& machine) {
  constexpr std::chrono::seconds limit{30};
  // Shared with an answer that comes after the limit.
  const auto answer = std::make_shared<std::optional<NetworkStateEntry>>();
  provider.getTimeline(
      configuration, {},
      [answer, loop = std::ref(machine.mainLoop)](Timeline<NetworkStateEntry> timeline) {
        *answer = std::move(timeline.entries.front());
        loop.get().stop();
      });
  machine.mainLoop.runFor(limit);
  if (!*answer) return std::unexpected(workFailed("this machine's state is not known after 30 s"));
  if (!(*answer)->networkState.wlan) {
    if (auto access = requireReadableWifi(machine); !access) {
      return std::unexpected(access.error());
    }
  }
  return **answer;
}

}  // namespace

std::expected<NetworkStateEntry, CommandFailure> drawableStateEntry(
    const StateEntryRequest& request, const Machine& machine) {
  UnaskedConsent consent(machine.platform.locationConsent);
  const NetworkStateProvider provider = makeProvider(request, machine, consent);
  switch (request.source) {
    case EntrySource::placeholder:
      return provider.placeholder({});
    case EntrySource::snapshot: {
      NetworkStateEntry snapshot;
      provider.getSnapshot(request.configuration, {},
                           [&snapshot](NetworkStateEntry entry) { snapshot = std::move(entry); });
      return snapshot;
    }
    case EntrySource::timeline:
      break;
  }
  return entryOfThisMachine(provider, request.configuration, machine);
}

}  // namespace lanternfold
