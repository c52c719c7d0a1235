#include <gtest/gtest.h>

#include "NetBase/AddressText.h"

namespace lanternfold {
namespace {

TEST(AddressText, WritesIPv4AsDottedQuad) {
  EXPECT_EQ(ipv4Text({192, 168, 1, 20}), "192.168.1.20");
  EXPECT_EQ(ipv4Text({0, 0, 0, 0}), "0.0.0.0");
  EXPECT_EQ(ipv4Text({255, 255, 255, 255}), "255.255.255.255");
  EXPECT_EQ(ipv4Text({10, 0, 100, 9}), "10.0.100.9");
}

TEST(AddressText, ShortensIPv6) {
  EXPECT_EQ(ipv6Text({}), "::");
  EXPECT_EQ(ipv6Text({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}), "::1");
  EXPECT_EQ(ipv6Text({0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x35}),
            "2001:db8::35");
}

TEST(AddressText, WritesTheLongestIPv6) {
  IPv6Bytes address;
  address.fill(0xFF);
  EXPECT_EQ(ipv6Text(address), "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
}

TEST(AddressText, WritesHardwareAddressesInUpperCaseWithColons) {
  EXPECT_EQ(hardwareAddressText({{0x02, 0x42, 0xAC, 0x11, 0x00, 0x0F}}), "02:42:AC:11:00:0F");
  EXPECT_EQ(hardwareAddressText({{0xAB}}), "AB");
  EXPECT_EQ(hardwareAddressText({}), "");
}

TEST(AddressText, ReadsIPv4) {
  EXPECT_EQ(ipv4OfText("192.168.1.20"), (IPv4Bytes{192, 168, 1, 20}));
  EXPECT_EQ(ipv4OfText("0.0.0.0"), IPv4Bytes{});
  EXPECT_EQ(ipv4OfText("255.255.255.255"), (IPv4Bytes{255, 255, 255, 255}));
}

TEST(AddressText, ReadsNothingElseAsIPv4) {
  using namespace std::string_view_literals;
  for (const std::string_view text :
       {""sv, "1"sv, "1.2.3"sv, "1.2.3.4.5"sv, "256.0.0.1"sv, "010.2.3.4"sv, " 10.0.0.1"sv,
        "10.0.0.1 "sv, "10.0.0.1\0"sv, "10.0.0.1\0x"sv, "::1"sv, "10.0.0.1:80"sv, "0x0a.0.0.1"sv,
        "-10.2.3.4"sv, "10.0.0.00000000000000000000000000000000000000001"sv}) {
    EXPECT_EQ(ipv4OfText(text), std::nullopt) << text;
  }
}

TEST(AddressText, ReadsEveryFormOfIPv6) {
  const IPv6Bytes address{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x35};
  for (const char* text : {"2001:db8::35", "2001:DB8:0:0:0:0:0:35", "2001:db8::0.0.0.53"}) {
    EXPECT_EQ(ipv6OfText(text), address) << text;
  }
  EXPECT_EQ(ipv6OfText("::"), IPv6Bytes{});
}

TEST(AddressText, ReadsNothingElseAsIPv6) {
  using namespace std::string_view_literals;
  for (const std::string_view text :
       {""sv, ":"sv, ":::"sv, "[::1]"sv, "fe80::1%eth0"sv, "1::2::3"sv, "10.0.0.1"sv, "::1\0"sv,
        "12345::"sv, "1:2:3:4:5:6:7:8:9"sv, "::g"sv, " ::1"sv}) {
    EXPECT_EQ(ipv6OfText(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace lanternfold
