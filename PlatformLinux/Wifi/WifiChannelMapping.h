// Frequencies to channels, as the kernel counts them, and the other figures of a radio to the units
// of the seam. Pure.
//
// Read by: the report.
#pragma once

#include <cstdint>
#include <optional>

#include "Platform/WifiClient.h"

namespace lanternfold {

/// Unknown for a frequency of no band that the seam knows (60 GHz, below 1 GHz).
[[nodiscard]] WifiChannelBand bandOfFrequency(std::uint32_t megahertz);

/// The number of the 20 MHz channel at this centre; 0 for a frequency without one.
[[nodiscard]] std::int64_t channelNumberOfFrequency(std::uint32_t megahertz);

/// The width of a NL80211_CHAN_WIDTH_*; none for a number that is not known.
[[nodiscard]] std::optional<std::uint32_t> megahertzOfWidth(std::uint32_t width);

/// Unknown for the narrow channels (1 to 16 MHz).
[[nodiscard]] WifiChannelWidth widthOfMegahertz(std::uint32_t megahertz);

/// mW, rounded; 0 for a level that no radio has (beyond ±100 dBm) or none.
[[nodiscard]] std::int64_t milliwattsOfMillibels(std::optional<std::int32_t> millibels);

}  // namespace lanternfold
