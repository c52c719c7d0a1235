#include "PlatformLinux/Wifi/WifiComposition.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

constexpr auto told = WifiNameDisclosure::told;
constexpr auto withheld = WifiNameDisclosure::withheld;

WifiRate vhtRate() {
  WifiRate rate;
  rate.bitrate = 8667;
  rate.generation = WifiGeneration::vht;
  rate.modulation = 9;
  rate.streams = 2;
  rate.widthMegahertz = 80;
  return rate;
}

WifiBssMessage cell(std::uint8_t last, std::uint32_t megahertz) {
  WifiBssMessage cell;
  cell.bssid = cellAddress(last);
  cell.frequencyMegahertz = megahertz;
  cell.signalMillibels = -5190;
  cell.hasPrivacy = true;
  cell.elements = decodeInformationElements(
      joined({element(0, textOnly("caf\xc3\xa9")), element(48, rsnBody({2}, 0x80))}));
  return cell;
}

WifiFacts joinedStation() {
  WifiFacts facts;
  facts.interface.index = 5;
  facts.interface.name = "wlan0";
  facts.interface.radioIndex = 1;
  facts.interface.interfaceType = NL80211_IFTYPE_STATION;
  facts.interface.address = cellAddress(9);
  facts.interface.ssid = textOnly("caf\xc3\xa9");
  facts.interface.channel.frequencyMegahertz = 5220;
  facts.interface.channel.width = NL80211_CHAN_WIDTH_80;
  facts.interface.channel.center1Megahertz = 5210;
  facts.interface.transmitPowerMillibels = 2000;
  facts.isPoweredOn = true;
  facts.joinedCells = {cell(1, 5220)};
  WifiStationMessage station;
  station.address = cellAddress(1);
  station.figures.signalDbm = std::int8_t{-47};
  station.figures.signalAverageDbm = std::int8_t{-49};
  station.figures.transmitRate = vhtRate();
  station.figures.expectedThroughputKilobits = 300'000;
  station.figures.connectedSeconds = 12;
  facts.stations = {station};
  WifiSurveyMessage survey;
  survey.frequencyMegahertz = 5220;
  survey.noiseDbm = std::int8_t{-92};
  survey.isInUse = true;
  facts.survey = {survey};
  facts.countryCode = "DE";
  return facts;
}

WifiInterface interfaceOf(const WifiFacts& facts) { return wifiReportOf(facts, told).interface; }

TEST(WifiComposition, AJoinedStationHasEveryFigure) {
  const WifiInterface expected{
      .interfaceName = "wlan0",
      .interfaceMode = WifiInterfaceMode::station,
      .powerOn = true,
      .ssid = "caf\xc3\xa9",
      .bssid = "02:00:00:00:01:01",
      .activePHYMode = WifiPhyMode::mode11ac,
      .countryCode = "DE",
      .security = WifiSecurity::wpa2Personal,
      .wlanChannel = WifiChannel{44, WifiChannelBand::band5GHz, WifiChannelWidth::width80MHz},
      .rssiValue = -47,
      .noiseMeasurement = -92,
      .transmitPower = 100,
      .transmitRate = 866.7};
  EXPECT_EQ(interfaceOf(joinedStation()), expected);
}

