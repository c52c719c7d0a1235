// The records that the decoders make of messages lead to the same answers as equal records of any
// other kernel.
#include <gtest/gtest.h>

#include "PlatformDarwin/InterfaceListDecoder.h"
#include "PlatformDarwin/RouteDumpDecoder.h"
#include "Tests/PlatformDarwin/MessageBuilder.h"
#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold::darwin {
namespace {

const IPv4Bytes mask24{255, 255, 255, 0};

/// A machine with a card, a tunnel and two default routes on the card.
void addAddresses(FakeNetworkKernel& kernel) {
  kernel.addIPv4Address("en0", {192, 168, 1, 20}, mask24);
  kernel.addIPv4Address("utun0", {10, 8, 0, 2}, {255, 255, 255, 255});
}

LinkRecord card() {
  LinkRecord link;
  link.name = "en0";
  link.index = 4;
  link.hardwareAddress = {{0xAE, 0xDE, 0x48, 0x00, 0x11, 0x22}};
  link.type = 6;
  link.baudrate = 1'000'000'000;
  link.mtu = 1500;
  link.recvBytes = std::uint64_t{5} << 32U;
  link.sentBytes = 77;
  link.recvPackets = 6;
  link.sentPackets = 5;
  link.recvErrors = 4;
  link.sentErrors = 3;
  link.collisions = 2;
  return link;
}

LinkRecord tunnel() {
  LinkRecord link;
  link.name = "utun0";
  link.index = 9;
  link.type = 1;
  link.mtu = 1380;
  return link;
}

TEST(SameRecords, GiveTheSameInterfacesWhicheverKernelTheyCameFrom) {
  NetBaseEnvironment stated;
  stated.kernel.addLink(card());
  stated.kernel.addLink(tunnel());
  addAddresses(stated.kernel);
  stated.kernel.addDefaultRoute("en0", {192, 168, 1, 254});
  stated.kernel.addDefaultRoute("en0", {192, 168, 1, 1});

  NetBaseEnvironment fromMessages;
  const auto links =
      decodeInterfaceList(joined({interfaceMessage(card()), interfaceMessage(tunnel())}));
  const auto routes = decodeRouteDump(joined({defaultRouteMessage(4, {192, 168, 1, 254}),
                                              defaultRouteMessage(4, {192, 168, 1, 1})}),
                                      RouteFamily::ipv4);
  ASSERT_TRUE(links);
  ASSERT_TRUE(routes);
  for (const LinkRecord& link : *links) fromMessages.kernel.addLink(link);
  addAddresses(fromMessages.kernel);
  for (const RouteRecord& route : *routes) fromMessages.kernel.addRoute(RouteFamily::ipv4, route);

  const auto interfaces = fromMessages.snUtils.inetInterfacesWithPrefix({}, {});
  EXPECT_EQ(interfaces, stated.snUtils.inetInterfacesWithPrefix({}, {}));
  EXPECT_EQ(fromMessages.snUtils.linkInterfacesMetrics(), stated.snUtils.linkInterfacesMetrics());
  ASSERT_EQ(interfaces.size(), 2U);
  const auto& address = interfaces.at("en0").find("ipv4")->asArray()->front();
  EXPECT_EQ(*address.asDictionary()->find("gateway"), PropertyListValue("192.168.1.1"));
}

TEST(SameRecords, MalformedMessagesGiveWhatAFailingTableGives) {
  NetBaseEnvironment world;
  world.kernel.addLink(card());
  world.kernel.addLink(tunnel());
  addAddresses(world.kernel);
  const auto links = decodeInterfaceList(Bytes(4));
  const auto routes = decodeRouteDump(Bytes(4), RouteFamily::ipv4);
  ASSERT_FALSE(links);
  ASSERT_FALSE(routes);
  world.kernel.fail(FakeNetworkKernel::Table::linkRecords, links.error());
  world.kernel.fail(FakeNetworkKernel::Table::ipv4Routes, routes.error());

  const auto interface = world.snUtils.inetInterfacesWithPrefix("en", {}).at("en0");
  EXPECT_EQ(*interface.find("metrics"), PropertyListValue(PropertyListDictionary{}));
  const auto& address = interface.find("ipv4")->asArray()->front();
  EXPECT_EQ(*address.asDictionary()->find("gateway"), PropertyListValue("0.0.0.0"));
}

}  // namespace
}  // namespace lanternfold::darwin
