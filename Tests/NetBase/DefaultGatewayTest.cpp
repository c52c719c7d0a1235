// The default gateway of an interface, as `SNUtils` answers it.
#include <gtest/gtest.h>

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

TEST_F(DefaultGatewayTest, IsNeverReportedForIPv6) {
  world.kernel.addRoute(
      RouteFamily::ipv6,
      {.destination = IPv6Bytes{}, .gateway = IPv6Bytes{0xFE, 0x80}, .interfaceIndex = en0});
  EXPECT_EQ(world.snUtils.gatewayForAddress6({0x20, 0x01}, {0xFF, 0xFF}, "en0"), std::nullopt);
  EXPECT_EQ(world.kernel.fetchCount(Table::ipv6Routes), 0U);
}

}  // namespace
}  // namespace lanternfold
