// The tile that opens the main application's bandwidth monitor.
#pragma once

#include "NetworkWidgetVexExtension/Providers/BandwidthMonitorEntry.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct BandwidthMonitorEntryView {
  BandwidthMonitorEntry entry;

  [[nodiscard]] View body() const;
};

}  // namespace lanternfold
