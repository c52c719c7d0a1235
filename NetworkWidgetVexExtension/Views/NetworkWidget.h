// What every network widget has around its content: style, refresh button and background.
#pragma once

#include "NetworkWidgetVexExtension/Views/NetworkSourceGridView.h"
#include "NetworkWidgetVexExtension/Views/WidgetEnvironment.h"
#include "ViewTree/View.h"

namespace lanternfold {

[[nodiscard]] View networkWidget(View content, bool showTimestamp,
                                 const WidgetEnvironment& environment);

/// How a widget of this family shows its sources.
[[nodiscard]] NetworkSourceGridView::DisplayMode displayModeOf(WidgetFamily family);

}  // namespace lanternfold
