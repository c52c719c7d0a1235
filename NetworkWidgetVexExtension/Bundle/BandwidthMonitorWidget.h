// The widget that opens the main application's bandwidth monitor.
#pragma once

#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct BandwidthMonitorWidget {
  std::string kind = "BandwidthMonitorWidget";

  /// The sizes it comes in, from the smallest.
  [[nodiscard]] static std::vector<WidgetFamily> families() { return {WidgetFamily::small}; }

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
