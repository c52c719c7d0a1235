// The tile that opens the main application's bandwidth monitor.
#pragma once

#include "NetworkWidgetVexExtension/Providers/BandwidthMonitorEntry.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct BandwidthMonitorEntryView {
  BandwidthMonitorEntry entry;

  /// All of it is the link, so that it works wherever it is pressed.
  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
