// The radio figures of a joined Wi-Fi network.
//
// Made by: a Wi-Fi resolver. Read by: the Wi-Fi's list representation, the command line.
#pragma once

#include <cstdint>
#include <string>

#include "NetworkMonitor/Model/NetworkSource.h"

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

static_assert(ListableSource<WlanMetrics>);

}  // namespace lanternfold
