// The standard's names of the suites that networks announce.
//
// Read by: the report. Pure.
#pragma once

#include <string>

#include "PlatformLinux/Wifi/SecurityElement.h"

namespace lanternfold {

/// "SAE", "FT-PSK", "802.1X-SHA256"; "00-0f-ac:99" for a suite without a known name.
[[nodiscard]] std::string authenticationName(SuiteSelector suite);

/// "CCMP-128", "TKIP", "GCMP-256"; as above for an unknown one.
[[nodiscard]] std::string cipherName(SuiteSelector suite);

}  // namespace lanternfold
