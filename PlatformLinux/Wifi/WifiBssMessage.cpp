#include "PlatformLinux/Wifi/WifiBssMessage.h"

#include <algorithm>
#include <array>
#include <utility>

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "PlatformLinux/Wifi/LinkArray.h"

namespace lanternfold {

namespace {

/// Of the capability field of every beacon.
constexpr unsigned privacyBit = 1U << 4U;

constexpr AttributeTable messageTable(std::array{
    nestedAttribute(NL80211_ATTR_BSS, "NL80211_ATTR_BSS"),
});

// Only figures may be wrong: a cell whose protection is illegible must not pass for an open one.
constexpr AttributeTable bssTable(std::array{
    bytesAttribute(NL80211_BSS_BSSID, "NL80211_BSS_BSSID", sizeof(HardwareAddress),
                   sizeof(HardwareAddress), AttributePresence::required),
    numberAttribute<std::uint32_t>(NL80211_BSS_STATUS, "NL80211_BSS_STATUS"),
    numberAttribute<std::uint32_t>(NL80211_BSS_FREQUENCY, "NL80211_BSS_FREQUENCY",
                                   AttributePresence::expendable),
    numberAttribute<std::int32_t>(NL80211_BSS_SIGNAL_MBM, "NL80211_BSS_SIGNAL_MBM",
                                  AttributePresence::expendable),
    numberAttribute<std::uint16_t>(NL80211_BSS_CAPABILITY, "NL80211_BSS_CAPABILITY"),
    bytesAttribute(NL80211_BSS_INFORMATION_ELEMENTS, "NL80211_BSS_INFORMATION_ELEMENTS", 0),
    bytesAttribute(NL80211_BSS_BEACON_IES, "NL80211_BSS_BEACON_IES", 0),
    numberAttribute<std::uint8_t>(NL80211_BSS_MLO_LINK_ID, "NL80211_BSS_MLO_LINK_ID"),
    bytesAttribute(NL80211_BSS_MLD_ADDR, "NL80211_BSS_MLD_ADDR", sizeof(HardwareAddress),
                   sizeof(HardwareAddress)),
});

using BssAttributes = decltype(bssTable)::Attributes;

bool isJoined(const BssAttributes& attributes) {
  const auto status = attributes.number<std::uint32_t>(NL80211_BSS_STATUS);
  return status == NL80211_BSS_STATUS_ASSOCIATED || status == NL80211_BSS_STATUS_IBSS_JOINED;
}

// The beacon stands in whole where no other elements came, and lends its name to a probe response
// without one.
InformationElements elementsOf(const BssAttributes& attributes) {
  const auto latest = attributes.bytes(NL80211_BSS_INFORMATION_ELEMENTS);
  const auto beacon = attributes.bytes(NL80211_BSS_BEACON_IES);
  if (!latest || latest->empty()) {
    return beacon ? decodeInformationElements(*beacon) : InformationElements{};
  }
  InformationElements elements = decodeInformationElements(*latest);
  if (beacon && !tellsName(elements)) {
    InformationElements ofBeacon = decodeInformationElements(*beacon);
    if (tellsName(ofBeacon)) elements.ssid = std::move(ofBeacon.ssid);
  }
  return elements;
}

}  // namespace

bool tellsName(const InformationElements& elements) {
  return elements.ssid &&
         std::ranges::any_of(*elements.ssid, [](std::uint8_t byte) { return byte != 0; });
}

std::expected<std::optional<WifiBssMessage>, DecodeError> decodeJoinedBss(
    const NetlinkMessage& message) {
  const auto outer = genericAttributes(message, messageTable);
  if (!outer) return std::unexpected(outer.error());
  const auto bytes = outer->bytes(NL80211_ATTR_BSS);
  if (!bytes) return std::unexpected(DecodeError{DecodeProblem::missing, "NL80211_ATTR_BSS"});
  const auto attributes = bssTable.parse(*bytes);
  if (!attributes) return std::unexpected(attributes.error());
  if (!isJoined(*attributes)) return std::nullopt;
  WifiBssMessage bss;
  bss.bssid = hardwareAddressOf(*attributes, NL80211_BSS_BSSID).value();
  bss.frequencyMegahertz = attributes->number<std::uint32_t>(NL80211_BSS_FREQUENCY);
  bss.signalMillibels = attributes->number<std::int32_t>(NL80211_BSS_SIGNAL_MBM);
  const auto capabilities = attributes->number<std::uint16_t>(NL80211_BSS_CAPABILITY).value_or(0);
  bss.hasPrivacy = (capabilities & privacyBit) != 0;
  bss.elements = elementsOf(*attributes);
  bss.linkId = attributes->number<std::uint8_t>(NL80211_BSS_MLO_LINK_ID);
  if (bss.linkId && *bss.linkId >= mostWifiLinks) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "NL80211_BSS_MLO_LINK_ID"});
  }
  bss.peerAddress = hardwareAddressOf(*attributes, NL80211_BSS_MLD_ADDR);
  return bss;
}

}  // namespace lanternfold
