// A widget in its place on the desktop, as it is remembered.
#pragma once

#include <string>

#include "WidgetService/Widget.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// A corner on a monitor, in points from the monitor's left and top edges; may lie outside of it.
struct MonitorPosition {
  std::string monitor;  ///< as the desktop names it, such as "DP-1"; empty for any
  int x = 0;
  int y = 0;
  friend bool operator==(const MonitorPosition&, const MonitorPosition&) = default;
};

struct PlacedWidget {
  std::string id;    ///< unique on a desktop, not empty
  std::string kind;  ///< as the extension calls it; may be none that it has
  WidgetFamily family = WidgetFamily::small;
  ConfigurationParameters configuration;
  MonitorPosition position;  ///< of the left top corner
  friend bool operator==(const PlacedWidget&, const PlacedWidget&) = default;
};

}  // namespace lanternfold
