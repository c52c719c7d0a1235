#include <gtest/gtest.h>

#include "EchoService/IpNetwork.h"

namespace lanternfold {
namespace {

IpAddress address(std::string_view text) { return parseIpAddress(text).value(); }
IpNetwork network(std::string_view text) { return parseIpNetwork(text).value(); }

TEST(IpAddress, ComesBackAsTheSameText) {
  for (const char* text : {"192.0.2.1", "0.0.0.0", "2001:db8::1", "::", "fe80::1"}) {
    EXPECT_EQ(ipAddressText(address(text)), text);
  }
}

TEST(IpAddress, AMappedAddressIsTheIPv4OneThatItStandsFor) {
  EXPECT_EQ(ipAddressText(address("::ffff:192.0.2.1")), "192.0.2.1");
  EXPECT_EQ(ipAddressText(address("::FFFF:C000:0201")), "192.0.2.1");
  // Compatible and translated addresses are not mapped ones.
  EXPECT_EQ(ipAddressText(address("::192.0.2.1")), "::192.0.2.1");
  EXPECT_EQ(ipAddressText(address("64:ff9b::192.0.2.1")), "64:ff9b::c000:201");
}

TEST(IpAddress, NothingElseIsOne) {
  for (const char* text : {"", "localhost", "192.0.2.1:80", "[::1]", "fe80::1%eth0", "192.0.2.0/24",
                           "unknown", " ::1"}) {
    EXPECT_EQ(parseIpAddress(text), std::nullopt) << text;
  }
}

TEST(IpNetwork, HoldsTheAddressesOfItsPrefix) {
  EXPECT_TRUE(network("198.51.100.0/24").contains(address("198.51.100.0")));
  EXPECT_TRUE(network("198.51.100.0/24").contains(address("198.51.100.255")));
  EXPECT_FALSE(network("198.51.100.0/24").contains(address("203.0.113.0")));
  EXPECT_TRUE(network("198.51.100.0/25").contains(address("198.51.100.127")));
  EXPECT_FALSE(network("198.51.100.0/25").contains(address("198.51.100.128")));
  EXPECT_TRUE(network("10.128.0.0/9").contains(address("10.255.1.2")));
  EXPECT_FALSE(network("10.128.0.0/9").contains(address("10.127.255.255")));
  EXPECT_TRUE(network("2001:db8:8000::/33").contains(address("2001:db8:ffff::1")));
  EXPECT_FALSE(network("2001:db8:8000::/33").contains(address("2001:db8:7fff::1")));
}

TEST(IpNetwork, OfNoBitsHoldsItsWholeFamilyAndNothingElse) {
  EXPECT_TRUE(network("0.0.0.0/0").contains(address("203.0.113.9")));
  EXPECT_FALSE(network("0.0.0.0/0").contains(address("2001:db8::1")));
  EXPECT_TRUE(network("::/0").contains(address("2001:db8::1")));
  EXPECT_FALSE(network("::/0").contains(address("203.0.113.9")));
}

TEST(IpNetwork, AnAddressAloneIsANetworkOfOne) {
  EXPECT_EQ(network("192.0.2.7"), network("192.0.2.7/32"));
  EXPECT_EQ(network("2001:db8::7"), network("2001:db8::7/128"));
  EXPECT_FALSE(network("192.0.2.7").contains(address("192.0.2.6")));
}

TEST(IpNetwork, EveryPrefixKeepsItsBitsAndClearsTheOthers) {
  const IpAddress all = IPv6Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,
                                  0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
  for (unsigned length = 0; length <= 128; ++length) {
    const auto bytes = std::get<IPv6Bytes>(networkOf(all, length).base);
    for (unsigned bit = 0; bit < 128; ++bit) {
      const bool isSet = ((bytes[bit / 8] >> (7 - bit % 8)) & 1) != 0;
      ASSERT_EQ(isSet, bit < length) << length << ", bit " << bit;
    }
  }
}

TEST(IpNetwork, SaysWhatIsWrong) {
  const std::pair<const char*, const char*> faults[] = {
      {"", "is neither an address nor a network"},
      {"lan", "is neither an address nor a network"},
      {"192.0.2.0/", "has no prefix length of 0 to 32 behind its \"/\""},
      {"192.0.2.0/33", "has no prefix length of 0 to 32 behind its \"/\""},
      {"192.0.2.0/-1", "has no prefix length of 0 to 32 behind its \"/\""},
      {"192.0.2.0/024", "has no prefix length of 0 to 32 behind its \"/\""},
      {"192.0.2.0/24 ", "has no prefix length of 0 to 32 behind its \"/\""},
      {"192.0.2.0/255.255.255.0", "has no prefix length of 0 to 32 behind its \"/\""},
      {"192.0.2.0/4294967320", "has no prefix length of 0 to 32 behind its \"/\""},
      {"2001:db8::/129", "has no prefix length of 0 to 128 behind its \"/\""},
      {"192.0.2.1/24", "has bits set beyond its prefix; the network is 192.0.2.0/24"},
      {"2001:db8::1/64", "has bits set beyond its prefix; the network is 2001:db8::/64"},
      {"::ffff:192.0.2.0/120", "is an IPv4 network in IPv6 form; write it as an IPv4 one"},
  };
  for (const auto& [text, fault] : faults) {
    const auto parsed = parseIpNetwork(text);
    ASSERT_FALSE(parsed.has_value()) << text;
    EXPECT_EQ(parsed.error(), fault) << text;
  }
}

TEST(IpNetworkDeathTest, APrefixLongerThanTheAddressIsAProgrammersError) {
  EXPECT_DEATH((void)networkOf(IPv4Bytes{}, 33), "prefix is longer than an address");
}

}  // namespace
}  // namespace lanternfold
