// Which IPv4 gateway each interface's default route names.
//
// Read by: `SNUtils`, once for each walk: asking the routing table anew for every address would
// make a walk over n interfaces cost n tables.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "NetBase/InterfaceNameMap.h"
#include "Platform/NetworkKernel.h"

namespace lanternfold {

/// What stands for a gateway where no default route names one.
inline constexpr std::string_view noGatewayText = "0.0.0.0";

/// The gateway's dotted text by interface name, of all default routes (destination 0.0.0.0) in dump
/// order; the last one of an interface wins. None when the routing table cannot be read. A route of
/// an interface that is gone is left out.
[[nodiscard]] std::optional<InterfaceNameMap<std::string>> defaultGateways(
    NetworkKernelReading& reading);

}  // namespace lanternfold
