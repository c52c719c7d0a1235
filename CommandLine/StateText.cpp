#include "CommandLine/StateText.h"

#include <variant>

#include "CommandLine/TextRows.h"
#include "CommandLine/WifiFigures.h"
#include "NetworkMonitor/Wlan/WlanTexts.h"

namespace lanternfold {
namespace {

/// The figures of a joined network that have no rows among those of a source. A figure that the
/// driver does not give is 0.
void appendRadioRows(std::vector<TextRow>& rows, const WlanMetrics& metrics,
                     const StringTable& strings) {
  if (metrics.rssi != 0) rows.push_back({"Signal", decibelsText(metrics.rssi)});
  if (metrics.noise != 0) rows.push_back({"Noise", decibelsText(metrics.noise)});
  if (metrics.transmitPower != 0) rows.push_back({"Transmit power", metrics.transmitPowerLabel()});
  if (metrics.transmitRate != 0) rows.push_back({"Rate", megabitsText(metrics.transmitRate)});
  if (metrics.countryCode != notAvailableText(strings)) {
    rows.push_back({"Country", metrics.countryCode});
  }
}

std::vector<TextRow> rowsOf(const AnyNetworkSource& source, const StringTable& strings) {
  std::vector<TextRow> rows;
  for (const SourceListItem& item : compressedListRepresentationOf(source, strings)) {
    rows.push_back({item.label, item.value});
  }
  const auto* wlan = std::get_if<WlanInterface>(&source);
  if (wlan != nullptr && wlan->currentNetwork && wlan->currentNetwork->metrics) {
    appendRadioRows(rows, *wlan->currentNetwork->metrics, strings);
  }
  return rows;
}

}  // namespace

void writeStateText(const NetworkState& state, NetworkSourceCategory categories,
                    const StringTable& strings, const Console& console) {
  bool any = false;
  for (const AnyNetworkSource& source : state.allNetworkSources()) {
    if (!categories.contains(categoryOf(source))) continue;
    writeTextRows(displayNameOf(source), rowsOf(source, strings), console);
    any = true;
  }
  if (!any) console.output << strings.localized("No source") << '\n';
}

}  // namespace lanternfold
