// The rate at which a Wi-Fi peer was last spoken to or heard, with how it comes about.
//
// Made by: `decodeWifiRate` from the nested attributes of a station. Read by: the mappings, the
// report.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <span>

#include "PlatformLinux/Netlink/DecodeError.h"
#include "PlatformLinux/Wifi/WifiGeneration.h"

namespace lanternfold {

struct WifiRate {
  /// Units of 100 kbit/s; absent when the driver gives none.
  std::optional<std::uint32_t> bitrate;
  WifiGeneration generation = WifiGeneration::legacy;
  /// The index of modulation and coding; absent for legacy rates.
  std::optional<std::uint8_t> modulation;
  /// Spatial streams, from 1; absent for legacy rates.
  std::optional<std::uint8_t> streams;
  std::uint32_t widthMegahertz = 20;
  /// Absent for legacy rates, and where the driver does not say.
  std::optional<std::uint32_t> guardIntervalNanoseconds;

  /// 0 when the driver gives no rate.
  [[nodiscard]] double megabits() const { return bitrate.value_or(0) / 10.0; }

  friend bool operator==(const WifiRate&, const WifiRate&) = default;
};

/// Errors name the attribute.
[[nodiscard]] std::expected<WifiRate, DecodeError> decodeWifiRate(
    std::span<const std::uint8_t> bytes);

}  // namespace lanternfold
