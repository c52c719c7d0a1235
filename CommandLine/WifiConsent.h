// What the user's consent means for Wi-Fi names, and how a command tells that it is lacking.
//
// Read by: the wiring of the Wi-Fi client, `state` and `wifi`.
#pragma once

#include "CommandLine/Console.h"
#include "Platform/LocationManager.h"

namespace lanternfold {

/// Whether the names of Wi-Fi networks may be told: only with a consent that was given.
[[nodiscard]] bool mayTellWifiNames(const LocationConsent& consent);

/// Whether the user has not decided yet.
[[nodiscard]] bool isConsentUndecided(const LocationConsent& consent);

/// That a name is withheld and how to decide, in one line among the errors. The commands never ask:
/// asking is a host's business.
void tellHowToDecide(const Console& console);

}  // namespace lanternfold
