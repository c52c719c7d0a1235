// The bandwidth monitor's card: the rates of both directions, and the graph of a minute below them.
//
// Read by: the monitor's window, which paints it on the product's gradient.
#pragma once

#include "Platform/StringTable.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"
#include "WidgetHost/Bandwidth/BandwidthMonitorState.h"

namespace lanternfold {

struct BandwidthMonitorView {
  const BandwidthMonitorState& state;
  const StringTable& strings;

  /// In `size` points; what there is no room for is left out, the graph last.
  [[nodiscard]] View body(Size size) const;
};

/// Of the card, in points: one in which everything has room, and a compact one.
inline constexpr Size bandwidthMonitorSize{332, 230};
inline constexpr Size bandwidthMonitorMiniSize{264, 148};
/// Below it the figures would be cut.
inline constexpr Size bandwidthMonitorLeastSize{150, 76};

}  // namespace lanternfold
