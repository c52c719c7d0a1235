// The widget that shows all there is: the internet, the Wi-Fi and the adapters.
#pragma once

#include <string>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct PanoramicNetworkStateWidget {
  std::string kind = "PanoramicNetworkStateWidget";

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
