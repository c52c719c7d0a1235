#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"

namespace lanternfold {

std::optional<LocationAuthorizationObserver::AuthorizationStatus>
LocationAuthorizationObserver::fromRawValue(std::int32_t rawValue) {
  const auto status = static_cast<AuthorizationStatus>(rawValue);
  switch (status) {
    case AuthorizationStatus::notDetermined:
    case AuthorizationStatus::restricted:
    case AuthorizationStatus::denied:
    case AuthorizationStatus::authorizedAlways:
    case AuthorizationStatus::authorizedWhenInUse:
    case AuthorizationStatus::unknown:
      return status;
  }
  return std::nullopt;
}

LocationAuthorizationObserver::AuthorizationStatus LocationAuthorizationObserver::currentAuthStatus(
    const LocationConsent& consent) {
  return fromRawValue(consent.authorizationStatus()).value_or(AuthorizationStatus::unknown);
}

void LocationAuthorizationObserver::requestAuthorization(bool whenInUse) {
  if (whenInUse) {
    requestWhenInUseAuthorization();
  } else {
    requestAlwaysAuthorization();
  }
}

void LocationAuthorizationObserver::requestWhenInUseAuthorization() {
  locationManager().requestWhenInUseAuthorization();
}

void LocationAuthorizationObserver::requestAlwaysAuthorization() {
  locationManager().requestAlwaysAuthorization();
}

LocationManager& LocationAuthorizationObserver::locationManager() {
  if (!locationManager_) {
    locationManager_ =
        consent_.makeLocationManager([this] { locationManagerDidChangeAuthorization(); });
  }
  return *locationManager_;
}

void LocationAuthorizationObserver::locationManagerDidChangeAuthorization() {
  // A copy, because the callback may replace itself or destroy this observer.
  const auto callback = onAuthStatusChange;
  if (callback) callback(currentAuthStatus());
}

}  // namespace lanternfold
