// What the user's consent means for Wi-Fi names.
//
// Read by: the wiring of the Wi-Fi client, the commands that say that a name is withheld.
#pragma once

#include "Platform/LocationManager.h"

namespace lanternfold {

/// Whether the names of Wi-Fi networks may be told: only with a consent that was given.
[[nodiscard]] bool mayTellWifiNames(const LocationConsent& consent);

/// Whether the user has not decided yet.
[[nodiscard]] bool isConsentUndecided(const LocationConsent& consent);

}  // namespace lanternfold
