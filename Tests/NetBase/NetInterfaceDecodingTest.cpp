#include <limits>

#include <gtest/gtest.h>

#include "NetBase/NetInterfaceDecoding.h"

namespace lanternfold {
namespace {

using Dictionary = PropertyListDictionary;

Dictionary completeAddress() {
  return {{"ip", "192.168.1.20"},
          {"netmask", "255.255.255.0"},
          {"gateway", "192.168.1.1"},
          {"prefix", std::uint64_t{24}},
          {"cidr", "192.168.1.1/24"}};
}

Dictionary completeMetrics() {
  return {{"type", std::uint64_t{6}},         {"physical", std::uint64_t{1}},
          {"baudrate", std::uint64_t{2}},     {"mtu", std::uint64_t{1500}},
          {"recv_bytes", std::uint64_t{3}},   {"sent_bytes", std::uint64_t{4}},
          {"recv_packets", std::uint64_t{5}}, {"sent_packets", std::uint64_t{6}},
          {"recv_errors", std::uint64_t{7}},  {"sent_errors", std::uint64_t{8}},
          {"collisions", std::uint64_t{9}},   {"hw_address", "02:42:AC:11:00:02"}};
}

constexpr auto requiredMetrics = {"type",        "physical",    "baudrate",     "mtu",
                                  "recv_bytes",  "sent_bytes",  "recv_packets", "sent_packets",
                                  "recv_errors", "sent_errors", "collisions"};

/// `dictionary` with `value` under `key`.
Dictionary with(Dictionary dictionary, std::string_view key, PropertyListValue value) {
  dictionary.set(key, std::move(value));
  return dictionary;
}

Dictionary without(Dictionary dictionary, std::string_view key) {
  dictionary.erase(key);
  return dictionary;
}

TEST(AddressRule, TakesEveryKey) {
  const NetInterface::Address expected{.ip = "192.168.1.20",
                                       .netmask = "255.255.255.0",
                                       .gateway = "192.168.1.1",
                                       .prefix = 24,
                                       .cidr = "192.168.1.1/24"};
  EXPECT_EQ(decodeNetInterfaceAddress(completeAddress()), expected);
}

TEST(AddressRule, MissingOptionalKeysAreNone) {
  const NetInterface::Address expected{
      .ip = "10.0.0.1", .netmask = {}, .gateway = {}, .prefix = {}, .cidr = {}};
  EXPECT_EQ(decodeNetInterfaceAddress(Dictionary{{"ip", "10.0.0.1"}}), expected);
}

TEST(AddressRule, MissingIpFails) {
  EXPECT_EQ(decodeNetInterfaceAddress(without(completeAddress(), "ip")), std::nullopt);
}

TEST(AddressRule, AnyKeyOfTheWrongTypeFails) {
  for (const char* key : {"ip", "netmask", "gateway", "cidr"}) {
    EXPECT_EQ(decodeNetInterfaceAddress(with(completeAddress(), key, 7)), std::nullopt) << key;
  }
  EXPECT_EQ(decodeNetInterfaceAddress(with(completeAddress(), "prefix", "24")), std::nullopt);
  EXPECT_EQ(decodeNetInterfaceAddress(with(completeAddress(), "prefix", 24.0)), std::nullopt);
}

TEST(AddressRule, PrefixBeyondASignedIntegerFails) {
  const auto tooLarge = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(decodeNetInterfaceAddress(with(completeAddress(), "prefix", tooLarge)), std::nullopt);
}

TEST(AddressRule, ElementThatIsNoDictionaryFails) {
  EXPECT_EQ(decodeNetInterfaceAddress("192.168.1.20"), std::nullopt);
  EXPECT_EQ(decodeNetInterfaceAddress(PropertyListArray{}), std::nullopt);
}

TEST(AddressRule, UnknownKeysAreIgnored) {
  EXPECT_TRUE(decodeNetInterfaceAddress(with(completeAddress(), "scope", 3)));
}

TEST(MetricsRule, TakesEveryKey) {
  const NetInterface::Metrics expected{.type = 6,
                                       .physical = 1,
                                       .baudrate = 2,
                                       .mtu = 1500,
                                       .recvBytes = 3,
                                       .sentBytes = 4,
                                       .recvPackets = 5,
                                       .sentPackets = 6,
                                       .recvErrors = 7,
                                       .sentErrors = 8,
                                       .collisions = 9,
                                       .hwAddress = "02:42:AC:11:00:02"};
  EXPECT_EQ(decodeNetInterfaceMetrics(completeMetrics()), expected);
}

TEST(MetricsRule, MissingNumberFailsWhicheverItIs) {
  for (const char* key : requiredMetrics) {
    EXPECT_EQ(decodeNetInterfaceMetrics(without(completeMetrics(), key)), std::nullopt) << key;
  }
}

TEST(MetricsRule, NumberOfTheWrongTypeFailsWhicheverItIs) {
  for (const char* key : requiredMetrics) {
    EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), key, "1")), std::nullopt) << key;
    EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), key, -1)), std::nullopt) << key;
    EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), key, 1.5)), std::nullopt) << key;
  }
}

