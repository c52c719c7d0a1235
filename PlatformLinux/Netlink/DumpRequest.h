// The requests that ask the kernel for its tables, as bytes ready to send.
//
// Made by: whoever opens a dump. Read by: `NetlinkSocket`, which fills in the sequence number.
#pragma once

#include <cstdint>

#include "PlatformLinux/Netlink/RequestBuilder.h"

namespace lanternfold {

/// RTM_GETLINK for every link, counters included.
[[nodiscard]] NetlinkRequest linkDumpRequest();

/// RTM_GETADDR for the addresses of every family.
[[nodiscard]] NetlinkRequest addressDumpRequest();

/// RTM_GETROUTE for the main table of one family (AF_INET or AF_INET6). A kernel before 4.20
/// ignores the table and sends all of them.
[[nodiscard]] NetlinkRequest routeDumpRequest(std::uint8_t family);

/// RTM_GETSTATS for the 64-bit counters of every link and nothing else.
[[nodiscard]] NetlinkRequest statisticsDumpRequest();

}  // namespace lanternfold
