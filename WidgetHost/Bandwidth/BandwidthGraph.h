// The graph of the bandwidth monitor: a minute of bars, received bytes upwards and sent ones
// downwards from a line that breaks where nothing was measured.
#pragma once

#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"
#include "WidgetHost/Bandwidth/TrafficRate.h"

namespace lanternfold {

/// The names of the colour pairs of the two directions.
inline constexpr const char* receivedColour = "ReceivedTraffic";
inline constexpr const char* sentColour = "SentTraffic";

/// `minute` in exactly `size` points, the newest second at the trailing end. A direction in which
/// anything went through has a bar, however low. A size without an area is an empty view.
[[nodiscard]] View bandwidthGraph(const TrafficMinute& minute, Size size);

}  // namespace lanternfold
