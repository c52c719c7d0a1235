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

void tellHowToDecide(const LocationConsent& consent, const Console& console) {
  if (LocationAuthorizationObserver::currentAuthStatus(consent) != Status::notDetermined) return;
  console.errors << programName << ": the network's name is withheld until you decide: \""
                 << programName << " location allow\" shows Wi-Fi names, \"" << programName
                 << " location deny\" does not\n";
}

}  // namespace lanternfold
