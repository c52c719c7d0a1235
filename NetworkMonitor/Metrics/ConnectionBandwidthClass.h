// How busy the busiest interface is.
//
// Made by: a bandwidth analyzer. Read by: the recorder and whoever follows it.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace lanternfold {

/// Ordered: `<` and its kin compare the raw values.
enum class ConnectionBandwidthClass : std::int64_t {
  idle = 0,
  low = 10,
  high = 20,
  veryHigh = 30,
};

/// The case with this raw value, or none.
[[nodiscard]] std::optional<ConnectionBandwidthClass> connectionBandwidthClass(
    std::int64_t rawValue);

/// The name of the case, such as "veryHigh".
[[nodiscard]] std::string_view nameOf(ConnectionBandwidthClass bandwidthClass);

}  // namespace lanternfold
