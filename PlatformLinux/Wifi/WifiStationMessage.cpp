#include "PlatformLinux/Wifi/WifiStationMessage.h"

#include <array>
#include <utility>

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Wifi/LinkArray.h"

namespace lanternfold {

namespace {

constexpr AttributeTable stationTable(std::array{
    bytesAttribute(NL80211_ATTR_MAC, "NL80211_ATTR_MAC", sizeof(HardwareAddress),
                   sizeof(HardwareAddress), AttributePresence::required),
    nestedAttribute(NL80211_ATTR_STA_INFO, "NL80211_ATTR_STA_INFO"),
    nestedAttribute(NL80211_ATTR_MLO_LINKS, "NL80211_ATTR_MLO_LINKS"),
});

constexpr AttributeTable linkTable(std::array{
    numberAttribute<std::uint8_t>(NL80211_ATTR_MLO_LINK_ID, "NL80211_ATTR_MLO_LINK_ID",
                                  AttributePresence::required),
    nestedAttribute(NL80211_ATTR_STA_INFO, "NL80211_ATTR_STA_INFO"),
});

constexpr AttributeTable figuresTable(std::array{
    numberAttribute<std::int8_t>(NL80211_STA_INFO_SIGNAL, "NL80211_STA_INFO_SIGNAL"),
    numberAttribute<std::int8_t>(NL80211_STA_INFO_SIGNAL_AVG, "NL80211_STA_INFO_SIGNAL_AVG"),
    nestedAttribute(NL80211_STA_INFO_TX_BITRATE, "NL80211_STA_INFO_TX_BITRATE"),
    nestedAttribute(NL80211_STA_INFO_RX_BITRATE, "NL80211_STA_INFO_RX_BITRATE"),
    numberAttribute<std::uint32_t>(NL80211_STA_INFO_EXPECTED_THROUGHPUT,
                                   "NL80211_STA_INFO_EXPECTED_THROUGHPUT"),
    numberAttribute<std::uint32_t>(NL80211_STA_INFO_CONNECTED_TIME,
                                   "NL80211_STA_INFO_CONNECTED_TIME"),
});

std::optional<DecodeError> readRate(AttributeBytes bytes, std::optional<WifiRate>& rate) {
  if (!bytes) return std::nullopt;
  const auto decoded = decodeWifiRate(*bytes);
  if (!decoded) return decoded.error();
  rate = *decoded;
  return std::nullopt;
}

// A driver that knows nothing of the peer sends none, or an empty one.
std::expected<WifiStationFigures, DecodeError> decodeFigures(AttributeBytes bytes) {
  WifiStationFigures figures;
  if (!bytes) return figures;
  const auto attributes = figuresTable.parse(*bytes);
  if (!attributes) return std::unexpected(attributes.error());
  figures.signalDbm = attributes->number<std::int8_t>(NL80211_STA_INFO_SIGNAL);
  figures.signalAverageDbm = attributes->number<std::int8_t>(NL80211_STA_INFO_SIGNAL_AVG);
  figures.expectedThroughputKilobits =
      attributes->number<std::uint32_t>(NL80211_STA_INFO_EXPECTED_THROUGHPUT);
  figures.connectedSeconds = attributes->number<std::uint32_t>(NL80211_STA_INFO_CONNECTED_TIME);
  auto error = readRate(attributes->bytes(NL80211_STA_INFO_TX_BITRATE), figures.transmitRate);
  if (!error) {
    error = readRate(attributes->bytes(NL80211_STA_INFO_RX_BITRATE), figures.receiveRate);
  }
  if (error) return std::unexpected(*error);
  return figures;
}

std::expected<WifiStationLink, DecodeError> decodeLink(std::span<const std::uint8_t> bytes) {
  const auto attributes = linkTable.parse(bytes);
  if (!attributes) return std::unexpected(attributes.error());
  WifiStationLink link;
  link.linkId = attributes->number<std::uint8_t>(NL80211_ATTR_MLO_LINK_ID).value();
  if (link.linkId >= mostWifiLinks) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "NL80211_ATTR_MLO_LINK_ID"});
  }
  const auto figures = decodeFigures(attributes->bytes(NL80211_ATTR_STA_INFO));
  if (!figures) return std::unexpected(figures.error());
  link.figures = *figures;
  return link;
}

}  // namespace

std::expected<WifiStationMessage, DecodeError> decodeWifiStation(const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, stationTable);
  if (!attributes) return std::unexpected(attributes.error());
  WifiStationMessage station;
  station.address = hardwareAddressOf(*attributes, NL80211_ATTR_MAC).value();
  const auto figures = decodeFigures(attributes->bytes(NL80211_ATTR_STA_INFO));
  if (!figures) return std::unexpected(figures.error());
  station.figures = *figures;
  if (const auto bytes = attributes->bytes(NL80211_ATTR_MLO_LINKS)) {
    auto links = decodeLinkArray<WifiStationLink>(*bytes, decodeLink);
    if (!links) return std::unexpected(links.error());
    station.links = *std::move(links);
  }
  return station;
}

}  // namespace lanternfold
