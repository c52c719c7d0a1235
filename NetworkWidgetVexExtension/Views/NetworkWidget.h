// What every network widget has around its content: style, refresh button and background.
#pragma once

#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

/// With the time of drawing where the environment says so.
[[nodiscard]] View networkWidget(View content, const WidgetEnvironment& environment);

/// How a widget of this family shows its sources.
[[nodiscard]] NetworkSourceGridView::DisplayMode displayModeOf(WidgetFamily family);

}  // namespace lanternfold