TEST(MetricsRule, NumberWiderThanItsFieldFails) {
  EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), "type", 256)), std::nullopt);
  EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), "physical", 256)), std::nullopt);
  const std::uint64_t wide = std::uint64_t{1} << 32U;
  EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), "mtu", wide)), std::nullopt);
}

TEST(MetricsRule, LargestNumbersOfEachWidthFit) {
  constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
  auto dictionary = with(completeMetrics(), "type", 255);
  dictionary.set("mtu", std::uint64_t{4294967295});
  dictionary.set("recv_bytes", largest);
  const auto metrics = decodeNetInterfaceMetrics(dictionary);
  ASSERT_TRUE(metrics);
  EXPECT_EQ(metrics->type, 255);
  EXPECT_EQ(metrics->mtu, 4294967295U);
  EXPECT_EQ(metrics->recvBytes, largest);
}

TEST(MetricsRule, SignedNumbersThatAreNotNegativeFit) {
  EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), "mtu", 9000))->mtu, 9000U);
}

TEST(MetricsRule, MissingHardwareAddressIsNone) {
  const auto metrics = decodeNetInterfaceMetrics(without(completeMetrics(), "hw_address"));
  ASSERT_TRUE(metrics);
  EXPECT_EQ(metrics->hwAddress, std::nullopt);
}

TEST(MetricsRule, HardwareAddressOfTheWrongTypeFails) {
  EXPECT_EQ(decodeNetInterfaceMetrics(with(completeMetrics(), "hw_address", 2)), std::nullopt);
}

TEST(MetricsRule, EmptyDictionaryFails) {
  EXPECT_EQ(decodeNetInterfaceMetrics(Dictionary{}), std::nullopt);
}

TEST(MetricsRule, ValueThatIsNoDictionaryFails) {
  EXPECT_EQ(decodeNetInterfaceMetrics("metrics"), std::nullopt);
}

TEST(InterfaceRule, EmptyDictionaryIsAnInactiveInterfaceWithNothing) {
  const NetInterface expected{
      .name = "en0", .isActive = false, .ipv4 = {}, .ipv6 = {}, .metrics = {}};
  EXPECT_EQ(decodeNetInterface("en0", {}), expected);
}

TEST(InterfaceRule, NameIsTheKeyNotTheEntry) {
  EXPECT_EQ(decodeNetInterface("en0", {{"name", "en1"}}).name, "en0");
}

TEST(InterfaceRule, ActiveIsABooleanOrTheNumberOneOrZero) {
  EXPECT_TRUE(decodeNetInterface("en0", {{"active", true}}).isActive);
  EXPECT_TRUE(decodeNetInterface("en0", {{"active", 1}}).isActive);
  EXPECT_FALSE(decodeNetInterface("en0", {{"active", 0}}).isActive);
  EXPECT_FALSE(decodeNetInterface("en0", {{"active", 2}}).isActive);
  EXPECT_FALSE(decodeNetInterface("en0", {{"active", "true"}}).isActive);
}

TEST(InterfaceRule, AddressesThatFailAreDroppedAndTheOthersKeepTheirOrder) {
  const PropertyListArray list{Dictionary{{"ip", "10.0.0.1"}}, Dictionary{{"netmask", "x"}},
                               "10.0.0.2", Dictionary{{"ip", "10.0.0.3"}}};
  const auto interface = decodeNetInterface("en0", {{"ipv4", list}, {"ipv6", list}});
  ASSERT_EQ(interface.ipv4.size(), 2U);
  EXPECT_EQ(interface.ipv4[0].ip, "10.0.0.1");
  EXPECT_EQ(interface.ipv4[1].ip, "10.0.0.3");
  EXPECT_EQ(interface.ipv6, interface.ipv4);
}

TEST(InterfaceRule, AddressesThatAreNoListAreNone) {
  const auto interface =
      decodeNetInterface("en0", {{"ipv4", completeAddress()}, {"ipv6", "fe80::1"}});
  EXPECT_TRUE(interface.ipv4.empty());
  EXPECT_TRUE(interface.ipv6.empty());
}

TEST(InterfaceRule, MetricsThatFailAreNone) {
  EXPECT_EQ(decodeNetInterface("en0", {{"metrics", Dictionary{}}}).metrics, std::nullopt);
  EXPECT_TRUE(decodeNetInterface("en0", {{"metrics", completeMetrics()}}).metrics);
}

}  // namespace
}  // namespace lanternfold
