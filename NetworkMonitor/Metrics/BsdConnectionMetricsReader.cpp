#include "NetworkMonitor/Metrics/BsdConnectionMetricsReader.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

struct LinkCounters {
  std::string_view name;
  ConnectionMetrics metrics;
};

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

std::vector<LinkCounters> linkCounters(const std::vector<AddressEntry>& entries) {
  std::vector<LinkCounters> links;
  for (const AddressEntry& entry : entries) {
    if (!entry.name) fatalError("the kernel's address list holds an entry without a name");
    if (!entry.address) fatalError("the kernel's address list holds an entry without an address");
    if (!std::holds_alternative<LinkAddress>(*entry.address)) continue;
    links.push_back({*entry.name, widened(entry.statistics.value_or(LinkStatistics32{}))});
  }
  return links;
}

/// Sorted by name once; inserting one by one would copy the table of names for each.
ConnectionMetricsMap mapOf(std::vector<LinkCounters> links) {
  std::ranges::stable_sort(links, {}, &LinkCounters::name);
  auto names = std::make_shared<ConnectionMetricsMap::Names>();
  std::vector<ConnectionMetrics> values;
  for (const LinkCounters& link : links) {
    if (!names->empty() && names->back() == link.name) {
      values.back() = link.metrics;  // the later entry of a name replaces the earlier one
      continue;
    }
    names->emplace_back(link.name);
    values.push_back(link.metrics);
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
