// What the radio measured on one channel.
//
// Made by: `decodeWifiSurvey` from the answers to `wifiSurveyDumpRequest`. Read by: the report.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Netlink/NetlinkMessage.h"

namespace lanternfold {

struct WifiSurveyMessage {
  std::optional<std::uint32_t> frequencyMegahertz;
  std::optional<std::int8_t> noiseDbm;
  /// Whether the radio stands on this channel; what it measured on others is as old as its last
  /// scan.
  bool isInUse = false;
  friend bool operator==(const WifiSurveyMessage&, const WifiSurveyMessage&) = default;
};

/// Errors: truncated "genlmsghdr"; those of the attributes, nested ones too.
[[nodiscard]] std::expected<WifiSurveyMessage, DecodeError> decodeWifiSurvey(
    const NetlinkMessage& message);

}  // namespace lanternfold
