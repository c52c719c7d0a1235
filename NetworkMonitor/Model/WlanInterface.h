// The records of the Wi-Fi side: radio figures, the joined network, the interface.
//
// Made by: a Wi-Fi resolver. Read by: the monitor, the widget views, the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "NetworkMonitor/Model/BasicInterface.h"

namespace lanternfold {

struct WlanMetrics {
  std::string PHYMode;             ///< for example "802.11ac"
  std::string countryCode;         ///< regulatory country, for example "IT"
  std::string security;            ///< for example "WPA2 Personal"
  std::string channel;             ///< formatted, for example "44 (5 GHz, 80 MHz)"
  std::int64_t rssi = 0;           ///< dBm
  std::int64_t noise = 0;          ///< dBm
  std::int64_t transmitPower = 0;  ///< mW
  double transmitRate = 0;         ///< Mbit/s

  [[nodiscard]] std::string transmitPowerLabel() const;
  [[nodiscard]] std::string transmitRateLabel(const StringTable& strings) const;
  /// Renders the transmit rate, not the noise, followed by " dBm": an intended oddity, as in
  /// `rssiLabel`. The rows of the list do not use either.
  [[nodiscard]] std::string noiseLabel() const;
  [[nodiscard]] std::string rssiLabel() const;

  [[nodiscard]] SourceList listRepresentation(const StringTable& strings) const;
  [[nodiscard]] SourceList compressedListRepresentation(const StringTable& strings) const;

  friend bool operator==(const WlanMetrics&, const WlanMetrics&) = default;
};

struct WlanNetwork {
  std::string ssid;
  std::string bssid;  ///< colon-separated hex
  std::optional<WlanMetrics> metrics;

  friend bool operator==(const WlanNetwork&, const WlanNetwork&) = default;
};

struct WlanInterface {
  bool active = false;
  std::string displayName;
  std::optional<std::string> mode;  ///< the interface mode's description
  BasicInterface interface;
  std::optional<WlanNetwork> currentNetwork;

  [[nodiscard]] static constexpr NetworkSourceCategory category() {
    return NetworkSourceCategory::wlan();
  }
  [[nodiscard]] SourceList listRepresentation(const StringTable& strings) const;
  [[nodiscard]] SourceList compressedListRepresentation(const StringTable& strings) const;

  friend bool operator==(const WlanInterface&, const WlanInterface&) = default;
};

/// A Wi-Fi interface's counters are those of the interface below it.
[[nodiscard]] inline const ConnectionMetrics& metricsOf(const WlanInterface& wlan) {
  return wlan.interface.metrics;
}

static_assert(ListableSource<WlanMetrics>);
static_assert(NetworkSource<WlanInterface>);

}  // namespace lanternfold
