// The widget that shows the Wi-Fi.
#pragma once

#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct WlanNetworkStateWidget {
  std::string kind = "WlanNetworkStateWidget";

  /// The sizes it comes in, from the smallest.
  [[nodiscard]] static std::vector<WidgetFamily> families() {
    return {WidgetFamily::small, WidgetFamily::medium};
  }

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
