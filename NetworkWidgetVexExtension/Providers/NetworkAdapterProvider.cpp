#include "NetworkWidgetVexExtension/Providers/NetworkAdapterProvider.h"

#include <system_error>
#include <utility>

namespace lanternfold {

NetworkAdapterProvider::NetworkAdapterProvider(const Clock& clock, const StringTable& strings,
                                               MonitorFactory makeMonitor)
    : clock_(clock), strings_(strings), makeMonitor_(std::move(makeMonitor)) {}

NetworkAdapterEntry NetworkAdapterProvider::placeholder() const { return snapshot({}); }

NetworkAdapterEntry NetworkAdapterProvider::snapshot(
    const AdapterConfigurationIntent& configuration) const {
  return {.date = clock_.now(),
          .networkState = NetworkState::placeholder(true, strings_),
          .configuration = configuration};
}

void NetworkAdapterProvider::timeline(const AdapterConfigurationIntent& configuration,
                                      Completion completion) const {
  const auto monitor = makeMonitor_();
  monitor->setStateUpdateHandler(
      [&clock = clock_, configuration, completion = std::move(completion), completed = false](
          const NetworkState& state, bool complete, std::error_code) mutable {
        if (!complete || std::exchange(completed, true)) return;
        completion({.date = clock.now(), .networkState = state, .configuration = configuration});
      });
  monitor->setActiveCategories(NetworkSourceCategory::other());
  // This category is resolved before the call returns, so the monitor need not outlive it.
  monitor->refresh();
}

}  // namespace lanternfold
