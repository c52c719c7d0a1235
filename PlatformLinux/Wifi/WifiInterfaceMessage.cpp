#include "PlatformLinux/Wifi/WifiInterfaceMessage.h"

#include <array>
#include <net/if.h>
#include <utility>

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Wifi/LinkArray.h"

namespace lanternfold {

namespace {

using enum AttributePresence;

constexpr std::size_t longestSsid = 32;

// What says which interface it is must be right; a figure that is not costs no other.
constexpr AttributeTable interfaceTable(std::array{
    numberAttribute<std::uint32_t>(NL80211_ATTR_IFINDEX, "NL80211_ATTR_IFINDEX"),
    textAttribute(NL80211_ATTR_IFNAME, "NL80211_ATTR_IFNAME", IFNAMSIZ),
    numberAttribute<std::uint32_t>(NL80211_ATTR_WIPHY, "NL80211_ATTR_WIPHY"),
    numberAttribute<std::uint32_t>(NL80211_ATTR_IFTYPE, "NL80211_ATTR_IFTYPE", required),
    bytesAttribute(NL80211_ATTR_MAC, "NL80211_ATTR_MAC", sizeof(HardwareAddress),
                   sizeof(HardwareAddress), expendable),
    bytesAttribute(NL80211_ATTR_SSID, "NL80211_ATTR_SSID", 0, longestSsid, expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_WIPHY_FREQ, "NL80211_ATTR_WIPHY_FREQ", expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_CHANNEL_WIDTH, "NL80211_ATTR_CHANNEL_WIDTH",
                                   expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_CENTER_FREQ1, "NL80211_ATTR_CENTER_FREQ1",
                                   expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_CENTER_FREQ2, "NL80211_ATTR_CENTER_FREQ2",
                                   expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_WIPHY_TX_POWER_LEVEL,
                                   "NL80211_ATTR_WIPHY_TX_POWER_LEVEL", expendable),
    nestedAttribute(NL80211_ATTR_MLO_LINKS, "NL80211_ATTR_MLO_LINKS", expendable),
});

constexpr AttributeTable linkTable(std::array{
    numberAttribute<std::uint8_t>(NL80211_ATTR_MLO_LINK_ID, "NL80211_ATTR_MLO_LINK_ID", required),
    numberAttribute<std::uint32_t>(NL80211_ATTR_WIPHY_FREQ, "NL80211_ATTR_WIPHY_FREQ", expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_CHANNEL_WIDTH, "NL80211_ATTR_CHANNEL_WIDTH",
                                   expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_CENTER_FREQ1, "NL80211_ATTR_CENTER_FREQ1",
                                   expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_CENTER_FREQ2, "NL80211_ATTR_CENTER_FREQ2",
                                   expendable),
    numberAttribute<std::uint32_t>(NL80211_ATTR_WIPHY_TX_POWER_LEVEL,
                                   "NL80211_ATTR_WIPHY_TX_POWER_LEVEL", expendable),
});

template <typename Attributes>
WifiChannelDefinition channelOf(const Attributes& attributes) {
  const auto number = [&](std::uint16_t type) {
    return attributes.template number<std::uint32_t>(type);
  };
  return {.frequencyMegahertz = number(NL80211_ATTR_WIPHY_FREQ),
          .width = number(NL80211_ATTR_CHANNEL_WIDTH),
          .center1Megahertz = number(NL80211_ATTR_CENTER_FREQ1),
          .center2Megahertz = number(NL80211_ATTR_CENTER_FREQ2)};
}

// Declared unsigned, and sent as a signed number: a level may be below 0 dBm.
template <typename Attributes>
std::optional<std::int32_t> transmitPowerOf(const Attributes& attributes) {
  return attributes.template number<std::int32_t>(NL80211_ATTR_WIPHY_TX_POWER_LEVEL);
}

std::expected<WifiInterfaceLink, DecodeError> decodeLink(std::span<const std::uint8_t> bytes) {
  const auto attributes = linkTable.parse(bytes);
  if (!attributes) return std::unexpected(attributes.error());
  const auto linkId = attributes->number<std::uint8_t>(NL80211_ATTR_MLO_LINK_ID).value();
  if (linkId >= mostWifiLinks) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "NL80211_ATTR_MLO_LINK_ID"});
  }
  return WifiInterfaceLink{.linkId = linkId,
                           .channel = channelOf(*attributes),
                           .transmitPowerMillibels = transmitPowerOf(*attributes)};
}

}  // namespace

std::expected<WifiInterfaceMessage, DecodeError> decodeWifiInterface(
    const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, interfaceTable);
  if (!attributes) return std::unexpected(attributes.error());
  WifiInterfaceMessage interface;
  interface.index = attributes->number<std::uint32_t>(NL80211_ATTR_IFINDEX).value_or(0);
  interface.name = attributes->text(NL80211_ATTR_IFNAME).value_or("");
  interface.radioIndex = attributes->number<std::uint32_t>(NL80211_ATTR_WIPHY).value_or(0);
  interface.interfaceType = attributes->number<std::uint32_t>(NL80211_ATTR_IFTYPE).value();
  interface.address = hardwareAddressOf(*attributes, NL80211_ATTR_MAC);
  const auto ssid = attributes->bytes(NL80211_ATTR_SSID);
  if (ssid && !ssid->empty()) interface.ssid.emplace(ssid->begin(), ssid->end());
  interface.channel = channelOf(*attributes);
  interface.transmitPowerMillibels = transmitPowerOf(*attributes);
  if (const auto bytes = attributes->bytes(NL80211_ATTR_MLO_LINKS)) {
    interface.links = decodeLinkArray<WifiInterfaceLink>(*bytes, decodeLink);
  }
  return interface;
}

}  // namespace lanternfold
