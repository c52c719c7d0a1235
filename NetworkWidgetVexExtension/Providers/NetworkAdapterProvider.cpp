#include "NetworkWidgetVexExtension/Providers/NetworkAdapterProvider.h"

#include <optional>
#include <system_error>
#include <utility>

namespace lanternfold {

NetworkAdapterProvider::NetworkAdapterProvider(const Clock& clock, const StringTable& strings,
                                               NetworkStateMonitorFactory makeMonitor)
    : clock_(clock), strings_(strings), makeMonitor_(std::move(makeMonitor)) {}

NetworkAdapterEntry NetworkAdapterProvider::placeholder(TimelineProviderContext) const {
  return sampleEntry({});
}

void NetworkAdapterProvider::getSnapshot(const AdapterConfigurationIntent& configuration,
                                         TimelineProviderContext,
                                         SnapshotCompletion completion) const {
  completion(sampleEntry(configuration));
}

void NetworkAdapterProvider::getTimeline(const AdapterConfigurationIntent& configuration,
                                         TimelineProviderContext,
                                         TimelineCompletion completion) const {
  const auto monitor = makeMonitor_(/*appGroupId=*/std::nullopt, /*skipGeoIP=*/false);
  monitor->setStateUpdateHandler([&clock = clock_, configuration,
                                  completion = std::move(completion),
                                  completed = false](const NetworkState& state, bool complete,
                                                     std::error_code) mutable {
    if (!complete || std::exchange(completed, true)) return;
    completion(
        {.entries = {{.date = clock.now(), .networkState = state, .configuration = configuration}},
         .policy = TimelineReloadPolicy::atEnd});
  });
  monitor->setActiveCategories(NetworkSourceCategory::other());
  // This category is resolved before the call returns, so the monitor need not outlive it.
  monitor->refresh();
}

NetworkAdapterEntry NetworkAdapterProvider::sampleEntry(
    const AdapterConfigurationIntent& configuration) const {
  return {.date = clock_.now(),
          .networkState = NetworkState::placeholder(true, strings_),
          .configuration = configuration};
}

}  // namespace lanternfold
