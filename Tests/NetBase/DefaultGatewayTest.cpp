// The default gateway of an interface, as `SNUtils` answers it.
#include <gtest/gtest.h>

#include "NetBase/DefaultGateways.h"
#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold {
namespace {

using Table = FakeNetworkKernel::Table;

class DefaultGatewayTest : public testing::Test {
 protected:
  DefaultGatewayTest() {
    en0 = world.kernel.addLink("en0");
    en1 = world.kernel.addLink("en1");
  }

  [[nodiscard]] std::optional<std::string> gatewayOf(std::string_view name) const {
    return world.snUtils.gatewayForAddress({10, 0, 0, 5}, {255, 255, 255, 0}, name);
  }

  NetBaseEnvironment world;
  std::uint32_t en0 = 0;
  std::uint32_t en1 = 0;
};

TEST_F(DefaultGatewayTest, IsThatOfTheInterfacesDefaultRoute) {
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  world.kernel.addDefaultRoute("en1", {10, 0, 0, 1});
  EXPECT_EQ(gatewayOf("en0"), "192.168.1.1");
  EXPECT_EQ(gatewayOf("en1"), "10.0.0.1");
}

TEST_F(DefaultGatewayTest, IsThatOfTheLastMatchingRoute) {
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  world.kernel.addDefaultRoute("en1", {10, 0, 0, 1});
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 254});
  EXPECT_EQ(gatewayOf("en0"), "192.168.1.254");
}

