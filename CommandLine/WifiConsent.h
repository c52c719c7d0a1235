// What the user's consent means for Wi-Fi names, and how a command tells that it is lacking.
//
// Read by: the wiring of the Wi-Fi client, `state` and `wifi`.
#pragma once

#include "CommandLine/Console.h"
#include "CommandLine/Machine.h"
#include "Platform/LocationManager.h"

namespace lanternfold {

/// Whether the names of Wi-Fi networks may be told: only with a consent that was given.
[[nodiscard]] bool mayTellWifiNames(const LocationConsent& consent);

/// How to decide, in one line among the errors, unless the user has decided already. The commands
/// never ask: asking is a host's business.
void tellHowToDecide(const LocationConsent& consent, const Console& console);

}  // namespace lanternfold
