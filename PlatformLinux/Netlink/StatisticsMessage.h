// The 64-bit counters of one link as RTM_NEWSTATS brings them.
//
// Made by: `decodeStatisticsMessage` from a dump filtered to IFLA_STATS_LINK_64. Read by: the
// counter reader, for each link of each sample, which is why this decoder allocates nothing.
#pragma once

#include <cstdint>
#include <expected>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/LinkCounters.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

struct StatisticsMessage {
  std::uint32_t interfaceIndex = 0;  ///< never 0
  LinkCounters64 counters;
  friend bool operator==(const StatisticsMessage&, const StatisticsMessage&) = default;
};

/// Errors name the header or attribute; a message of another type is wrongMessage "nlmsg_type".
[[nodiscard]] std::expected<StatisticsMessage, DecodeError> decodeStatisticsMessage(
    const NetlinkMessage& message);

}  // namespace lanternfold
