// A link's traffic counters as the kernel sends them, in 32 or 64 bits.
//
// Made by: the link and statistics decoders and the /proc/net/dev parser. Read by: the kernel
// tables and the counter readers.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace lanternfold {

/// Field names as in rtnl_link_stats64.
template <typename Number>
struct BasicLinkCounters {
  Number receivedPackets = 0;
  Number sentPackets = 0;
  Number receivedBytes = 0;
  Number sentBytes = 0;
  Number receivedErrors = 0;
  Number sentErrors = 0;
  Number receivedDropped = 0;
  Number sentDropped = 0;
  Number multicast = 0;
  Number collisions = 0;
  friend bool operator==(const BasicLinkCounters&, const BasicLinkCounters&) = default;
};

using LinkCounters32 = BasicLinkCounters<std::uint32_t>;
using LinkCounters64 = BasicLinkCounters<std::uint64_t>;

// The kernel's records begin with exactly these ten numbers and grow at the end from version to
// version, so that a longer record is fine and a shorter one is not.
static_assert(sizeof(LinkCounters32) == 40 && sizeof(LinkCounters64) == 80);

}  // namespace lanternfold
