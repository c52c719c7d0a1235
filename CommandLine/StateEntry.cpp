#include "CommandLine/StateEntry.h"

#include <memory>
#include <optional>
#include <utility>

#include "CommandLine/KernelAccess.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateProvider.h"
#include "Wiring/RelayedConsent.h"

namespace lanternfold {
namespace {

/// `consent` and the machine outlive the provider.
NetworkStateProvider makeProvider(const StateEntryRequest& request, const Machine& machine,
                                  LocationConsent& consent) {
  const Platform& platform = machine.platform;
  return {{.appGroupId = request.monitor.appGroupId,
           .categoryFilter = request.categories,
           .skipGeoIp = request.monitor.skipGeoIP},
          std::make_shared<LocationAuthorizationObserver>(consent),
          {.clock = platform.clock,
           .strings = platform.strings,
           .mainQueue = platform.dispatch.mainQueue(),
           .makeMonitor = [&machine, options = request.monitor](
                              const std::optional<std::string>& appGroupId, bool skipGeoIP) {
             return makeNetworkStateMonitor(appGroupId, skipGeoIP,
                                            {.platform = machine.platform,
                                             .metricsReader = machine.metricsReader,
                                             .serviceUrls = options.serviceUrls,
                                             .bundle = widgetExtensionBundle()});
           }}};
}

std::expected<NetworkStateEntry, CommandFailure> entryOfThisMachine(
    const NetworkStateProvider& provider, const ConfigurationIntent& configuration,
    const Machine& machine) {
  constexpr std::chrono::seconds limit{30};
  // Shared with an answer that comes after the limit.
  const auto answer = std::make_shared<std::optional<NetworkStateEntry>>();
  provider.timeline(configuration, {},
                    [answer, loop = std::ref(machine.mainLoop)](NetworkStateEntry entry) {
                      *answer = std::move(entry);
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
  const NetworkStateProvider provider =
      makeProvider(request, machine, machine.platform.locationConsent);
  switch (request.source) {
    case EntrySource::placeholder:
      return provider.placeholder({});
    case EntrySource::snapshot:
      return provider.snapshot(request.configuration, {});
    case EntrySource::timeline:
      break;
  }
  return entryOfThisMachine(provider, request.configuration, machine);
}

}  // namespace lanternfold
