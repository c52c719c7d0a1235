// The widget that shows the internet as this machine sees it.
#pragma once

#include <string>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct InternetNetworkStateWidget {
  std::string kind = "InternetNetworkStateWidget";

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
