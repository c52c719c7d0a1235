// From decoded netlink messages to the neutral records of the kernel's tables. Pure.
//
// Made by: the decoders' records. Read by: `LinuxNetworkKernel`.
#pragma once

#include <cstdint>
#include <vector>

#include "Platform/NetworkKernel.h"
#include "PlatformLinux/Netlink/LinkMessage.h"
#include "PlatformLinux/Netlink/RouteMessage.h"

namespace lanternfold {

/// The link's record; its speed is not in the message and stays 0. Counters that came in 32 bits
/// only are widened, and 0 when there are none. A hardware address that is not six bytes long (the
/// address of a tunnel's end, an InfiniBand address) counts as none.
[[nodiscard]] LinkRecord linkRecordOf(const LinkMessage& link);

/// The 32-bit block as the kernel sent it, else the 64-bit one modulo 2^32, else zeros.
[[nodiscard]] LinkStatistics32 statistics32Of(const LinkMessage& link);

/// The entry that stands for a link in the list of addresses.
[[nodiscard]] AddressEntry linkEntryOf(const LinkRecord& link, const LinkStatistics32& statistics);

/// Appends a record for every hop with a gateway, in order, when the route is an ordinary unicast
/// one of the main table.
void appendGatewayRoutes(const RouteMessage& route, std::vector<RouteRecord>& records);

}  // namespace lanternfold
