#include "PlatformLinux/Netlink/KernelRecords.h"

#include <net/if_arp.h>

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

}  // namespace

LinkRecord linkRecordOf(const LinkMessage& link) {
  const LinkCounters64 counters = widestCountersOf(link);
  LinkRecord record;
  record.name = link.name;
  record.index = link.index;
  if (link.address.size() == hardwareAddressSize) {
    record.hardwareAddress.bytes = link.address;
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
