// Whole answers of Linux 6.1 about simulated radios, from the interfaces to the country's rules, to
// the exact report. Fuzzing begins with the same recordings.
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Wifi/WifiComposition.h"
#include "PlatformLinux/Wifi/WifiDefaultInterface.h"
#include "PlatformLinux/Wifi/WifiRegulatoryMessage.h"

namespace lanternfold::test {
namespace {

std::vector<std::uint8_t> recording(const std::string& name) {
  std::ifstream file(LANTERNFOLD_SOURCE_DIR "/Fuzz/Corpus/NetlinkWifi/recorded-" + name,
                     std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Every record of a recording, each by its decoder alone.
struct Records {
  std::vector<WifiInterfaceMessage> interfaces;
  WifiFacts facts;
};

void decode(const NetlinkMessage& message, Records& records) {
  switch (message.payload.front()) {
    case NL80211_CMD_NEW_INTERFACE:
      records.interfaces.push_back(decodeWifiInterface(message).value());
      return;
    case NL80211_CMD_NEW_SCAN_RESULTS:
      if (const auto cell = decodeJoinedBss(message).value()) {
        records.facts.joinedCells.push_back(*cell);
      }
      return;
    case NL80211_CMD_NEW_STATION:
      records.facts.stations.push_back(decodeWifiStation(message).value());
      return;
    case NL80211_CMD_NEW_SURVEY_RESULTS:
      records.facts.survey.push_back(decodeWifiSurvey(message).value());
      return;
    case NL80211_CMD_GET_REG:
      records.facts.countryCode = decodeWifiRegulatory(message).value().countryCode;
      return;
    default:
      ADD_FAILURE() << "an answer of kind " << int{message.payload.front()};
  }
}

WifiReport reportOf(const std::string& name) {
  const std::vector<std::uint8_t> bytes = recording(name);
  EXPECT_FALSE(bytes.empty());
  Records records;
  NetlinkMessageWalker walker(bytes);
  for (auto message = walker.next(); message.value(); message = walker.next()) {
    decode(**message, records);
  }
  records.facts.interface = defaultInterfaceCandidates(records.interfaces).at(0);
  records.facts.isPoweredOn = true;
  return wifiReportOf(records.facts, WifiNameDisclosure::told);
}

WifiRate slowestRate(std::uint32_t bitrate) {
  WifiRate rate;
  rate.bitrate = bitrate;
  return rate;
}

WifiReport joined(std::uint32_t interfaceIndex, std::uint32_t radioIndex, const WifiLink& link) {
  WifiReport report;
  report.interface.interfaceName = "wlan1";
  report.interface.interfaceMode = WifiInterfaceMode::station;
  report.interface.powerOn = true;
  report.interface.ssid = "Meadow";
  report.interface.bssid = link.bssid;
  report.interface.countryCode = "US";
  report.interface.wlanChannel = link.channel;
  report.interface.rssiValue = link.signalDbm.value();
  report.interface.transmitRate = link.transmitRate->megabits();
  report.interfaceIndex = interfaceIndex;
  report.radioIndex = radioIndex;
  report.hardwareAddress = "02:00:00:00:01:00";
  report.isJoined = true;
  report.generation = link.generation;
  report.signalAverageDbm = link.signalAverageDbm;
  report.connectedSeconds = 1;
  report.links = {link};
  return report;
}

WifiLink linkOf5GHz() {
  return {.bssid = "02:00:00:00:00:00",
          .channel = WifiChannel{36, WifiChannelBand::band5GHz, WifiChannelWidth::width80MHz},
          .frequencyMegahertz = 5180,
          .widthMegahertz = 80,
          .center1Megahertz = 5210,
          .generation = WifiGeneration::vht,
          .signalDbm = -27,
          .signalAverageDbm = -27,
          .transmitRate = slowestRate(60),
          .receiveRate = slowestRate(60)};
}

WifiReport joinedOn5GHz(std::uint32_t interfaceIndex, std::uint32_t radioIndex) {
  WifiReport report = joined(interfaceIndex, radioIndex, linkOf5GHz());
  report.interface.activePHYMode = WifiPhyMode::mode11ac;
  report.interface.transmitPower = 200;
  report.transmitPowerMillibels = 2300;
  return report;
}

TEST(RecordedWifi, Wpa2On80Megahertz) {
  WifiReport expected = joinedOn5GHz(7, 4);
  expected.interface.security = WifiSecurity::wpa2Personal;
  expected.rsn = WifiProtection{
      .authentications = {"PSK"}, .pairwiseCiphers = {"CCMP-128"}, .groupCipher = "CCMP-128"};
  EXPECT_EQ(reportOf("wpa2-80"), expected);
}

TEST(RecordedWifi, TransitionFromWpa2ToWpa3) {
  WifiReport expected = joinedOn5GHz(11, 7);
  expected.interface.security = WifiSecurity::wpa3Transition;
  expected.rsn = WifiProtection{.authentications = {"PSK", "SAE"},
                                .pairwiseCiphers = {"CCMP-128"},
                                .groupCipher = "CCMP-128",
                                .offersManagementProtection = true};
  EXPECT_EQ(reportOf("transition"), expected);
}

TEST(RecordedWifi, WpaAndWpa2) {
  WifiReport expected = joinedOn5GHz(23, 16);
  expected.interface.security = WifiSecurity::wpaPersonalMixed;
  expected.rsn = WifiProtection{
      .authentications = {"PSK"}, .pairwiseCiphers = {"CCMP-128"}, .groupCipher = "TKIP"};
  expected.wpa = WifiProtection{
      .authentications = {"PSK"}, .pairwiseCiphers = {"TKIP"}, .groupCipher = "TKIP"};
  EXPECT_EQ(reportOf("mixed"), expected);
}

TEST(RecordedWifi, OpenOn2Point4GigahertzAndNothingHeardYet) {
  WifiReport expected =
      joined(19, 13,
             {.bssid = "02:00:00:00:00:00",
              .channel = WifiChannel{6, WifiChannelBand::band2GHz, WifiChannelWidth::width20MHz},
              .frequencyMegahertz = 2437,
              .widthMegahertz = 20,
              .center1Megahertz = 2437,
              .generation = WifiGeneration::ht,
              .signalDbm = -20,
              .signalAverageDbm = -20,
              .transmitRate = slowestRate(10)});
  expected.interface.activePHYMode = WifiPhyMode::mode11n;
  expected.interface.security = WifiSecurity::none;
  expected.interface.transmitPower = 1000;
  expected.transmitPowerMillibels = 3000;
  EXPECT_EQ(reportOf("open-2ghz"), expected);
}

}  // namespace
}  // namespace lanternfold::test
