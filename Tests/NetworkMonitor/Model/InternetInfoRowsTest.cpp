#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "NetworkMonitor/Model/InternetInfo.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SourceListText.h"

namespace lanternfold {
namespace {

std::string rowsOf(const InternetInfo& info) {
  return sourceListText(info.compressedListRepresentation(FakeStringTable()));
}

/// The rows with every text that was looked up between guillemets.
std::string bracketedRowsOf(const InternetInfo& info) {
  return sourceListText(info.compressedListRepresentation(BracketingStringTable()));
}

std::string rowsWithConnection(InterfaceType type) {
  return rowsOf({.ip = "203.0.113.4", .interface = BasicInterface{.name = "en0", .type = type}});
}

TEST(InternetInfoRows, SayNotConnectedWhenNothingIsKnown) {
  EXPECT_EQ(rowsOf({}), "Status / Not connected\n");
}

TEST(InternetInfoRows, ShowEveryRowOfAConnectionInOrder) {
  const InternetInfo info{.active = true,
                          .ip = "12.34.56.78",
                          .supportsIPv6 = true,
                          .ipv6 = "2001:DB8::EF",
                          .isp = "Your ISP Name",
                          .country = "IT",
                          .interface = BasicInterface{.type = InterfaceType::ethernet},
                          .dns = {"8.8.8.8"}};
  EXPECT_EQ(rowsOf(info),
            "ISP / Your ISP Name\n"
            "IP - COUNTRY / 12.34.56.78 (IT)\n"
            "DNS / 8.8.8.8 !\n"
            "IPv6 / 2001:db8::ef !\n"
            "Active connection / Connected via Ethernet\n");
}

TEST(InternetInfoRows, ShowTheAddressAloneWithoutACountry) {
  EXPECT_EQ(rowsOf({.ip = "12.34.56.78"}), "IP / 12.34.56.78\n");
}

TEST(InternetInfoRows, ShowNoCountryWithoutAnAddress) {
  EXPECT_EQ(rowsOf({.country = "IT"}), "Status / Not connected\n");
}

TEST(InternetInfoRows, HaveNoStatusWhenOnlyIPv6IsKnown) {
  EXPECT_EQ(rowsOf({.supportsIPv6 = true, .ipv6 = "2001:DB8::1"}), "IPv6 / 2001:db8::1 !\n");
}

TEST(InternetInfoRows, ShowWhatElseIsKnownBelowTheStatus) {
  EXPECT_EQ(rowsOf({.supportsIPv6 = false, .isp = "Provider", .dns = {"192.0.2.9"}}),
            "Status / Not connected\n"
            "ISP / Provider\n"
            "DNS / 192.0.2.9 !\n"
            "IPv6 / N/A !\n");
}

TEST(InternetInfoRows, ShowTheFirstIPv4ServerBehindAnIPv6One) {
  EXPECT_EQ(rowsOf({.ip = "203.0.113.4", .dns = {"fe80::1", "192.168.1.1", "192.168.1.2"}}),
            "IP / 203.0.113.4\nDNS / 192.168.1.1 !\n");
}

TEST(InternetInfoRows, ShowTheFirstServerWhenAllAreIPv6) {
  EXPECT_EQ(rowsOf({.ip = "203.0.113.4", .dns = {"fe80::1"}}),
            "IP / 203.0.113.4\nDNS / fe80::1 !\n");
  EXPECT_EQ(rowsOf({.ip = "203.0.113.4", .dns = {"FE80::2", "fe80::1"}}),
            "IP / 203.0.113.4\nDNS / FE80::2 !\n");
}

TEST(InternetInfoRows, HaveNoDnsRowWithoutServers) {
  EXPECT_EQ(rowsOf({.ip = "203.0.113.4"}).find("DNS"), std::string::npos);
}

TEST(InternetInfoRows, SayThatIPv6IsNotAvailableThoughAnAddressIsThere) {
  EXPECT_EQ(rowsOf({.supportsIPv6 = false, .ipv6 = "2001:db8::1"}), "IPv6 / N/A !\n");
}

TEST(InternetInfoRows, HaveNoIPv6RowWhileItsSupportIsNotKnown) {
  EXPECT_EQ(rowsOf({.ipv6 = "2001:db8::1"}), "");
}

TEST(InternetInfoRowsDeathTest, StopTheProgramWhenIPv6IsSupportedWithoutAnAddress) {
  EXPECT_DEATH(rowsOf({.ip = "203.0.113.4", .supportsIPv6 = true}),
               "Fatal error: .*supports IPv6 but has no IPv6 address");
}

TEST(InternetInfoRows, NameTheActiveConnectionByItsType) {
  EXPECT_EQ(rowsWithConnection(InterfaceType::wlan),
            "IP / 203.0.113.4\nActive connection / Connected via Wi-Fi\n");
  EXPECT_EQ(rowsWithConnection(InterfaceType::ethernet),
            "IP / 203.0.113.4\nActive connection / Connected via Ethernet\n");
  EXPECT_EQ(rowsWithConnection(InterfaceType::cellular),
            "IP / 203.0.113.4\nActive connection / Connected via Cellular\n");
}

TEST(InternetInfoRows, HaveNoActiveConnectionByBluetoothOrUnknown) {
  EXPECT_EQ(rowsWithConnection(InterfaceType::bluetooth), "IP / 203.0.113.4\n");
  EXPECT_EQ(rowsWithConnection(InterfaceType::unknown), "IP / 203.0.113.4\n");
}

TEST(InternetInfoRows, FillTheLocalisedTypeIntoTheLocalisedFormat) {
  const FakeStringTable german({{"Active connection", "Verbindung"},
                                {"Connected via %@", "Über %@ verbunden"},
                                {"Wi-Fi", "WLAN"}});
  const InternetInfo info{.ip = "203.0.113.4",
                          .interface = BasicInterface{.type = InterfaceType::wlan}};
  EXPECT_EQ(sourceListText(info.compressedListRepresentation(german)),
            "IP / 203.0.113.4\nVerbindung / Über WLAN verbunden\n");
}

TEST(InternetInfoRows, LookUpEveryLabelAndTheConnectionButNoNameOrAddress) {
  InternetInfo info{.ip = "12.34.56.78",
                    .supportsIPv6 = true,
                    .ipv6 = "2001:DB8::EF",
                    .isp = "Your ISP Name",
                    .country = "IT",
                    .interface = BasicInterface{.name = "en0"},
                    .dns = {"8.8.8.8"}};
  const std::pair<InterfaceType, std::string> connections[] = {
      {InterfaceType::wlan, "Wi-Fi"},
      {InterfaceType::ethernet, "Ethernet"},
      {InterfaceType::cellular, "Cellular"}};
  for (const auto& [type, name] : connections) {
    info.interface->type = type;
    EXPECT_EQ(bracketedRowsOf(info),
              "«ISP» / Your ISP Name\n"
              "«IP - COUNTRY» / 12.34.56.78 (IT)\n"
              "«DNS» / 8.8.8.8 !\n"
              "«IPv6» / 2001:db8::ef !\n"
              "«Active connection» / «Connected via «" +
                  name + "»»\n");
  }
}

TEST(InternetInfoRows, LookUpTheLabelOfAnAddressWithoutACountry) {
  EXPECT_EQ(bracketedRowsOf({.ip = "12.34.56.78"}), "«IP» / 12.34.56.78\n");
}

TEST(InternetInfoRows, LookUpWhatTheySayOfAMissingConnection) {
  EXPECT_EQ(bracketedRowsOf({.supportsIPv6 = false}),
            "«Status» / «Not connected»\n«IPv6» / «N/A» !\n");
}

TEST(InternetInfoRows, HaveNoLongList) {
  EXPECT_TRUE(InternetInfo{.ip = "203.0.113.4"}.listRepresentation(FakeStringTable()).empty());
}

}  // namespace
}  // namespace lanternfold
