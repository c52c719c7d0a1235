#include "PlatformLinux/Netlink/WirelessInterfaceMessage.h"

#include <array>

#include <linux/netlink.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"

namespace lanternfold {

namespace {

constexpr AttributeTable interfaceTable(std::array{
    numberAttribute<std::uint32_t>(NL80211_ATTR_IFINDEX, "NL80211_ATTR_IFINDEX"),
    numberAttribute<std::uint32_t>(NL80211_ATTR_IFTYPE, "NL80211_ATTR_IFTYPE",
                                   AttributePresence::required),
});

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

NetlinkRequest wirelessInterfaceDumpRequest(std::uint16_t messageType) {
  return genericRequest(messageType, NLM_F_DUMP, NL80211_CMD_GET_INTERFACE).finished();
}

std::expected<WirelessInterfaceMessage, DecodeError> decodeWirelessInterface(
    const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, interfaceTable);
  if (!attributes) return std::unexpected(attributes.error());
  return WirelessInterfaceMessage{
      .index = attributes->number<std::uint32_t>(NL80211_ATTR_IFINDEX).value_or(0),
      .role = roleOf(attributes->number<std::uint32_t>(NL80211_ATTR_IFTYPE).value())};
}

}  // namespace lanternfold
