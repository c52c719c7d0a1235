// The widget that shows one adapter, the user's choice or the best.
#pragma once

#include <string>
#include <vector>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct NetworkAdapterWidget {
  std::string kind = "NetworkAdapterWidget";

  /// The sizes it comes in, from the smallest.
  [[nodiscard]] static std::vector<WidgetFamily> families() { return {WidgetFamily::medium}; }

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
