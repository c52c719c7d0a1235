#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "NetworkMonitor/Interfaces/InterfaceConversion.h"

namespace lanternfold {
namespace {

using testing::IsEmpty;

NetInterface::Address ipv4Address(const char* ip) {
  return {.ip = ip,
          .netmask = "255.255.255.0",
          .gateway = "10.0.0.1",
          .prefix = 24,
          .cidr = "10.0.0.1/24"};
}

NetInterface::Address ipv6Address(const char* ip) {
  return {.ip = ip, .netmask = {}, .gateway = "fe80::1", .prefix = 64, .cidr = "fe80::/64"};
}

NetInterface interfaceWith(std::vector<NetInterface::Address> ipv4,
                           std::vector<NetInterface::Address> ipv6) {
  NetInterface interface;
  interface.name = "en0";
  interface.isActive = true;
  interface.ipv4 = std::move(ipv4);
  interface.ipv6 = std::move(ipv6);
  interface.metrics = NetInterface::Metrics{};
  return interface;
}

BasicInterface convert(const NetInterface& interface) {
  return basicInterface(interface, ConnectionMetrics::empty(), {});
}

TEST(InterfaceConversion, CarriesEveryFieldOver) {
  NetInterface interface = interfaceWith({ipv4Address("10.0.0.5")}, {ipv6Address("fe80::5")});
  interface.metrics->hwAddress = "02:42:AC:11:00:02";
  // The counters are those of the reader, whatever the link layer counted.
  interface.metrics->recvBytes = 999;
  const BasicInterface expected{
      .active = true,
      .displayName = "Card",
      .metrics = ConnectionMetrics::initial(1280),
      .name = "en0",
      .type = InterfaceType::bluetooth,
      .supportsIPv4 = true,
      .IPv4 = {{.address = "10.0.0.5",
                .netmask = "255.255.255.0",
                .gateway = "10.0.0.1",
                .cidr = "10.0.0.1/24"}},
      .supportsIPv6 = true,
      .IPv6 = {{.address = "fe80::5", .prefix = 64, .gateway = "fe80::1", .cidr = "fe80::/64"}},
      .hwAddress = "02:42:AC:11:00:02"};
  EXPECT_EQ(basicInterface(interface, ConnectionMetrics::initial(1280),
                           {InterfaceType::bluetooth, "Card"}),
            expected);
}

TEST(InterfaceConversion, DropsAnIPv4AddressThatLacksNetmaskGatewayOrBlock) {
  auto withoutNetmask = ipv4Address("10.0.0.2");
  withoutNetmask.netmask.reset();
  auto withoutGateway = ipv4Address("10.0.0.3");
  withoutGateway.gateway.reset();
  auto withoutBlock = ipv4Address("10.0.0.4");
  withoutBlock.cidr.reset();
  const auto interface =
      convert(interfaceWith({withoutNetmask, ipv4Address("10.0.0.9"), withoutGateway, withoutBlock,
                             ipv4Address("10.0.0.5")},
                            {}));
  ASSERT_EQ(interface.IPv4.size(), 2U);
  EXPECT_EQ(interface.IPv4[0].address, "10.0.0.9");
  EXPECT_EQ(interface.IPv4[1].address, "10.0.0.5");
}

TEST(InterfaceConversion, KeepsAnIPv4AddressWithoutPrefix) {
  auto address = ipv4Address("10.0.0.2");
  address.prefix.reset();
  EXPECT_TRUE(convert(interfaceWith({address}, {})).supportsIPv4);
}

TEST(InterfaceConversion, DropsAnIPv6AddressThatLacksPrefixGatewayOrBlock) {
  auto withoutPrefix = ipv6Address("fe80::2");
  withoutPrefix.prefix.reset();
  auto withoutGateway = ipv6Address("fe80::3");
  withoutGateway.gateway.reset();
  auto withoutBlock = ipv6Address("fe80::4");
  withoutBlock.cidr.reset();
  const auto interface = convert(
      interfaceWith({}, {withoutPrefix, withoutGateway, ipv6Address("fe80::9"), withoutBlock}));
  ASSERT_EQ(interface.IPv6.size(), 1U);
  EXPECT_EQ(interface.IPv6[0].address, "fe80::9");
}

TEST(InterfaceConversion, SupportsNoFamilyWhenAllItsAddressesWereDropped) {
  auto address = ipv4Address("10.0.0.2");
  address.gateway.reset();
  const auto interface = convert(interfaceWith({address}, {}));
  EXPECT_FALSE(interface.supportsIPv4);
  EXPECT_THAT(interface.IPv4, IsEmpty());
  EXPECT_FALSE(interface.supportsIPv6);
}

TEST(InterfaceConversion, WithoutLinkFiguresThereIsNoHardwareAddress) {
  NetInterface interface = interfaceWith({}, {});
  interface.metrics.reset();
  EXPECT_EQ(convert(interface).hwAddress, std::nullopt);
}

}  // namespace
}  // namespace lanternfold
