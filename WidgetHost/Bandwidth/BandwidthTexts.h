// The words of the bandwidth monitor: rates, sums and what a screen reader says. Pure.
#pragma once

#include <string>

#include "Platform/StringTable.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorState.h"

namespace lanternfold {

/// A number in its unit, apart so that they can be set in different sizes.
struct RateFigure {
  std::string number;
  std::string unit;

  [[nodiscard]] std::string text() const { return number + ' ' + unit; }
  friend bool operator==(const RateFigure&, const RateFigure&) = default;
};

/// `bytesPerSecond` in KB/s and above, with three digits ("0.42", "12.3", "999") whatever it is, so
/// that a number that changes every second keeps its width; nothing at all is "0".
[[nodiscard]] RateFigure byteRateFigure(double bytesPerSecond, const StringTable& strings);
/// The same rate in kbit/s and above.
[[nodiscard]] RateFigure bitRateFigure(double bytesPerSecond, const StringTable& strings);
/// A figure of usual width, to keep room for one that changes.
[[nodiscard]] std::string widestRateNumber(const StringTable& strings);

/// `bytesPerSecond`, which is round, as the graph's edge is labelled: "20 MB/s".
[[nodiscard]] std::string roundRateText(double bytesPerSecond, const StringTable& strings);

/// Bytes as the widgets write them: "1.2 GB", "0 KB".
[[nodiscard]] std::string totalText(std::uint64_t bytes, const StringTable& strings);

/// How busy the adapter is, or why there is nothing to say of it; empty before anything is known.
[[nodiscard]] std::string statusText(const BandwidthMonitorState& state,
                                     const StringTable& strings);

/// All that the monitor shows, a line each, for who does not see it.
[[nodiscard]] std::string bandwidthSummary(const BandwidthMonitorState& state,
                                           const StringTable& strings);

}  // namespace lanternfold
