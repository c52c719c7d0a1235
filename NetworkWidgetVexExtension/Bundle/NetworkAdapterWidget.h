// The widget that shows one adapter, the user's choice or the best.
#pragma once

#include <string>

#include "NetworkWidgetVexExtension/Bundle/WidgetSurroundings.h"
#include "WidgetService/Widget.h"

namespace lanternfold {

struct NetworkAdapterWidget {
  std::string kind = "NetworkAdapterWidget";

  [[nodiscard]] Widget body(const WidgetSurroundings& surroundings) const;
};

}  // namespace lanternfold
