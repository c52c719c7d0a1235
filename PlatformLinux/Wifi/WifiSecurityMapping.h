// How a network is protected, in the values of the seam. Pure.
//
// Read by: the report.
#pragma once

#include "Platform/WifiClient.h"
#include "PlatformLinux/Wifi/InformationElements.h"

namespace lanternfold {

/// What the network offers, of which the connection uses one way: the kernel does not tell which.
/// Unknown for elements that are illegible or not there, for suites that are not known, and for a
/// network that offers passwords and accounts alike.
[[nodiscard]] WifiSecurity securityOf(const InformationElements& elements, bool hasPrivacy);

}  // namespace lanternfold
