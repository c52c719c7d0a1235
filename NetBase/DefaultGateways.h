// Which gateway an interface's default route names, by the rules of either family.
//
// Read by: `SNUtils`; those of IPv4 once for each walk, since asking the routing table anew for
// every address would make a walk over n interfaces cost n tables.
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

/// The gateway of the first route, in dump order, of the interface called `name` whose destination
/// begins with a byte of zero: ::/0, but also a network such as 64:ff9b::/96, since more of the
/// destination is not looked at. None when no route matches or the routing table cannot be read.
[[nodiscard]] std::optional<IPv6Bytes> firstIPv6DefaultGateway(NetworkKernelReading& reading,
                                                               std::string_view name);

}  // namespace lanternfold
