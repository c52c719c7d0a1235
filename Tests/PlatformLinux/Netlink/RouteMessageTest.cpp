#include <sys/socket.h>

#include <gtest/gtest.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/KernelRecords.h"
#include "PlatformLinux/Netlink/RouteMessage.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {
namespace {

Bytes header(std::uint8_t destinationLength = 0, std::uint8_t table = RT_TABLE_MAIN,
             std::uint8_t family = AF_INET, std::uint8_t type = RTN_UNICAST,
             std::uint32_t flags = 0) {
  rtmsg body{};
  body.rtm_family = family;
  body.rtm_dst_len = destinationLength;
  body.rtm_table = table;
  body.rtm_type = type;
  body.rtm_flags = flags;
  return bytesOf(body);
}

const Bytes gateway = attribute(RTA_GATEWAY, {192, 0, 2, 254});
const Bytes outgoing = numberAttributeBytes(RTA_OIF, std::uint32_t{4});
const Bytes destination = attribute(RTA_DST, {198, 51, 100, 0});

std::expected<RouteMessage, DecodeError> decode(const Bytes& payload, int type = RTM_NEWROUTE) {
  return decodeRouteMessage(payloadMessage(type, payload));
}

std::vector<RouteRecord> records(const Bytes& payload) {
  std::vector<RouteRecord> routes;
  appendGatewayRoutes(decode(payload).value(), routes);
  return routes;
}

Bytes hop(int index, const Bytes& attributes) {
  const rtnexthop head{
      .rtnh_len = static_cast<unsigned short>(sizeof(rtnexthop) + attributes.size()),
      .rtnh_flags = 0,
      .rtnh_hops = 0,
      .rtnh_ifindex = index};
  return joined({bytesOf(head), attributes});
}

const SocketAddress gatewayAddress = IPv4Bytes{192, 0, 2, 254};

TEST(RouteMessage, ADefaultRouteHasNoDestination) {
  const auto route = decode(joined(
      {header(), gateway, outgoing, numberAttributeBytes(RTA_PRIORITY, std::uint32_t{100})}));
  EXPECT_TRUE(route->isDefault());
  EXPECT_EQ(route->destination, SocketAddress(IPv4Bytes{}));
  EXPECT_EQ(route->priority, 100U);
  EXPECT_EQ(route->hops, (std::vector<RouteHop>{{gatewayAddress, 4}}));
}

TEST(RouteMessage, TheLowerHalfOfAllAddressesLooksLikeADefaultRouteInTheRecords) {
  // 0.0.0.0/1 keeps its length in the message, where the path monitor reads it; the records of the
  // seam have the destination's address alone.
  const Bytes zero = attribute(RTA_DST, {0, 0, 0, 0});
  const Bytes payload = joined({header(1), zero, gateway, outgoing});
  EXPECT_FALSE(decode(payload)->isDefault());
  EXPECT_EQ(records(payload),
            (std::vector<RouteRecord>{{IPv4Bytes{0, 0, 0, 0}, gatewayAddress, 4}}));
}

TEST(RouteMessage, ANetworkIsNoDefaultRoute) {
  const auto route = decode(joined({header(24), destination, outgoing}), RTM_DELROUTE).value();
  EXPECT_TRUE(route.isRemoval);
  EXPECT_FALSE(route.isDefault());
  EXPECT_EQ(route.destination, SocketAddress(IPv4Bytes{198, 51, 100, 0}));
  EXPECT_EQ(route.hops, (std::vector<RouteHop>{{std::nullopt, 4}}));
}

TEST(RouteMessage, TheLongTableNumberWins) {
  const Bytes table = numberAttributeBytes(RTA_TABLE, std::uint32_t{1000});
  const auto route = decode(joined({header(0, RT_TABLE_COMPAT), gateway, outgoing, table})).value();
  EXPECT_EQ(route.table, 1000U);
  EXPECT_FALSE(route.isDefault());
}

TEST(RouteMessage, EveryHopOfAMultipathRouteIsKept) {
  const Bytes second = attribute(RTA_GATEWAY, {192, 0, 2, 253});
  const Bytes hops = joined({hop(4, gateway), hop(5, second), hop(6, {})});
  const auto route = decode(joined({header(), attribute(RTA_MULTIPATH, hops)})).value();
  EXPECT_EQ(route.hops,
            (std::vector<RouteHop>{
                {gatewayAddress, 4}, {IPv4Bytes{192, 0, 2, 253}, 5}, {std::nullopt, 6}}));
}

TEST(RouteMessage, AGatewayOfAnotherFamilyIsKept) {
  Bytes via = bytesOf(std::uint16_t{AF_INET6});
  via.resize(18);
  via.back() = 1;
  const auto route = decode(joined({header(), attribute(RTA_VIA, via), outgoing})).value();
  EXPECT_TRUE(std::holds_alternative<IPv6Bytes>(route.hops.at(0).gateway.value()));
}

TEST(RouteMessage, BadInputIsNamed) {
  using enum DecodeProblem;
  EXPECT_EQ(decode(header(33)).error(), (DecodeError{badValue, "rtm_dst_len"}));
  EXPECT_EQ(decode(joined({header(), attribute(RTA_GATEWAY, {1, 2, 3})})).error(),
            (DecodeError{wrongSize, "RTA_GATEWAY"}));
  EXPECT_EQ(decode(joined({header(), gateway, gateway})).error(),
            (DecodeError{duplicate, "RTA_GATEWAY"}));
  EXPECT_EQ(decode(joined({header(), attribute(RTA_VIA, {10, 0, 1})})).error(),
            (DecodeError{wrongSize, "RTA_VIA"}));
  EXPECT_EQ(decode(header(), RTM_NEWLINK).error(), (DecodeError{wrongMessage, "nlmsg_type"}));
  Bytes zeroHop = hop(4, gateway);
  zeroHop[0] = zeroHop[1] = 0;
  EXPECT_EQ(decode(joined({header(), attribute(RTA_MULTIPATH, zeroHop)})).error(),
            (DecodeError{badLength, "rtnexthop"}));
  EXPECT_EQ(decode(joined({header(), attribute(RTA_MULTIPATH, {16, 0, 0})})).error(),
            (DecodeError{truncated, "rtnexthop"}));
  EXPECT_EQ(decode(joined({header(), attribute(RTA_MULTIPATH, hop(-1, {}))})).error(),
            (DecodeError{badValue, "rtnh_ifindex"}));
}

TEST(RouteMessage, CutAtEveryByteItNeverCrashesNorInventsAGateway) {
  const Bytes whole = joined({header(), attribute(RTA_MULTIPATH, hop(4, gateway))});
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const auto route =
        decodeRouteMessage(payloadMessage(RTM_NEWROUTE, std::span(whole).first(length)));
    if (route) {
      EXPECT_TRUE(route->hops.empty() || !route->hops.front().gateway) << length;
    }
  }
}

TEST(GatewayRoutes, OnlyHopsWithAGatewayOfTheMainTableAreKept) {
  EXPECT_EQ(records(joined({header(), gateway, outgoing})),
            (std::vector<RouteRecord>{{IPv4Bytes{}, gatewayAddress, 4}}));
  EXPECT_TRUE(records(joined({header(), outgoing})).empty());
  EXPECT_TRUE(records(joined({header(0, RT_TABLE_LOCAL), gateway, outgoing})).empty());
  EXPECT_TRUE(records(joined({header(0, RT_TABLE_MAIN, AF_INET, RTN_BLACKHOLE), gateway})).empty());
  EXPECT_TRUE(records(joined({header(0, RT_TABLE_MAIN, AF_INET, RTN_UNICAST, RTM_F_CLONED), gateway,
                              outgoing}))
                  .empty());
  const Bytes hops = joined({hop(5, gateway), hop(6, {})});
  EXPECT_EQ(records(joined({header(), attribute(RTA_MULTIPATH, hops)})),
            (std::vector<RouteRecord>{{IPv4Bytes{}, gatewayAddress, 5}}));
}

}  // namespace
}  // namespace lanternfold::test
