#include <gtest/gtest.h>

#include "NetworkMonitor/Model/WlanInterface.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SourceListText.h"

namespace lanternfold {
namespace {

std::string rowsOf(const WlanInterface& wlan) {
  return sourceListText(wlan.compressedListRepresentation(FakeStringTable()));
}

/// The rows with every text that was looked up between guillemets.
std::string bracketedRowsOf(const WlanInterface& wlan) {
  return sourceListText(wlan.compressedListRepresentation(BracketingStringTable()));
}

WlanMetrics radio() {
  return {.PHYMode = "802.11ac",
          .countryCode = "IT",
          .security = "WPA2 Personal",
          .channel = "44 (5 GHz, 80 MHz)",
          .rssi = -39,
          .noise = -92,
          .transmitPower = 1,
          .transmitRate = 1300.0};
}

WlanInterface joined() {
  return {.active = true,
          .displayName = "Wi-Fi",
          .interface = {.name = "en0",
                        .supportsIPv4 = true,
                        .IPv4 = {{.address = "192.168.0.8", .cidr = "192.168.0.1/24"}},
                        .hwAddress = "AB:CD:EF:12:34:56"},
          .currentNetwork = WlanNetwork{
              .ssid = "Home Network", .bssid = "12:34:56:AB:CD:EF", .metrics = radio()}};
}

WlanInterface notJoined() {
  auto wlan = joined();
  wlan.currentNetwork.reset();
  return wlan;
}

std::string rowsWithBssid(std::string bssid) {
  auto wlan = joined();
  wlan.currentNetwork->bssid = std::move(bssid);
  wlan.currentNetwork->metrics.reset();
  return rowsOf(wlan);
}

TEST(WlanInterfaceRows, ShowNetworkAddressesAndRadioFigures) {
  EXPECT_EQ(rowsOf(joined()),
            "en0 / Home Network !\n"
            "IP / 192.168.0.8\n"
            "Router / 192.168.0.1/24\n"
            "MAC / ab:cd:ef:12:34:56 !\n"
            "BSSID / 12:34:56:ab:cd:ef !\n"
            "PHY mode / 802.11ac\n"
            "Security / WPA2 Personal\n"
            "Channel / 44 (5 GHz, 80 MHz) !\n");
}

TEST(WlanInterfaceRows, SayThatTheNameIsHiddenWhenConnectedByIPv4) {
  EXPECT_EQ(rowsOf(notJoined()),
            "SSID / SSID Unvailable, location access needed\n"
            "IP / 192.168.0.8\n"
            "Router / 192.168.0.1/24\n"
            "MAC / ab:cd:ef:12:34:56 !\n");
}

TEST(WlanInterfaceRows, SayThatTheNameIsHiddenWhenConnectedByIPv6Only) {
  const WlanInterface wlan{.interface = {.name = "en0", .supportsIPv6 = true}};
  EXPECT_EQ(rowsOf(wlan), "SSID / SSID Unvailable, location access needed\n");
}

TEST(WlanInterfaceRows, SayNotConnectedWithoutNetworkAndAddressFamily) {
  const WlanInterface wlan{.interface = {.name = "en0", .hwAddress = "AB:CD:EF:12:34:56"}};
  EXPECT_EQ(rowsOf(wlan), "en0 / Not connected !\nMAC / ab:cd:ef:12:34:56 !\n");
}

TEST(WlanInterfaceRows, ShowAddressesThatAreThereThoughIPv4IsNotSupported) {
  auto wlan = notJoined();
  wlan.interface.supportsIPv4 = false;
  EXPECT_EQ(rowsOf(wlan),
            "en0 / Not connected !\n"
            "IP / 192.168.0.8\n"
            "Router / 192.168.0.1/24\n"
            "MAC / ab:cd:ef:12:34:56 !\n");
}

TEST(WlanInterfaceRows, ShowNoAddressRowsWithoutAnIPv4Entry) {
  auto wlan = notJoined();
  wlan.interface.IPv4.clear();
  EXPECT_EQ(rowsOf(wlan),
            "SSID / SSID Unvailable, location access needed\nMAC / ab:cd:ef:12:34:56 !\n");
}

TEST(WlanInterfaceRows, HaveNoMacWithoutAHardwareAddress) {
  auto wlan = joined();
  wlan.interface.hwAddress.reset();
  EXPECT_EQ(rowsOf(wlan).find("MAC"), std::string::npos);
}

TEST(WlanInterfaceRows, ShowABssidOfElevenCharacters) {
  EXPECT_NE(rowsWithBssid("1:2:3:A:B:C").find("BSSID / 1:2:3:a:b:c !\n"), std::string::npos);
}

TEST(WlanInterfaceRows, ShowNoBssidOfTenCharacters) {
  EXPECT_EQ(rowsWithBssid("1:2:3:A:B:").find("BSSID"), std::string::npos);
}

TEST(WlanInterfaceRows, ShowNoEmptyBssid) {
  EXPECT_EQ(rowsWithBssid("").find("BSSID"), std::string::npos);
}

TEST(WlanInterfaceRows, CountTheCharactersOfARedactedBssidNotItsBytes) {
  EXPECT_EQ(rowsWithBssid("●●:●●:●●").find("BSSID"), std::string::npos);
  EXPECT_NE(rowsWithBssid("●●:●●:●●:●●").find("BSSID"), std::string::npos);
}

TEST(WlanInterfaceRows, ShowAnEmptySsidAsItIs) {
  auto wlan = joined();
  wlan.currentNetwork->ssid = "";
  EXPECT_EQ(rowsOf(wlan).substr(0, 9), "en0 /  !\n");
}

TEST(WlanInterfaceRows, EndWithTheBssidWhenTheNetworkHasNoFigures) {
  auto wlan = joined();
  wlan.currentNetwork->metrics.reset();
  EXPECT_TRUE(rowsOf(wlan).ends_with("BSSID / 12:34:56:ab:cd:ef !\n"));
}

TEST(WlanInterfaceRows, LookUpEveryLabelOfAJoinedNetworkButNoNameOrFigure) {
  EXPECT_EQ(bracketedRowsOf(joined()),
            "en0 / Home Network !\n"
            "«IP» / 192.168.0.8\n"
            "«Router» / 192.168.0.1/24\n"
            "«MAC» / ab:cd:ef:12:34:56 !\n"
            "«BSSID» / 12:34:56:ab:cd:ef !\n"
            "«PHY mode» / 802.11ac\n"
            "«Security» / WPA2 Personal\n"
            "«Channel» / 44 (5 GHz, 80 MHz) !\n");
}

TEST(WlanInterfaceRows, LookUpLabelAndTextOfAHiddenName) {
  EXPECT_EQ(bracketedRowsOf(notJoined()),
            "«SSID» / «SSID Unvailable, location access needed»\n"
            "«IP» / 192.168.0.8\n"
            "«Router» / 192.168.0.1/24\n"
            "«MAC» / ab:cd:ef:12:34:56 !\n");
}

TEST(WlanInterfaceRows, LookUpWhatTheySayOfAMissingConnectionButNotTheInterfacesName) {
  EXPECT_EQ(bracketedRowsOf({.interface = {.name = "en0", .hwAddress = "AB:CD:EF:12:34:56"}}),
            "en0 / «Not connected» !\n«MAC» / ab:cd:ef:12:34:56 !\n");
}

TEST(WlanInterfaceRows, HaveNoLongList) {
  EXPECT_TRUE(joined().listRepresentation(FakeStringTable()).empty());
}

TEST(WlanInterface, HasTheMetricsOfTheInterfaceBelow) {
  auto wlan = joined();
  wlan.interface.metrics.recvBytes = 77;
  EXPECT_EQ(metricsOf(wlan).recvBytes, 77U);
}

TEST(WlanMetricsRows, AreAlwaysThreeEvenWhenEmpty) {
  EXPECT_EQ(sourceListText(WlanMetrics().compressedListRepresentation(FakeStringTable())),
            "PHY mode / \nSecurity / \nChannel /  !\n");
}

TEST(WlanMetricsRows, HaveNoLongList) {
  EXPECT_TRUE(radio().listRepresentation(FakeStringTable()).empty());
}

TEST(WlanMetricsLabels, RenderTheTransmitRateAsNoiseAndSignal) {
  EXPECT_EQ(radio().noiseLabel(), "1300.0 dBm");
  EXPECT_EQ(radio().rssiLabel(), "1300.0 dBm");
}

TEST(WlanMetricsLabels, RenderPowerAndRate) {
  EXPECT_EQ(radio().transmitPowerLabel(), "1 mW");
  EXPECT_EQ(radio().transmitRateLabel(FakeStringTable()), "1300.0 Mbps");
}

TEST(WlanMetricsLabels, RenderZeroNegativeAndFractionalFigures) {
  EXPECT_EQ(WlanMetrics().transmitPowerLabel(), "0 mW");
  EXPECT_EQ(WlanMetrics{.transmitPower = -3}.transmitPowerLabel(), "-3 mW");
  EXPECT_EQ(WlanMetrics{.transmitRate = 866.7}.transmitRateLabel(FakeStringTable()), "866.7 Mbps");
  EXPECT_EQ(WlanMetrics().rssiLabel(), "0.0 dBm");
}

TEST(WlanMetricsLabels, LookUpTheUnitOfTheRate) {
  EXPECT_EQ(radio().transmitRateLabel(BracketingStringTable()), "1300.0 «Mbps»");
}

}  // namespace
}  // namespace lanternfold
