#include "PlatformLinux/Wifi/WifiStationMessage.h"

#include <array>
#include <utility>

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Wifi/LinkArray.h"

namespace lanternfold {

namespace {

using enum AttributePresence;

constexpr AttributeTable stationTable(std::array{
    bytesAttribute(NL80211_ATTR_MAC, "NL80211_ATTR_MAC", sizeof(HardwareAddress),
                   sizeof(HardwareAddress), required),
    nestedAttribute(NL80211_ATTR_STA_INFO, "NL80211_ATTR_STA_INFO", expendable),
    nestedAttribute(NL80211_ATTR_MLO_LINKS, "NL80211_ATTR_MLO_LINKS", expendable),
});

constexpr AttributeTable linkTable(std::array{
    numberAttribute<std::uint8_t>(NL80211_ATTR_MLO_LINK_ID, "NL80211_ATTR_MLO_LINK_ID", required),
    nestedAttribute(NL80211_ATTR_STA_INFO, "NL80211_ATTR_STA_INFO", expendable),
});

constexpr AttributeTable figuresTable(std::array{
    numberAttribute<std::int8_t>(NL80211_STA_INFO_SIGNAL, "NL80211_STA_INFO_SIGNAL", expendable),
    numberAttribute<std::int8_t>(NL80211_STA_INFO_SIGNAL_AVG, "NL80211_STA_INFO_SIGNAL_AVG",
                                 expendable),
    nestedAttribute(NL80211_STA_INFO_TX_BITRATE, "NL80211_STA_INFO_TX_BITRATE", expendable),
    nestedAttribute(NL80211_STA_INFO_RX_BITRATE, "NL80211_STA_INFO_RX_BITRATE", expendable),
    numberAttribute<std::uint32_t>(NL80211_STA_INFO_EXPECTED_THROUGHPUT,
                                   "NL80211_STA_INFO_EXPECTED_THROUGHPUT", expendable),
    numberAttribute<std::uint32_t>(NL80211_STA_INFO_CONNECTED_TIME,
                                   "NL80211_STA_INFO_CONNECTED_TIME", expendable),
});

// As a whole or not at all: a part that is missing would make it another generation's or width's.
std::optional<WifiRate> rateOf(AttributeBytes bytes) {
  const auto rate = bytes ? decodeWifiRate(*bytes) : WifiRate{};
  return bytes && rate ? std::optional(*rate) : std::nullopt;
}

// A driver that knows nothing of the peer sends none, or an empty one.
WifiStationFigures figuresOf(AttributeBytes bytes) {
  if (!bytes) return {};
  const auto attributes = figuresTable.parse(*bytes);
  if (!attributes) return {};
  return {.signalDbm = attributes->number<std::int8_t>(NL80211_STA_INFO_SIGNAL),
          .signalAverageDbm = attributes->number<std::int8_t>(NL80211_STA_INFO_SIGNAL_AVG),
          .transmitRate = rateOf(attributes->bytes(NL80211_STA_INFO_TX_BITRATE)),
          .receiveRate = rateOf(attributes->bytes(NL80211_STA_INFO_RX_BITRATE)),
          .expectedThroughputKilobits =
              attributes->number<std::uint32_t>(NL80211_STA_INFO_EXPECTED_THROUGHPUT),
          .connectedSeconds = attributes->number<std::uint32_t>(NL80211_STA_INFO_CONNECTED_TIME)};
}

std::expected<WifiStationLink, DecodeError> decodeLink(std::span<const std::uint8_t> bytes) {
  const auto attributes = linkTable.parse(bytes);
  if (!attributes) return std::unexpected(attributes.error());
  const auto linkId = attributes->number<std::uint8_t>(NL80211_ATTR_MLO_LINK_ID).value();
  if (linkId >= mostWifiLinks) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "NL80211_ATTR_MLO_LINK_ID"});
  }
  return WifiStationLink{.linkId = linkId,
                         .figures = figuresOf(attributes->bytes(NL80211_ATTR_STA_INFO))};
}

}  // namespace

std::expected<WifiStationMessage, DecodeError> decodeWifiStation(const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, stationTable);
  if (!attributes) return std::unexpected(attributes.error());
  WifiStationMessage station;
  station.address = hardwareAddressOf(*attributes, NL80211_ATTR_MAC).value();
  station.figures = figuresOf(attributes->bytes(NL80211_ATTR_STA_INFO));
  if (const auto bytes = attributes->bytes(NL80211_ATTR_MLO_LINKS)) {
    station.links = decodeLinkArray<WifiStationLink>(*bytes, decodeLink);
  }
  return station;
}

}  // namespace lanternfold
