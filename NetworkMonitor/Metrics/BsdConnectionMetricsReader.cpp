#include "NetworkMonitor/Metrics/BsdConnectionMetricsReader.h"

#include <map>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// Views into the entries they were made of, in the order of the names.
using LinkCounters = std::map<std::string_view, ConnectionMetrics>;

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

LinkCounters linkCounters(const std::vector<AddressEntry>& entries) {
  LinkCounters links;
  for (const AddressEntry& entry : entries) {
    if (!entry.name) fatalError("the kernel's address list holds an entry without a name");
    if (!entry.address) fatalError("the kernel's address list holds an entry without an address");
    if (!std::holds_alternative<LinkAddress>(*entry.address)) continue;
    const LinkStatistics32 statistics = entry.statistics.value_or(LinkStatistics32{});
    links.insert_or_assign(*entry.name, widened(statistics));
  }
  return links;
}

/// Built whole: inserting one by one would copy the map's table of names for each.
ConnectionMetricsMap mapOf(const LinkCounters& links) {
  auto names = std::make_shared<ConnectionMetricsMap::Names>();
  std::vector<ConnectionMetrics> values;
  names->reserve(links.size());
  values.reserve(links.size());
  for (const auto& [name, metrics] : links) {
    names->emplace_back(name);
    values.push_back(metrics);
  }
  return {std::move(names), std::move(values)};
}

}  // namespace

std::expected<ConnectionMetricsMap, ConnectionMetricsReaderError>
BsdConnectionMetricsReader::read() {
  const auto reading = kernel_.beginReading();
  const auto& entries = reading->addressEntries();
  if (!entries) return std::unexpected(ConnectionMetricsReaderError::failedGetIf);
  return mapOf(linkCounters(*entries));
}

}  // namespace lanternfold