TEST(WifiComposition, TheReportTellsMore) {
  const WifiReport report = wifiReportOf(joinedStation(), told);
  EXPECT_EQ(report.interfaceIndex, 5U);
  EXPECT_EQ(report.radioIndex, 1U);
  EXPECT_EQ(report.hardwareAddress, "02:00:00:00:01:09");
  EXPECT_TRUE(report.isJoined);
  EXPECT_EQ(report.generation, WifiGeneration::vht);
  ASSERT_TRUE(report.rsn);
  EXPECT_EQ(report.rsn->authentications, std::vector<std::string>{"PSK"});
  EXPECT_EQ(report.rsn->pairwiseCiphers, std::vector<std::string>{"CCMP-128"});
  EXPECT_EQ(report.rsn->groupCipher, "CCMP-128");
  EXPECT_TRUE(report.rsn->offersManagementProtection);
  EXPECT_FALSE(report.rsn->requiresManagementProtection);
  EXPECT_EQ(report.wpa, std::nullopt);
  EXPECT_EQ(report.signalAverageDbm, -49);
  EXPECT_EQ(report.noiseDbm, -92);
  EXPECT_EQ(report.transmitPowerMillibels, 2000);
  EXPECT_EQ(report.expectedThroughputKilobits, 300'000U);
  EXPECT_EQ(report.connectedSeconds, 12U);
  ASSERT_EQ(report.links.size(), 1U);
  EXPECT_EQ(report.links[0].linkId, std::nullopt);
  EXPECT_EQ(report.links[0].frequencyMegahertz, 5220U);
  EXPECT_EQ(report.links[0].widthMegahertz, 80U);
  EXPECT_EQ(report.links[0].center1Megahertz, 5210U);
  EXPECT_EQ(report.links[0].transmitRate, vhtRate());
}

TEST(WifiComposition, WithoutConsentNothingButTheNamesIsMissing) {
  WifiReport expected = wifiReportOf(joinedStation(), told);
  expected.interface.ssid.reset();
  expected.interface.bssid.reset();
  expected.links[0].bssid.reset();
  expected.namesWithheld = true;
  EXPECT_EQ(wifiReportOf(joinedStation(), withheld), expected);
}

TEST(WifiComposition, AKernelThatOmitsTheNameHasItFromTheJoinedCell) {
  WifiFacts facts = joinedStation();
  facts.interface.ssid.reset();
  EXPECT_EQ(interfaceOf(facts), interfaceOf(joinedStation()));
  EXPECT_EQ(wifiReportOf(facts, withheld).interface.ssid, std::nullopt);
}

TEST(WifiComposition, AHiddenNameThatTheKernelOmitsIsNone) {
  WifiFacts facts = joinedStation();
  facts.interface.ssid.reset();
  facts.joinedCells[0].elements.ssid = Bytes(4);
  const WifiReport report = wifiReportOf(facts, told);
  EXPECT_TRUE(report.isJoined);
  EXPECT_EQ(report.interface.ssid, std::nullopt);
}

TEST(WifiComposition, AStationWithoutANetworkHasOnlyItsOwnFigures) {
  WifiFacts facts = joinedStation();
  facts.interface.ssid.reset();
  facts.interface.channel = {};
  facts.joinedCells.clear();
  facts.stations.clear();
  facts.survey.clear();
  WifiInterface expected;
  expected.interfaceName = "wlan0";
  expected.interfaceMode = WifiInterfaceMode::station;
  expected.powerOn = true;
  expected.countryCode = "DE";
  expected.transmitPower = 100;
  EXPECT_EQ(interfaceOf(facts), expected);
  EXPECT_FALSE(wifiReportOf(facts, told).isJoined);
  EXPECT_EQ(wifiReportOf(facts, told).generation, std::nullopt);
}

TEST(WifiComposition, WhatADriverDoesNotGiveIsZero) {
  WifiFacts facts = joinedStation();
  facts.stations.clear();
  facts.survey.clear();
  facts.interface.transmitPowerMillibels.reset();
  facts.joinedCells[0].signalMillibels.reset();
  const WifiInterface interface = interfaceOf(facts);
  EXPECT_EQ(interface.rssiValue, 0);
  EXPECT_EQ(interface.noiseMeasurement, 0);
  EXPECT_EQ(interface.transmitPower, 0);
  EXPECT_EQ(interface.transmitRate, 0);
  EXPECT_EQ(interface.ssid, "caf\xc3\xa9");
}

TEST(WifiComposition, WithoutAStationTheSignalIsThatOfTheBeacon) {
  WifiFacts facts = joinedStation();
  facts.stations.clear();
  EXPECT_EQ(interfaceOf(facts).rssiValue, -51);
}

TEST(WifiComposition, ADirectPeerIsNotTheAccessPoint) {
  WifiFacts facts = joinedStation();
  WifiStationMessage peer;
  peer.address = cellAddress(66);
  peer.figures.signalDbm = std::int8_t{-10};
  facts.stations.insert(facts.stations.begin(), peer);
  EXPECT_EQ(interfaceOf(facts).rssiValue, -47);
}

TEST(WifiComposition, WhenTheListOfCellsIsRefusedTheRestStands) {
  WifiFacts facts = joinedStation();
  facts.joinedCells.clear();
  const WifiInterface interface = interfaceOf(facts);
  EXPECT_EQ(interface.ssid, "caf\xc3\xa9");
  EXPECT_EQ(interface.bssid, std::nullopt);
  EXPECT_EQ(interface.security, WifiSecurity::unknown);
  EXPECT_EQ(interface.activePHYMode, WifiPhyMode::mode11ac);
  EXPECT_EQ(interface.rssiValue, -47);
}

TEST(WifiComposition, ADriverWithoutAChannelHasThatOfTheCellAndTheWidthOfTheRate) {
  WifiFacts facts = joinedStation();
  facts.interface.channel = {};
  EXPECT_EQ(interfaceOf(facts).wlanChannel,
            (WifiChannel{44, WifiChannelBand::band5GHz, WifiChannelWidth::width80MHz}));
  facts.stations.clear();
  EXPECT_EQ(interfaceOf(facts).wlanChannel,
            (WifiChannel{44, WifiChannelBand::band5GHz, WifiChannelWidth::unknown}));
}

TEST(WifiComposition, NoiseIsThatOfTheChannelInUse) {
  WifiFacts facts = joinedStation();
  facts.survey[0].isInUse = false;
  EXPECT_EQ(interfaceOf(facts).noiseMeasurement, 0);
  WifiSurveyMessage other = facts.survey[0];
  other.frequencyMegahertz = 2412;
  other.noiseDbm = std::int8_t{-80};
  other.isInUse = true;
  facts.survey.push_back(other);
  EXPECT_EQ(interfaceOf(facts).noiseMeasurement, 0);
  facts.survey[0].isInUse = true;
  EXPECT_EQ(interfaceOf(facts).noiseMeasurement, -92);
}

TEST(WifiComposition, AnAccessPointHasJoinedNothing) {
  WifiFacts facts = joinedStation();
  facts.interface.interfaceType = NL80211_IFTYPE_AP;
  facts.joinedCells.clear();
  const WifiReport report = wifiReportOf(facts, told);
  EXPECT_FALSE(report.isJoined);
  EXPECT_EQ(report.interface.interfaceMode, WifiInterfaceMode::hostAP);
  EXPECT_EQ(report.interface.ssid, std::nullopt);
  EXPECT_EQ(report.interface.rssiValue, 0);
  EXPECT_EQ(report.interface.wlanChannel->channelNumber, 44);
}

WifiFacts multiLinkStation() {
  WifiFacts facts = joinedStation();
  facts.interface.channel = {};
  facts.interface.transmitPowerMillibels.reset();
  facts.interface.links = {{.linkId = 0,
                            .channel = {.frequencyMegahertz = 2437,
                                        .width = NL80211_CHAN_WIDTH_20,
                                        .center1Megahertz = 2437,
                                        .center2Megahertz = std::nullopt},
                            .transmitPowerMillibels = 1000},
                           {.linkId = 2,
                            .channel = {.frequencyMegahertz = 6135,
                                        .width = NL80211_CHAN_WIDTH_320,
                                        .center1Megahertz = 6105,
                                        .center2Megahertz = std::nullopt},
                            .transmitPowerMillibels = std::nullopt}};
  facts.joinedCells = {cell(3, 6135), cell(2, 2437)};
  facts.joinedCells[0].linkId = 2;
  facts.joinedCells[1].linkId = 0;
  for (WifiBssMessage& each : facts.joinedCells) each.peerAddress = cellAddress(7);
  facts.stations[0].address = cellAddress(7);
  return facts;
}

TEST(WifiComposition, AMultiLinkConnectionHasEveryLinkAndTheFiguresOfTheFirst) {
  const WifiReport report = wifiReportOf(multiLinkStation(), told);
  ASSERT_EQ(report.links.size(), 2U);
  EXPECT_EQ(report.links[0].linkId, 0);
  EXPECT_EQ(report.links[0].bssid, "02:00:00:00:01:02");
  EXPECT_EQ(report.links[1].linkId, 2);
  EXPECT_EQ(report.links[1].bssid, "02:00:00:00:01:03");
  EXPECT_EQ(report.links[1].channel,
            (WifiChannel{37, WifiChannelBand::band6GHz, WifiChannelWidth::width320MHz}));
  EXPECT_EQ(report.interface.bssid, "02:00:00:00:01:02");
  EXPECT_EQ(report.interface.wlanChannel,
            (WifiChannel{6, WifiChannelBand::band2GHz, WifiChannelWidth::width20MHz}));
  EXPECT_EQ(report.interface.transmitPower, 10);
}

TEST(WifiComposition, AKernelThatTellsNoFiguresOfLinksHasThoseOfThePeer) {
  const WifiReport report = wifiReportOf(multiLinkStation(), told);
  EXPECT_EQ(report.interface.rssiValue, -47);
  EXPECT_DOUBLE_EQ(report.interface.transmitRate, 866.7);
  EXPECT_EQ(report.links[0].signalDbm, -51);
}

TEST(WifiComposition, FiguresOfLinksComeBeforeThoseOfThePeer) {
  WifiFacts facts = multiLinkStation();
  WifiStationLink link{.linkId = 0, .figures = {}};
  link.figures.signalDbm = std::int8_t{-60};
  facts.stations[0].links = {link};
  EXPECT_EQ(interfaceOf(facts).rssiValue, -60);
}

TEST(WifiComposition, WithoutConsentNoLinkTellsItsCell) {
  for (const WifiLink& link : wifiReportOf(multiLinkStation(), withheld).links) {
    EXPECT_EQ(link.bssid, std::nullopt);
  }
}

}  // namespace
}  // namespace lanternfold::test
