#include "PlatformLinux/Netlink/GenericNetlink.h"

#include <array>
#include <utility>

#include <linux/netlink.h>

namespace lanternfold {

namespace {

constexpr std::size_t mostGroups = 32;

constexpr AttributeTable familyTable(std::array{
    numberAttribute<std::uint16_t>(CTRL_ATTR_FAMILY_ID, "CTRL_ATTR_FAMILY_ID",
                                   AttributePresence::required),
    textAttribute(CTRL_ATTR_FAMILY_NAME, "CTRL_ATTR_FAMILY_NAME", GENL_NAMSIZ),
    nestedAttribute(CTRL_ATTR_MCAST_GROUPS, "CTRL_ATTR_MCAST_GROUPS"),
});

constexpr AttributeTable groupTable(std::array{
    textAttribute(CTRL_ATTR_MCAST_GRP_NAME, "CTRL_ATTR_MCAST_GRP_NAME", GENL_NAMSIZ),
    numberAttribute<std::uint32_t>(CTRL_ATTR_MCAST_GRP_ID, "CTRL_ATTR_MCAST_GRP_ID"),
});

// The groups are nested as an array that counts from 1.
consteval AttributeTable<mostGroups> groupArrayTable() {
  std::array<AttributePolicy, mostGroups> policies;
  for (std::size_t group = 0; group < mostGroups; ++group) {
    policies[group] = nestedAttribute(static_cast<int>(group) + 1, "CTRL_ATTR_MCAST_GROUPS");
  }
  return AttributeTable(policies);
}

std::expected<std::vector<GenericGroup>, DecodeError> decodeGroups(
    std::span<const std::uint8_t> bytes) {
  static constexpr AttributeTable table = groupArrayTable();
  const auto elements = table.parse(bytes);
  if (!elements) return std::unexpected(elements.error());
  std::vector<GenericGroup> groups;
  for (std::uint16_t place = 1; place <= mostGroups; ++place) {
    const auto element = elements->bytes(place);
    if (!element) continue;
    const auto group = groupTable.parse(*element);
    if (!group) return std::unexpected(group.error());
    const auto name = group->text(CTRL_ATTR_MCAST_GRP_NAME);
    const auto number = group->number<std::uint32_t>(CTRL_ATTR_MCAST_GRP_ID);
    if (name && number) groups.push_back({.name = std::string(*name), .number = *number});
  }
  return groups;
}

}  // namespace

RequestBuilder genericRequest(std::uint16_t messageType, std::uint16_t flags,
                              std::uint8_t command) {
  return RequestBuilder(messageType, flags,
                        genlmsghdr{.cmd = command, .version = 1, .reserved = 0});
}

NetlinkRequest genericFamilyRequest(std::string_view familyName) {
  RequestBuilder request = genericRequest(GENL_ID_CTRL, NLM_F_ACK, CTRL_CMD_GETFAMILY);
  request.addText(CTRL_ATTR_FAMILY_NAME, familyName);
  return request.finished();
}

std::expected<GenericFamilyMessage, DecodeError> decodeGenericFamily(
    const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, familyTable);
  if (!attributes) return std::unexpected(attributes.error());
  GenericFamilyMessage family;
  family.messageType = attributes->number<std::uint16_t>(CTRL_ATTR_FAMILY_ID).value();
  family.name = attributes->text(CTRL_ATTR_FAMILY_NAME).value_or("");
  if (const auto bytes = attributes->bytes(CTRL_ATTR_MCAST_GROUPS)) {
    auto groups = decodeGroups(*bytes);
    if (!groups) return std::unexpected(groups.error());
    family.groups = *std::move(groups);
  }
  return family;
}

std::optional<std::uint8_t> genericCommand(const NetlinkMessage& message) {
  const auto header = ByteReader(message.payload).read<genlmsghdr>();
  return header ? std::optional(header->cmd) : std::nullopt;
}

}  // namespace lanternfold
