// A link's traffic counters as the kernel sends them, in 32 or 64 bits.
//
// Made by: the link and statistics decoders and the /proc/net/dev parser. Read by: the kernel
// tables and the counter readers.
#pragma once

#include <cstdint>

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

/// Widens or narrows each counter; narrowing keeps the low bits, as the kernel's own 32-bit block.
template <typename Number, typename Source>
[[nodiscard]] BasicLinkCounters<Number> countersAs(const BasicLinkCounters<Source>& counters) {
  return {.receivedPackets = static_cast<Number>(counters.receivedPackets),
          .sentPackets = static_cast<Number>(counters.sentPackets),
          .receivedBytes = static_cast<Number>(counters.receivedBytes),
          .sentBytes = static_cast<Number>(counters.sentBytes),
          .receivedErrors = static_cast<Number>(counters.receivedErrors),
          .sentErrors = static_cast<Number>(counters.sentErrors),
          .receivedDropped = static_cast<Number>(counters.receivedDropped),
          .sentDropped = static_cast<Number>(counters.sentDropped),
          .multicast = static_cast<Number>(counters.multicast),
          .collisions = static_cast<Number>(counters.collisions)};
}

using LinkCounters32 = BasicLinkCounters<std::uint32_t>;
using LinkCounters64 = BasicLinkCounters<std::uint64_t>;

// The kernel's records begin with exactly these ten numbers and grow at the end from version to
// version, so that a longer record is fine and a shorter one is not.
static_assert(sizeof(LinkCounters32) == 40 && sizeof(LinkCounters64) == 80);

}  // namespace lanternfold
