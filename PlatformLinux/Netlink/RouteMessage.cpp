#include "PlatformLinux/Netlink/RouteMessage.h"

#include <sys/socket.h>
#include <utility>

#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/AddressBytes.h"
#include "PlatformLinux/Netlink/AddressFamily.h"
#include "PlatformLinux/Netlink/AttributeTable.h"

namespace lanternfold {

namespace {

constexpr std::size_t longestAddress = 32;

constexpr AttributeTable routeTable(std::array{
    bytesAttribute(RTA_DST, "RTA_DST", 1, longestAddress),
    bytesAttribute(RTA_GATEWAY, "RTA_GATEWAY", 1, longestAddress),
    bytesAttribute(RTA_VIA, "RTA_VIA", sizeof(rtvia), sizeof(rtvia) + longestAddress),
    bytesAttribute(RTA_MULTIPATH, "RTA_MULTIPATH", 0),
    numberAttribute<std::uint32_t>(RTA_OIF, "RTA_OIF"),
    numberAttribute<std::uint32_t>(RTA_PRIORITY, "RTA_PRIORITY"),
    numberAttribute<std::uint32_t>(RTA_TABLE, "RTA_TABLE"),
});

using RouteAttributes = decltype(routeTable)::Attributes;

constexpr AttributeTable hopTable(std::array{
    bytesAttribute(RTA_GATEWAY, "RTA_GATEWAY", 1, longestAddress),
    bytesAttribute(RTA_VIA, "RTA_VIA", sizeof(rtvia), sizeof(rtvia) + longestAddress),
});

SocketAddress anyAddress(std::uint8_t family) {
  if (family == AF_INET) return IPv4Bytes{};
  if (family == AF_INET6) return IPv6Bytes{};
  return OtherAddress{};
}

// RTA_VIA names a gateway of another family than the route's own: a family, then the address.
template <std::size_t Count>
std::expected<std::optional<SocketAddress>, DecodeError> gatewayOf(
    std::uint8_t family, const AttributeSet<Count>& attributes) {
  if (const auto bytes = attributes.bytes(RTA_GATEWAY)) {
    return socketAddressOf(family, *bytes, "RTA_GATEWAY");
  }
  const auto via = attributes.bytes(RTA_VIA);
  if (!via) return std::nullopt;
  ByteReader reader(*via);
  const auto viaFamily = reader.read<std::uint16_t>().value();
  return socketAddressOf(viaFamily, reader.takeRest(), "RTA_VIA");
}

constexpr std::size_t hopPadding(std::size_t length) {
  return (RTNH_ALIGNTO - length % RTNH_ALIGNTO) % RTNH_ALIGNTO;
}

// The next hops of a multipath route: headers with a length of their own, each followed by
// attributes.
std::expected<std::vector<RouteHop>, DecodeError> decodeHops(std::uint8_t family,
                                                             std::span<const std::uint8_t> bytes) {
  std::vector<RouteHop> hops;
  ByteReader reader(bytes);
  while (!reader.empty()) {
    const auto header = reader.read<rtnexthop>();
    if (!header) return std::unexpected(DecodeError{DecodeProblem::truncated, "rtnexthop"});
    if (header->rtnh_len < sizeof(rtnexthop)) {
      return std::unexpected(DecodeError{DecodeProblem::badLength, "rtnexthop"});
    }
    if (header->rtnh_ifindex < 0) {
      return std::unexpected(DecodeError{DecodeProblem::badValue, "rtnh_ifindex"});
    }
    const auto body = reader.take(header->rtnh_len - sizeof(rtnexthop));
    if (!body) return std::unexpected(DecodeError{DecodeProblem::truncated, "rtnexthop"});
    reader.skipUpTo(hopPadding(header->rtnh_len));
    const auto attributes = hopTable.parse(*body);
    if (!attributes) return std::unexpected(attributes.error());
    const auto gateway = gatewayOf(family, *attributes);
    if (!gateway) return std::unexpected(gateway.error());
    hops.push_back({*gateway, static_cast<std::uint32_t>(header->rtnh_ifindex)});
  }
  return hops;
}

std::expected<std::vector<RouteHop>, DecodeError> hopsOf(std::uint8_t family,
                                                         const RouteAttributes& attributes) {
  if (const auto multipath = attributes.bytes(RTA_MULTIPATH)) {
    return decodeHops(family, *multipath);
  }
  const auto gateway = gatewayOf(family, attributes);
  if (!gateway) return std::unexpected(gateway.error());
  return std::vector{RouteHop{*gateway, attributes.number<std::uint32_t>(RTA_OIF).value_or(0)}};
}

std::optional<DecodeError> readAttributes(const RouteAttributes& attributes, RouteMessage& route) {
  if (const auto bytes = attributes.bytes(RTA_DST)) {
    const auto destination = socketAddressOf(route.family, *bytes, "RTA_DST");
    if (!destination) return destination.error();
    route.destination = *destination;
  }
  auto hops = hopsOf(route.family, attributes);
  if (!hops) return hops.error();
  route.hops = std::move(*hops);
  route.priority = attributes.number<std::uint32_t>(RTA_PRIORITY).value_or(0);
  route.table = attributes.number<std::uint32_t>(RTA_TABLE).value_or(route.table);
  return std::nullopt;
}

}  // namespace

bool RouteMessage::isMainUnicast() const {
  return table == RT_TABLE_MAIN && type == RTN_UNICAST && !isCloned;
}

bool RouteMessage::isDefault() const { return isMainUnicast() && destinationLength == 0; }

std::expected<RouteMessage, DecodeError> decodeRouteMessage(const NetlinkMessage& message) {
  if (message.type != RTM_NEWROUTE && message.type != RTM_DELROUTE) {
    return std::unexpected(DecodeError{DecodeProblem::wrongMessage, "nlmsg_type"});
  }
  ByteReader reader(message.payload);
  const auto header = reader.read<rtmsg>();
  if (!header) return std::unexpected(DecodeError{DecodeProblem::truncated, "rtmsg"});
  if (header->rtm_dst_len > longestPrefixOf(header->rtm_family)) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "rtm_dst_len"});
  }
  const auto attributes = routeTable.parse(reader.takeRest());
  if (!attributes) return std::unexpected(attributes.error());
  RouteMessage route;
  route.isRemoval = message.type == RTM_DELROUTE;
  route.family = header->rtm_family;
  route.table = header->rtm_table;
  route.type = header->rtm_type;
  route.isCloned = (header->rtm_flags & RTM_F_CLONED) != 0;
  route.destinationLength = header->rtm_dst_len;
  route.destination = anyAddress(header->rtm_family);
  if (const auto error = readAttributes(*attributes, route)) return std::unexpected(*error);
  return route;
}

}  // namespace lanternfold
