// A bandwidth monitor that has seen something.
#pragma once

#include <cmath>
#include <cstddef>

#include "WidgetHost/Bandwidth/BandwidthMonitorState.h"

namespace lanternfold {

/// A minute with a gap, in which the traffic of both directions rises and falls.
[[nodiscard]] inline BandwidthMonitorState busyBandwidth() {
  BandwidthMonitorState state{.adapterName = "Port (en0)",
                              .availability = BandwidthAvailability::present};
  for (std::size_t second = 0; second < secondsShown; ++second) {
    if (second >= 20 && second < 24) continue;
    const double phase = static_cast<double>(second) / 6;
    state.traffic.minute[second] = {.received = std::round(4e6 * (1 + std::sin(phase))),
                                    .sent = std::round(3e5 * (1 + std::cos(phase)))};
  }
  state.traffic.totals = {.sentBytes = 448'000'000, .recvBytes = 3'520'000'000};
  state.traffic.bandwidthClass = ConnectionBandwidthClass::low;
  return state;
}

}  // namespace lanternfold
