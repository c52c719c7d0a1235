// A datagram of nl80211's answers through the walk, every decoder of Wi-Fi messages, the choice of
// the default interface and the report that is composed of them.
#include <cstddef>
#include <cstdint>

#include "PlatformLinux/Netlink/NetlinkMessage.h"
#include "PlatformLinux/Wifi/WifiComposition.h"
#include "PlatformLinux/Wifi/WifiDefaultInterface.h"
#include "PlatformLinux/Wifi/WifiRegulatoryMessage.h"
#include "Support/FatalError.h"

namespace {

using lanternfold::fatalError;

template <typename Record>
bool isDecoded(const std::expected<Record, lanternfold::DecodeError>& record) {
  if (!record && record.error().subject.empty()) {
    fatalError("an answer was refused without saying what is wrong with it");
  }
  return record.has_value();
}

void take(const lanternfold::NetlinkMessage& message,
          std::vector<lanternfold::WifiInterfaceMessage>& interfaces,
          lanternfold::WifiFacts& facts) {
  const auto interface = lanternfold::decodeWifiInterface(message);
  if (isDecoded(interface)) interfaces.push_back(*interface);
  const auto cell = lanternfold::decodeJoinedBss(message);
  if (isDecoded(cell) && *cell) facts.joinedCells.push_back(**cell);
  const auto station = lanternfold::decodeWifiStation(message);
  if (isDecoded(station)) facts.stations.push_back(*station);
  const auto survey = lanternfold::decodeWifiSurvey(message);
  if (isDecoded(survey)) facts.survey.push_back(*survey);
  const auto country = lanternfold::decodeWifiRegulatory(message);
  if (isDecoded(country)) facts.countryCode = country->countryCode;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  lanternfold::NetlinkMessageWalker walker({data, size});
  std::vector<lanternfold::WifiInterfaceMessage> interfaces;
  lanternfold::WifiFacts facts;
  for (auto message = walker.next(); message && *message; message = walker.next()) {
    take(**message, interfaces, facts);
  }
  const auto candidates = lanternfold::defaultInterfaceCandidates(interfaces);
  if (!candidates.empty()) facts.interface = candidates.front();
  using enum lanternfold::WifiNameDisclosure;
  static_cast<void>(lanternfold::wifiReportOf(facts, told));
  const auto report = lanternfold::wifiReportOf(facts, withheld);
  if (report.links.empty()) fatalError("a report has no link");
  if (report.interface.ssid || report.interface.bssid) fatalError("a withheld name is told");
  for (const lanternfold::WifiLink& link : report.links) {
    if (link.bssid) fatalError("a withheld name of a link is told");
  }
  return 0;
}