TEST_F(DefaultGatewayTest, IsZeroWithoutAMatchingRoute) {
  world.kernel.addDefaultRoute("en1", {10, 0, 0, 1});
  EXPECT_EQ(gatewayOf("en0"), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, IsZeroWithAnEmptyRoutingTable) {
  EXPECT_EQ(gatewayOf("en0"), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, IsZeroForAnUnknownInterface) {
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  EXPECT_EQ(gatewayOf("en"), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, IsNoneWhenTheRoutingTableCannotBeRead) {
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  world.kernel.fail(Table::ipv4Routes, NetworkKernelError::failed);
  EXPECT_EQ(gatewayOf("en0"), std::nullopt);
}

TEST_F(DefaultGatewayTest, IgnoresARouteToANetwork) {
  world.kernel.addRoute(RouteFamily::ipv4, {.destination = IPv4Bytes{10, 0, 0, 0},
                                            .gateway = IPv4Bytes{192, 168, 1, 9},
                                            .interfaceIndex = en0});
  EXPECT_EQ(gatewayOf("en0"), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, IgnoresARouteWithoutDestination) {
  world.kernel.addRoute(
      RouteFamily::ipv4,
      {.destination = std::nullopt, .gateway = IPv4Bytes{192, 168, 1, 9}, .interfaceIndex = en0});
  EXPECT_EQ(gatewayOf("en0"), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, IgnoresARouteWithoutGateway) {
  world.kernel.addRoute(
      RouteFamily::ipv4,
      {.destination = IPv4Bytes{}, .gateway = std::nullopt, .interfaceIndex = en0});
  EXPECT_EQ(gatewayOf("en0"), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, IgnoresAGatewayOfAnotherFamily) {
  world.kernel.addRoute(RouteFamily::ipv4, {.destination = IPv4Bytes{},
                                            .gateway = LinkAddress{{1, 2, 3, 4, 5, 6}},
                                            .interfaceIndex = en0});
  world.kernel.addRoute(
      RouteFamily::ipv4,
      {.destination = IPv6Bytes{}, .gateway = IPv4Bytes{192, 168, 1, 9}, .interfaceIndex = en0});
  EXPECT_EQ(gatewayOf("en0"), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, IgnoresARouteOfAnInterfaceThatIsGone) {
  world.kernel.addRoute(
      RouteFamily::ipv4,
      {.destination = IPv4Bytes{}, .gateway = IPv4Bytes{192, 168, 1, 9}, .interfaceIndex = 4711});
  EXPECT_EQ(gatewayOf("en0"), "0.0.0.0");
  EXPECT_EQ(gatewayOf(""), "0.0.0.0");
}

TEST_F(DefaultGatewayTest, TakesTheLowerHalfOfAllAddressesForADefaultRoute) {
  // 0.0.0.0/1: the destination's address is 0.0.0.0, and its length is not looked at.
  world.kernel.addDefaultRoute("en0", {192, 168, 1, 1});
  world.kernel.addRoute(RouteFamily::ipv4, {.destination = IPv4Bytes{0, 0, 0, 0},
                                            .gateway = IPv4Bytes{10, 8, 0, 1},
                                            .interfaceIndex = en0});
  EXPECT_EQ(gatewayOf("en0"), "10.8.0.1");
}

constexpr IPv6Bytes firstRouter{0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
constexpr IPv6Bytes secondRouter{0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2};

class IPv6DefaultGatewayTest : public DefaultGatewayTest {
 protected:
  void addRoute(std::optional<SocketAddress> destination, std::optional<SocketAddress> gateway,
                std::uint32_t index) {
    world.kernel.addRoute(RouteFamily::ipv6, {.destination = std::move(destination),
                                              .gateway = std::move(gateway),
                                              .interfaceIndex = index});
  }

  [[nodiscard]] std::optional<IPv6Bytes> found(std::string_view name) const {
    const auto reading = world.kernel.beginReading();
    return firstIPv6DefaultGateway(*reading, name);
  }
};

TEST_F(IPv6DefaultGatewayTest, StopsAtTheFirstOfTwoMatchingRoutes) {
  addRoute(IPv6Bytes{}, firstRouter, en0);
  addRoute(IPv6Bytes{}, secondRouter, en0);
  EXPECT_EQ(found("en0"), firstRouter);
}

TEST_F(IPv6DefaultGatewayTest, TakesEveryDestinationThatBeginsWithAByteOfZero) {
  addRoute(IPv6Bytes{0x20, 0x01, 0x0D, 0xB8}, secondRouter, en0);
  addRoute(IPv6Bytes{0x00, 0x64, 0xFF, 0x9B}, firstRouter, en0);
  EXPECT_EQ(found("en0"), firstRouter);
}

TEST_F(IPv6DefaultGatewayTest, DoesNotTakeTheRouteOfAnotherInterface) {
  addRoute(IPv6Bytes{}, firstRouter, en1);
  EXPECT_EQ(found("en0"), std::nullopt);
  addRoute(IPv6Bytes{}, secondRouter, en0);
  EXPECT_EQ(found("en0"), secondRouter);
}

TEST_F(IPv6DefaultGatewayTest, PassesOverOtherFamiliesAndWhatIsMissing) {
  addRoute(IPv4Bytes{}, firstRouter, en0);
  addRoute(IPv6Bytes{}, IPv4Bytes{192, 168, 1, 1}, en0);
  addRoute(IPv6Bytes{}, LinkAddress{{1, 2, 3, 4, 5, 6}}, en0);
  addRoute(std::nullopt, firstRouter, en0);
  addRoute(IPv6Bytes{}, std::nullopt, en0);
  addRoute(IPv6Bytes{}, firstRouter, 4711);
  EXPECT_EQ(found("en0"), std::nullopt);
  EXPECT_EQ(found(""), std::nullopt);
}

TEST_F(IPv6DefaultGatewayTest, IsNoneWithAnEmptyRoutingTable) {
  EXPECT_EQ(found("en0"), std::nullopt);
}

TEST_F(IPv6DefaultGatewayTest, IsNoneWhenTheRoutingTableCannotBeRead) {
  addRoute(IPv6Bytes{}, firstRouter, en0);
  world.kernel.fail(Table::ipv6Routes, NetworkKernelError::failed);
  EXPECT_EQ(found("en0"), std::nullopt);
}

TEST_F(IPv6DefaultGatewayTest, IsLookedUpAndNeverReported) {
  addRoute(IPv6Bytes{}, firstRouter, en0);
  EXPECT_EQ(world.snUtils.gatewayForAddress6({0x20, 0x01}, {0xFF, 0xFF}, "en0"), std::nullopt);
  EXPECT_EQ(world.kernel.fetchCount(Table::ipv6Routes), 1U);
}

TEST_F(IPv6DefaultGatewayTest, CostsTheWalkOverTheInterfacesNoRoutingTable) {
  world.kernel.addIPv6Address("en0", {0x20, 0x01}, {0xFF, 0xFF});
  EXPECT_EQ(world.snUtils.inetInterfacesWithPrefix(std::nullopt, std::nullopt).size(), 2U);
  EXPECT_EQ(world.kernel.fetchCount(Table::ipv6Routes), 0U);
}

}  // namespace
}  // namespace lanternfold
