// What stands behind every network widget: the gradient, the logo, and the time of drawing.
#pragma once

#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct BackgroundView {
  bool showTimestamp = false;

  [[nodiscard]] View body(const WidgetEnvironment& environment) const;
};

}  // namespace lanternfold
