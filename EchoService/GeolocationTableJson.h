// The geolocation table as it stands in its file: JSON, an object of networks.
//
// Made by: whoever hosts the service. Read by: `echo-service`, once, when it starts.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "EchoService/GeolocationTable.h"

namespace lanternfold {

inline constexpr std::size_t longestGeolocationTableBytes = 32 * 1024 * 1024;
inline constexpr std::size_t mostGeolocationNetworks = 250'000;
/// Of each of an entry's texts.
inline constexpr std::size_t longestGeolocationTextBytes = 200;

/// `{"192.0.2.0/24": {"isp": "…", "countryCode": "IT", "as": "…"}, …}`: every entry has these three
/// members, each once, and no other; no network stands twice. The error is one clause without a
/// full stop that names the entry and its fault.
[[nodiscard]] std::expected<GeolocationTable, std::string> parseGeolocationTable(
    std::string_view json);

}  // namespace lanternfold
