#include "PlatformLinux/Netlink/LinkMessage.h"

#include <net/if.h>

#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/InterfaceName.h"

namespace lanternfold {

namespace {

// Longer than any kind or device name of today's kernels; the kernel sets no common limit.
constexpr std::size_t longestDeviceText = 256;

constexpr AttributeTable linkTable(std::array{
    textAttribute(IFLA_IFNAME, "IFLA_IFNAME", IFNAMSIZ, AttributePresence::required),
    bytesAttribute(IFLA_ADDRESS, "IFLA_ADDRESS", 0, LinkAddressBytes::maximumSize),
    numberAttribute<std::uint32_t>(IFLA_MTU, "IFLA_MTU"),
    numberAttribute<std::uint8_t>(IFLA_OPERSTATE, "IFLA_OPERSTATE"),
    numberAttribute<std::uint8_t>(IFLA_CARRIER, "IFLA_CARRIER"),
    numberAttribute<std::uint32_t>(IFLA_MASTER, "IFLA_MASTER"),
    bytesAttribute(IFLA_STATS, "IFLA_STATS", sizeof(LinkCounters32)),
    bytesAttribute(IFLA_STATS64, "IFLA_STATS64", sizeof(LinkCounters64)),
    nestedAttribute(IFLA_LINKINFO, "IFLA_LINKINFO"),
    textAttribute(IFLA_PARENT_DEV_NAME, "IFLA_PARENT_DEV_NAME", longestDeviceText),
    textAttribute(IFLA_PARENT_DEV_BUS_NAME, "IFLA_PARENT_DEV_BUS_NAME", longestDeviceText),
    flagAttribute(IFLA_WIRELESS, "IFLA_WIRELESS"),
});

using LinkAttributes = decltype(linkTable)::Attributes;

constexpr AttributeTable linkInfoTable(std::array{
    textAttribute(IFLA_INFO_KIND, "IFLA_INFO_KIND", longestDeviceText),
    textAttribute(IFLA_INFO_SLAVE_KIND, "IFLA_INFO_SLAVE_KIND", longestDeviceText),
});

template <typename Value>
std::optional<Value> copied(const AttributeBytes& bytes) {
  return bytes ? ByteReader(*bytes).read<Value>() : std::nullopt;
}

std::optional<std::string> copiedText(const std::optional<std::string_view>& text) {
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

std::optional<DecodeError> readHeader(ByteReader& reader, LinkMessage& link) {
  const auto header = reader.read<ifinfomsg>();
  if (!header) return DecodeError{DecodeProblem::truncated, "ifinfomsg"};
  if (header->ifi_index <= 0) return DecodeError{DecodeProblem::badValue, "ifi_index"};
  link.family = header->ifi_family;
  link.index = static_cast<std::uint32_t>(header->ifi_index);
  link.hardwareType = header->ifi_type;
  link.flags = header->ifi_flags;
  return std::nullopt;
}

std::optional<DecodeError> readLinkInfo(const LinkAttributes& attributes, LinkMessage& link) {
  const auto nested = attributes.bytes(IFLA_LINKINFO);
  if (!nested) return std::nullopt;
  const auto info = linkInfoTable.parse(*nested);
  if (!info) return info.error();
  link.kind = copiedText(info->text(IFLA_INFO_KIND));
  link.portKind = copiedText(info->text(IFLA_INFO_SLAVE_KIND));
  return std::nullopt;
}

std::optional<DecodeError> readAttributes(const LinkAttributes& attributes, LinkMessage& link) {
  const std::string_view name = attributes.text(IFLA_IFNAME).value_or("");
  if (!isTrustworthyInterfaceName(name)) {
    return DecodeError{DecodeProblem::badValue, "IFLA_IFNAME"};
  }
  link.name = name;
  if (const auto address = attributes.bytes(IFLA_ADDRESS)) {
    link.address = LinkAddressBytes(*address);
  }
  link.mtu = attributes.number<std::uint32_t>(IFLA_MTU);
  link.operationalState = attributes.number<std::uint8_t>(IFLA_OPERSTATE);
  if (const auto carrier = attributes.number<std::uint8_t>(IFLA_CARRIER)) {
    link.carrier = *carrier != 0;
  }
  link.masterIndex = attributes.number<std::uint32_t>(IFLA_MASTER);
  link.counters32 = copied<LinkCounters32>(attributes.bytes(IFLA_STATS));
  link.counters64 = copied<LinkCounters64>(attributes.bytes(IFLA_STATS64));
  link.parentDeviceName = copiedText(attributes.text(IFLA_PARENT_DEV_NAME));
  link.parentDeviceBus = copiedText(attributes.text(IFLA_PARENT_DEV_BUS_NAME));
  link.hasWirelessEvent = attributes.has(IFLA_WIRELESS);
  return readLinkInfo(attributes, link);
}

std::optional<DecodeError> readLink(const NetlinkMessage& message, LinkMessage& link) {
  if (message.type != RTM_NEWLINK && message.type != RTM_DELLINK) {
    return DecodeError{DecodeProblem::wrongMessage, "nlmsg_type"};
  }
  link.isRemoval = message.type == RTM_DELLINK;
  ByteReader reader(message.payload);
  if (const auto error = readHeader(reader, link)) return error;
  const auto attributes = linkTable.parse(reader.takeRest());
  if (!attributes) return attributes.error();
  return readAttributes(*attributes, link);
}

}  // namespace

bool LinkMessage::describesLink() const { return family == AF_UNSPEC && !hasWirelessEvent; }

LinkCounters64 widestCountersOf(const LinkMessage& link) {
  if (link.counters64) return *link.counters64;
  if (link.counters32) return countersAs<std::uint64_t>(*link.counters32);
  return {};
}

LinkCounters32 narrowCountersOf(const LinkMessage& link) {
  if (link.counters32) return *link.counters32;
  if (link.counters64) return countersAs<std::uint32_t>(*link.counters64);
  return {};
}

std::expected<LinkMessage, DecodeError> decodeLinkMessage(const NetlinkMessage& message) {
  // Filled where it is returned: a link is too large to be handed on by copies.
  std::expected<LinkMessage, DecodeError> link;
  if (const auto error = readLink(message, *link)) link = std::unexpected(*error);
  return link;
}

}  // namespace lanternfold
