#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"

#include <array>
#include <cstring>

#include <linux/genetlink.h>
#include <linux/netlink.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"

namespace lanternfold {

namespace {

constexpr std::size_t attributeHeaderSize = sizeof(nlattr);

constexpr AttributeTable familyTable(std::array{
    numberAttribute<std::uint16_t>(CTRL_ATTR_FAMILY_ID, "CTRL_ATTR_FAMILY_ID",
                                   AttributePresence::required),
});

constexpr AttributeTable interfaceTable(std::array{
    numberAttribute<std::uint32_t>(NL80211_ATTR_IFINDEX, "NL80211_ATTR_IFINDEX"),
    numberAttribute<std::uint32_t>(NL80211_ATTR_IFTYPE, "NL80211_ATTR_IFTYPE",
                                   AttributePresence::required),
});

NetlinkRequest genericRequest(std::uint16_t type, std::uint16_t flags, std::uint8_t command) {
  const nlmsghdr header{.nlmsg_len = NLMSG_LENGTH(GENL_HDRLEN),
                        .nlmsg_type = type,
                        .nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags),
                        .nlmsg_seq = 0,
                        .nlmsg_pid = 0};
  const genlmsghdr body{.cmd = command, .version = 1, .reserved = 0};
  NetlinkRequest request(header.nlmsg_len);
  std::memcpy(request.data(), &header, sizeof(header));
  std::memcpy(request.data() + sizeof(header), &body, sizeof(body));
  return request;
}

template <std::size_t Count>
std::expected<AttributeSet<Count>, DecodeError> attributesOf(const NetlinkMessage& message,
                                                             const AttributeTable<Count>& table) {
  ByteReader reader(message.payload);
  if (!reader.read<genlmsghdr>()) {
    return std::unexpected(DecodeError{DecodeProblem::truncated, "genlmsghdr"});
  }
  return table.parse(reader.takeRest());
}

WirelessRole roleOf(std::uint32_t interfaceType) {
  switch (interfaceType) {
    case NL80211_IFTYPE_STATION:
    case NL80211_IFTYPE_AP:
    case NL80211_IFTYPE_ADHOC:
    case NL80211_IFTYPE_MESH_POINT:
      return WirelessRole::network;
    default:
      return WirelessRole::auxiliary;
  }
}

}  // namespace

NetlinkRequest genericFamilyRequest(std::string_view familyName) {
  NetlinkRequest request = genericRequest(GENL_ID_CTRL, NLM_F_ACK, CTRL_CMD_GETFAMILY);
  const std::size_t start = request.size();
  const nlattr attribute{
      .nla_len = static_cast<std::uint16_t>(attributeHeaderSize + familyName.size() + 1),
      .nla_type = CTRL_ATTR_FAMILY_NAME};
  request.resize(start + NLMSG_ALIGN(std::size_t{attribute.nla_len}));
  std::memcpy(request.data() + start, &attribute, sizeof(attribute));
  std::memcpy(request.data() + start + attributeHeaderSize, familyName.data(), familyName.size());
  const auto length = static_cast<std::uint32_t>(request.size());
  std::memcpy(request.data(), &length, sizeof(length));
  return request;
}

std::expected<std::uint16_t, DecodeError> decodeGenericFamily(const NetlinkMessage& message) {
  const auto attributes = attributesOf(message, familyTable);
  if (!attributes) return std::unexpected(attributes.error());
  return attributes->number<std::uint16_t>(CTRL_ATTR_FAMILY_ID).value();
}

NetlinkRequest wirelessInterfaceDumpRequest(std::uint16_t messageType) {
  return genericRequest(messageType, NLM_F_DUMP, NL80211_CMD_GET_INTERFACE);
}

std::expected<WirelessInterfaceMessage, DecodeError> decodeWirelessInterface(
    const NetlinkMessage& message) {
  const auto attributes = attributesOf(message, interfaceTable);
  if (!attributes) return std::unexpected(attributes.error());
  return WirelessInterfaceMessage{
      .index = attributes->number<std::uint32_t>(NL80211_ATTR_IFINDEX).value_or(0),
      .role = roleOf(attributes->number<std::uint32_t>(NL80211_ATTR_IFTYPE).value())};
}

}  // namespace lanternfold
