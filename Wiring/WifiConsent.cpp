#include "Wiring/WifiConsent.h"

#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"

namespace lanternfold {
namespace {

using Status = LocationAuthorizationObserver::AuthorizationStatus;

}  // namespace

bool mayTellWifiNames(const LocationConsent& consent) {
  const Status status = LocationAuthorizationObserver::currentAuthStatus(consent);
  return status == Status::authorizedAlways || status == Status::authorizedWhenInUse;
}

bool isConsentUndecided(const LocationConsent& consent) {
  return LocationAuthorizationObserver::currentAuthStatus(consent) == Status::notDetermined;
}

}  // namespace lanternfold
