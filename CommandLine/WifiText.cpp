#include "CommandLine/WifiText.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CommandLine/TextRows.h"
#include "CommandLine/WifiFigures.h"
#include "NetworkMonitor/Wlan/WlanTexts.h"
#include "Wiring/ProgramName.h"

namespace lanternfold {

namespace {

using Rows = std::vector<TextRow>;

/// A row, unless there is nothing to say.
void append(Rows& rows, const char* label, std::string value) {
  if (!value.empty()) rows.push_back({label, std::move(value)});
}

std::string withheldText() {
  return std::string("withheld: allow with \"") + programName + " location allow\"";
}

std::string networkText(const WifiReport& report) {
  if (!report.isJoined) return "none joined";
  if (report.namesWithheld) return withheldText();
  return report.interface.ssid.value_or("not told by the kernel");
}

std::string signalText(const std::optional<std::int64_t>& decibels,
                       const std::optional<std::int64_t>& average) {
  if (!decibels) return average ? decibelsText(*average) + " on average" : std::string();
  return decibelsText(*decibels) + (average ? " (" + decibelsText(*average) + " on average)" : "");
}

/// What the kernel tells of the interface as a whole may stand in for what it does not tell of a
/// link.
std::optional<std::int64_t> signalOf(const WifiReport& report) {
  const std::int64_t decibels = report.interface.rssiValue;
  return decibels == 0 ? std::nullopt : std::optional(decibels);
}

void appendRates(Rows& rows, const WifiLink& link) {
  if (link.transmitRate) append(rows, "Transmit rate", rateText(*link.transmitRate));
  if (link.receiveRate) append(rows, "Receive rate", rateText(*link.receiveRate));
}

Rows interfaceRows(const WifiReport& report, const StringTable& strings) {
  const WifiInterface& interface = report.interface;
  Rows rows;
  append(rows, "Radio",
         "phy" + std::to_string(report.radioIndex) + (interface.powerOn ? ", on" : ", off"));
  append(rows, "Hardware address", report.hardwareAddress.value_or(""));
  append(rows, "Mode", interfaceModeText(interface.interfaceMode, strings));
  append(rows, "Country", interface.countryCode.value_or(""));
  if (report.transmitPowerMillibels) {
    append(rows, "Transmit power",
           powerText(*report.transmitPowerMillibels, interface.transmitPower));
  }
  append(rows, "Network", networkText(report));
  return rows;
}

void appendNetworkRows(Rows& rows, const WifiReport& report, const StringTable& strings) {
  append(rows, "BSSID", report.namesWithheld ? "withheld" : report.interface.bssid.value_or(""));
  append(rows, "Security", protectionText(report.interface.security, strings));
  if (report.rsn) append(rows, "WPA 2 and 3", suitesText(*report.rsn));
  if (report.wpa) append(rows, "WPA", suitesText(*report.wpa));
  if (report.generation) append(rows, "Generation", generationText(*report.generation));
  append(rows, "Signal", signalText(signalOf(report), report.signalAverageDbm));
  if (report.noiseDbm) append(rows, "Noise", decibelsText(*report.noiseDbm));
  if (report.expectedThroughputKilobits) {
    constexpr double kilobitsOfMegabit = 1000;
    append(rows, "Expected throughput",
           megabitsText(*report.expectedThroughputKilobits / kilobitsOfMegabit));
  }
  if (report.connectedSeconds) append(rows, "Joined for", durationText(*report.connectedSeconds));
}

Rows linkRows(const WifiLink& link) {
  Rows rows;
  append(rows, "BSSID", link.bssid.value_or(""));
  append(rows, "Channel", linkChannelText(link));
  if (link.generation) append(rows, "Generation", generationText(*link.generation));
  append(rows, "Signal", signalText(link.signalDbm, link.signalAverageDbm));
  appendRates(rows, link);
  return rows;
}

}  // namespace

void writeWifiText(const WifiReport& report, const StringTable& strings, const Console& console) {
  Rows rows = interfaceRows(report, strings);
  if (report.isJoined) appendNetworkRows(rows, report, strings);
  const bool hasLinks = report.links.size() > 1 || report.links.front().linkId.has_value();
  if (!hasLinks) {
    append(rows, "Channel", linkChannelText(report.links.front()));
    appendRates(rows, report.links.front());
  }
  writeTextRows(report.interface.interfaceName.value_or(""), rows, console);
  if (!hasLinks) return;
  for (const WifiLink& link : report.links) {
    writeTextRows(link.linkId ? "Link " + std::to_string(*link.linkId) : "Link", linkRows(link),
                  console);
  }
}

}  // namespace lanternfold
