#include "NetworkWidgetVexExtension/Bundle/NetworkWidgetBundle.h"

#include "NetworkWidgetVexExtension/Bundle/BundleOrder.h"

namespace lanternfold {

std::vector<Widget> NetworkWidgetBundle::body() const {
  std::vector<Widget> widgets;
  forEachWidget([&](const auto& widget) { widgets.push_back(widget.body(surroundings_)); });
  return widgets;
}

}  // namespace lanternfold
