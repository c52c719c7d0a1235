// The widget that shows the internet as this machine sees it.
#pragma once

#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct InternetNetworkStateWidget {
  std::string kind = "InternetNetworkStateWidget";

  /// The sizes it comes in, from the smallest.
  [[nodiscard]] static std::vector<WidgetFamily> families() {
    return {WidgetFamily::small, WidgetFamily::medium};
  }

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
