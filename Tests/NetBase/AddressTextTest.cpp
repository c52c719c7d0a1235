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

}  // namespace
}  // namespace lanternfold
