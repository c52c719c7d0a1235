#include "NetworkMonitor/Model/WlanInterface.h"

#include <cstddef>

#include "NetworkMonitor/Model/InterfaceRows.h"
#include "Support/AsciiCase.h"
#include "Support/Utf8.h"

namespace lanternfold {
namespace {

/// The network's name, or why there is none. An interface that has addresses is connected: then
/// the name is only hidden.
SourceListItem networkRow(const WlanInterface& wlan, const StringTable& strings) {
  const BasicInterface& interface = wlan.interface;
  if (wlan.currentNetwork) {
    return {.label = interface.name, .value = wlan.currentNetwork->ssid, .labelRequired = true};
  }
  if (interface.supportsIPv4 || interface.supportsIPv6) {
    return {.label = strings.localized("SSID"), .value = withheldNameText(strings)};
  }
  return {
      .label = interface.name, .value = strings.localized("Not connected"), .labelRequired = true};
}

void appendNetworkRows(SourceList& rows, const WlanNetwork& network, const StringTable& strings) {
  // Characters, not bytes: a redacted address may be written in dots that take three bytes each.
  constexpr std::size_t shortestShownBssid = 11;
  if (characterCount(network.bssid) >= shortestShownBssid) {
    rows.push_back({.label = strings.localized("BSSID"),
                    .value = asciiLowercased(network.bssid),
                    .labelRequired = true});
  }
  if (network.metrics) {
    const auto metricsRows = network.metrics->compressedListRepresentation(strings);
    rows.insert(rows.end(), metricsRows.begin(), metricsRows.end());
  }
}

}  // namespace

std::string withheldNameText(const StringTable& strings) {
  return strings.localized("SSID Unvailable, location access needed");
}

SourceList WlanInterface::listRepresentation(const StringTable&) const { return {}; }

SourceList WlanInterface::compressedListRepresentation(const StringTable& strings) const {
  SourceList rows{networkRow(*this, strings)};
  appendIPv4Rows(rows, interface, strings);
  appendHardwareAddressRow(rows, interface, strings);
  if (currentNetwork) appendNetworkRows(rows, *currentNetwork, strings);
  return rows;
}

}  // namespace lanternfold
