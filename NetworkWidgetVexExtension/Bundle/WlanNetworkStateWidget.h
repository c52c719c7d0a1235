// The widget that shows the Wi-Fi.
#pragma once

#include <string>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct WlanNetworkStateWidget {
  std::string kind = "WlanNetworkStateWidget";

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
