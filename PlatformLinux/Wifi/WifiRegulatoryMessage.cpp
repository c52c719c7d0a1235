#include "PlatformLinux/Wifi/WifiRegulatoryMessage.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"

namespace lanternfold {

namespace {

// Two letters, with the terminator that newer kernels send.
constexpr AttributeTable regulatoryTable(std::array{
    bytesAttribute(NL80211_ATTR_REG_ALPHA2, "NL80211_ATTR_REG_ALPHA2", 2, 3,
                   AttributePresence::required),
});

bool isCountry(std::string_view code) {
  return std::ranges::all_of(code, [](char letter) { return letter >= 'A' && letter <= 'Z'; });
}

}  // namespace

std::expected<WifiRegulatoryMessage, DecodeError> decodeWifiRegulatory(
    const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, regulatoryTable);
  if (!attributes) return std::unexpected(attributes.error());
  const auto bytes = attributes->bytes(NL80211_ATTR_REG_ALPHA2).value();
  const std::string code(bytes.begin(), bytes.begin() + 2);
  WifiRegulatoryMessage regulatory;
  if (isCountry(code)) regulatory.countryCode = code;
  return regulatory;
}

}  // namespace lanternfold
