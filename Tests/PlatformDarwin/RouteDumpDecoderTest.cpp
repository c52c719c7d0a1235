#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlatformDarwin/RouteDumpDecoder.h"
#include "Tests/PlatformDarwin/MessageBuilder.h"

namespace lanternfold::darwin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const IPv4Bytes gateway{192, 168, 1, 1};
const IPv6Bytes gateway6{0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

std::vector<RouteRecord> decoded(const Bytes& dump, RouteFamily family = RouteFamily::ipv4) {
  const auto routes = decodeRouteDump(dump, family);
  EXPECT_TRUE(routes);
  return routes.value_or(std::vector<RouteRecord>{});
}

void expectMalformed(const Bytes& dump) {
  for (const RouteFamily family : {RouteFamily::ipv4, RouteFamily::ipv6}) {
    const auto routes = decodeRouteDump(dump, family);
    ASSERT_FALSE(routes);
    EXPECT_EQ(routes.error(), NetworkKernelError::malformed);
  }
}

RouteRecord defaultRoute(std::uint32_t index, IPv4Bytes through) {
  return {.destination = IPv4Bytes{}, .gateway = through, .interfaceIndex = index};
}

TEST(RouteDump, DecodesADefaultRoute) {
  EXPECT_THAT(decoded(defaultRouteMessage(4, gateway)), ElementsAre(defaultRoute(4, gateway)));
}

TEST(RouteDump, BuilderMakesAHeaderOf92Bytes) { EXPECT_EQ(routeMessage(1, 0, {}).size(), 92U); }

TEST(RouteDump, EmptyDumpHasNoRoutes) { EXPECT_THAT(decoded({}), IsEmpty()); }

TEST(RouteDump, KeepsTheOrderOfTheDump) {
  const IPv4Bytes second{10, 0, 0, 1};
  EXPECT_THAT(
      decoded(joined({defaultRouteMessage(4, gateway), defaultRouteMessage(5, second),
                      defaultRouteMessage(4, second)})),
      ElementsAre(defaultRoute(4, gateway), defaultRoute(5, second), defaultRoute(4, second)));
}

TEST(RouteDump, DecodesARouteToANetwork) {
  const auto routes = decoded(routeMessage(
      4, 0b11, joined({ipv4SocketAddress({10, 0, 0, 0}), ipv4SocketAddress(gateway)})));
  ASSERT_EQ(routes.size(), 1U);
  EXPECT_EQ(routes[0].destination, SocketAddress(IPv4Bytes{10, 0, 0, 0}));
}

TEST(RouteDump, PadsAnIPv4AddressToTheNextMultipleOfEight) {
  // A destination of 20 bytes, of a family without an address of its own, takes 24.
  Bytes destination = linkSocketAddress("en0", {}, 4);
  ASSERT_EQ(destination.size(), 20U);
  const auto routes =
      decoded(routeMessage(4, 0b11, joined({padded(destination), ipv4SocketAddress(gateway)})));
  const RouteRecord expected{
      .destination = OtherAddress{}, .gateway = gateway, .interfaceIndex = 4};
  EXPECT_THAT(routes, ElementsAre(expected));
}

TEST(RouteDump, CountsALengthOfZeroAsEightInIPv4) {
  // The eight bytes still hold a whole IPv4 address.
  Bytes destination(8);
  destination[1] = std::byte{2};
  destination[4] = std::byte{10};
  const auto routes =
      decoded(routeMessage(4, 0b11, joined({destination, ipv4SocketAddress(gateway)})));
  const RouteRecord expected{
      .destination = IPv4Bytes{10, 0, 0, 0}, .gateway = gateway, .interfaceIndex = 4};
  EXPECT_THAT(routes, ElementsAre(expected));
}

TEST(RouteDump, ReadsAShortIPv4AddressFromItsPadding) {
  Bytes destination(8);
  destination[0] = std::byte{5};
  destination[1] = std::byte{2};
  const auto routes =
      decoded(routeMessage(4, 0b11, joined({destination, ipv4SocketAddress(gateway)})));
  EXPECT_THAT(routes, ElementsAre(defaultRoute(4, gateway)));
}

TEST(RouteDump, DoesNotPadIPv6Addresses) {
  const auto routes =
      decoded(routeMessage(4, 0b11, joined({ipv6SocketAddress({}), ipv6SocketAddress(gateway6)})),
              RouteFamily::ipv6);
  const RouteRecord expected{.destination = IPv6Bytes{}, .gateway = gateway6, .interfaceIndex = 4};
  EXPECT_THAT(routes, ElementsAre(expected));
}

TEST(RouteDump, PaddingIsWhatTellsTheTwoFamiliesOfDumpsApart) {
  const Bytes dump =
      routeMessage(4, 0b11, joined({ipv6SocketAddress({}), ipv6SocketAddress(gateway6)}));
  const auto routes = decoded(dump, RouteFamily::ipv4);
  ASSERT_EQ(routes.size(), 1U);
  EXPECT_EQ(routes[0].gateway, SocketAddress(OtherAddress{}))
      << "padded, the gateway would begin four bytes later, with a length and a family of zero";
}

TEST(RouteDump, LengthOfZeroDoesNotAdvanceInIPv6AndEndsAllTheSame) {
  const auto routes = decoded(routeMessage(4, 0xFF, Bytes(8)), RouteFamily::ipv6);
  EXPECT_THAT(routes, IsEmpty());
}

TEST(RouteDump, ShortIPv6DestinationIsAbsent) {
  Bytes destination(8);
  destination[0] = std::byte{8};
  destination[1] = std::byte{30};
  const auto routes = decoded(
      routeMessage(4, 0b11, joined({destination, ipv6SocketAddress(gateway6)})), RouteFamily::ipv6);
  const RouteRecord expected{.destination = std::nullopt, .gateway = gateway6, .interfaceIndex = 4};
  EXPECT_THAT(routes, ElementsAre(expected));
}

TEST(RouteDump, RouteWithoutAGatewayIsPassedOver) {
  EXPECT_THAT(decoded(routeMessage(4, 0b101, joined({ipv4SocketAddress({}), Bytes(8)}))),
              IsEmpty());
}

TEST(RouteDump, RouteWithoutADestinationHasNone) {
  const auto routes = decoded(routeMessage(4, 0b10, ipv4SocketAddress(gateway)));
  const RouteRecord expected{.destination = std::nullopt, .gateway = gateway, .interfaceIndex = 4};
  EXPECT_THAT(routes, ElementsAre(expected));
}

TEST(RouteDump, GatewayThatIsALinkIsAnotherAddress) {
  const auto routes = decoded(routeMessage(
      4, 0b11, joined({ipv4SocketAddress({}), padded(linkSocketAddress("en0", {}, 4))})));
  ASSERT_EQ(routes.size(), 1U);
  EXPECT_EQ(routes[0].gateway, SocketAddress(OtherAddress{}));
}

TEST(RouteDump, AddressPastTheEndOfItsMessageIsAbsent) {
  Bytes tooLong = ipv4SocketAddress(gateway);
  tooLong[0] = std::byte{24};
  EXPECT_THAT(decoded(routeMessage(4, 0b11, joined({ipv4SocketAddress({}), tooLong}))), IsEmpty());
}

TEST(RouteDump, AddressPastTheEndLeavesThoseBeforeItInPlace) {
  const Bytes mask{std::byte{255}};  // says that it is 255 bytes long
  EXPECT_THAT(decoded(routeMessage(
                  4, 0b111, joined({ipv4SocketAddress({}), ipv4SocketAddress(gateway), mask}))),
              ElementsAre(defaultRoute(4, gateway)));
}

TEST(RouteDump, PresenceOfMoreAddressesThanThereAreIsHarmless) {
  EXPECT_THAT(decoded(routeMessage(4, 0xFFFFFFFF,
                                   joined({ipv4SocketAddress({}), ipv4SocketAddress(gateway)}))),
              ElementsAre(defaultRoute(4, gateway)));
}

TEST(RouteDump, MessageOfLengthZeroIsMalformed) {
  Bytes dump = defaultRouteMessage(4, gateway);
  appendZeros(dump, 92);
  expectMalformed(dump);
}

TEST(RouteDump, MessageLengthPastTheEndIsMalformed) {
  Bytes dump = defaultRouteMessage(4, gateway);
  dump[1] = std::byte{1};
  expectMalformed(dump);
}

TEST(RouteDump, CutHeaderIsMalformed) {
  Bytes message = routeMessage(4, 0, {});
  message.resize(91);
  expectMalformed(withLength(message));
}

TEST(RouteDump, CutAtAnyByteIsMalformedOrEndsAtAMessage) {
  const Bytes one = defaultRouteMessage(4, gateway);
  const Bytes both = joined({one, defaultRouteMessage(5, gateway)});
  for (std::size_t length = 1; length < both.size(); ++length) {
    const Bytes cut(both.begin(), both.begin() + static_cast<std::ptrdiff_t>(length));
    if (length == one.size()) {
      EXPECT_THAT(decoded(cut), ElementsAre(defaultRoute(4, gateway)));
    } else {
      expectMalformed(cut);
    }
  }
}

TEST(RouteDump, MessageCutAtAnyByteKeepsOnlyWhatIsWhole) {
  const Bytes whole = defaultRouteMessage(4, gateway);
  const std::size_t endOfGateway = 92 + 16 + 16;
  for (std::size_t length = 4; length < whole.size(); ++length) {
    const Bytes cut =
        withLength(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
    const auto routes = decodeRouteDump(cut, RouteFamily::ipv4);
    ASSERT_EQ(routes.has_value(), length >= 92) << length;
    if (routes) {
      EXPECT_EQ(routes->size(), length >= endOfGateway ? 1U : 0U) << length;
    }
  }
}

}  // namespace
}  // namespace lanternfold::darwin
