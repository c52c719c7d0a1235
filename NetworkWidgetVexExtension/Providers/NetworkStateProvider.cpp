#include "NetworkWidgetVexExtension/Providers/NetworkStateProvider.h"

#include <chrono>
#include <system_error>
#include <utility>

#include "NetworkWidgetVexExtension/Bundle/AppGroupIdEnvironmentKey.h"
#include "Support/FatalError.h"

namespace lanternfold {

namespace {

/// Between the request and the first look at the machine.
constexpr std::chrono::milliseconds refreshDelay{100};

}  // namespace

NetworkStateProvider::NetworkStateProvider(
    Options options, std::shared_ptr<LocationAuthorizationObserver> locAuthObserver,
    Environment environment)
    : options_(std::move(options)),
      locAuthObserver_(std::move(locAuthObserver)),
      environment_(std::move(environment)) {
  if (!locAuthObserver_) fatalError("a provider of network states has no observer of the consent");
}

NetworkStateEntry NetworkStateProvider::placeholder(TimelineProviderContext context) const {
  return sampleEntry({}, context);
}

void NetworkStateProvider::getSnapshot(const ConfigurationIntent& configuration,
                                       TimelineProviderContext context,
                                       SnapshotCompletion completion) const {
  completion(sampleEntry(configuration, context));
}

void NetworkStateProvider::getTimeline(const ConfigurationIntent& configuration,
                                       TimelineProviderContext context,
                                       TimelineCompletion completion) const {
  requestLocationAuthorization();
  const auto monitor = environment_.makeMonitor(appGroupId(), options_.skipGeoIp);
  monitor->setStateUpdateHandler(
      [&clock = environment_.clock, configuration, context, completion = std::move(completion),
       completed = false](const NetworkState& state, bool complete, std::error_code) mutable {
        if (!complete || std::exchange(completed, true)) return;
        completion({.entries = {{.date = clock.now(),
                                 .networkState = state,
                                 .configuration = configuration,
                                 .isSnapshot = false,
                                 .isPreview = context.isPreview}},
                    .policy = TimelineReloadPolicy::atEnd});
      });
  monitor->setActiveCategories(categories());
  // The work is all that holds the monitor; after it a resolution under way does.
  environment_.mainQueue.after(refreshDelay, [monitor] { monitor->refresh(); });
}

NetworkStateEntry NetworkStateProvider::sampleEntry(const ConfigurationIntent& configuration,
                                                    TimelineProviderContext context) const {
  return {.date = environment_.clock.now(),
          .networkState = NetworkState::placeholder(!options_.skipGeoIp, environment_.strings),
          .configuration = configuration,
          .isSnapshot = true,
          .isPreview = context.isPreview};
}

std::optional<std::string> NetworkStateProvider::appGroupId() const {
  return environment_.values.get<AppGroupIdEnvironmentKey>();
}

NetworkSourceCategory NetworkStateProvider::categories() const {
  return options_.categoryFilter.value_or(NetworkSourceCategory::all());
}

void NetworkStateProvider::requestLocationAuthorization() const {
  using Status = LocationAuthorizationObserver::AuthorizationStatus;
  if (!categories().contains(NetworkSourceCategory::wlan())) return;
  const Status status = locAuthObserver_->currentAuthStatus();
  if (status == Status::notDetermined || status == Status::authorizedWhenInUse) {
    locAuthObserver_->requestAuthorization(/*whenInUse=*/false);
  }
}

}  // namespace lanternfold
