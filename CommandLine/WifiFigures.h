// Wi-Fi figures as the command line writes them, with their units.
//
// Read by: the texts of `state` and `wifi`.
#pragma once

#include <cstdint>
#include <string>

#include "Platform/StringTable.h"
#include "PlatformLinux/Wifi/WifiReport.h"

namespace lanternfold {

/// "-54 dBm"
[[nodiscard]] std::string decibelsText(std::int64_t decibels);
/// "866.7 Mbit/s", "1300 Mbit/s"
[[nodiscard]] std::string megabitsText(double megabits);
/// "20 dBm (100 mW)", "17.5 dBm (56 mW)"
[[nodiscard]] std::string powerText(std::int64_t millibels, std::int64_t milliwatts);
/// "3 s", "2 min 5 s", "26 h 0 min"
[[nodiscard]] std::string durationText(std::uint32_t seconds);
/// "802.11ax (Wi-Fi 6)"
[[nodiscard]] std::string generationText(WifiGeneration generation);
/// "866.7 Mbit/s (MCS 9, 2 streams, 80 MHz, guard interval 400 ns)"
[[nodiscard]] std::string rateText(const WifiRate& rate);
/// "WPA 3 Personal", and for what the widgets' texts do not know "Enhanced Open"; empty when the
/// protection is unknown.
[[nodiscard]] std::string protectionText(WifiSecurity security, const StringTable& strings);
/// "PSK; CCMP-128, group TKIP; management frames protected"
[[nodiscard]] std::string suitesText(const WifiProtection& protection);
/// "44 (5 GHz, 80 MHz), 5220 MHz"; empty for a link without a channel.
[[nodiscard]] std::string linkChannelText(const WifiLink& link);

}  // namespace lanternfold
