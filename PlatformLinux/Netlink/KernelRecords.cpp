#include "PlatformLinux/Netlink/KernelRecords.h"

#include <net/if_arp.h>
#include <utility>

namespace lanternfold {

namespace {

constexpr std::uint8_t otherTypeCode = 1;
constexpr std::uint8_t ethernetTypeCode = 6;
constexpr std::uint8_t loopbackTypeCode = 24;
constexpr std::size_t hardwareAddressSize = 6;

std::uint8_t typeCodeOf(std::uint16_t hardwareType) {
  if (hardwareType == ARPHRD_ETHER) return ethernetTypeCode;
  if (hardwareType == ARPHRD_LOOPBACK) return loopbackTypeCode;
  return otherTypeCode;
}

// Widens or narrows each counter; narrowing keeps the low bits, as the kernel's own 32-bit block.
template <typename Number, typename Source>
BasicLinkCounters<Number> converted(const BasicLinkCounters<Source>& counters) {
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

LinkCounters64 widestCountersOf(const LinkMessage& link) {
  if (link.counters64) return *link.counters64;
  if (link.counters32) return converted<std::uint64_t>(*link.counters32);
  return {};
}

LinkCounters32 narrowCountersOf(const LinkMessage& link) {
  if (link.counters32) return *link.counters32;
  if (link.counters64) return converted<std::uint32_t>(*link.counters64);
  return {};
}

}  // namespace

LinkRecord linkRecordOf(LinkMessage link) {
  const LinkCounters64 counters = widestCountersOf(link);
  LinkRecord record;
  record.name = std::move(link.name);
  record.index = link.index;
  if (link.address.size() == hardwareAddressSize) {
    record.hardwareAddress.bytes = std::move(link.address);
  }
  record.type = typeCodeOf(link.hardwareType);
  record.mtu = link.mtu.value_or(0);
  record.recvBytes = counters.receivedBytes;
  record.sentBytes = counters.sentBytes;
  record.recvPackets = counters.receivedPackets;
  record.sentPackets = counters.sentPackets;
  record.recvErrors = counters.receivedErrors;
  record.sentErrors = counters.sentErrors;
  record.collisions = counters.collisions;
  return record;
}

LinkStatistics32 statistics32Of(const LinkMessage& link) {
  const LinkCounters32 counters = narrowCountersOf(link);
  return {.sentBytes = counters.sentBytes,
          .recvBytes = counters.receivedBytes,
          .sentErrors = counters.sentErrors,
          .recvErrors = counters.receivedErrors,
          .sentPackets = counters.sentPackets,
          .recvPackets = counters.receivedPackets,
          .collisions = counters.collisions,
          .mtu = link.mtu.value_or(0)};
}

AddressEntry linkEntryOf(const LinkRecord& link, const LinkStatistics32& statistics) {
  AddressEntry entry;
  entry.name = link.name;
  entry.address = link.hardwareAddress;
  entry.statistics = statistics;
  return entry;
}

void appendGatewayRoutes(const RouteMessage& route, std::vector<RouteRecord>& records) {
  if (!route.isMainUnicast()) return;
  for (const RouteHop& hop : route.hops) {
    if (hop.gateway) records.push_back({route.destination, hop.gateway, hop.interfaceIndex});
  }
}

}  // namespace lanternfold
