#include "CommandLine/WifiConsent.h"

#include "CommandLine/ProgramName.h"
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

void tellHowToDecide(const Console& console) {
  console.errors << programName << ": the network's name is withheld until you decide: \""
                 << programName << " location allow\" shows Wi-Fi names, \"" << programName
                 << " location deny\" does not\n";
}

}  // namespace lanternfold
