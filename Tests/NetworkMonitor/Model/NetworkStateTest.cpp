#include <gtest/gtest.h>

#include "NetworkMonitor/Model/NetworkState.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SourceListText.h"

namespace lanternfold {
namespace {

const FakeStringTable english;

std::string placeholderRows(bool withGeo, std::size_t source) {
  const auto sources = NetworkState::placeholder(withGeo, english).allNetworkSources();
  return sourceListText(compressedListRepresentationOf(sources.at(source), english));
}

std::string categoriesOf(const NetworkState& state) {
  std::string text;
  for (const auto& source : state.allNetworkSources()) {
    text += std::to_string(categoryOf(source).rawValue()) + " ";
  }
  return text;
}

TEST(InitialNetworkState, HasAnInternetOfWhichNothingIsKnown) {
  EXPECT_EQ(NetworkState::initial(english).internet, InternetInfo{.displayName = "Internet"});
}

TEST(InitialNetworkState, HasAnActiveWifiOverAnInterfaceLabelledInternet) {
  const WlanInterface expected{
      .active = true,
      .displayName = "Wi-Fi",
      .interface = {
          .active = false, .displayName = "Internet", .name = "", .type = InterfaceType::unknown}};
  EXPECT_EQ(NetworkState::initial(english).wlan, expected);
}

TEST(InitialNetworkState, HasNothingElse) {
  const auto state = NetworkState::initial(english);
  EXPECT_EQ(state.cellular, std::nullopt);
  EXPECT_TRUE(state.others.empty());
  EXPECT_FALSE(state.cellularEnabled);
  EXPECT_FALSE(state.multipleSim);
}

TEST(InitialNetworkState, HasTwoSources) {
  EXPECT_EQ(categoriesOf(NetworkState::initial(english)), "1 2 ");
}

TEST(InitialNetworkState, ShowsTheInternetAsNotConnected) {
  EXPECT_EQ(
      sourceListText(NetworkState::initial(english).internet.compressedListRepresentation(english)),
      "Status / Not connected\n");
}

TEST(InitialNetworkState, LooksUpItsThreeNamesAndNothingElse) {
  auto expected = NetworkState::initial(english);
  expected.internet.displayName = "«Internet»";
  expected.wlan->displayName = "«Wi-Fi»";
  expected.wlan->interface.displayName = "«Internet»";
  EXPECT_EQ(NetworkState::initial(BracketingStringTable()), expected);
}

TEST(PlaceholderNetworkState, HasTheSampleInternet) {
  const InternetInfo expected{.active = true,
                              .displayName = "Internet",
                              .ip = "12.34.56.78",
                              .supportsIPv6 = true,
                              .ipv6 = "2001:db8:0:0:1:0:0:ef",
                              .isp = "Your ISP Name",
                              .country = "IT",
                              .interface = std::nullopt,
                              .dns = {"8.8.8.8", "8.8.4.4"},
                              .metrics = {.sentBytes = 2484838349,
                                          .recvBytes = 18383619393,
                                          .sentError = 2,
                                          .recvError = 6,
                                          .sentPacket = 880838,
                                          .recvPacket = 1484127,
                                          .collisions = 0,
                                          .mtu = 0}};
  EXPECT_EQ(NetworkState::placeholder(true, english).internet, expected);
}

TEST(PlaceholderNetworkState, HasTheSampleWifi) {
  const BasicInterface interface{.active = true,
                                 .displayName = "Wi-Fi",
                                 .metrics = {.sentBytes = 2184382184,
                                             .recvBytes = 16028293550,
                                             .sentError = 2,
                                             .recvError = 6,
                                             .sentPacket = 840838,
                                             .recvPacket = 1184127,
                                             .collisions = 0,
                                             .mtu = 0},
                                 .name = "en0",
                                 .type = InterfaceType::wlan,
                                 .supportsIPv4 = true,
                                 .IPv4 = {{.address = "192.168.0.8",
                                           .netmask = "255.255.255.0",
                                           .gateway = "192.168.0.1",
                                           .cidr = "192.168.0.1/24"}},
                                 .supportsIPv6 = false,
                                 .IPv6 = {},
                                 .hwAddress = "AB:CD:EF:12:34:56"};
  const WlanMetrics metrics{.PHYMode = "802.11ac",
                            .countryCode = "IT",
                            .security = "WPA2 Personal",
                            .channel = "44 (5 GHz, 80 MHz)",
                            .rssi = -39,
                            .noise = -92,
                            .transmitPower = 1,
                            .transmitRate = 1300.0};
  const WlanInterface expected{
      .active = true,
      .displayName = "Wi-Fi",
      .mode = std::nullopt,
      .interface = interface,
      .currentNetwork =
          WlanNetwork{.ssid = "Home Network", .bssid = "12:34:56:AB:CD:EF", .metrics = metrics}};
  EXPECT_EQ(NetworkState::placeholder(false, english).wlan, expected);
}

TEST(PlaceholderNetworkState, HasTheSampleEthernet) {
  const BasicInterface expected{.active = true,
                                .displayName = "Ethernet Adapter",
                                .metrics = {.sentBytes = 4133382184,
                                            .recvBytes = 11319153550,
                                            .sentError = 2,
                                            .recvError = 6,
                                            .sentPacket = 1840838,
                                            .recvPacket = 3984127,
                                            .collisions = 0,
                                            .mtu = 0},
                                .name = "en2",
                                .type = InterfaceType::ethernet,
                                .supportsIPv4 = true,
                                .IPv4 = {{.address = "192.168.0.9",
                                          .netmask = "255.255.255.0",
                                          .gateway = "192.168.0.1",
                                          .cidr = "192.168.0.1/24"}},
                                .supportsIPv6 = false,
                                .IPv6 = {},
                                .hwAddress = "AB:CD:EF:12:34:57"};
  EXPECT_EQ(NetworkState::placeholder(false, english).others, std::vector{expected});
}

TEST(PlaceholderNetworkState, HasNoCellularSide) {
  const auto state = NetworkState::placeholder(true, english);
  EXPECT_EQ(state.cellular, std::nullopt);
  EXPECT_FALSE(state.cellularEnabled);
  EXPECT_FALSE(state.multipleSim);
}

TEST(PlaceholderNetworkState, DiffersWithoutGeographyOnlyInProviderAndCountry) {
  auto without = NetworkState::placeholder(false, english);
  const auto with = NetworkState::placeholder(true, english);
  EXPECT_NE(without, with);
  EXPECT_EQ(without.internet.isp, std::nullopt);
  EXPECT_EQ(without.internet.country, std::nullopt);
  without.internet.isp = with.internet.isp;
  without.internet.country = with.internet.country;
  EXPECT_EQ(without, with);
}

TEST(PlaceholderNetworkState, LooksUpThreeNamesAndNothingElse) {
  for (const bool withGeo : {true, false}) {
    auto expected = NetworkState::placeholder(withGeo, english);
    expected.internet.displayName = "«Internet»";
    expected.wlan->displayName = "«Wi-Fi»";
    expected.wlan->interface.displayName = "«Wi-Fi»";
    EXPECT_EQ(NetworkState::placeholder(withGeo, BracketingStringTable()), expected);
  }
}

TEST(PlaceholderRows, ShowTheInternetWithGeography) {
  EXPECT_EQ(placeholderRows(true, 0),
            "ISP / Your ISP Name\n"
            "IP - COUNTRY / 12.34.56.78 (IT)\n"
            "DNS / 8.8.8.8 !\n"
            "IPv6 / 2001:db8:0:0:1:0:0:ef !\n");
}

TEST(PlaceholderRows, ShowTheInternetWithoutGeography) {
  EXPECT_EQ(placeholderRows(false, 0),
            "IP / 12.34.56.78\n"
            "DNS / 8.8.8.8 !\n"
            "IPv6 / 2001:db8:0:0:1:0:0:ef !\n");
}

TEST(PlaceholderRows, ShowTheWifi) {
  EXPECT_EQ(placeholderRows(true, 1),
            "en0 / Home Network !\n"
            "IP / 192.168.0.8\n"
            "Router / 192.168.0.1/24\n"
            "MAC / ab:cd:ef:12:34:56 !\n"
            "BSSID / 12:34:56:ab:cd:ef !\n"
            "PHY mode / 802.11ac\n"
            "Security / WPA2 Personal\n"
            "Channel / 44 (5 GHz, 80 MHz) !\n");
}

TEST(PlaceholderRows, ShowTheEthernetAdapter) {
  EXPECT_EQ(placeholderRows(true, 2),
            "en2 / Ethernet Adapter !\n"
            "IP / 192.168.0.9\n"
            "Router / 192.168.0.1/24\n"
            "MAC / ab:cd:ef:12:34:57 !\n");
}

TEST(PlaceholderLabels, ReadThirteenHundredForRateSignalAndNoise) {
  const auto state = NetworkState::placeholder(false, english);
  const WlanMetrics& metrics = *state.wlan->currentNetwork->metrics;
  EXPECT_EQ(metrics.rssiLabel(), "1300.0 dBm");
  EXPECT_EQ(metrics.noiseLabel(), "1300.0 dBm");
  EXPECT_EQ(metrics.transmitPowerLabel(), "1 mW");
  EXPECT_EQ(metrics.transmitRateLabel(english), "1300.0 Mbps");
}

TEST(AllNetworkSources, HoldInternetAndOthersOnlyWithoutWifiAndCellular) {
  auto state = NetworkState::placeholder(true, english);
  state.wlan.reset();
  state.others.push_back({.name = "en5"});
  EXPECT_EQ(categoriesOf(state), "1 8 8 ");
  EXPECT_EQ(state.allNetworkSources().back(), AnyNetworkSource(state.others.back()));
}

TEST(AllNetworkSources, StandInTheOrderInternetWifiCellularOthers) {
  auto state = NetworkState::placeholder(true, english);
  state.cellular = CellularProvider{.displayName = "Cellular"};
  EXPECT_EQ(categoriesOf(state), "1 2 4 8 ");
}

TEST(AnyNetworkSource, SpeaksForEveryKind) {
  auto state = NetworkState::placeholder(true, english);
  state.cellular =
      CellularProvider{.active = false, .displayName = "Cellular", .metrics = {.sentBytes = 4}};
  state.internet.metrics = {.sentBytes = 1};
  state.wlan->interface.metrics = {.sentBytes = 2};
  state.others.front().metrics = {.sentBytes = 8};
  std::string text;
  for (const auto& source : state.allNetworkSources()) {
    text += displayNameOf(source) + (activeOf(source) ? " active " : " idle ") +
            std::to_string(metricsOf(source).sentBytes) + "\n";
  }
  EXPECT_EQ(text,
            "Internet active 1\nWi-Fi active 2\nCellular idle 4\nEthernet Adapter active 8\n");
}

TEST(AnyNetworkSource, OfEveryKindHasNoLongList) {
  auto state = NetworkState::placeholder(true, english);
  state.cellular = CellularProvider{.carriers = {{.name = "Blue"}}};
  const auto sources = state.allNetworkSources();
  ASSERT_EQ(sources.size(), 4U);
  for (const auto& source : sources) {
    EXPECT_TRUE(listRepresentationOf(source, english).empty()) << displayNameOf(source);
    EXPECT_FALSE(compressedListRepresentationOf(source, english).empty()) << displayNameOf(source);
  }
}

}  // namespace
}  // namespace lanternfold
