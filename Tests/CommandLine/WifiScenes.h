// What a kernel may tell of its Wi-Fi, for the tests of the commands.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <linux/nl80211.h>

#include "PlatformLinux/Wifi/InformationElements.h"
#include "PlatformLinux/Wifi/WifiFacts.h"
#include "Tests/CommandLine/FakeMachine.h"

namespace lanternfold {

/// What the network is called, and by which addresses its cells.
struct NetworkNames {
  std::string ssid = "Example";
  HardwareAddress bssid{0x02, 0, 0, 0, 0x01, 0x01};
  HardwareAddress secondBssid{0x02, 0, 0, 0, 0x01, 0x02};  ///< of a multi-link network
  HardwareAddress peer{0x02, 0, 0, 0, 0x01, 0x0F};         ///< the same network as a whole
};

inline std::vector<std::uint8_t> bytesOfText(std::string_view text) {
  return {text.begin(), text.end()};
}

/// The elements of a WPA 2 network with this name, whose management frames are protected.
inline InformationElements wpa2Elements(std::string_view ssid) {
  std::vector<std::uint8_t> bytes{0, static_cast<std::uint8_t>(ssid.size())};
  bytes.insert(bytes.end(), ssid.begin(), ssid.end());
  const std::vector<std::uint8_t> rsn{48,   20,   1, 0, 0, 0x0F, 0xAC, 4,    1, 0,    0,
                                      0x0F, 0xAC, 4, 1, 0, 0,    0x0F, 0xAC, 2, 0xC0, 0};
  bytes.insert(bytes.end(), rsn.begin(), rsn.end());
  return decodeInformationElements(bytes);
}

inline WifiRate vhtRate(std::uint32_t hundredsOfKilobits) {
  return {.bitrate = hundredsOfKilobits,
          .generation = WifiGeneration::vht,
          .modulation = std::uint8_t{9},
          .streams = std::uint8_t{2},
          .widthMegahertz = 80,
          .guardIntervalNanoseconds = 400};
}

inline WifiChannelDefinition channel44() {
  return {.frequencyMegahertz = 5220, .width = NL80211_CHAN_WIDTH_80, .center1Megahertz = 5210};
}

/// A managed interface, switched on, without a network.
inline WifiFacts factsOfFreeInterface(std::string_view name = "en1") {
  WifiFacts facts;
  facts.interface.index = 3;
  facts.interface.name = name;
  facts.interface.interfaceType = NL80211_IFTYPE_STATION;
  facts.interface.address = HardwareAddress{0x02, 0, 0, 0, 0, 0x03};
  facts.interface.transmitPowerMillibels = 2000;
  facts.isPoweredOn = true;
  facts.countryCode = "DE";
  return facts;
}

inline WifiStationMessage stationOf(const HardwareAddress& address) {
  WifiStationMessage station;
  station.address = address;
  station.figures.signalDbm = std::int8_t{-54};
  station.figures.signalAverageDbm = std::int8_t{-55};
  station.figures.transmitRate = vhtRate(8667);
  station.figures.receiveRate = vhtRate(7800);
  station.figures.expectedThroughputKilobits = 405'000;
  station.figures.connectedSeconds = 3725;
  return station;
}

inline WifiBssMessage cellOf(const HardwareAddress& bssid, std::string_view ssid,
                             std::uint32_t megahertz) {
  WifiBssMessage cell;
  cell.bssid = bssid;
  cell.frequencyMegahertz = megahertz;
  cell.signalMillibels = -5390;
  cell.hasPrivacy = true;
  cell.elements = wpa2Elements(ssid);
  return cell;
}

/// A WPA 2 network on channel 44, with every figure.
inline WifiFacts joinedFacts(const NetworkNames& names = {}, std::string_view interface = "en1") {
  WifiFacts facts = factsOfFreeInterface(interface);
  facts.interface.ssid = bytesOfText(names.ssid);
  facts.interface.channel = channel44();
  facts.joinedCells = {cellOf(names.bssid, names.ssid, 5220)};
  facts.stations = {stationOf(names.bssid)};
  WifiSurveyMessage survey;
  survey.frequencyMegahertz = 5220;
  survey.noiseDbm = std::int8_t{-92};
  survey.isInUse = true;
  facts.survey = {survey};
  return facts;
}

/// The same network over two links: number 0 on channel 44, number 2 at 6 GHz.
inline WifiFacts multiLinkFacts(const NetworkNames& names = {},
                                std::string_view interface = "en1") {
  WifiFacts facts = joinedFacts(names, interface);
  facts.interface.channel = {};
  facts.interface.links = {
      {.linkId = 0, .channel = channel44()},
      {.linkId = 2,
       .channel = {
           .frequencyMegahertz = 6135, .width = NL80211_CHAN_WIDTH_320, .center1Megahertz = 6105}}};
  facts.joinedCells = {cellOf(names.bssid, names.ssid, 5220),
                       cellOf(names.secondBssid, names.ssid, 6135)};
  facts.joinedCells[0].linkId = std::uint8_t{0};
  facts.joinedCells[1].linkId = std::uint8_t{2};
  for (WifiBssMessage& cell : facts.joinedCells) cell.peerAddress = names.peer;
  facts.stations = {stationOf(names.peer)};
  WifiStationFigures second;
  second.signalDbm = std::int8_t{-61};
  second.transmitRate = {.bitrate = 28'824,
                         .generation = WifiGeneration::eht,
                         .modulation = std::uint8_t{11},
                         .streams = std::uint8_t{1},
                         .widthMegahertz = 320,
                         .guardIntervalNanoseconds = 800};
  facts.stations[0].links = {{.linkId = 0, .figures = facts.stations[0].figures},
                             {.linkId = 2, .figures = second}};
  return facts;
}

/// The link that the kernel's other tables know the Wi-Fi interface by, with an address.
inline void addWifiLink(FakeMachine& machine, std::string_view name = "en1") {
  machine.kernel.addLink(name);
  machine.kernel.setCounters(name, {.recvBytes = 7'000'000, .sentBytes = 4'000});
  machine.kernel.addIPv4Address(name, {198, 51, 100, 5}, {255, 255, 255, 0});
  machine.networkConfiguration.addInterface(std::string(name), ConfiguredInterfaceType::ieee80211,
                                            "Wi-Fi Adapter");
}

}  // namespace lanternfold
