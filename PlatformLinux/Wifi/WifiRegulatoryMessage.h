// The country whose rules a radio obeys.
//
// Made by: `decodeWifiRegulatory` from the answer to `wifiRegulatoryRequest`. Read by: the report.
#pragma once

#include <expected>
#include <optional>
#include <string>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

struct WifiRegulatoryMessage {
  /// Two upper-case letters. Absent for rules of no one country: those of the whole world ("00"), a
  /// driver's own ("99"), what several have in common ("98"), unknown ones ("97").
  std::optional<std::string> countryCode;
  friend bool operator==(const WifiRegulatoryMessage&, const WifiRegulatoryMessage&) = default;
};

/// Errors: truncated "genlmsghdr"; those of the attributes.
[[nodiscard]] std::expected<WifiRegulatoryMessage, DecodeError> decodeWifiRegulatory(
    const NetlinkMessage& message);

}  // namespace lanternfold
