#include "NetworkWidgetVexExtension/Views/NetworkWidget.h"

#include <utility>
#include <vector>

#include "NetworkWidgetVexExtension/Views/BackgroundView.h"
#include "NetworkWidgetVexExtension/Views/InvalidatableContentViewModifierBackport.h"
#include "NetworkWidgetVexExtension/Views/RefreshButton.h"
#include "NetworkWidgetVexExtension/Views/WidgetStyle.h"
#include "ViewTree/Elements.h"

namespace lanternfold {

View networkWidget(View content, const WidgetEnvironment& environment) {
  std::vector<View> layers;
  const InvalidatableContentViewModifierBackport invalidatable{true};
  layers.push_back(invalidatable.body(
      NetworkWidgetDefaultStyle(environment).body(std::move(content)), environment));
  layers.push_back(refreshButtonInCorner(environment));
  return zstack(topCentre, std::move(layers))
      .background(BackgroundView{environment.showsTimestamp}.body(environment));
}

NetworkSourceGridView::DisplayMode displayModeOf(WidgetFamily family) {
  return family == WidgetFamily::large ? NetworkSourceGridView::DisplayMode::large
                                       : NetworkSourceGridView::DisplayMode::small;
}

}  // namespace lanternfold
