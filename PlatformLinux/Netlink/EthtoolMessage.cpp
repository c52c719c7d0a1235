#include "PlatformLinux/Netlink/EthtoolMessage.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"

namespace lanternfold {

namespace {

constexpr std::uint64_t bitsPerMegabit = 1'000'000;

constexpr AttributeTable linkModesTable(std::array{
    nestedAttribute(ETHTOOL_A_LINKMODES_HEADER, "ETHTOOL_A_LINKMODES_HEADER"),
    numberAttribute<std::uint32_t>(ETHTOOL_A_LINKMODES_SPEED, "ETHTOOL_A_LINKMODES_SPEED"),
});

using LinkModesAttributes = decltype(linkModesTable)::Attributes;

constexpr AttributeTable headerTable(std::array{
    numberAttribute<std::uint32_t>(ETHTOOL_A_HEADER_DEV_INDEX, "ETHTOOL_A_HEADER_DEV_INDEX",
                                   AttributePresence::required),
});

std::expected<std::uint32_t, DecodeError> interfaceIndexOf(const LinkModesAttributes& attributes) {
  const auto nested = attributes.bytes(ETHTOOL_A_LINKMODES_HEADER);
  if (!nested) {
    return std::unexpected(DecodeError{DecodeProblem::missing, "ETHTOOL_A_LINKMODES_HEADER"});
  }
  const auto header = headerTable.parse(*nested);
  if (!header) return std::unexpected(header.error());
  const auto index = header->number<std::uint32_t>(ETHTOOL_A_HEADER_DEV_INDEX).value();
  if (index == 0) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "ETHTOOL_A_HEADER_DEV_INDEX"});
  }
  return index;
}

// The masks of modes, which nobody reads here, are a tenth as long when they are compact.
NetlinkRequest linkModesRequest(std::uint16_t family, std::uint16_t flags,
                                std::optional<std::uint32_t> interfaceIndex) {
  RequestBuilder request = genericRequest(family, flags, ETHTOOL_MSG_LINKMODES_GET);
  const std::size_t nest = request.beginNest(ETHTOOL_A_LINKMODES_HEADER | NLA_F_NESTED);
  if (interfaceIndex) request.addNumber(ETHTOOL_A_HEADER_DEV_INDEX, *interfaceIndex);
  request.addNumber(ETHTOOL_A_HEADER_FLAGS, ETHTOOL_FLAG_COMPACT_BITSETS);
  request.endNest(nest);
  return request.finished();
}

}  // namespace

NetlinkRequest linkSpeedRequest(std::uint16_t family, std::uint32_t interfaceIndex) {
  return linkModesRequest(family, NLM_F_ACK, interfaceIndex);
}

NetlinkRequest linkSpeedDumpRequest(std::uint16_t family) {
  return linkModesRequest(family, NLM_F_DUMP, std::nullopt);
}

std::expected<LinkSpeed, DecodeError> decodeLinkSpeed(const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, linkModesTable);
  if (!attributes) return std::unexpected(attributes.error());
  const auto index = interfaceIndexOf(*attributes);
  if (!index) return std::unexpected(index.error());
  LinkSpeed speed;
  speed.interfaceIndex = *index;
  const auto megabits = attributes->number<std::uint32_t>(ETHTOOL_A_LINKMODES_SPEED);
  if (megabits && *megabits != static_cast<std::uint32_t>(SPEED_UNKNOWN)) {
    speed.bitsPerSecond = *megabits * bitsPerMegabit;
  }
  return speed;
}

}  // namespace lanternfold
