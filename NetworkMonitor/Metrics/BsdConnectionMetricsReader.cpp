#include "NetworkMonitor/Metrics/BsdConnectionMetricsReader.h"

#include <utility>
#include <variant>
#include <vector>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

ConnectionMetrics widened(const LinkStatistics32& statistics) {
  return {.sentBytes = statistics.sentBytes,
          .recvBytes = statistics.recvBytes,
          .sentError = statistics.sentErrors,
          .recvError = statistics.recvErrors,
          .sentPacket = statistics.sentPackets,
          .recvPacket = statistics.recvPackets,
          .collisions = statistics.collisions,
          .mtu = statistics.mtu};
}

ConnectionMetricsMap linkCounters(const std::vector<AddressEntry>& entries) {
  std::vector<ConnectionMetricsMap::Entry> links;
  for (const AddressEntry& entry : entries) {
    if (!entry.name) fatalError("the kernel's address list holds an entry without a name");
    if (!entry.address) fatalError("the kernel's address list holds an entry without an address");
    if (!std::holds_alternative<LinkAddress>(*entry.address)) continue;
    const LinkStatistics32 statistics = entry.statistics.value_or(LinkStatistics32{});
    links.push_back({*entry.name, widened(statistics)});
  }
  return ConnectionMetricsMap::of(std::move(links));
}

}  // namespace

std::expected<ConnectionMetricsMap, ConnectionMetricsError> BsdConnectionMetricsReader::read() {
  const auto reading = kernel_.beginReading();
  const auto& entries = reading->addressEntries();
  if (!entries) return std::unexpected(ConnectionMetricsReaderError::failedGetIf);
  return linkCounters(*entries);
}

}  // namespace lanternfold
