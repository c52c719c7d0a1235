// The widget that opens the main application's bandwidth monitor.
#pragma once

#include <string>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct BandwidthMonitorWidget {
  std::string kind = "BandwidthMonitorWidget";

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
