// The widget that shows all there is: the internet, the Wi-Fi and the adapters.
#pragma once

#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct PanoramicNetworkStateWidget {
  std::string kind = "PanoramicNetworkStateWidget";

  /// The sizes it comes in, from the smallest.
  [[nodiscard]] static std::vector<WidgetFamily> families() {
    return {WidgetFamily::small, WidgetFamily::medium, WidgetFamily::large};
  }

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
